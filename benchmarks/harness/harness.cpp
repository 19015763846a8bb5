// SPDX-License-Identifier: BSD-3-Clause
// Runs every benchmark case as a fresh process, the cases one after the other
// in a fixed order and that order again for each run (A B C ... A B C ...), so
// that a slow moment of the machine hits all cases alike. Reports the median of
// each figure and, for each compared pair, the median of the per-run ratios.
//
// With --instructions it also runs the cases of those sizes once each under
// callgrind, counting only the instructions of the case's measured part, so
// that the compared ratios hold on a noisy machine too. --callgrind <case>
// counts one case alone and prints its instructions per plug-in.
//
//     es-bench-harness --dir <build>/benchmarks --sizes 10,100,1000
//                      [--runs 7] [--warmup 1] [--peer on|off] [--out results.md] [--note text]...
//                      [--instructions 1000] [--callgrind warm_1000]

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QTextStream>
#include <QtCore/QThread>
#include <QtCore/QVector>

#include <core/qtcompat_p.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using Figures = QHash<QString, double>;

struct Case
{
    Case(const QString &name, const QString &program, const QStringList &arguments, bool logging = false,
         std::function<void()> before = {})
        : name(name)
        , program(program)
        , arguments(arguments)
        , logging(logging)
        , before(std::move(before))
    { }

    QString name;
    QString program;
    QStringList arguments;
    bool logging;
    std::function<void()> before;
    // Under callgrind: the functions whose instructions count, and the set size.
    QStringList measured;
    int plugins = 0;
};

// What callgrind counts of each case: the function around the timed part, or
// the store's own operations (its constructor opens the database and makes the
// tables; the rest are what the framework calls). Patterns must not nest, as
// each match toggles counting.
const QStringList INIT_START{QStringLiteral("es_bench_init_start(*")};
const QStringList FLOOR_LOAD{QStringLiteral("es_bench_floor_load(*")};
const QStringList SQL_REPLAY{QStringLiteral("es_bench_sql_replay(*")};
QStringList storeOperations()
{
    QStringList patterns;
    for (const char *operation : {"ExtensionStorage", "writeExtensionPlugin", "pluginRecord", "removeExtensions",
                                  "extensionTexts", "extensionTextsOfFile", "setActivePlugins", "updateActivePlugin"}) {
        patterns << QStringLiteral("ExtensionSystem::Internal::ExtensionStorage::%1(*").arg(QLatin1String(operation));
    }
    return patterns;
}

struct SetInfo
{
    int plugins = 0;
    int services = 0;
    int items = 0;
    QString dir;
};

QTextStream out(stdout);

struct Utf8Output
{
    Utf8Output() { ExtensionSystem::Internal::QtCompat::useUtf8(out); }
} utf8Output;

[[noreturn]] void die(const QString &message)
{
    out << "harness: " << message << Qt::endl;
    std::exit(1);
}

double median(QVector<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const int middle = values.size() / 2;
    return values.size() % 2 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

SetInfo readSet(const QString &benchDir, int size)
{
    SetInfo info;
    info.dir = QStringLiteral("%1/sets/%2").arg(benchDir).arg(size);
    QFile manifest(info.dir + QStringLiteral("/manifest.txt"));
    if (!manifest.open(QIODevice::ReadOnly | QIODevice::Text))
        die(QStringLiteral("no set of %1 plug-ins in %2: build target es_bench_set_%1").arg(size).arg(info.dir));
    for (const QByteArray &line : manifest.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() != 2)
            continue;
        if (fields.at(0) == "plugins")
            info.plugins = fields.at(1).toInt();
        else if (fields.at(0) == "services")
            info.services = fields.at(1).toInt();
        else if (fields.at(0) == "items")
            info.items = fields.at(1).toInt();
    }
    return info;
}

void copyFile(const QString &from, const QString &to)
{
    QFile::remove(to);
    if (!QFile::copy(from, to))
        die(QStringLiteral("cannot copy %1 to %2").arg(from, to));
}

