// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <extension/extensiondata.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <core/timeline.h>
#include <core/timelinerecorder.h>
#include <plugin/pluginmanager.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

using Entries = QVector<Timeline::Entry>;

Entries entriesOf(const Timeline &timeline, Timeline::Phase phase, const QString &name = QString())
{
    Entries found;
    const Entries all = timeline.entries();
    for (const Timeline::Entry &entry : all) {
        if (entry.phase == phase && (name.isNull() || entry.name == name))
            found << entry;
    }
    return found;
}

bool within(const Timeline::Entry &inner, const Timeline::Entry &outer)
{
    return inner.thread == outer.thread && outer.begin <= inner.begin && inner.end <= outer.end;
}

QString deployWithExtensionFile(const QString &plugin, const QByteArray &xml)
{
    const QString library = deployPlugin(plugin);
    const QString file = QFileInfo(library).absolutePath() + QStringLiteral("/extension.xml");
    return writeFile(file, xml) ? file : QString();
}

QByteArray supplierFile(const QString &title)
{
    return QStringLiteral("<Plugin id=\"ext.supplier\"><ExtDataSet>"
                          "<ExtData id=\"test.point\" plugin=\"ext.supplier\" extPlugin=\"ext.host\">"
                          "<Item id=\"supplier.action\" title=\"%1\"/></ExtData></ExtDataSet></Plugin>")
            .arg(title)
            .toUtf8();
}

ExtensionPoint *testPoint(PluginFramework *framework)
{
    return frameworkContext(framework)->extensionManager->pointAdmin()->findExtensionPoint(
            QStringLiteral("test.point"));
}

} // namespace

class tst_Timeline : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        // No watcher, unless a test turns it on: a rescan would add a signal of its own.
        QVERIFY(writeFile(configFile(), "[PluginManager]\nwatchPluginsDirectory=false\n"));
    }
    void cleanup() { resetApplicationDirectory(); }

    void phasesOfAWholeRun();
    void traceEventsNestOrKeepApart();
    void traceWrittenToAFile();
    void profileTableRows();
    void librariesWithoutANameGoByTheirFile();
    void outerPhaseFirstAndTheFootersPlaces();
    void overlappingScansEachReportTheirOwnParse();
    void extensionFilesReadyOncePerScan();
    void rescanOfTheWatchedDirectory();
    void editedTitleReachesThePointInTheSameRun();
};

