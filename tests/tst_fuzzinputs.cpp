// SPDX-License-Identifier: BSD-3-Clause
// Replays the fuzzers' seed corpora and every input that once broke a fuzz target
// (kept under tests/data/fuzz/<target>/) through the same checks, in the normal build.

#include "../fuzz/harness.h"

#include <objecttree/object.h>

#include <QtCore/QDir>
#include <QtTest>

namespace {

void quiet(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The parse task logs each file; only warnings are worth keeping.
    if (type != QtDebugMsg)
        fprintf(stderr, "%s\n", qPrintable(message));
}

using Harness = QString (*)(const QByteArray &);

} // namespace

class tst_FuzzInputs : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qInstallMessageHandler(quiet); }
    void replay_data();
    void replay();
    void removedChildListedTwiceAfterDetach();
};

void tst_FuzzInputs::replay_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("file");
    int found = 0;
    for (const char *target : {"metadata", "version", "extensionfile", "objecttree"}) {
        int perTarget = 0;
        for (const QString &root : {QStringLiteral(ES_FUZZ_CORPUS_DIR), QStringLiteral(ES_TEST_DATA_DIR "/fuzz")}) {
            const QDir dir(root + QLatin1Char('/') + QLatin1String(target));
            for (const QFileInfo &file : dir.entryInfoList(QDir::Files, QDir::Name)) {
                QTest::addRow("%s/%s", target, qPrintable(file.fileName()))
                        << QString::fromLatin1(target) << file.absoluteFilePath();
                ++perTarget;
            }
        }
        // Every target has a seed corpus in the tree; an empty one means a wrong path.
        QVERIFY2(perTarget > 0, target);
        found += perTarget;
    }
    QVERIFY(found > 0);
}

void tst_FuzzInputs::replay()
{
    QFETCH(QString, target);
    QFETCH(QString, file);
    static const QHash<QString, Harness> harnesses{
            {QStringLiteral("metadata"), FuzzHarness::metaData},
            {QStringLiteral("version"), FuzzHarness::version},
            {QStringLiteral("extensionfile"), FuzzHarness::extensionFile},
            {QStringLiteral("objecttree"), FuzzHarness::objectTree},
    };
    QFile input(file);
    QVERIFY(input.open(QIODevice::ReadOnly));
    const QString failure = harnesses.value(target)(input.readAll());
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
}

// The object tree input kept as crash-removechild-leaves-second-entry, spelled out.
void tst_FuzzInputs::removedChildListedTwiceAfterDetach()
{
    ExtensionSystem::Object parent;
    auto *child = new ExtensionSystem::Object;
    QVERIFY(parent.addChild(child));
    QVERIFY(parent.insertChild(0, child));
    QVERIFY(parent.insertChild(0, child));
    child->setParent(nullptr); // one entry goes, two stay, and the child's parent field is null
    QCOMPARE(parent.childCount(), 2);
    QVERIFY(parent.removeChild(0)); // deletes the child
    // No entry may be left that names the deleted child.
    QCOMPARE(parent.childCount(), 0);
}

QTEST_MAIN(tst_FuzzInputs)
#include "tst_fuzzinputs.moc"