// The same libraries with an extension.xml beside each: hard links, so that
// both trees load the very same files.
void makeExtensionTree(const SetInfo &set, const QString &runner)
{
    const QString app = set.dir + QStringLiteral("/app");
    const QString extApp = set.dir + QStringLiteral("/app-ext");
    QDir(extApp).removeRecursively();
    QDir().mkpath(extApp + QStringLiteral("/plugins"));
    copyFile(runner, extApp + QStringLiteral("/es-bench"));
    const QFileInfoList plugins =
            QDir(app + QStringLiteral("/plugins")).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &plugin : plugins) {
        const QString target = plugin.fileName();
        const QString name = QStringLiteral("bench.") + target.section(QLatin1Char('.'), 1);
        const QString dir = extApp + QStringLiteral("/plugins/") + target;
        QDir().mkpath(dir);
        const QString library = QStringLiteral("/%1" ES_PLUGIN_SUFFIX).arg(target);
        if (::link(QFile::encodeName(plugin.absoluteFilePath() + library).constData(),
                   QFile::encodeName(dir + library).constData())
                    != 0
            && !QFile::copy(plugin.absoluteFilePath() + library, dir + library)) {
            die(QStringLiteral("cannot link %1").arg(dir + library));
        }
        if (!QFile::copy(QStringLiteral("%1/ext/%2/extension.xml").arg(set.dir, name),
                         dir + QStringLiteral("/extension.xml"))) {
            die(QStringLiteral("no extension.xml for %1").arg(name));
        }
    }
}

Figures runCase(const Case &c, int timeoutSeconds = 600)
{
    if (c.before)
        c.before();
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Timed runs without debug output; the logging case turns the default category on.
    environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                       c.logging ? QStringLiteral("default.debug=true") : QStringLiteral("*.debug=false"));
    process.setProcessEnvironment(environment);
    if (c.logging)
        process.setStandardErrorFile(QProcess::nullDevice());
    process.start(c.program, c.arguments);
    if (!process.waitForFinished(timeoutSeconds * 1000))
        die(QStringLiteral("%1 did not finish").arg(c.name));
    const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        die(QStringLiteral("%1 failed (exit %2): %3 %4")
                    .arg(c.name)
                    .arg(process.exitCode())
                    .arg(output.trimmed(), QString::fromLocal8Bit(process.readAllStandardError()).right(2000)));
    }
    Figures figures;
    for (const QString &line : output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(QLatin1Char(' '));
        if (fields.size() == 3 && fields.at(0) == QLatin1String("FIGURE"))
            figures.insert(fields.at(1), fields.at(2).toDouble());
    }
    return figures;
}

// One run of the case under callgrind, counting only inside its measured
// functions; adds the figure "instr" to what the case itself reports.
Figures runCallgrind(const Case &c, const QString &workDir)
{
    const QString outFile = QDir(workDir).absoluteFilePath(QStringLiteral("callgrind.%1.out").arg(c.name));
    QFile::remove(outFile);
    Case run = c;
    run.program = QStringLiteral("valgrind");
    run.arguments = QStringList{QStringLiteral("--tool=callgrind"), QStringLiteral("--collect-atstart=no"),
                                QStringLiteral("--callgrind-out-file=") + outFile};
    for (const QString &pattern : c.measured)
        run.arguments << QStringLiteral("--toggle-collect=") + pattern;
    run.arguments << c.program << c.arguments;
    // About fifty times slower than a plain run.
    Figures figures = runCase(run, 4 * 3600);
    QFile file(outFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        die(QStringLiteral("callgrind wrote no %1").arg(outFile));
    double instructions = -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        // "totals:" is the sum of what was counted; older versions write "summary:".
        if (line.startsWith("totals:") || (instructions < 0 && line.startsWith("summary:")))
            instructions = line.mid(line.indexOf(':') + 1).trimmed().split(' ').value(0).toDouble();
    }
    if (instructions <= 0)
        die(QStringLiteral("%1: callgrind counted nothing in %2").arg(c.name, c.measured.join(QLatin1Char(' '))));
    figures.insert(QStringLiteral("instr"), instructions);
    return figures;
}

// Instruction counts do not depend on what else the machine runs: the cases
// run side by side, one per processor. Two framework cases of one application
// directory share its store, so they take turns.
QVector<Figures> runCallgrindAll(const QList<Case> &cases, const QString &workDir)
{
    QVector<Figures> figures(cases.size());
    std::map<QString, std::mutex> stores;
    for (const Case &c : cases)
        stores[c.program];
    std::atomic<int> next{0};
    auto worker = [&] {
        for (int i = next++; i < cases.size(); i = next++) {
            const Case &c = cases.at(i);
            std::unique_lock<std::mutex> turn(stores.at(c.program), std::defer_lock);
            if (c.arguments.value(0) == QLatin1String("es"))
                turn.lock();
            figures[i] = runCallgrind(c, workDir);
        }
    };
    out << "callgrind: " << cases.size() << " cases" << Qt::endl;
    std::vector<std::thread> threads;
    for (int n = std::min(std::max(1, QThread::idealThreadCount()), int(cases.size())); n > 0; --n)
        threads.emplace_back(worker);
    for (std::thread &thread : threads)
        thread.join();
    return figures;
}