void tst_Timeline::phasesOfAWholeRun()
{
    const QStringList plugins{"chain.a", "chain.b", "chain.c", "ext.host", "ext.supplier"};
    for (const QString &plugin : plugins)
        deployPlugin(plugin);
    const QString file = pluginsDir() + QStringLiteral("/ext.supplier/extension.xml");
    QVERIFY(writeFile(file, supplierFile(QStringLiteral("Open"))));

    Timeline timeline;
    {
        PluginFramework framework;
        QVERIFY(framework.isTimelineRecording());
        QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
        framework.init();
        QVERIFY(ready.wait(5000));
        framework.start();
        framework.stop();
        timeline = framework.timeline();

        // Off: nothing more is recorded, and what was recorded stays.
        framework.setTimelineRecording(false);
        QVERIFY(!framework.isTimelineRecording());
        framework.start();
        framework.stop();
        QCOMPARE(framework.timeline().entries().size(), timeline.entries().size());
    }

    const Entries all = timeline.entries();
    for (const Timeline::Entry &entry : all) {
        QVERIFY2(entry.begin >= 0 && entry.duration() >= 0, qPrintable(Timeline::phaseName(entry.phase)));
        // Only the parse runs off the framework's thread.
        QCOMPARE(entry.thread != 0, entry.phase == Timeline::FileParse);
    }
    QCOMPARE(entriesOf(timeline, Timeline::FrameworkInit).size(), 1);
    QCOMPARE(entriesOf(timeline, Timeline::FrameworkStart).size(), 1);
    QCOMPARE(entriesOf(timeline, Timeline::FrameworkStop).size(), 1);
    const Timeline::Entry init = entriesOf(timeline, Timeline::FrameworkInit).first();
    const Timeline::Entry start = entriesOf(timeline, Timeline::FrameworkStart).first();
    const Timeline::Entry stop = entriesOf(timeline, Timeline::FrameworkStop).first();
    QVERIFY(init.end <= start.begin && start.end <= stop.begin);

    // One entry per phase per plug-in, in the order of the lifecycle, each inside
    // the framework call that caused it.
    for (const QString &plugin : plugins) {
        const Timeline::Phase phases[] = {Timeline::LibraryLoad, Timeline::MetaDataRead, Timeline::LoadQueue,
                                          Timeline::ActivatorStart, Timeline::ActivatorStop};
        Entries ordered;
        for (Timeline::Phase phase : phases) {
            const Entries found = entriesOf(timeline, phase, plugin);
            QVERIFY2(found.size() == 1, qPrintable(plugin + QLatin1Char(' ') + Timeline::phaseName(phase)));
            QVERIFY(found.first().file.endsWith(plugin + QStringLiteral(ES_TEST_LIBRARY_SUFFIX)));
            ordered << found.first();
        }
        for (int i = 1; i < ordered.size(); ++i)
            QVERIFY2(ordered.at(i - 1).end <= ordered.at(i).begin, qPrintable(plugin));
        QVERIFY(within(ordered.at(0), init) && within(ordered.at(2), init));
        QVERIFY(within(ordered.at(3), start));
        QVERIFY(within(ordered.at(4), stop));
    }

    // The changed file: digest on the framework's thread, parse on the pool,
    // then store and dispatch, after init returned.
    const Timeline::Phase filePhases[] = {Timeline::FileDigest, Timeline::FileParse, Timeline::StoreWrite,
                                          Timeline::Dispatch};
    Entries fileEntries;
    for (Timeline::Phase phase : filePhases) {
        const Entries found = entriesOf(timeline, phase, file);
        QVERIFY2(found.size() == 1, qPrintable(Timeline::phaseName(phase)));
        QCOMPARE(found.first().file, file);
        fileEntries << found.first();
    }
    QVERIFY(init.end <= fileEntries.first().begin);
    for (int i = 1; i < fileEntries.size(); ++i)
        QVERIFY(fileEntries.at(i - 1).end <= fileEntries.at(i).begin);
    QVERIFY(entriesOf(timeline, Timeline::StoreRead).isEmpty());
}

namespace {

// Three plug-ins through init, the extension files and start; an empty
// timeline if the files never came.
Timeline startThreePlugins(const QStringList &plugins)
{
    for (const QString &plugin : plugins)
        deployPlugin(plugin);
    PluginFramework framework;
    QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
    framework.init();
    if (!ready.wait(5000))
        return Timeline();
    framework.start();
    return framework.timeline();
}

const QStringList threePlugins{"chain.a", "chain.b", "ext.host"};

} // namespace

