// SPDX-License-Identifier: BSD-3-Clause
// The framework's cases, each run in a fresh process by the harness. The
// executable is copied into each application directory, since the framework
// finds plugins/ and config/ beside it.
//
//     es-bench floor                       QPluginLoader over queue.txt
//     es-bench es <plugins> <services> <items> [--points] [--write-queue] [--record-sql <file>]
//                 [--no-timeline] [--no-journal] [--watchdog <ms>]
//     es-bench sql <file> <store>          the recorded SQL texts, replayed on a copy of <store>
//     es-bench events <listeners> fw|plain
//     es-bench lookup fw|plain

#include "benchcommon.h"

#include <ExtensionSystem/CustomizedEvent>
#include <ExtensionSystem/PluginResolver>
#include <ExtensionSystem/ICustomizedListener>
#include <ExtensionSystem/PluginFramework>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/PluginInfo>
#include <ExtensionSystem/PluginManager>
#include <ExtensionSystem/ServiceReference>
#include <ExtensionSystem/ServiceRegistration>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMultiHash>
#include <QtCore/QPluginLoader>
#include <QtCore/QThreadPool>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtSql/QSqlRecord>

#include <sqlite3.h>

#include <algorithm>

using namespace ExtensionSystem;

namespace {

QString queueFile()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/queue.txt");
}

} // namespace

// The measured part of each case is a function of its own, named es_bench_*,
// that callgrind's --toggle-collect finds: the harness counts its instructions.

// The floor: what any loader of these libraries has to do, in the order the
// framework loads them, with nothing else.
struct FloorLoad
{
    QList<QPluginLoader *> loaders;
    int loaded = 0;
    qint64 metaBytes = 0;
};

Q_NEVER_INLINE void es_bench_floor_load(const QStringList &paths, FloorLoad &result)
{
    for (const QString &path : paths) {
        auto *loader = new QPluginLoader(path);
        result.loaders << loader;
        // Bound as the framework binds them, so that the floor does the same loading work.
        loader->setLoadHints(PluginResolver::libraryLoadHints());
        loader->load();
        if (!loader->instance())
            continue;
        const QString base = path.section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, -2);
        QFile meta(QStringLiteral(":/%1/META-DATA/META.INF").arg(base));
        if (meta.open(QIODevice::ReadOnly)) {
            result.metaBytes += meta.readAll().size();
            ++result.loaded;
        }
    }
}

// What a framework case turns on or off, to measure what each costs.
struct Switches
{
    bool timeline = true;
    bool journal = true;
    int watchdog = 0;
};

Q_NEVER_INLINE PluginFramework *es_bench_init_start(const QElapsedTimer &timer, double &initMs,
                                                    const Switches &switches)
{
    auto *framework = new PluginFramework;
    framework->setTimelineRecording(switches.timeline);
    framework->setStartJournalEnabled(switches.journal);
    framework->setHangWatchdog(switches.watchdog);
    framework->init();
    initMs = bench::millisecondsSince(timer);
    framework->start();
    return framework;
}

// The store's floor: the SQL texts that a start ran, in their order, through
// QSqlQuery on a copy of the same store, reading every value of every row, and
// nothing else. Returns the number of values read.
Q_NEVER_INLINE qint64 es_bench_sql_replay(const QStringList &texts, const QString &store)
{
    qint64 values = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("replay"));
        db.setDatabaseName(store);
        if (!db.open())
            return -1;
        for (const QString &text : texts) {
            QSqlQuery query(db);
            query.setForwardOnly(true);
            query.exec(text);
            const int columns = query.record().count();
            while (query.next()) {
                for (int i = 0; i < columns; ++i)
                    values += query.value(i).isValid() ? 1 : 0;
            }
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("replay"));
    return values;
}