struct Side
{
    QString caseName;
    QString figure;
    double divisor = 1; // per plug-in figures divide by the set size
};

struct Comparison
{
    QString name;
    Side numerator;
    Side denominator;
    double target = 0; // 0: shown, not compared
    // Which figure the ratio is of: wall time, or instructions under callgrind.
    QString kind = QStringLiteral("wall");
};

struct Options
{
    QString benchDir;
    QList<int> sizes; // ascending
    int runs = 7;
    int warmup = 1;
    QString outFile;
    QStringList notes;
    bool peer = ES_BENCH_PEER;
    QList<int> instructionSizes; // the sets whose cases also run under callgrind
    QString callgrindCase; // this case alone, under callgrind

    int largest() const { return sizes.last(); }
    // The set below the largest, for the growth per plug-in; 0 with one set.
    int previous() const { return sizes.size() > 1 ? sizes.at(sizes.size() - 2) : 0; }
};

using Results = QHash<QString, QVector<Figures>>;

Options parseOptions(QStringList args)
{
    Options o;
    while (!args.isEmpty()) {
        const QString option = args.takeFirst();
        const QString value = args.isEmpty() ? QString() : args.takeFirst();
        if (option == QLatin1String("--dir"))
            o.benchDir = QDir(value).absolutePath();
        else if (option == QLatin1String("--sizes"))
            for (const QString &size : value.split(QLatin1Char(','), Qt::SkipEmptyParts))
                o.sizes << size.toInt();
        else if (option == QLatin1String("--runs"))
            o.runs = std::max(1, value.toInt());
        else if (option == QLatin1String("--warmup"))
            o.warmup = std::max(0, value.toInt());
        else if (option == QLatin1String("--out"))
            o.outFile = value;
        else if (option == QLatin1String("--note"))
            o.notes << value;
        else if (option == QLatin1String("--peer"))
            o.peer = value.compare(QLatin1String("off"), Qt::CaseInsensitive) != 0;
        else if (option == QLatin1String("--instructions"))
            for (const QString &size : value.split(QLatin1Char(','), Qt::SkipEmptyParts))
                o.instructionSizes << size.toInt();
        else if (option == QLatin1String("--callgrind"))
            o.callgrindCase = value;
        else
            die(QStringLiteral("unknown option %1").arg(option));
    }
    if (o.benchDir.isEmpty() || o.sizes.isEmpty())
        die(QStringLiteral("usage: es-bench-harness --dir <build>/benchmarks --sizes 10,100,1000 [--runs 7] "
                           "[--warmup 1] [--peer on|off] [--out file] [--note text] [--instructions sizes] "
                           "[--callgrind case]"));
    std::sort(o.sizes.begin(), o.sizes.end());
    return o;
}