void tst_Timeline::traceEventsNestOrKeepApart()
{
    const QStringList plugins = threePlugins;
    const Timeline timeline = startThreePlugins(plugins);
    QCOMPARE(entriesOf(timeline, Timeline::ActivatorStart).size(), plugins.size());

    // The trace is JSON with one complete event per entry, in microseconds.
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(timeline.toTraceJson(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    const QJsonArray events = document.object().value(QStringLiteral("traceEvents")).toArray();
    QJsonObject frameworkStart;
    QList<QJsonObject> starts;
    QList<QJsonObject> spans;
    int complete = 0;
    QSet<int> namedThreads;
    QSet<int> usedThreads;
    for (const QJsonValue &value : events) {
        const QJsonObject event = value.toObject();
        const QString ph = event.value(QStringLiteral("ph")).toString();
        if (ph == QLatin1String("M")) {
            if (event.value(QStringLiteral("name")).toString() == QLatin1String("thread_name"))
                namedThreads << event.value(QStringLiteral("tid")).toInt();
            continue;
        }
        QCOMPARE(ph, QStringLiteral("X"));
        ++complete;
        usedThreads << event.value(QStringLiteral("tid")).toInt();
        QVERIFY(event.value(QStringLiteral("ts")).toDouble() >= 0);
        QVERIFY(event.value(QStringLiteral("dur")).toDouble() >= 0);
        const QString name = event.value(QStringLiteral("name")).toString();
        if (name == QLatin1String("start")
            && event.value(QStringLiteral("cat")).toString() == QLatin1String("framework"))
            frameworkStart = event;
        const QString activatorStart = QStringLiteral("activator start ");
        if (name.startsWith(activatorStart)) {
            const QString plugin = name.mid(activatorStart.size());
            QVERIFY(plugins.contains(plugin));
            const QJsonObject args = event.value(QStringLiteral("args")).toObject();
            QVERIFY(args.value(QStringLiteral("file")).toString().contains(plugin));
            starts << event;
        }
        spans << event;
    }
    // On one track two events nest or keep apart: a viewer rebuilds the stacks from that.
    for (const QJsonObject &a : qAsConst(spans)) {
        for (const QJsonObject &b : qAsConst(spans)) {
            if (a.value(QStringLiteral("tid")) != b.value(QStringLiteral("tid")))
                continue;
            const double aBegin = a.value(QStringLiteral("ts")).toDouble();
            const double aEnd = aBegin + a.value(QStringLiteral("dur")).toDouble();
            const double bBegin = b.value(QStringLiteral("ts")).toDouble();
            const double bEnd = bBegin + b.value(QStringLiteral("dur")).toDouble();
            const bool apart = aEnd <= bBegin || bEnd <= aBegin;
            const bool nested = (aBegin <= bBegin && bEnd <= aEnd) || (bBegin <= aBegin && aEnd <= bEnd);
            QVERIFY2(apart || nested, qPrintable(a.value(QStringLiteral("name")).toString() + QLatin1String(" / ")
                                                 + b.value(QStringLiteral("name")).toString()));
        }
    }
    QCOMPARE(complete, timeline.entries().size());
    QCOMPARE(namedThreads, usedThreads);
    QCOMPARE(starts.size(), plugins.size());
    QVERIFY(!frameworkStart.isEmpty());
    const double outerBegin = frameworkStart.value(QStringLiteral("ts")).toDouble();
    const double outerEnd = outerBegin + frameworkStart.value(QStringLiteral("dur")).toDouble();
    for (const QJsonObject &start : qAsConst(starts)) {
        const double begin = start.value(QStringLiteral("ts")).toDouble();
        QVERIFY(begin >= outerBegin);
        QVERIFY(begin + start.value(QStringLiteral("dur")).toDouble() <= outerEnd);
    }
}

void tst_Timeline::traceWrittenToAFile()
{
    const Timeline timeline = startThreePlugins(threePlugins);
    QVERIFY(!timeline.entries().isEmpty());
    // Written to a file, the same document; a file that cannot be written says why.
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("startup.json"));
    QVERIFY(timeline.writeTrace(path));
    QFile written(path);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.readAll(), timeline.toTraceJson());
    QString why;
    QVERIFY(!timeline.writeTrace(directory.filePath(QStringLiteral("missing/startup.json")), &why));
    QVERIFY(why.contains(QStringLiteral("missing/startup.json")));
}

