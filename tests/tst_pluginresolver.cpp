// SPDX-License-Identifier: BSD-3-Clause
// The load queue's rule as tools reach it, PluginResolver, over metadata files
// written for each case: the order plug-ins resolve in, and the words for why
// one does not.

#include <plugin/pluginmetadata.h>
#include <plugin/pluginproblem.h>
#include <plugin/pluginresolver.h>

#include <QtCore/QTemporaryDir>
#include <QtTest>

#include <memory>
#include <vector>

using namespace ExtensionSystem;

namespace {

// Plug-ins described by their META.INF lines, offered to one resolver in order.
class Offered
{
public:
    bool add(const QString &name, const QByteArray &lines)
    {
        const QString path = directory.filePath(name + QStringLiteral(".inf"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size())
            return false;
        file.close();
        metaData.emplace_back(new PluginMetaData(path));
        resolver.install(metaData.back()->symbolic(), metaData.back().get());
        return true;
    }
    QList<PluginProblem> problems(const QString &name) const { return resolver.problems(name); }
    QStringList queue() const { return resolver.queue(); }

private:
    QTemporaryDir directory;
    std::vector<std::unique_ptr<PluginMetaData>> metaData;
    PluginResolver resolver; // declared last: it goes first, before the metadata it points to
};

} // namespace

class tst_PluginResolver : public QObject
{
    Q_OBJECT
private slots:
    void resolveCascade();
    void incompatibleVersionKeepsBothProvidedVersions();
    void missingDependencyThatDiffersOnlyInCase();
};

void tst_PluginResolver::resolveCascade()
{
    // Offered last first: each waits until what it needs is in, then follows it;
    // of two that wait for the same plug-in, the wait recorded last goes first.
    Offered offered;
    QVERIFY(offered.add(QStringLiteral("c"), "symbolic: c\ndependency: b,1.0.0\n"));
    QVERIFY(offered.add(QStringLiteral("b"), "symbolic: b\nversion: 1.0.0\ndependency: a,1.0.0\n"));
    QVERIFY(offered.add(QStringLiteral("x"), "symbolic: x\ndependency: a,1.0.0\n"));
    QVERIFY(offered.queue().isEmpty());
    QVERIFY(offered.add(QStringLiteral("a"), "symbolic: a\nversion: 1.0.0\ndependency:\n"));
    QCOMPARE(offered.queue(), QStringList({"a", "x", "b", "c"}));
    for (const char *name : {"a", "b", "c", "x"})
        QVERIFY(offered.problems(QLatin1String(name)).isEmpty());
}

void tst_PluginResolver::incompatibleVersionKeepsBothProvidedVersions()
{
    // A provider whose version and compatible version differ: a need above the
    // one and a need below the other both fail, and say which is which.
    Offered offered;
    QVERIFY(offered.add(QStringLiteral("core"), "symbolic: core\nversion: 2.5.0\ncompatVersion: 2.0.0\ndependency:\n"));
    QVERIFY(offered.add(QStringLiteral("newer"), "symbolic: newer\ndependency: core,3.0.0\n"));
    QVERIFY(offered.add(QStringLiteral("older"), "symbolic: older\ndependency: core,1.9.0\n"));
    QVERIFY(offered.add(QStringLiteral("fits"), "symbolic: fits\ndependency: core,2.1.0\n"));
    QCOMPARE(offered.queue(), QStringList({"core", "fits"}));
    for (const char *name : {"newer", "older"}) {
        const QList<PluginProblem> problems = offered.problems(QLatin1String(name));
        QCOMPARE(problems.size(), 1);
        const PluginProblem &problem = problems.first();
        QCOMPARE(problem.reason(), PluginProblem::IncompatibleVersion);
        QCOMPARE(problem.dependency(), QStringLiteral("core"));
        QCOMPARE(problem.providedVersion(), QStringLiteral("2.5.0"));
        QCOMPARE(problem.providedCompatVersion(), QStringLiteral("2.0.0"));
        QCOMPARE(problem.text(), QStringLiteral("incompatible version: needs core %1 but core is 2.5.0 "
                                                "(compatible back to 2.0.0)")
                                         .arg(problem.requiredVersion()));
    }
}

void tst_PluginResolver::missingDependencyThatDiffersOnlyInCase()
{
    Offered offered;
    QVERIFY(offered.add(QStringLiteral("Chain.A"), "symbolic: Chain.A\nversion: 1.0.0\ndependency:\n"));
    QVERIFY(offered.add(QStringLiteral("user"), "symbolic: user\ndependency: chain.a,1.0.0\n"));
    QVERIFY(offered.add(QStringLiteral("other"), "symbolic: other\ndependency: nowhere,1.0.0\n"));
    const QList<PluginProblem> user = offered.problems(QStringLiteral("user"));
    QCOMPARE(user.size(), 1);
    QCOMPARE(user.first().reason(), PluginProblem::MissingDependency);
    QCOMPARE(user.first().detail(), QStringLiteral("there is Chain.A, but names are case-sensitive"));
    QCOMPARE(user.first().text(), QStringLiteral("missing dependency: needs chain.a 1.0.0, which is not installed "
                                                 "(there is Chain.A, but names are case-sensitive)"));
    // A name that nothing resembles has no such remark.
    QCOMPARE(offered.problems(QStringLiteral("other")).first().detail(), QString());
}

QTEST_GUILESS_MAIN(tst_PluginResolver)

#include "tst_pluginresolver.moc"