// Prepares every set's application directories and lists the cases in the
// order they run in each round.
QList<Case> prepareCases(const Options &o)
{
    const QString runner = o.benchDir + QStringLiteral("/bin/es-bench");
    const QString peerRunner = o.benchDir + QStringLiteral("/bin/kf-bench");
    QList<Case> cases;
    QString microApp;
    for (int size : o.sizes) {
        const SetInfo set = readSet(o.benchDir, size);
        const QString app = set.dir + QStringLiteral("/app");
        if (microApp.isEmpty())
            microApp = app + QStringLiteral("/es-bench");
        copyFile(runner, app + QStringLiteral("/es-bench"));
        makeExtensionTree(set, runner);
        const QStringList esArgs{QStringLiteral("es"), QString::number(set.plugins), QString::number(set.services)};
        // The first run of each set writes the load queue for the floor.
        out << "preparing the set of " << size << Qt::endl;
        runCase({QStringLiteral("prepare"), app + QStringLiteral("/es-bench"),
                 esArgs + QStringList{QStringLiteral("0"), QStringLiteral("--write-queue")}});

        const QString extApp = set.dir + QStringLiteral("/app-ext");
        const QString store = extApp + QStringLiteral("/config/es-bench/extension.dat");
        const QString n = QString::number(size);
        const QStringList pointArgs{QString::number(set.items), QStringLiteral("--points")};

        // The store's SQL, recorded once: of a start with points and no files,
        // and of a warm start, each with a copy of the store it began with.
        const QString sqlDir = set.dir + QStringLiteral("/sql");
        QDir().mkpath(sqlDir);
        copyFile(app + QStringLiteral("/config/es-bench/extension.dat"), sqlDir + QStringLiteral("/points.dat"));
        runCase({QStringLiteral("record"), app + QStringLiteral("/es-bench"),
                 esArgs
                         + QStringList{QStringLiteral("0"), QStringLiteral("--points"), QStringLiteral("--record-sql"),
                                       sqlDir + QStringLiteral("/points.sql")}});
        QFile::remove(store);
        runCase({QStringLiteral("record"), extApp + QStringLiteral("/es-bench"), esArgs + pointArgs});
        copyFile(store, sqlDir + QStringLiteral("/warm.dat"));
        runCase({QStringLiteral("record"), extApp + QStringLiteral("/es-bench"),
                 esArgs + pointArgs
                         + QStringList{QStringLiteral("--record-sql"), sqlDir + QStringLiteral("/warm.sql")}});

        auto add = [&cases, size](Case c, const QStringList &measured = {}) {
            c.measured = measured;
            c.plugins = size;
            cases << c;
        };
        add({QStringLiteral("floor_") + n, app + QStringLiteral("/es-bench"), {QStringLiteral("floor")}}, FLOOR_LOAD);
        add({QStringLiteral("es_") + n, app + QStringLiteral("/es-bench"), esArgs + QStringList{QStringLiteral("0")}},
            INIT_START);
        // The same without recording the timeline: what recording costs.
        add({QStringLiteral("untimed_") + n, app + QStringLiteral("/es-bench"),
             esArgs + QStringList{QStringLiteral("0"), QStringLiteral("--no-timeline")}},
            INIT_START);
        // Without the start journal, and with it and the hang watchdog running:
        // what guarding the start against crashes and hangs costs.
        add({QStringLiteral("unguarded_") + n, app + QStringLiteral("/es-bench"),
             esArgs + QStringList{QStringLiteral("0"), QStringLiteral("--no-journal")}},
            INIT_START);
        add({QStringLiteral("watchdog_") + n, app + QStringLiteral("/es-bench"),
             esArgs + QStringList{QStringLiteral("0"), QStringLiteral("--watchdog"), QStringLiteral("10000")}},
            INIT_START);
        if (o.peer) {
            cases << Case{QStringLiteral("peer_") + n,
                          peerRunner,
                          {set.dir + QStringLiteral("/peer/plugins"), QString::number(set.plugins)}};
        }
        // The plug-ins open their extension points from here on. Without
        // extension files first; then cold, with no store yet, so that every
        // file is parsed; then warm, with the store that the cold run left.
        // Each SQL floor follows the case it was recorded from.
        add({QStringLiteral("points_") + n, app + QStringLiteral("/es-bench"),
             esArgs + QStringList{QStringLiteral("0"), QStringLiteral("--points")}},
            storeOperations());
        add({QStringLiteral("sqlpoints_") + n,
             app + QStringLiteral("/es-bench"),
             {QStringLiteral("sql"), sqlDir + QStringLiteral("/points.sql"), sqlDir + QStringLiteral("/points.dat")}},
            SQL_REPLAY);
        add({QStringLiteral("cold_") + n, extApp + QStringLiteral("/es-bench"), esArgs + pointArgs, false,
             [store] { QFile::remove(store); }});
        add({QStringLiteral("warm_") + n, extApp + QStringLiteral("/es-bench"), esArgs + pointArgs}, storeOperations());
        add({QStringLiteral("sqlwarm_") + n,
             app + QStringLiteral("/es-bench"),
             {QStringLiteral("sql"), sqlDir + QStringLiteral("/warm.sql"), sqlDir + QStringLiteral("/warm.dat")}},
            SQL_REPLAY);
        if (size == o.largest()) {
            cases << Case{QStringLiteral("log_") + n, app + QStringLiteral("/es-bench"),
                          esArgs + QStringList{QStringLiteral("0")}, true};
        }
    }
    // The micro-benchmarks run in the smallest set's application directory.
    for (int listeners : {1, 10, 100}) {
        for (const char *side : {"fw", "plain"}) {
            cases << Case{QStringLiteral("events_%1_%2").arg(listeners).arg(QLatin1String(side)),
                          microApp,
                          {QStringLiteral("events"), QString::number(listeners), QLatin1String(side)}};
        }
    }
    for (const char *side : {"fw", "plain"})
        cases << Case{QStringLiteral("lookup_%1").arg(QLatin1String(side)),
                      microApp,
                      {QStringLiteral("lookup"), QLatin1String(side)}};
    return cases;
}