void tst_Timeline::profileTableRows()
{
    const QStringList plugins = threePlugins;
    const Timeline timeline = startThreePlugins(plugins);
    QVERIFY(!timeline.entries().isEmpty());
    // The table: a row per plug-in, sorted by the total in the last column.
    const QStringList lines = timeline.profileTable().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1 + plugins.size() + 1);
    QVERIFY(lines.first().startsWith(QStringLiteral("plug-in")));
    QVERIFY(lines.first().contains(QStringLiteral("activator start")));
    double previous = 1e300;
    QSet<QString> rows;
    for (int i = 1; i <= plugins.size(); ++i) {
        const QStringList cells = lines.at(i).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        QCOMPARE(cells.size(), 8);
        rows << cells.first();
        double sum = 0;
        for (int column = 1; column < 7; ++column)
            sum += cells.at(column).toDouble();
        const double total = cells.last().toDouble();
        QVERIFY(qAbs(sum - total) < 0.05); // rounded to hundredths
        QVERIFY(total <= previous);
        previous = total;
    }
    QCOMPARE(rows, QSet<QString>(plugins.cbegin(), plugins.cend()));
    QVERIFY(lines.last().contains(QStringLiteral("framework: init")));
    QVERIFY(Timeline().profileTable().startsWith(QStringLiteral("plug-in")));
}

void tst_Timeline::librariesWithoutANameGoByTheirFile()
{
    // Two nameless libraries (the second one refused as a duplicate of the first)
    // and one that does not load: every entry, row and trace event has a name.
    const QStringList libraries{"meta.nosymbolic", "no.metadata", "not.qtplugin"};
    for (const QString &library : libraries)
        deployPlugin(library);
    deployPlugin(QStringLiteral("chain.a"));
    PluginFramework framework;
    framework.init();
    framework.start();
    const Timeline timeline = framework.timeline();

    const Entries all = timeline.entries();
    for (const Timeline::Entry &entry : all) {
        // The framework's own phases concern no file and no one.
        QCOMPARE(entry.name.isEmpty(), entry.file.isEmpty());
    }
    for (const QString &library : libraries) {
        QVERIFY2(!entriesOf(timeline, Timeline::LibraryLoad, library).isEmpty(), qPrintable(library));
        QVERIFY2(timeline.toTraceJson().contains(QStringLiteral("\"load %1\"").arg(library).toUtf8()),
                 qPrintable(library));
    }
    // Entered into the load queue under the empty name, reported under its file's.
    QCOMPARE(entriesOf(timeline, Timeline::LoadQueue, QStringLiteral("meta.nosymbolic")).size(), 1);
    QVERIFY(timeline.toTraceJson().contains("\"queue meta.nosymbolic\""));
    QCOMPARE(entriesOf(timeline, Timeline::LoadQueue, QStringLiteral("not.qtplugin")).size(), 1);

    const QStringList lines = timeline.profileTable().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QSet<QString> rows;
    for (const QString &line : lines.mid(1, lines.size() - 2)) {
        QVERIFY2(!line.startsWith(QLatin1Char(' ')), qPrintable(line));
        rows << line.section(QLatin1Char(' '), 0, 0);
    }
    QCOMPARE(rows, QSet<QString>({"meta.nosymbolic", "no.metadata", "not.qtplugin", "chain.a"}));
}

void tst_Timeline::outerPhaseFirstAndTheFootersPlaces()
{
    // Recorded inner first, as phases end; two that begin together are written
    // outer first, or a viewer nests them the wrong way round.
    TimelineRecorder recorder;
    const qint64 ms = 1000000;
    recorder.record(Timeline::MetaDataRead, QStringLiteral("p"), QStringLiteral("/p.so"), 2 * ms, 3 * ms);
    recorder.record(Timeline::LibraryLoad, QStringLiteral("p"), QStringLiteral("/p.so"), 2 * ms, 5 * ms);
    recorder.record(Timeline::FrameworkInit, QString(), QString(), 0, 11 * ms);
    recorder.record(Timeline::FrameworkStart, QString(), QString(), 11 * ms, 13 * ms);
    recorder.record(Timeline::FrameworkStop, QString(), QString(), 13 * ms, 16 * ms);
    const Timeline timeline = recorder.timeline();

    const QJsonArray events =
            QJsonDocument::fromJson(timeline.toTraceJson()).object().value(QStringLiteral("traceEvents")).toArray();
    QStringList order;
    for (const QJsonValue &event : events) {
        if (event.toObject().value(QStringLiteral("ph")).toString() == QLatin1String("X"))
            order << event.toObject().value(QStringLiteral("name")).toString();
    }
    QCOMPARE(order, QStringList({"init", "load p", "metadata p", "start", "stop"}));

    // The footer gives each of the framework's three calls its own time.
    const QString footer = timeline.profileTable().section(QLatin1Char('\n'), -2, -2);
    QCOMPARE(footer, QStringLiteral("times in ms; framework: init 11.00, start 2.00, stop 3.00"));
}

