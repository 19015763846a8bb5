// SPDX-License-Identifier: BSD-3-Clause
#include <plugin/plugindependency.h>
#include <plugin/plugindependency_p.h>
#include <plugin/plugininfo.h>
#include <plugin/pluginmetadata.h>

#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace ExtensionSystem;

// A literal with its embedded NUL bytes.
#define BYTES(literal) QByteArray(literal, sizeof(literal) - 1)

class tst_PluginMetaData : public QObject
{
    Q_OBJECT

private slots:
    void reading_data();
    void reading();
    void propertiesAreExact();
    void dependencyLines_data();
    void dependencyLines();
    void dependencyResolution();
    void badFiles();
    void checkCompatible_data();
    void checkCompatible();
    void dependencyValue();
    void pluginInfo();

private:
    QString write(const QByteArray &content)
    {
        const QString path = m_dir.filePath(QString("META%1.INF").arg(++m_files));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    std::unique_ptr<PluginMetaData> read(const QByteArray &content)
    {
        return std::make_unique<PluginMetaData>(write(content));
    }
    static QStringList describe(const QList<PluginDependency> &list)
    {
        QStringList result;
        for (const PluginDependency &d : list)
            result << d.symbolic() + '=' + d.version() + (d.isResolved() ? "+" : "");
        return result;
    }

    QTemporaryDir m_dir;
    int m_files = 0;
};

// Data tables keep their hand-made alignment.
// clang-format off
void tst_PluginMetaData::reading_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("symbolic"); // empty: the file must be rejected as invalid
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("eager");

    QTest::newRow("empty file") << QByteArray() << "" << "" << false;
    QTest::newRow("only symbolic") << QByteArray("symbolic: a\n") << "a" << "" << false;
    QTest::newRow("no final newline") << QByteArray("symbolic: a") << "a" << "" << false;
    QTest::newRow("key case and blanks") << QByteArray("SYMBOLIC : a\nVersion:1.0\n") << "a" << "1.0" << false;
    QTest::newRow("symbolic without value") << QByteArray("symbolic:\nversion: 1\n") << "" << "1" << false;
    QTest::newRow("symbolic without colon") << QByteArray("symbolic\n") << "" << "" << false;
    QTest::newRow("crlf") << QByteArray("symbolic: a\r\nactivation: eager\r\n") << "a" << "" << true;
    QTest::newRow("later line wins") << QByteArray("symbolic: a\nsymbolic: b\nactivation: EAGER\nactivation: lazy\n")
                                     << "b" << "" << false;
    QTest::newRow("eager any case") << QByteArray("activation: Eager\nsymbolic: a\n") << "a" << "" << true;
    QTest::newRow("activation yes") << QByteArray("symbolic: a\nactivation: yes\n") << "a" << "" << false;
    QTest::newRow("activation empty") << QByteArray("symbolic: a\nactivation:\n") << "a" << "" << false;
    QTest::newRow("nul ends the line") << BYTES("symbolic: a\0junk\nversion: 1.0\0 2.0\n")
                                       << "a" << "1.0" << false;
    QTest::newRow("nul starts a line") << BYTES("\0symbolic: x\nsymbolic: a\n") << "a" << "" << false;
    QTest::newRow("comment is a key") << QByteArray("# symbolic: x\n#symbolic: y\n") << "" << "" << false;
    QTest::newRow("utf-8 value") << QByteArray("symbolic: caf\xc3\xa9\n") << QString::fromUtf8("caf\xc3\xa9")
                                 << "" << false;
}
// clang-format on

void tst_PluginMetaData::reading()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, symbolic);
    QFETCH(QString, version);
    QFETCH(bool, eager);

    const auto meta = read(content);
    QCOMPARE(meta->symbolic(), symbolic);
    QCOMPARE(meta->version(), version);
    QCOMPARE(meta->isEager(), eager);
    QCOMPARE(meta->isValid(), !symbolic.isEmpty());
    QCOMPARE(meta->error(), symbolic.isEmpty() ? 2 : 0);
    QCOMPARE(meta->errorString(),
             symbolic.isEmpty() ? "The meta file format invalid: " + meta->filepath() : QString("No Error"));
}