// Every case once per round, warm-up rounds first and not kept.
Results runRounds(const QList<Case> &cases, const Options &o)
{
    Results results;
    for (int run = 0; run < o.warmup + o.runs; ++run) {
        const bool counted = run >= o.warmup;
        out << (counted ? "run " : "warm-up ") << (counted ? run - o.warmup + 1 : run + 1) << ":";
        for (const Case &c : cases) {
            out << " " << c.name << Qt::flush;
            const Figures figures = runCase(c);
            if (counted)
                results[c.name] << figures;
        }
        out << Qt::endl;
    }
    return results;
}

// Compared pairs: the ratio is taken run by run, then its median.
QList<Comparison> comparisonsFor(const Options &o)
{
    const QString L = QString::number(o.largest());
    QList<Comparison> comparisons;
    const QString instr = QStringLiteral("instr");
    // The targets are set for the set of 1000: a smaller largest set (the smoke)
    // shows its ratios without judging them.
    const bool judged = o.largest() >= 1000;
    const auto at1000 = [judged](double target) { return judged ? target : 0.0; };
    // The framework against what any loader of the libraries must do.
    comparisons << Comparison{QStringLiteral("init_start_%1_vs_floor").arg(L),
                              {QStringLiteral("es_") + L, QStringLiteral("init_start_ms")},
                              {QStringLiteral("floor_") + L, QStringLiteral("load_ms")},
                              at1000(1.3)};
    comparisons << Comparison{QStringLiteral("init_start_%1_vs_floor").arg(L),
                              {QStringLiteral("es_%1@instr").arg(L), instr},
                              {QStringLiteral("floor_%1@instr").arg(L), instr},
                              at1000(1.2),
                              instr};
    // What the timeline's recording costs, which is always on.
    comparisons << Comparison{QStringLiteral("timeline_%1_vs_off").arg(L),
                              {QStringLiteral("es_") + L, QStringLiteral("init_start_ms")},
                              {QStringLiteral("untimed_") + L, QStringLiteral("init_start_ms")},
                              at1000(1.02)};
    comparisons << Comparison{QStringLiteral("timeline_%1_vs_off").arg(L),
                              {QStringLiteral("es_%1@instr").arg(L), instr},
                              {QStringLiteral("untimed_%1@instr").arg(L), instr},
                              at1000(1.02),
                              instr};
    // What the start journal costs, which is always on, and the journal with the
    // hang watchdog running, which a host turns on.
    for (const char *guarded : {"es_", "watchdog_"}) {
        const QString name = QLatin1String(guarded) == QLatin1String("es_") ? QStringLiteral("journal_%1_vs_off")
                                                                            : QStringLiteral("watchdog_%1_vs_off");
        comparisons << Comparison{name.arg(L),
                                  {QLatin1String(guarded) + L, QStringLiteral("init_start_ms")},
                                  {QStringLiteral("unguarded_") + L, QStringLiteral("init_start_ms")},
                                  0};
        comparisons << Comparison{name.arg(L),
                                  {QStringLiteral("%1%2@instr").arg(QLatin1String(guarded), L), instr},
                                  {QStringLiteral("unguarded_%1@instr").arg(L), instr},
                                  at1000(1.01),
                                  instr};
    }
    // The store against its own SQL run bare: a warm start, and a start with
    // points and no extension files.
    comparisons << Comparison{QStringLiteral("store_warm_%1_vs_sql").arg(L),
                              {QStringLiteral("warm_%1@instr").arg(L), instr},
                              {QStringLiteral("sqlwarm_%1@instr").arg(L), instr},
                              at1000(1.1),
                              instr};
    comparisons << Comparison{QStringLiteral("store_points_%1_vs_sql").arg(L),
                              {QStringLiteral("points_%1@instr").arg(L), instr},
                              {QStringLiteral("sqlpoints_%1@instr").arg(L), instr},
                              at1000(1.1),
                              instr};
    // Shown: benchmarks/README.md explains why these cannot reach 1.0 and 1.15.
    if (o.peer) {
        comparisons << Comparison{QStringLiteral("init_start_%1_vs_peer").arg(L),
                                  {QStringLiteral("es_") + L, QStringLiteral("init_start_ms")},
                                  {QStringLiteral("peer_") + L, QStringLiteral("load_ms")},
                                  0};
    }
    comparisons << Comparison{QStringLiteral("warm_%1_vs_no_extensions").arg(L),
                              {QStringLiteral("warm_") + L, QStringLiteral("ready_ms")},
                              {QStringLiteral("points_") + L, QStringLiteral("ready_ms")},
                              0};
    comparisons << Comparison{QStringLiteral("cold_%1_vs_warm").arg(L),
                              {QStringLiteral("cold_") + L, QStringLiteral("ready_ms")},
                              {QStringLiteral("warm_") + L, QStringLiteral("ready_ms")},
                              at1000(3.0)};
    for (int listeners : {1, 10, 100}) {
        comparisons << Comparison{QStringLiteral("publish_%1_vs_plain").arg(listeners),
                                  {QStringLiteral("events_%1_fw").arg(listeners), QStringLiteral("publish_ns")},
                                  {QStringLiteral("events_%1_plain").arg(listeners), QStringLiteral("publish_ns")},
                                  listeners == 10 ? 3.0 : 0.0};
    }
    comparisons << Comparison{QStringLiteral("lookup_100_vs_plain"),
                              {QStringLiteral("lookup_fw"), QStringLiteral("lookup_ns")},
                              {QStringLiteral("lookup_plain"), QStringLiteral("lookup_ns")},
                              2.0};
    if (o.previous()) {
        const int previous = o.previous();
        const QString P = QString::number(previous);
        comparisons << Comparison{QStringLiteral("per_plugin_%1_vs_%2").arg(L, P),
                                  {QStringLiteral("es_") + L, QStringLiteral("init_start_ms"), double(o.largest())},
                                  {QStringLiteral("es_") + P, QStringLiteral("init_start_ms"), double(previous)},
                                  at1000(1.3)};
        comparisons << Comparison{QStringLiteral("floor_per_plugin_%1_vs_%2").arg(L, P),
                                  {QStringLiteral("floor_") + L, QStringLiteral("load_ms"), double(o.largest())},
                                  {QStringLiteral("floor_") + P, QStringLiteral("load_ms"), double(previous)},
                                  0};
        if (o.peer) {
            comparisons << Comparison{QStringLiteral("peer_per_plugin_%1_vs_%2").arg(L, P),
                                      {QStringLiteral("peer_") + L, QStringLiteral("load_ms"), double(o.largest())},
                                      {QStringLiteral("peer_") + P, QStringLiteral("load_ms"), double(previous)},
                                      0};
        }
    }
    // What opening two points per plug-in costs: one store query per point,
    // whose text lists every active plug-in.
    comparisons << Comparison{QStringLiteral("points_%1_vs_no_points").arg(L),
                              {QStringLiteral("points_") + L, QStringLiteral("ready_ms")},
                              {QStringLiteral("es_") + L, QStringLiteral("ready_ms")},
                              0};
    if (o.previous()) {
        const int previous = o.previous();
        const QString P = QString::number(previous);
        for (const char *prefix : {"points_", "warm_", "cold_"}) {
            comparisons << Comparison{QStringLiteral("%1per_plugin_%2_vs_%3").arg(QLatin1String(prefix), L, P),
                                      {QLatin1String(prefix) + L, QStringLiteral("ready_ms"), double(o.largest())},
                                      {QLatin1String(prefix) + P, QStringLiteral("ready_ms"), double(previous)},
                                      0};
        }
    }
    comparisons << Comparison{QStringLiteral("debug_output_%1_vs_off").arg(L),
                              {QStringLiteral("log_") + L, QStringLiteral("init_start_ms")},
                              {QStringLiteral("es_") + L, QStringLiteral("init_start_ms")},
                              0};
    return comparisons;
}