void tst_Timeline::overlappingScansEachReportTheirOwnParse()
{
    // A scan that begins while an earlier one still waits for the parse of the
    // same file: each is told of a parse of its own, the earlier scan first,
    // and the later one with what it read from the store besides.
    const QString fresh = pluginsDir() + QStringLiteral("/fresh/extension.xml");
    const QString stored = pluginsDir() + QStringLiteral("/stored/extension.xml");
    QVERIFY(writeFile(fresh, "<Plugin id=\"fresh\"/>"));
    QVERIFY(writeFile(stored, "<Plugin id=\"stored\"/>"));
    PluginFramework framework;
    ExtensionManager *extensions = frameworkContext(&framework)->extensionManager;
    QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
    extensions->parseExtensionFile(stored);
    extensions->scanFinished();
    QVERIFY(ready.wait(5000));
    ready.clear();

    extensions->parseExtensionFile(fresh);
    extensions->scanFinished();
    extensions->parseExtensionFile(fresh);
    extensions->parseExtensionFile(stored);
    extensions->scanFinished();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, 5000);
    QVERIFY(settle());
    QCOMPARE(ready.count(), 2);
    QCOMPARE(ready.at(0), QVariantList({QStringList({fresh}), QStringList(), QStringList()}));
    QCOMPARE(ready.at(1), QVariantList({QStringList({fresh}), QStringList({stored}), QStringList()}));
}

void tst_Timeline::extensionFilesReadyOncePerScan()
{
    // A scan without extension files still says so, once.
    deployPlugin(QStringLiteral("chain.a"));
    {
        PluginFramework framework;
        QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
        framework.init();
        QCOMPARE(ready.count(), 0); // from the event loop, not from init()
        QVERIFY(ready.wait(5000));
        QVERIFY(settle());
        QCOMPARE(ready.count(), 1);
        QCOMPARE(ready.first(), QVariantList({QStringList(), QStringList(), QStringList()}));
    }

    // Parsed, from the store, failed; each scan signals after the last dispatch.
    deployPlugin(QStringLiteral("ext.host"));
    const QString supplier = deployWithExtensionFile(QStringLiteral("ext.supplier"), supplierFile(QStringLiteral("A")));
    QVERIFY(!supplier.isEmpty());
    const QString broken = QFileInfo(deployPlugin(QStringLiteral("chain.a"))).absolutePath() + "/extension.xml";
    QVERIFY(writeFile(broken, "<Plugin id=\"chain.a\"><ExtDataSet>"));
    for (int run = 1; run <= 2; ++run) {
        PluginFramework framework;
        auto *manager = framework.findChild<PluginManager *>();
        QStringList seenAtSignal;
        connect(&framework, &PluginFramework::extensionFilesReady, this, [&] {
            ExtensionPoint *point = testPoint(&framework);
            seenAtSignal << (point && point->extensionData(QStringLiteral("supplier.action")) ? "item" : "none");
        });
        QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
        framework.init();
        // The point is there before the files are read: the signal must wait for their dispatch.
        manager->start(QStringLiteral("ext.host"));
        QVERIFY(ready.wait(5000));
        QVERIFY(settle());
        QCOMPARE(ready.count(), 1);
        QCOMPARE(seenAtSignal, QStringList({"item"}));
        const QStringList parsed = ready.first().at(0).toStringList();
        const QStringList stored = ready.first().at(1).toStringList();
        const QStringList failed = ready.first().at(2).toStringList();
        if (run == 1) {
            QCOMPARE(parsed, QStringList({supplier}));
            QCOMPARE(stored, QStringList());
        } else {
            QCOMPARE(parsed, QStringList());
            QCOMPARE(stored, QStringList({supplier}));
        }
        // A file that does not parse is never stored, so it fails in every run.
        QCOMPARE(failed, QStringList({broken}));

        // A scan of a directory with nothing new: once more, empty.
        manager->install(QDir(pluginsDir()));
        QVERIFY(ready.wait(5000));
        QCOMPARE(ready.count(), 2);
        QCOMPARE(ready.last(), QVariantList({QStringList(), QStringList(), QStringList()}));
    }
}