void tst_PluginMetaData::propertiesAreExact()
{
    const auto meta = read("SYMBOLIC : core.db\ncompatversion: 2.0.0\nCompany: ACME\n"
                           "website: http://a:b:c\ncustom: x\ncustom: y\n");
    QVERIFY(meta->isValid());
    QCOMPARE(meta->symbolic(), QString("core.db"));
    QCOMPARE(meta->compatVersion(), QString("2.0.0"));
    QCOMPARE(meta->company(), QString("ACME"));
    QCOMPARE(meta->website(), QString("http://a:b:c"));

    // Known keys fold case when read, but the property table is exact.
    QVERIFY(meta->getProperty("symbolic").isNull());
    QCOMPARE(meta->getProperty("SYMBOLIC"), QString("core.db"));
    QCOMPARE(meta->getProperty("compatversion"), QString("2.0.0"));
    QVERIFY(meta->getProperty("compatVersion").isNull());
    QCOMPARE(meta->getProperty("custom"), QString("y"));

    meta->setProperty("SYMBOLIC", "other");
    meta->setProperty("new", "v");
    QCOMPARE(meta->getProperty("SYMBOLIC"), QString("other"));
    QCOMPARE(meta->getProperty("new"), QString("v"));
    QCOMPARE(meta->symbolic(), QString("core.db"));
}

// Data tables keep their hand-made alignment.
// clang-format off
void tst_PluginMetaData::dependencyLines_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("dependencies");
    QTest::addColumn<bool>("resolved");

    QTest::newRow("no dependency line") << QByteArray() << QStringList() << false;
    QTest::newRow("blank dependency line") << QByteArray("dependency:\n") << QStringList() << true;
    QTest::newRow("only separators") << QByteArray("Dependency: ;;\n") << QStringList() << true;
    QTest::newRow("no version") << QByteArray("dependency: a\n") << QStringList{"a="} << false;
    QTest::newRow("case merge, later wins") << QByteArray("dependency: B,1.0;b,2.0\n") << QStringList{"b=2.0"} << false;
    QTest::newRow("map order, trimmed") << QByteArray("dependency: core.log , 1.2.0; Core.db,2.0\n")
                                        << QStringList{"Core.db=2.0", "core.log=1.2.0"} << false;
    QTest::newRow("lines accumulate") << QByteArray("dependency: z,1\nDEPENDENCY: a,2\n")
                                      << QStringList{"a=2", "z=1"} << false;
    QTest::newRow("commas stay in version") << QByteArray("dependency: a,1.0,x\n") << QStringList{"a=1.0,x"} << false;
    QTest::newRow("blank line after entries") << QByteArray("dependency: a,1\ndependency:\n")
                                              << QStringList{"a=1"} << false;
}
// clang-format on

void tst_PluginMetaData::dependencyLines()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, dependencies);
    QFETCH(bool, resolved);

    const auto meta = read("symbolic: p\n" + lines);
    QVERIFY(meta->isValid());
    QCOMPARE(describe(meta->dependencies()), dependencies);
    QCOMPARE(meta->dependencyResolved(), resolved);
}

void tst_PluginMetaData::dependencyResolution()
{
    const auto meta = read("symbolic: p\ndependency: Abc,1.0; x,2.0\n");
    QVERIFY(!meta->dependency("Abc").isValid());
    QCOMPARE(meta->dependency("abc").symbolic(), QString("Abc"));

    meta->setDependencyResolved("Abc", true); // keys are lower case: no entry
    QCOMPARE(describe(meta->dependencies()), QStringList({"Abc=1.0", "x=2.0"}));

    meta->setDependencyResolved("abc", true);
    QVERIFY(!meta->dependencyResolved());
    meta->setDependencyResolved("abc", true);
    QVERIFY(!meta->dependencyResolved());
    meta->setDependencyResolved("x", true);
    QVERIFY(meta->dependencyResolved());
    QCOMPARE(describe(meta->dependencies()), QStringList({"Abc=1.0+", "x=2.0+"}));
    meta->setDependencyResolved("x", true);
    QVERIFY(meta->dependencyResolved());
    meta->setDependencyResolved("abc", false);
    QVERIFY(!meta->dependencyResolved());
    QCOMPARE(describe(meta->dependencies()), QStringList({"Abc=1.0", "x=2.0+"}));
    meta->setDependencyResolved("nothere", true);
    QVERIFY(!meta->dependencyResolved());
}