double figureMedian(const Results &results, const QString &caseName, const QString &figure)
{
    QVector<double> values;
    for (const Figures &figures : results.value(caseName))
        values << figures.value(figure);
    return median(values);
}

double ratioMedian(const Results &results, const Comparison &comparison)
{
    const QVector<Figures> a = results.value(comparison.numerator.caseName);
    const QVector<Figures> b = results.value(comparison.denominator.caseName);
    QVector<double> ratios;
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        const double top = a.at(i).value(comparison.numerator.figure) / comparison.numerator.divisor;
        const double bottom = b.at(i).value(comparison.denominator.figure) / comparison.denominator.divisor;
        if (bottom > 0)
            ratios << top / bottom;
    }
    return median(ratios);
}

// The table of medians, then the ratios; the RATIO lines of the compared ones.
QString measuredLabel(const QStringList &measured)
{
    if (measured == INIT_START)
        return QStringLiteral("construct + init + start");
    if (measured == FLOOR_LOAD)
        return QStringLiteral("load + instance + META.INF read");
    if (measured == SQL_REPLAY)
        return QStringLiteral("the recorded SQL, replayed");
    return QStringLiteral("the store's operations");
}

QString writeTable(const Options &o, const QList<Case> &cases, const Results &results,
                   const QList<Comparison> &comparisons, QStringList &ratioLines)
{
    auto figureMedian = [&results](const QString &caseName, const QString &figure) {
        return ::figureMedian(results, caseName, figure);
    };
    const QList<int> &sizes = o.sizes;
    const int runs = o.runs;
    const int warmup = o.warmup;
    // The table.
    QString table;
    QTextStream md(&table);
    md << "Medians of " << runs << " runs after " << warmup << " warm-up run(s), each case a fresh process, "
       << "cases alternating run by run; debug output off (`QT_LOGGING_RULES=\"*.debug=false\"`) "
       << "except in the row marked so.\n\n";
    md << "| Case | N | Figure | Median | Per plug-in | Peak RSS per plug-in |\n";
    md << "|---|---:|---|---:|---:|---:|\n";
    struct Row
    {
        QString prefix;
        QString label;
        QStringList figures;
    };
    const QList<Row> rows{
            {QStringLiteral("floor_"),
             QStringLiteral("floor: QPluginLoader load + instance + META.INF read"),
             {QStringLiteral("load_ms")}},
            {QStringLiteral("es_"),
             QStringLiteral("framework: construct + init, start, stop"),
             {QStringLiteral("init_ms"), QStringLiteral("start_ms"), QStringLiteral("init_start_ms"),
              QStringLiteral("ready_ms"), QStringLiteral("stop_ms")}},
            {QStringLiteral("untimed_"),
             QStringLiteral("framework, timeline not recorded"),
             {QStringLiteral("init_start_ms"), QStringLiteral("stop_ms")}},
            {QStringLiteral("unguarded_"),
             QStringLiteral("framework, no start journal"),
             {QStringLiteral("init_start_ms"), QStringLiteral("stop_ms")}},
            {QStringLiteral("watchdog_"),
             QStringLiteral("framework, start journal and hang watchdog (10 s)"),
             {QStringLiteral("init_start_ms"), QStringLiteral("stop_ms")}},
            {QStringLiteral("peer_"),
             QStringLiteral("KCoreAddons: findPlugins + instantiatePlugin"),
             {QStringLiteral("find_ms"), QStringLiteral("load_ms")}},
            {QStringLiteral("points_"),
             QStringLiteral("framework, points opened, no extension files"),
             {QStringLiteral("init_start_ms"), QStringLiteral("ready_ms")}},
            {QStringLiteral("cold_"),
             QStringLiteral("framework, points, extension files, cold (no store)"),
             {QStringLiteral("init_start_ms"), QStringLiteral("ready_ms")}},
            {QStringLiteral("warm_"),
             QStringLiteral("framework, points, extension files, warm (unchanged)"),
             {QStringLiteral("init_start_ms"), QStringLiteral("ready_ms")}},
            {QStringLiteral("log_"),
             QStringLiteral("framework, debug output on, to /dev/null"),
             {QStringLiteral("init_start_ms"), QStringLiteral("ready_ms")}},
            {QStringLiteral("sqlpoints_"),
             QStringLiteral("SQL floor: the SQL of the points case, replayed"),
             {QStringLiteral("sql_ms")}},
            {QStringLiteral("sqlwarm_"),
             QStringLiteral("SQL floor: the SQL of the warm case, replayed"),
             {QStringLiteral("sql_ms")}},
    };
    for (const Row &row : rows) {
        for (int size : qAsConst(sizes)) {
            const QString caseName = row.prefix + QString::number(size);
            if (!results.contains(caseName))
                continue;
            const bool hasRss = results.value(caseName).value(0).contains(QStringLiteral("rss_kib"));
            const double rss = figureMedian(caseName, QStringLiteral("rss_kib"));
            bool first = true;
            for (const QString &figure : row.figures) {
                const double value = figureMedian(caseName, figure);
                QString name = figure;
                name.chop(3);
                md << "| " << (first ? row.label : QString()) << " | " << size << " | " << name << " | "
                   << QString::number(value, 'f', 1) << " ms | " << QString::number(value * 1000 / size, 'f', 1)
                   << QStringLiteral(" µs | ")
                   << (first && hasRss ? QString::number(rss / size, 'f', 1) + QStringLiteral(" KiB") : QString())
                   << " |\n";
                first = false;
            }
        }
    }
    for (int listeners : {1, 10, 100}) {
        for (const char *side : {"fw", "plain"}) {
            const QString caseName = QStringLiteral("events_%1_%2").arg(listeners).arg(QLatin1String(side));
            md << "| "
               << (QLatin1String(side) == QLatin1String("fw") ? "publish through the plug-in context"
                                                              : "plain virtual-call loop, same listeners")
               << " | " << listeners << " listeners | per event | "
               << QString::number(figureMedian(caseName, QStringLiteral("publish_ns")), 'f', 1) << " ns | | |\n";
        }
    }
    md << "| findServiceReferences, class with 100 services | 100 | per lookup | "
       << QString::number(figureMedian(QStringLiteral("lookup_fw"), QStringLiteral("lookup_ns")), 'f', 1)
       << " ns | | |\n";
    md << "| plain QMultiHash::values, same references | 100 | per lookup | "
       << QString::number(figureMedian(QStringLiteral("lookup_plain"), QStringLiteral("lookup_ns")), 'f', 1)
       << " ns | | |\n";

    // Instructions, where counted: one run each under callgrind.
    bool instructionsShown = false;
    for (const Case &c : cases) {
        const QString key = c.name + QStringLiteral("@instr");
        if (!results.contains(key))
            continue;
        if (!instructionsShown) {
            md << "\n| Case, one run under callgrind | N | Instructions counted in | Instructions | Per plug-in |\n"
               << "|---|---:|---|---:|---:|\n";
            instructionsShown = true;
        }
        const double instructions = figureMedian(key, QStringLiteral("instr"));
        md << "| " << c.name << " | " << c.plugins << " | " << measuredLabel(c.measured) << " | "
           << QString::number(instructions / 1e6, 'f', 1) << " M | "
           << QString::number(instructions / std::max(1, c.plugins) / 1e3, 'f', 1) << " k |\n";
    }

    md << "\n| Ratio | Figure | Median | Target | |\n|---|---|---:|---:|---|\n";
    for (const Comparison &comparison : qAsConst(comparisons)) {
        if (!results.contains(comparison.numerator.caseName) || !results.contains(comparison.denominator.caseName))
            continue;
        const double ratio = ratioMedian(results, comparison);
        const QString figure = comparison.kind == QLatin1String("instr") ? QStringLiteral("instructions")
                                                                         : QStringLiteral("wall, median of runs");
        const bool compared = comparison.target > 0;
        const QString verdict = !compared                    ? QString()
                                : ratio <= comparison.target ? QStringLiteral("ok")
                                                             : QStringLiteral("MISS");
        md << "| " << comparison.name << " | " << figure << " | " << QString::number(ratio, 'f', 2) << " | "
           << (compared ? QStringLiteral("≤ ") + QString::number(comparison.target, 'f', 2) : QStringLiteral("(shown)"))
           << " | " << verdict << " |\n";
        if (compared) {
            ratioLines << QStringLiteral("RATIO %1 %2 %3 %4 %5")
                                  .arg(comparison.name, comparison.kind, QString::number(ratio, 'f', 2),
                                       QString::number(comparison.target, 'f', 2), verdict);
        }
    }
    for (const QString &note : o.notes)
        md << "\n" << note << "\n";
    md.flush();
    return table;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const Options options = parseOptions(app.arguments().mid(1));
    const QList<Case> cases = prepareCases(options);
    if (!options.callgrindCase.isEmpty()) {
        for (const Case &c : cases) {
            if (c.name != options.callgrindCase)
                continue;
            if (c.measured.isEmpty())
                die(QStringLiteral("%1 has no measured part to count").arg(c.name));
            const double instructions = runCallgrind(c, options.benchDir).value(QStringLiteral("instr"));
            out << "INSTR " << c.name << " " << QString::number(instructions, 'f', 0) << " "
                << QString::number(instructions / std::max(1, c.plugins), 'f', 0) << Qt::endl;
            return 0;
        }
        die(QStringLiteral("no case %1").arg(options.callgrindCase));
    }
    Results results = runRounds(cases, options);
    QList<Case> counted;
    for (const Case &c : cases) {
        if (!c.measured.isEmpty() && options.instructionSizes.contains(c.plugins))
            counted << c;
    }
    const QVector<Figures> instructions = runCallgrindAll(counted, options.benchDir);
    for (int i = 0; i < counted.size(); ++i)
        results[counted.at(i).name + QStringLiteral("@instr")] << instructions.at(i);
    QStringList ratioLines;
    const QString table = writeTable(options, cases, results, comparisonsFor(options), ratioLines);

    if (!options.outFile.isEmpty()) {
        QFile file(options.outFile);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
            die(QStringLiteral("cannot write %1").arg(options.outFile));
        file.write(table.toUtf8());
    }
    out << Qt::endl << table << Qt::endl;
    for (const QString &line : qAsConst(ratioLines))
        out << line << Qt::endl;
    return 0;
}