void tst_Timeline::rescanOfTheWatchedDirectory()
{
    QVERIFY(writeFile(configFile(), "[PluginManager]\nwatchPluginsDirectory=true\n"));
    deployPlugin(QStringLiteral("ext.host"));
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy scans(manager, &PluginManager::directoryScanned);
    QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
    framework.init();
    QVERIFY(ready.wait(5000));

    // A plug-in directory made elsewhere and moved in whole: the watcher's scan
    // installs it and announces its file.
    QTemporaryDir staging(appDir() + QStringLiteral("/staging-XXXXXX"));
    const QString built = builtPlugin(QStringLiteral("ext.supplier"));
    const QString staged = staging.filePath(QStringLiteral("ext.supplier"));
    QDir().mkpath(staged);
    QVERIFY(QFile::copy(built, staged + QLatin1Char('/') + QFileInfo(built).fileName()));
    QVERIFY(writeFile(staged + QStringLiteral("/extension.xml"), supplierFile(QStringLiteral("B"))));
    const QString target = pluginsDir() + QStringLiteral("/ext.supplier");
    QVERIFY(QDir().rename(staged, target));

    QTRY_VERIFY_WITH_TIMEOUT(ready.count() >= 2, 5000);
    QVERIFY(settle());
    // Exactly one signal per scan, however many scans the watcher ran.
    QCOMPARE(ready.count(), scans.count());
    QStringList parsed;
    for (int i = 1; i < ready.count(); ++i)
        parsed << ready.at(i).at(0).toStringList();
    QCOMPARE(parsed, QStringList({target + QStringLiteral("/extension.xml")}));
    QVERIFY(manager->find(QStringLiteral("ext.supplier")));
}

void tst_Timeline::editedTitleReachesThePointInTheSameRun()
{
    deployPlugin(QStringLiteral("ext.host"));
    const QString file = deployWithExtensionFile(QStringLiteral("ext.supplier"), supplierFile(QStringLiteral("Old")));
    QVERIFY(!file.isEmpty());
    const QStringList titles{"Old", "New title"};
    for (const QString &title : titles) {
        QVERIFY(writeFile(file, supplierFile(title))); // a new size: the digest changes
        PluginFramework framework;
        QSignalSpy ready(&framework, &PluginFramework::extensionFilesReady);
        // init, wait for the files, then start: the point reads this run's rows.
        framework.init();
        QVERIFY(ready.wait(5000));
        QCOMPARE(ready.first().at(0).toStringList(), QStringList({file}));
        framework.start();
        ExtensionPoint *point = testPoint(&framework);
        QVERIFY(point);
        ExtensionData *data = point->extensionData(QStringLiteral("supplier.action"));
        QVERIFY(data);
        QCOMPARE(data->attribute(QStringLiteral("title")).toString(), title);
    }
}

QTEST_GUILESS_MAIN(tst_Timeline)
#include "tst_timeline.moc"