void tst_PluginMetaData::badFiles()
{
    const QString missing = m_dir.filePath("missing/META.INF");
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression("^\\[ERROR\\] > Cannot open the meta file: .*missing/META.INF"));
    PluginMetaData none(missing);
    QCOMPARE(none.error(), int(PluginMetaData::OpenError));
    QCOMPARE(none.errorString(), "Cannot open the meta file: " + missing);
    QVERIFY(!none.isValid());
    QCOMPARE(none.filepath(), missing);

    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^\\[ERROR\\] > Cannot open the meta file: "));
    PluginMetaData directory(m_dir.path());
    QCOMPARE(directory.error(), int(PluginMetaData::OpenError));

    // Binary data: lines cut at NUL bytes, never a crash, and a later text line still counts.
    QByteArray binary;
    QRandomGenerator random(42);
    for (int i = 0; i < 1 << 16; ++i)
        binary.append(char(random.bounded(256)));
    QVERIFY(!binary.toLower().contains("symbolic"));
    QCOMPARE(read(binary)->error(), int(PluginMetaData::FormatError));
    const auto mixed = read(binary + "\nsymbolic: bin\n" + binary);
    QVERIFY(mixed->isValid());
    QCOMPARE(mixed->symbolic(), QString("bin"));

    // A few MB of lines, the last of them 2 MB long and without a line end.
    QByteArray big;
    for (int i = 0; i < 100000; ++i)
        big += "key" + QByteArray::number(i) + ": " + QByteArray(32, 'v') + '\n';
    big += "symbolic: big\ndescribe: " + QByteArray(2 << 20, 'x');
    const auto large = read(big);
    QVERIFY(large->isValid());
    QCOMPARE(large->symbolic(), QString("big"));
    QCOMPARE(large->getProperty("key99999"), QString(32, 'v'));
    QCOMPARE(large->describe().size(), 2 << 20);
}

// Data tables keep their hand-made alignment.
// clang-format off
void tst_PluginMetaData::checkCompatible_data()
{
    QTest::addColumn<QString>("needed");
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("compatVersion");
    QTest::addColumn<bool>("compatible");

    QTest::newRow("missing component is 0") << "1.2" << "core" << "1.2.0" << "1.0.0" << true;
    QTest::newRow("provider too old") << "1.5" << "core" << "1.4.9" << "" << false;
    QTest::newRow("need older than compat") << "1.0" << "core" << "2.0" << "1.5" << false;
    QTest::newRow("upper bound inclusive") << "2.0" << "core" << "2.0" << "1.0" << true;
    QTest::newRow("lower bound inclusive") << "1.5" << "core" << "2.0" << "1.5" << true;
    QTest::newRow("empty compat is 0.0.0") << "2.0" << "core" << "2.0" << "" << true;
    QTest::newRow("empty need, compat 1.0") << "" << "core" << "3.0" << "1.0" << false;
    QTest::newRow("empty need, compat 0") << "" << "core" << "3.0" << "0" << true;
    QTest::newRow("symbolic is case-sensitive") << "1.0" << "Core" << "1.0" << "" << false;
    QTest::newRow("10 above 9") << "1.10" << "core" << "1.9" << "" << false;
    QTest::newRow("9 below 10") << "1.9" << "core" << "1.10" << "1.2" << true;
    QTest::newRow("256 is 0") << "1.10" << "core" << "1.256" << "" << false;
    QTest::newRow("256 equals 0") << "256.0" << "core" << "0.0.0" << "0" << true;
    QTest::newRow("300 is 44") << "44" << "core" << "300" << "300" << true;
    QTest::newRow("-1 is 255") << "1.255" << "core" << "1.-1" << "1.-1" << true;
    QTest::newRow("-1 above 254") << "1.-1" << "core" << "1.254" << "" << false;
    QTest::newRow("128 above 127") << "1.128" << "core" << "1.127" << "" << false;
    QTest::newRow("2-x is 0") << "2-x.5" << "core" << "0.5" << "0.5" << true;
    QTest::newRow("beyond int is 0") << "99999999999" << "core" << "0" << "" << true;
    QTest::newRow("fourth component ignored") << "1.2.3.9" << "core" << "1.2.3" << "1.2.3.1" << true;
    QTest::newRow("major order first") << "2.0.0" << "core" << "1.9.9" << "" << false;
    QTest::newRow("patch counts") << "1.2.4" << "core" << "1.2.3" << "" << false;
    QTest::newRow("major 37, minor counts") << "37.2.0" << "core" << "37.1.9" << "" << false;
    QTest::newRow("major 37, patch counts") << "37.1.5" << "core" << "37.1.6" << "37" << true;
}
// clang-format on