namespace {

int runFloor()
{
    QFile list(queueFile());
    bench::check(list.open(QIODevice::ReadOnly | QIODevice::Text),
                 QStringLiteral("no queue.txt: run es --write-queue"));
    const QStringList paths = QString::fromUtf8(list.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const long rssBefore = bench::peakRssKiB();

    QElapsedTimer timer;
    timer.start();
    FloorLoad result;
    es_bench_floor_load(paths, result);
    const double ms = bench::millisecondsSince(timer);
    const int loaded = result.loaded;
    const qint64 metaBytes = result.metaBytes;

    bench::check(loaded == paths.size() && metaBytes > 0,
                 QStringLiteral("floor loaded %1 of %2 libraries").arg(loaded).arg(paths.size()));
    bench::figure("load_ms", ms);
    bench::figure("rss_kib", double(bench::peakRssKiB() - rssBefore));
    qDeleteAll(result.loaders);
    return 0;
}

// The SQL texts of a run, as SQLite starts each statement, separated by NUL
// characters: every connection the process opens is traced from its opening on.
QFile *sqlLog = nullptr;
int sqlStatements = 0;

int traceStatement(unsigned, void *, void *statement, void *)
{
    if (const char *text = sqlite3_sql(static_cast<sqlite3_stmt *>(statement))) {
        sqlLog->write(text);
        sqlLog->write("", 1);
        ++sqlStatements;
    }
    return 0;
}

int traceConnection(sqlite3 *db, const char **, const sqlite3_api_routines *)
{
    sqlite3_trace_v2(db, SQLITE_TRACE_STMT, traceStatement, nullptr);
    return SQLITE_OK;
}

void recordSql(const QString &file)
{
    sqlLog = new QFile(file, qApp);
    bench::check(sqlLog->open(QIODevice::WriteOnly | QIODevice::Truncate), QStringLiteral("cannot write %1").arg(file));
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(traceConnection));
}

int itemsMade()
{
    return qApp->property("es.bench.items").toInt();
}

// init() and start(), then the event loop until every point holds its data and
// everything the framework queued during init() has run.
int runFramework(int plugins, int services, int items, bool points, bool writeQueue, const Switches &switches)
{
    qApp->setProperty("es.bench.points", points);
    const long rssBefore = bench::peakRssKiB();
    QElapsedTimer timer;
    timer.start();
    double initMs = 0;
    PluginFramework *framework = es_bench_init_start(timer, initMs, switches);
    const double startMs = bench::millisecondsSince(timer) - initMs;

    // Posted after everything that init() queued, so it runs after all of it.
    bool drained = false;
    QTimer::singleShot(0, framework, [&drained] { drained = true; });
    QElapsedTimer guard;
    guard.start();
    while ((!drained || itemsMade() < items) && guard.elapsed() < 300000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    const double readyMs = bench::millisecondsSince(timer);
    const long rssAfter = bench::peakRssKiB();

    auto *manager = framework->findChild<PluginManager *>();
    bench::check(manager, QStringLiteral("no plug-in manager"));
    const QList<PluginInfo> infos = manager->pluginInfos();
    const int active = int(std::count_if(infos.cbegin(), infos.cend(), [](const PluginInfo &info) {
        return info.currentState() == PluginInfo::Active;
    }));
    bench::check(active == plugins, QStringLiteral("%1 of %2 plug-ins active").arg(active).arg(plugins));
    bench::check(itemsMade() == items,
                 QStringLiteral("the points hold %1 items, expected %2").arg(itemsMade()).arg(items));
    const QList<ServiceReference> found =
            framework->findChildren<PluginContext *>().value(0)->findServiceReferences(QStringLiteral("BenchService"));
    bench::check(found.size() == services,
                 QStringLiteral("%1 services found, expected %2").arg(found.size()).arg(services));

    if (writeQueue) {
        QFile list(queueFile());
        bench::check(list.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text),
                     QStringLiteral("cannot write queue.txt"));
        const QStringList queue = manager->loadQueue();
        for (const QString &symbolic : queue)
            list.write(manager->pluginInfo(symbolic).filepath().toUtf8() + '\n');
    }

    // The start journal lies beside config.ini while the framework runs, if kept.
    const QDir config(QCoreApplication::applicationDirPath() + QStringLiteral("/config/es-bench"));
    const auto journals = [&config] { return config.entryList({QStringLiteral("*.journal")}, QDir::Files).size(); };
    bench::check(journals() == (switches.journal ? 1 : 0), QStringLiteral("%1 start journals").arg(journals()));
    bench::check(framework->hangWatchdog() == switches.watchdog, QStringLiteral("the watchdog is not as asked"));

    timer.restart();
    framework->stop();
    const double stopMs = bench::millisecondsSince(timer);
    // Recorded or not, as asked: each plug-in's load, metadata, queue, start and stop.
    const int phases = framework->timeline().entries().size();
    bench::check(switches.timeline ? phases >= 5 * plugins : phases == 0,
                 QStringLiteral("%1 phases recorded for %2 plug-ins").arg(phases).arg(plugins));
    delete framework;
    bench::check(journals() == 0, QStringLiteral("the start journal outlived its framework"));

    bench::figure("init_ms", initMs);
    bench::figure("start_ms", startMs);
    bench::figure("init_start_ms", initMs + startMs);
    bench::figure("ready_ms", readyMs);
    bench::figure("stop_ms", stopMs);
    bench::figure("rss_kib", double(rssAfter - rssBefore));
    if (sqlLog) {
        sqlLog->close();
        // SQLite's hooks reach Qt's driver only when both use the same libsqlite3.
        bench::check(sqlStatements > 0, QStringLiteral("no SQL recorded: Qt's SQLite driver does not use the "
                                                       "system's libsqlite3 that this runner links"));
    }
    return 0;
}

// Replays the texts that es --record-sql wrote, on a copy of the store that
// run began with, so that the original stays as it is for the next round.
int runSql(const QString &file, const QString &store)
{
    QFile log(file);
    bench::check(log.open(QIODevice::ReadOnly), QStringLiteral("no SQL record %1").arg(file));
    QStringList texts;
    for (const QByteArray &text : log.readAll().split('\0')) {
        if (!text.isEmpty())
            texts << QString::fromUtf8(text);
    }
    const QString copy =
            QDir::temp().filePath(QStringLiteral("es-bench-replay-%1.dat").arg(QCoreApplication::applicationPid()));
    QFile::remove(copy);
    bench::check(QFile::copy(store, copy), QStringLiteral("cannot copy %1").arg(store));

    QElapsedTimer timer;
    timer.start();
    const qint64 values = es_bench_sql_replay(texts, copy);
    const double ms = bench::millisecondsSince(timer);
    QFile::remove(copy);

    bench::check(!texts.isEmpty() && values >= 0, QStringLiteral("the replay of %1 failed").arg(file));
    bench::figure("sql_ms", ms);
    bench::figure("statements", texts.size());
    bench::figure("values", double(values));
    return 0;
}

// A running framework (the smallest set) and one plug-in context to work with.
PluginContext *startedContext(PluginFramework &framework)
{
    framework.init();
    framework.start();
    const QList<PluginContext *> contexts = framework.findChildren<PluginContext *>();
    bench::check(!contexts.isEmpty(), QStringLiteral("no plug-in running"));
    return contexts.first();
}

// Runs <work> in batches after a warm-up and reports the median time per call.
template<typename Work> void timeCalls(const char *name, qint64 callsPerBatch, Work work)
{
    work(callsPerBatch);
    QVector<double> perCall;
    for (int batch = 0; batch < 9; ++batch) {
        QElapsedTimer timer;
        timer.start();
        work(callsPerBatch);
        perCall << double(timer.nsecsElapsed()) / callsPerBatch;
    }
    std::sort(perCall.begin(), perCall.end());
    bench::figure(name, perCall.at(perCall.size() / 2));
}

class CountingListener : public ICustomizedListener
{
public:
    explicit CountingListener(int type)
        : ICustomizedListener(type)
    { }
    void customizedChanged(const CustomizedEvent &) override { ++calls; }
    quint64 calls = 0;
};

// Publishing one customized event to <count> listeners, through the plug-in
// context, against a loop that calls the same listeners' virtual event() with
// the same shared event record.
int runEvents(int count, bool framework)
{
    PluginFramework host;
    PluginContext *context = startedContext(host);
    const int type = 1000;
    QVector<CountingListener *> listeners;
    for (int i = 0; i < count; ++i) {
        listeners << new CountingListener(type);
        context->registerCustomizedListener(listeners.last());
    }
    const CustomizedEvent event(type);
    const qint64 calls = std::max<qint64>(2000, 2000000 / count);
    if (framework) {
        timeCalls("publish_ns", calls, [&](qint64 n) {
            for (qint64 i = 0; i < n; ++i)
                context->publishCustomizedEvent(event);
        });
    } else {
        const QVector<IListener *> plain(listeners.cbegin(), listeners.cend());
        const QSharedDataPointer<EventData> data = event.sharedData();
        timeCalls("publish_ns", calls, [&](qint64 n) {
            for (qint64 i = 0; i < n; ++i) {
                for (IListener *listener : plain)
                    listener->event(data);
            }
        });
    }
    quint64 delivered = 0;
    for (CountingListener *listener : qAsConst(listeners))
        delivered += listener->calls;
    bench::check(delivered == quint64(calls) * 10 * quint64(count), QStringLiteral("events lost"));
    for (CountingListener *listener : qAsConst(listeners))
        context->unregisterlistener(listener);
    qDeleteAll(listeners);
    return 0;
}

// findServiceReferences on a class with 100 services, against values() of a
// QMultiHash holding the same references under the same class name.
int runLookup(bool framework)
{
    PluginFramework host;
    PluginContext *context = startedContext(host);
    const QString clazz = QStringLiteral("QObject");
    const int count = 100;
    QList<QObject *> services;
    QMultiHash<QString, ServiceReference> plain;
    for (int i = 0; i < count; ++i) {
        services << new QObject;
        const ServiceRegistration registration = context->registerService(services.last(), QStringList(clazz));
        bench::check(registration.plugin(), QStringLiteral("registration refused"));
        plain.insert(clazz, registration.reference());
    }
    bench::check(context->findServiceReferences(clazz).size() == count && plain.values(clazz).size() == count,
                 QStringLiteral("lookup does not find the 100 services"));
    qint64 found = 0;
    const qint64 calls = 20000;
    if (framework) {
        timeCalls("lookup_ns", calls, [&](qint64 n) {
            for (qint64 i = 0; i < n; ++i)
                found += context->findServiceReferences(clazz).size();
        });
    } else {
        timeCalls("lookup_ns", calls, [&](qint64 n) {
            for (qint64 i = 0; i < n; ++i)
                found += plain.values(clazz).size();
        });
    }
    bench::check(found == calls * 10 * count, QStringLiteral("lookup results lost"));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString mode = args.value(1);
    if (mode == QLatin1String("floor"))
        return runFloor();
    if (mode == QLatin1String("es") && args.size() >= 5) {
        const int record = args.indexOf(QStringLiteral("--record-sql"));
        if (record > 0 && record + 1 < args.size())
            recordSql(args.at(record + 1));
        Switches switches;
        switches.timeline = !args.contains(QStringLiteral("--no-timeline"));
        switches.journal = !args.contains(QStringLiteral("--no-journal"));
        const int watchdog = args.indexOf(QStringLiteral("--watchdog"));
        if (watchdog > 0 && watchdog + 1 < args.size())
            switches.watchdog = args.at(watchdog + 1).toInt();
        return runFramework(args.at(2).toInt(), args.at(3).toInt(), args.at(4).toInt(),
                            args.contains(QStringLiteral("--points")), args.contains(QStringLiteral("--write-queue")),
                            switches);
    }
    if (mode == QLatin1String("sql") && args.size() == 4)
        return runSql(args.at(2), args.at(3));
    if (mode == QLatin1String("events") && args.size() == 4)
        return runEvents(args.at(2).toInt(), args.at(3) == QLatin1String("fw"));
    if (mode == QLatin1String("lookup") && args.size() == 3)
        return runLookup(args.at(2) == QLatin1String("fw"));
    bench::fail(QStringLiteral(
            "usage: es-bench floor | es <plugins> <services> <items> [--points] [--write-queue] "
            "[--record-sql <file>] [--no-timeline] [--no-journal] [--watchdog <ms>] | sql <file> <store> | "
            "events <listeners> "
            "fw|plain | lookup fw|plain"));
}