void tst_PluginMetaData::checkCompatible()
{
    QFETCH(QString, needed);
    QFETCH(QString, provider);
    QFETCH(QString, version);
    QFETCH(QString, compatVersion);
    QFETCH(bool, compatible);

    const PluginDependency dependency("core", needed);
    QCOMPARE(dependency.checkCompatible(provider, version, compatVersion), compatible);
    // Copies compute their own key from the version they take.
    const PluginDependency copy(dependency);
    QCOMPARE(copy.checkCompatible(provider, version, compatVersion), compatible);
    PluginDependency assigned("other", "77.77");
    assigned = dependency;
    QCOMPARE(assigned.checkCompatible(provider, version, compatVersion), compatible);
}

void tst_PluginMetaData::dependencyValue()
{
    const PluginDependency none;
    QVERIFY(!none.isValid());
    QVERIFY(none.symbolic().isNull() && none.version().isNull() && !none.isResolved());
    // The default key is thirty '0' characters, not the key of an empty version.
    QVERIFY(!none.checkCompatible(QString(), "0.0.0", ""));
    QVERIFY(none.checkCompatible(QString(), "48.48.48", ""));
    QVERIFY(PluginDependency("", "").checkCompatible("", "0.0.0", ""));
    QVERIFY(PluginDependency("a", "").isValid());

    // The order above cannot tell U+00FF from U+FFFF for a byte of -1; the key can.
    auto key = [](int major, int minor, int patch) {
        const QString zeros(9, '0');
        return zeros + QChar(major) + zeros + QChar(minor) + zeros + QChar(patch);
    };
    using Internal::PluginDependencyPrivate;
    QCOMPARE(PluginDependencyPrivate::computeVersionKey("1.2.3"), key(1, 2, 3));
    QCOMPARE(PluginDependencyPrivate::computeVersionKey("-1.255.-128"), key(0xff, 0xff, 0x80));
    QCOMPARE(PluginDependencyPrivate::computeVersionKey("37.37.2"), key(37, 37, 2));
    QCOMPARE(PluginDependencyPrivate::computeVersionKey(""), key(0, 0, 0));
    // Digits are read directly; whatever else a component holds keeps toInt()'s reading.
    for (const QString &version :
         {QString("007.1000000000.+2"), QString(" 5.6 .7"), QString("9999999999.-0.1e3"),
          QString("12345678.123456789.1234567890"), QString("1..\u0663"), QString("4294967553.256.511")}) {
        const QStringList parts = version.split('.');
        auto low = [&parts](int i) { return i < parts.size() ? parts.at(i).toInt() & 0xff : 0; };
        QCOMPARE(PluginDependencyPrivate::computeVersionKey(version), key(low(0), low(1), low(2)));
    }

    PluginDependency a("a", "1.0");
    PluginDependency copy(a);
    copy.setResolved(true);
    QVERIFY(!a.isResolved());
    QVERIFY(copy == a); // the flag is not compared
    QVERIFY(!(PluginDependency("a", "1.0") == PluginDependency("a", "1.0.0")));
    QVERIFY(!(PluginDependency("a", "1.0") == PluginDependency("A", "1.0")));

    a = copy;
    QVERIFY(a.isResolved());
    a.setResolved(false);
    QVERIFY(copy.isResolved());
    PluginDependency &self = a;
    a = self;
    QCOMPARE(a.symbolic(), QString("a"));
    QCOMPARE(a.version(), QString("1.0"));
}

void tst_PluginMetaData::pluginInfo()
{
    const PluginInfo empty;
    QCOMPARE(int(empty.currentState()), 0);
    QVERIFY(!empty.isValid() && !empty.isEager());
    QCOMPARE(empty.startupPolicy(), 0);
    QVERIFY(empty.symbolic().isEmpty() && empty.version().isEmpty() && empty.description().isEmpty());
    QVERIFY(empty.dependency().isEmpty());

    const auto meta = read("symbolic: core.db\nversion: 2.1.0\ncompatVersion: 2.0.0\nactivation: eager\n"
                           "category: storage\ncompany: ACME\ncopyright: (c)\nlicense: free\n"
                           "website: w\ndescribe: database access\ndependency: zeta,1.0; Beta; alpha,2\n");
    meta->setDependencyResolved("alpha", true);
    PluginInfo info(meta.get(), PluginInfo::Installed, true, "/p", "/p/core.db.so", -1);
    meta->setDependencyResolved("zeta", true); // after the snapshot: not seen

    QCOMPARE(info.symbolic(), QString("core.db"));
    QCOMPARE(info.currentState(), PluginInfo::Installed);
    QVERIFY(info.isValid() && info.isEager());
    QCOMPARE(info.location(), QString("/p"));
    QCOMPARE(info.filepath(), QString("/p/core.db.so"));
    QCOMPARE(info.startupPolicy(), -1);
    QCOMPARE(info.version() + info.compatVersion(), QString("2.1.02.0.0"));
    QCOMPARE(QStringList({info.category(), info.company(), info.copyright(), info.license(), info.website(),
                          info.description()}),
             QStringList({"storage", "ACME", "(c)", "free", "w", "database access"}));

    const QMap<QString, QPair<QString, bool>> deps = info.dependency();
    QCOMPARE(deps.keys(), QStringList({"Beta", "alpha", "zeta"})); // as written, not lower-cased
    QCOMPARE(deps.value("alpha"), qMakePair(QString("2"), true));
    QCOMPARE(deps.value("Beta"), qMakePair(QString(""), false));
    QCOMPARE(deps.value("zeta"), qMakePair(QString("1.0"), false));

    // Copies share until written; a setter on one leaves the others.
    PluginInfo copy = info;
    PluginInfo assigned;
    assigned = info;
    copy.setCurrentState(PluginInfo::Active);
    copy.setValid(false);
    assigned.setStartupPolicy(1);
    QCOMPARE(info.currentState(), PluginInfo::Installed);
    QVERIFY(info.isValid());
    QCOMPARE(info.startupPolicy(), -1);
    QCOMPARE(copy.currentState(), PluginInfo::Active);
    QCOMPARE(copy.startupPolicy(), -1);
    QCOMPARE(assigned.startupPolicy(), 1);
    QCOMPARE(assigned.currentState(), PluginInfo::Installed);

    const QVariant variant = QVariant::fromValue(copy);
    QCOMPARE(variant.value<PluginInfo>().currentState(), PluginInfo::Active);
    QCOMPARE(variant.value<PluginInfo>().symbolic(), QString("core.db"));
}

QTEST_GUILESS_MAIN(tst_PluginMetaData)
#include "tst_pluginmetadata.moc"
