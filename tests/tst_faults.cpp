// SPDX-License-Identifier: BSD-3-Clause
// The framework against a broken environment: an extension store that is not a
// database, read-only, locked by another process or killed while written, a
// configuration directory that cannot be made, and a plug-ins directory full of
// empty directories and link loops. Real files, real plug-ins, real processes.

#include "dacoverride.h"
#include "testsupport.h"

#include <extension/extensiondata.h>
#include <extension/extensionfileparser.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <extension/extensionstorage.h>
#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <cstdio>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

QMutex logMutex;
QStringList logLines;

void captureMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The framework's debug lines are kept for the checks; the tests' own figures
    // and any warning are shown.
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
    QMutexLocker locker(&logMutex); // parse tasks log from pool threads
    logLines << message;
}

int logged(const QString &part)
{
    QMutexLocker locker(&logMutex);
    return logLines.filter(part).size();
}

void clearLog()
{
    QMutexLocker locker(&logMutex);
    logLines.clear();
}

ExtensionPointAdmin *adminOf(PluginFramework *framework)
{
    return frameworkContext(framework)->extensionManager->pointAdmin();
}

QString configDirOf(const QString &program)
{
    return appDir() + QStringLiteral("/config/") + program;
}

QByteArray fileHash(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
}

// access() would judge root by its permitted capabilities; trying is what counts.
bool writable(const QString &path)
{
    if (QFileInfo(path).isDir()) {
        QFile probe(path + QStringLiteral("/.probe"));
        const bool created = probe.open(QIODevice::WriteOnly);
        probe.remove();
        return created;
    }
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR);
    if (fd >= 0)
        ::close(fd);
    return fd >= 0;
}

void deployExtensionPlugins()
{
    deployPlugin(QStringLiteral("chain.a"));
    deployPlugin(QStringLiteral("ext.host"));
    const QString supplier = deployPlugin(QStringLiteral("ext.supplier"));
    QFile::copy(QFileInfo(builtPlugin(QStringLiteral("ext.supplier"))).absolutePath()
                        + QStringLiteral("/extension.xml"),
                QFileInfo(supplier).absolutePath() + QStringLiteral("/extension.xml"));
}

// One start of the framework with chain.a, the host and the supplier: all three run,
// the supplier's item reaches the host's point and its handler answers. Returns how
// many extension files were parsed, -1 when a check failed.
int runWithExtensions()
{
    clearPluginLog();
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy parsed(framework.findChild<ExtensionFileParser *>(), &ExtensionFileParser::extensionFound);
    framework.init();
    framework.start();
    for (const char *name : {"chain.a", "ext.host", "ext.supplier"}) {
        Plugin *plugin = manager->find(QString::fromLatin1(name));
        if (!plugin || plugin->state() != int(PluginInfo::Active)) {
            qWarning("%s does not run", name);
            return -1;
        }
    }
    ExtensionPoint *point = adminOf(&framework)->findExtensionPoint(QStringLiteral("test.point"));
    if (!point)
        return -1;
    // The announced file is looked at on the next turn of the loop; a parse ends
    // with a queued result. Both are done here before anything is judged.
    QCoreApplication::processEvents();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    ExtensionData *data = point->extensionData(QStringLiteral("supplier.action"));
    if (!data) {
        qWarning("the supplier's item never reached the host's point");
        return -1;
    }
    const QString argument = QStringLiteral("fault");
    if (data->active(Q_ARG(QString, argument)) != 7
        || !pluginLog().contains(QStringLiteral("active:supplier.action:fault")))
        return -1;
    framework.stop();
    return parsed.count();
}

// extension.dat as another program sees it, through a connection of its own.
struct StoreReader
{
    explicit StoreReader(const QString &path)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tst_faults.reader"));
        db.setDatabaseName(path);
        open = db.open();
        error = db.lastError().text();
    }
    ~StoreReader() { QSqlDatabase::removeDatabase(QStringLiteral("tst_faults.reader")); }

    QStringList column(const QString &sql) const
    {
        QStringList values;
        QSqlQuery query(QSqlDatabase::database(QStringLiteral("tst_faults.reader")));
        if (query.exec(sql)) {
            while (query.next())
                values << query.value(0).toString();
        }
        return values;
    }
    int count(const QString &sql) const { return column(sql).value(0, QStringLiteral("-1")).toInt(); }
    bool exec(const QString &sql) const
    {
        return QSqlQuery(QSqlDatabase::database(QStringLiteral("tst_faults.reader"))).exec(sql);
    }

    bool open = false;
    QString error;
};

// The extension files of the kill test: gen.N with a known number of rows.
int pointsOf(int n)
{
    return n % 4 + 1;
}
int dataOf(int n)
{
    return (n % 6 + 1) * 8;
}
const int GeneratedFiles = 40;

bool writeGeneratedExtensions()
{
    for (int n = 0; n < GeneratedFiles; ++n) {
        QByteArray xml = "<Plugin id=\"gen." + QByteArray::number(n) + "\"><ExtPointSet>";
        for (int p = 0; p < pointsOf(n); ++p)
            xml += "<ExtPoint id=\"gen." + QByteArray::number(n) + ".point." + QByteArray::number(p)
                   + "\" name=\"P\"/>";
        xml += "</ExtPointSet><ExtDataSet>";
        for (int d = 0; d < dataOf(n); ++d)
            xml += "<ExtData id=\"gen.point\" plugin=\"gen." + QByteArray::number(n)
                   + "\" extPlugin=\"nobody\"><Item id=\"" + QByteArray::number(d) + "\" text=\"" + QByteArray(200, 'x')
                   + "\"/></ExtData>";
        xml += "</ExtDataSet></Plugin>";
        if (!writeFile(pluginsDir() + QStringLiteral("/gen_%1/extension.xml").arg(n, 2, 10, QLatin1Char('0')), xml))
            return false;
    }
    return true;
}

// Stops the writer while its store's rollback journal shows an open write
// transaction. The journal is looked at once the writer is surely stopped, so a
// journal seen then belongs to a transaction it cannot finish; otherwise it goes
// on and the next transaction is tried.
bool stopInsideTransaction(QProcess &writer, const QString &journal)
{
    const pid_t pid = pid_t(writer.processId());
    const QString status = QStringLiteral("/proc/%1/stat").arg(pid);
    const auto stopped = [&status] {
        QFile stat(status);
        return stat.open(QIODevice::ReadOnly) && stat.readAll().split(')').value(1).trimmed().startsWith('T');
    };
    for (int attempt = 0; attempt < 10000; ++attempt) {
        if (QFileInfo(journal).size() <= 0) {
            QThread::usleep(100);
            continue;
        }
        ::kill(pid, SIGSTOP);
        while (!stopped())
            QThread::usleep(50);
        if (QFileInfo(journal).size() > 0)
            return true;
        ::kill(pid, SIGCONT);
    }
    return false;
}

// The output of "faulthelper host": key to the lines that start with it.
struct HostRun
{
    int exitCode = -1;
    bool normalExit = false;
    QMultiMap<QString, QString> lines;
    QString all;
};

HostRun runHost(const QStringList &arguments, const std::function<void()> &whileStarting = {})
{
    HostRun run;
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(QStringLiteral(ES_FAULT_HELPER), QStringList{QStringLiteral("host")} + arguments);
    if (!host.waitForStarted())
        return run;
    if (whileStarting)
        whileStarting();
    if (!host.waitForFinished(60000))
        host.kill();
    run.all = QString::fromUtf8(host.readAll());
    run.exitCode = host.exitCode();
    run.normalExit = host.exitStatus() == QProcess::NormalExit;
    const QStringList lines = run.all.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        run.lines.insert(line.section(QStringLiteral(": "), 0, 0), line.section(QStringLiteral(": "), 1));
    return run;
}

QByteArray nestedXml(int depth)
{
    return "<Plugin id=\"deep\"><ExtDataSet>" + QByteArray("<ExtData>").repeated(depth)
           + QByteArray("</ExtData>").repeated(depth) + "</ExtDataSet></Plugin>";
}

} // namespace

class tst_Faults : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qInstallMessageHandler(captureMessage); }
    void init()
    {
        QFile::remove(appDir() + QStringLiteral("/config")); // the file that stood in for the directory
        resetApplicationDirectory();
        clearPluginLog();
        clearLog();
    }
    void cleanup()
    {
        setDacOverride(true);
        QThreadPool::globalInstance()->waitForDone();
    }
    void cleanupTestCase() { resetApplicationDirectory(); }

    void unusableStoreIsMovedAside_data();
    void unusableStoreIsMovedAside();
    void storeIsReadOnly();
    void storeIsLockedByAnotherProcess();
    void configDirectoryCannotBeMade();
    void storeSurvivesKillWhileWriting();
    void scanOfHugeDirectoryWithLinkLoops();
    void faultMatrix_data();
    void faultMatrix();
};

// Data tables keep their hand-made alignment.
// clang-format off
void tst_Faults::unusableStoreIsMovedAside_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("movedAside");
    QTest::addColumn<QString>("found");

    QTest::newRow("garbage") << "garbage" << true << "file is not a database";
    QTest::newRow("zero-filled") << "zeros" << true << "file is not a database";
    QTest::newRow("truncated") << "truncated" << true << "malformed";
    QTest::newRow("no tbl_extdata") << "no-table" << true << "the table tbl_extdata is missing";
    QTest::newRow("tbl_plugin without plug_md5") << "no-column" << true << "the table tbl_plugin has no column plug_md5";
    QTest::newRow("zero-length") << "empty" << false << "";
    QTest::newRow("database without tables") << "no-tables" << false << "";
}
// clang-format on

void tst_Faults::unusableStoreIsMovedAside()
{
    QFETCH(QString, kind);
    QFETCH(bool, movedAside);
    QFETCH(QString, found);

    deployExtensionPlugins();
    const QString config = configDirOf(QStringLiteral("tst_faults"));
    const QString store = config + QStringLiteral("/extension.dat");
    if (kind == QLatin1String("truncated")) {
        QCOMPARE(runWithExtensions(), 1);
        QFile file(store);
        QVERIFY(file.size() > 8192);
        QVERIFY(file.resize(file.size() / 2));
    } else if (kind == QLatin1String("no-table") || kind == QLatin1String("no-column")
               || kind == QLatin1String("no-tables")) {
        QDir().mkpath(config);
        StoreReader other(store);
        QVERIFY2(other.open, qPrintable(other.error));
        const QString plugColumns = kind == QLatin1String("no-column")
                                            ? QStringLiteral("plug_id, plug_symbolic, plug_filepath")
                                            : QStringLiteral("plug_id, plug_symbolic, plug_filepath, plug_md5");
        const QStringList statements = {
                QStringLiteral("PRAGMA user_version = 7"), // written to the file even without a table
                QStringLiteral("CREATE TABLE tbl_plugin (%1)").arg(plugColumns),
                QStringLiteral("CREATE TABLE tbl_extdata (ed_id, ed_point, ed_plugin, ed_extPlugin, ed_data)"),
        };
        const int used = kind == QLatin1String("no-tables") ? 1 : kind == QLatin1String("no-table") ? 2 : 3;
        for (const QString &sql : statements.mid(0, used))
            QVERIFY(other.exec(sql));
    } else {
        const QByteArray content = kind == QLatin1String("garbage") ? QByteArray("this is no database\n").repeated(100)
                                   : kind == QLatin1String("zeros") ? QByteArray(8192, '\0')
                                                                    : QByteArray();
        QVERIFY(writeFile(store, content));
        QVERIFY(QFileInfo::exists(store));
    }
    const QByteArray before = fileHash(store);

    // The first start finds the store unusable, parses the file and stores it
    // anew; the second reads it from the store.
    clearLog();
    QCOMPARE(runWithExtensions(), 1);
    QCOMPARE(runWithExtensions(), 0);

    const QStringList aside = QDir(config).entryList({QStringLiteral("extension.dat.corrupt-*")}, QDir::Files);
    const QStringList reports = logLines.filter(QStringLiteral("[DB] > extension.dat is not a usable store:"));
    if (!movedAside) {
        QCOMPARE(aside, QStringList());
        QCOMPARE(reports.size(), 0);
        return;
    }
    QCOMPARE(aside.size(), 1);
    QVERIFY2(QRegularExpression(QStringLiteral("^extension\\.dat\\.corrupt-\\d{8}T\\d{6}Z$"))
                     .match(aside.first())
                     .hasMatch(),
             qPrintable(aside.first()));
    // Kept as it was, for whoever wants to look at it.
    QCOMPARE(fileHash(config + QLatin1Char('/') + aside.first()), before);
    QCOMPARE(reports.size(), 1);
    QVERIFY2(reports.first().contains(found) && reports.first().contains(aside.first()), qPrintable(reports.first()));
    StoreReader reader(store);
    QCOMPARE(reader.column(QStringLiteral("SELECT plug_symbolic FROM tbl_plugin")), QStringList({"ext.supplier"}));
}

void tst_Faults::storeIsReadOnly()
{
    deployExtensionPlugins();
    const QString config = configDirOf(QStringLiteral("tst_faults"));
    const QString store = config + QStringLiteral("/extension.dat");
    QCOMPARE(runWithExtensions(), 1); // a working store first
    {
        StoreReader reader(store);
        QCOMPARE(reader.column(QStringLiteral("SELECT plug_symbolic FROM tbl_plugin")), QStringList({"ext.supplier"}));
    }

    QVERIFY(QFile::setPermissions(store, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    QVERIFY(setDacOverride(false));
    QVERIFY2(!writable(store), "extension.dat is still writable");
    const QByteArray before = fileHash(store);

    // Unchanged file: its rows are read from the store.
    clearLog();
    QCOMPARE(runWithExtensions(), 0);
    // Touched file: parsed, the write is refused, the items still arrive.
    const QString xml = pluginsDir() + QStringLiteral("/ext.supplier/extension.xml");
    QFile touch(xml);
    QVERIFY(touch.open(QIODevice::ReadWrite));
    QVERIFY(touch.setFileTime(QDateTime::currentDateTime().addSecs(10), QFileDevice::FileModificationTime));
    touch.close();
    QCOMPARE(runWithExtensions(), 1);
    QCOMPARE(runWithExtensions(), 1); // and again, since no digest could be stored
    QCOMPARE(fileHash(store), before);
    QCOMPARE(logged(QStringLiteral("[ERROR] > Cannot open DB")), 0);
    QCOMPARE(logged(QStringLiteral("[DB] > writeExtensionPlugin: \"ext.supplier\"")), 2);

    // A read-only configuration directory without a store: it cannot even be made.
    // The framework goes on without one, and every use of the store says so.
    QVERIFY(setDacOverride(true));
    QVERIFY(QFile::remove(store));
    QVERIFY(QFile::setPermissions(config, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther));
    const auto restore = qScopeGuard([config] {
        setDacOverride(true);
        QFile::setPermissions(config, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    });
    QVERIFY(setDacOverride(false));
    QVERIFY(!writable(config));
    clearLog();
    const int parses = runWithExtensions();
    if (parses != 1)
        qWarning() << logLines.filter(QRegularExpression("ERROR|SQL|DB|Storage|run\\(\\)"));
    QCOMPARE(parses, 1);
    QCOMPARE(logged(QStringLiteral("[ERROR] > Cannot open DB")), 1);
    // The parser's look-up, the write's look-up and the point's read.
    QVERIFY(logged(QStringLiteral("[SQL ERROR] > Open DB Error:")) >= 3);
    QVERIFY(!QFile::exists(store));
}

void tst_Faults::storeIsLockedByAnotherProcess()
{
    deployExtensionPlugins();
    QCOMPARE(runWithExtensions(), 1);
    const QString store = configDirOf(QStringLiteral("tst_faults")) + QStringLiteral("/extension.dat");
    const QByteArray before = fileHash(store);

    QProcess locker;
    locker.start(QStringLiteral(ES_FAULT_HELPER), {QStringLiteral("lock"), store});
    QVERIFY(locker.waitForStarted());
    QVERIFY(locker.waitForReadyRead(20000));
    QCOMPARE(locker.readLine().trimmed(), QByteArray("locked"));
    const auto release = qScopeGuard([&locker] {
        locker.closeWriteChannel();
        if (!locker.waitForFinished(10000))
            locker.kill();
    });

    // Every statement waits for the lock in vain (the driver's busy timeout) and
    // fails; the file is parsed again and its items are dispatched.
    clearLog();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(runWithExtensions(), 1);
    qInfo("a start against the locked store took %lld ms", timer.elapsed());
    QCOMPARE(logged(QStringLiteral("[ERROR] > Cannot open DB")), 0);
    QCOMPARE(logged(QStringLiteral("[DB] > writeExtensionPlugin: \"ext.supplier\"")), 1);
    QCOMPARE(fileHash(store), before);

    locker.closeWriteChannel();
    QVERIFY(locker.waitForFinished(20000));
    QCOMPARE(locker.exitStatus(), QProcess::NormalExit);
    QCOMPARE(locker.exitCode(), 0);
    // Free again: the stored rows serve the unchanged file.
    QCOMPARE(runWithExtensions(), 0);
}

void tst_Faults::configDirectoryCannotBeMade()
{
    deployExtensionPlugins();
    QVERIFY(writeFile(appDir() + QStringLiteral("/config"), "a file where the directory belongs\n"));
    QTemporaryDir working;
    QVERIFY(working.isValid());
    const auto restoreCurrent = qScopeGuard([previous = QDir::currentPath()] { QDir::setCurrent(previous); });
    QVERIFY(QDir::setCurrent(working.path()));

    // The store falls back to the working directory, and remembers there.
    QCOMPARE(runWithExtensions(), 1);
    QCOMPARE(logged(QStringLiteral("[Error] > ExtensionStorage: Cannot find the data storage path: \"")
                    + configDirOf(QStringLiteral("tst_faults"))),
             1);
    {
        StoreReader reader(working.filePath(QStringLiteral("extension.dat")));
        QVERIFY(reader.open);
        QCOMPARE(reader.column(QStringLiteral("SELECT plug_symbolic FROM tbl_plugin")), QStringList({"ext.supplier"}));
    }
    QCOMPARE(runWithExtensions(), 0);

    // Settings cannot be written either; changing a policy is no failure.
    PluginFramework framework;
    framework.init();
    framework.findChild<PluginManager *>()->setPluginStartupPolicy(QStringLiteral("chain.a"),
                                                                   PluginFrameworkConfig::PolicyDisable);
    framework.setLoadEnabledPluginOnly(true);
    QVERIFY(QFileInfo(appDir() + QStringLiteral("/config")).isFile());
}

void tst_Faults::storeSurvivesKillWhileWriting()
{
    deployExtensionPlugins();
    QVERIFY(writeGeneratedExtensions());
    const QString config = configDirOf(QStringLiteral("faulthelper"));
    const QString store = config + QStringLiteral("/extension.dat");
    QDir(config).removeRecursively();

    int interrupted = 0;
    int intact = 0;
    const int runs = 20;
    for (int run = 0; run < runs; ++run) {
        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer.start(QStringLiteral(ES_FAULT_HELPER), {QStringLiteral("write")});
        QVERIFY(writer.waitForStarted());
        QVERIFY(writer.waitForReadyRead(30000));
        QCOMPARE(writer.readLine().trimmed(), QByteArray("writing"));
        // Even runs are killed after a delay spread over the writing, so that
        // kills land between and inside transactions; odd runs are stopped,
        // and killed only while the store's rollback journal shows that one
        // is open, so that the rollback is always tried.
        const int delay = 20 + run * 35;
        const bool insideTransaction = run % 2 == 1;
        if (insideTransaction) {
            QVERIFY(stopInsideTransaction(writer, store + QStringLiteral("-journal")));
        } else {
            QThread::msleep(delay);
        }
        writer.kill();
        QVERIFY(writer.waitForFinished(10000));
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);

        // A journal left behind means the kill fell inside a transaction.
        const bool hotJournal = QFileInfo(store + QStringLiteral("-journal")).size() > 0;
        QVERIFY(hotJournal || !insideTransaction);
        interrupted += hotJournal;

        // The next start opens the store, which rolls the broken transaction back.
        clearLog();
        QHash<QString, bool> recorded;
        {
            ExtensionStorage next{QDir(config), nullptr};
            for (int n = 0; n < GeneratedFiles; ++n) {
                QString symbolic, digest;
                const QString path = QStringLiteral("/plugins/gen_%1/extension.xml").arg(n, 2, 10, QLatin1Char('0'));
                recorded.insert(QStringLiteral("gen.%1").arg(n), next.pluginRecord(path, symbolic, digest));
            }
        }
        QCOMPARE(logged(QStringLiteral("[ERROR] > Cannot open DB")), 0);
        QCOMPARE(logged(QStringLiteral("[SQL ERROR]")), 0);

        StoreReader reader(store);
        QVERIFY2(reader.open, qPrintable(reader.error));
        QCOMPARE(reader.column(QStringLiteral("PRAGMA integrity_check")), QStringList({"ok"}));
        // All of a plug-in's rows or none.
        int complete = 0;
        for (int n = 0; n < GeneratedFiles; ++n) {
            const QString symbolic = QStringLiteral("gen.%1").arg(n);
            const int rows = reader.count(
                    QStringLiteral("SELECT count(*) FROM tbl_plugin WHERE plug_symbolic = '%1'").arg(symbolic));
            const int points = reader.count(
                    QStringLiteral("SELECT count(*) FROM tbl_extpoint WHERE ep_plugin = '%1'").arg(symbolic));
            const int data = reader.count(
                    QStringLiteral("SELECT count(*) FROM tbl_extdata WHERE ed_plugin = '%1'").arg(symbolic));
            QVERIFY2(rows == 0 || rows == 1, qPrintable(symbolic));
            QVERIFY2(points == rows * pointsOf(n) && data == rows * dataOf(n),
                     qPrintable(QStringLiteral("run %1, %2: %3 rows, %4 points, %5 data")
                                        .arg(run)
                                        .arg(symbolic)
                                        .arg(rows)
                                        .arg(points)
                                        .arg(data)));
            QCOMPARE(recorded.value(symbolic), rows == 1);
            complete += rows;
        }
        ++intact;
        qInfo("run %d: killed %s, %s, %d of %d plug-ins stored", run + 1,
              qPrintable(insideTransaction ? QStringLiteral("once stopped") : QStringLiteral("after %1 ms").arg(delay)),
              hotJournal ? "inside a transaction" : "between transactions", complete, GeneratedFiles);
    }
    qInfo("%d of %d stores intact; %d kills fell inside a transaction", intact, runs, interrupted);
    QCOMPARE(intact, runs);
}

void tst_Faults::scanOfHugeDirectoryWithLinkLoops()
{
    const int empty = 10000;
    QDir plugins(pluginsDir());
    QVERIFY(plugins.mkpath(QStringLiteral(".")));
    for (int i = 0; i < empty; ++i)
        QVERIFY(plugins.mkdir(QStringLiteral("d%1").arg(i, 5, 10, QLatin1Char('0'))));
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("d03333_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("d06666_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("d09999_c"));
    const auto link = [](const QString &target, const QString &name) {
        return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(pluginsDir() + name).constData())
               == 0;
    };
    QVERIFY(link(QStringLiteral("."), QStringLiteral("/loop"))); // the directory itself
    QVERIFY(link(QStringLiteral("d03333_a"), QStringLiteral("/link_to_a"))); // a second way to a plug-in
    QVERIFY(link(QStringLiteral(".."), QStringLiteral("/d06666_b/up"))); // back up, from inside
    QVERIFY(link(QStringLiteral("self" ES_TEST_LIBRARY_SUFFIX),
                 QStringLiteral("/d09999_c/self" ES_TEST_LIBRARY_SUFFIX))); // a link to itself
    QVERIFY(link(QStringLiteral("../d03333_a/chain.a" ES_TEST_LIBRARY_SUFFIX),
                 QStringLiteral("/d09998/copy" ES_TEST_LIBRARY_SUFFIX)));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    QElapsedTimer timer;
    timer.start();
    framework.init();
    const qint64 scan = timer.elapsed();
    framework.start();
    qInfo("scan of %d directories took %lld ms", empty + 3, scan);

    // Links to directories are passed over; the linked library is the one plug-in
    // met twice, and refused by its name.
    int listed = 0;
    {
        QMutexLocker locker(&logMutex);
        for (const QString &line : qAsConst(logLines))
            listed += line.startsWith(QLatin1String(" |-> "));
    }
    QCOMPARE(listed, empty + 3);
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b", "chain.c"}));
    for (const char *name : {"chain.a", "chain.b", "chain.c"})
        QCOMPARE(manager->find(QString::fromLatin1(name))->state(), int(PluginInfo::Active));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Exists the same symbolic, symbolic: chain.a"));
    QCOMPARE(manager->findByFile(pluginsDir() + QStringLiteral("/d03333_a/chain.a" ES_TEST_LIBRARY_SUFFIX))->symbolic(),
             QStringLiteral("chain.a"));
    framework.stop();
}

// Data tables keep their hand-made alignment.
// clang-format off
void tst_Faults::faultMatrix_data()
{
    QTest::addColumn<QString>("store");
    QTest::newRow("corrupt extension.dat") << "corrupt";
    QTest::newRow("read-only extension.dat") << "read-only";
    QTest::newRow("locked extension.dat") << "locked";
}
// clang-format on

// A good chain of plug-ins beside one of every kind of bad file a host can be
// handed, run by a separate host process that must end normally.
void tst_Faults::faultMatrix()
{
    QFETCH(QString, store);

    deployExtensionPlugins();
    deployPlugin(QStringLiteral("chain.b"));
    deployPlugin(QStringLiteral("chain.c"));
    QRandomGenerator random(13);
    QByteArray garbage(64 * 1024, '\0');
    for (char &c : garbage)
        c = char(random.bounded(256));
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/garbage/garbage" ES_TEST_LIBRARY_SUFFIX), garbage));
    for (const char *name : {"unresolved.function", "unresolved.data", "not.qtplugin", "not.activator", "no.metadata",
                             "meta.empty", "meta.binary", "meta.nosymbolic", "no.dependency"})
        deployPlugin(QString::fromLatin1(name));
    // Extension files beside libraries that install, so that each is announced and read.
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/no.dependency/extension.xml"),
                      "<Plugin id=\"broken\"><ExtDataSet>"));
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/not.activator/extension.xml"), garbage.left(4096)));
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/meta.nosymbolic/extension.xml"), nestedXml(100000)));

    const QString config = configDirOf(QStringLiteral("faulthelper"));
    const QString storePath = config + QStringLiteral("/extension.dat");
    const QStringList names = {"unresolved.function", "unresolved.data", "garbage",    "not.qtplugin",
                               "not.activator",       "no.metadata",     "meta.empty", "meta.binary",
                               "meta.nosymbolic",     "no.dependency"};
    QStringList arguments = names;
    std::function<void()> whileStarting;
    QProcess locker;
    const auto release = qScopeGuard([&locker] {
        locker.closeWriteChannel();
        if (locker.state() != QProcess::NotRunning && !locker.waitForFinished(10000))
            locker.kill();
    });
    if (store == QLatin1String("corrupt")) {
        QVERIFY(writeFile(storePath, QByteArray("not a database\n").repeated(500)));
    } else {
        const HostRun first = runHost(names); // a working store to begin with
        QCOMPARE(first.exitCode, 0);
        if (store == QLatin1String("read-only")) {
            QVERIFY(QFile::setPermissions(storePath, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
            arguments.prepend(QStringLiteral("--read-only"));
        } else {
            locker.start(QStringLiteral(ES_FAULT_HELPER), {QStringLiteral("lock"), storePath});
            QVERIFY(locker.waitForStarted());
            QVERIFY(locker.waitForReadyRead(20000));
            QCOMPARE(locker.readLine().trimmed(), QByteArray("locked"));
            // Held while the host starts, then let go: the host waits it out.
            whileStarting = [&locker] {
                QThread::msleep(1000);
                locker.closeWriteChannel();
            };
        }
    }

    const HostRun run = runHost(arguments, whileStarting);
    QVERIFY2(run.normalExit && run.exitCode == 0, qPrintable(run.all));
    QCOMPARE(run.lines.value(QStringLiteral("exit"), QStringLiteral("missing")), QString());
    // The good chain runs, its item reaches the point and starts its supplier.
    QCOMPARE(run.lines.value(QStringLiteral("item")), QStringLiteral("7"));
    const QStringList states = run.lines.values(QStringLiteral("state"));
    for (const char *name : {"chain.a", "chain.b", "chain.c", "ext.host", "ext.supplier"})
        QVERIFY2(states.contains(QStringLiteral("%1 32").arg(QLatin1String(name))), qPrintable(run.all));
    QCOMPARE(run.lines.value(QStringLiteral("queue")),
             QStringLiteral("chain.a chain.b chain.c ext.host ext.supplier not.activator"));
    // Stopped in reverse order when the host quit.
    const QString log = run.lines.value(QStringLiteral("log"));
    QVERIFY2(log.contains(QStringLiteral("stop:chain.c stop:chain.b stop:chain.a")), qPrintable(log));

    // Each bad file is named with the reason it does not run.
    // Each bad file is named with the reason it does not run, its own defect
    // first; a later nameless file adds that the first one took the empty name.
    QHash<QString, QList<int>> reasons;
    const QStringList problems = run.lines.values(QStringLiteral("problem"));
    for (const QString &line : problems)
        reasons[line.section(QLatin1Char(' '), 0, 0)].prepend(line.section(QLatin1Char(' '), 1, 1).toInt());
    const QList<QPair<const char *, PluginProblem::Reason>> expected = {
            {"unresolved.function", PluginProblem::LoadFailed},
            {"unresolved.data", PluginProblem::LoadFailed},
            {"garbage", PluginProblem::LoadFailed},
            {"not.qtplugin", PluginProblem::LoadFailed},
            {"not.activator", PluginProblem::NoActivator},
            {"no.metadata", PluginProblem::NoMetaFile},
            {"meta.empty", PluginProblem::InvalidMetaFile},
            {"meta.binary", PluginProblem::InvalidMetaFile},
            {"meta.nosymbolic", PluginProblem::InvalidMetaFile},
            {"no.dependency", PluginProblem::NoDependencyLine},
    };
    for (const auto &entry : expected) {
        const QList<int> found = reasons.value(QLatin1String(entry.first));
        const QString why = QStringLiteral("%1\n%2").arg(QLatin1String(entry.first), problems.join(QLatin1Char('\n')));
        QVERIFY2(found.value(0, -1) == entry.second, qPrintable(why));
        QVERIFY2(found.size() == 1 || found == QList<int>({entry.second, PluginProblem::DuplicateName}),
                 qPrintable(why));
    }
    QVERIFY(problems.filter(QStringLiteral("unresolved.function 2 library fails to load:"))
                    .filter(QStringLiteral("es_function_that_no_library_defines"))
                    .size()
            == 1);

    // The store ends usable: the supplier's rows are in it. Only the corrupt one was moved aside.
    const QStringList aside = QDir(config).entryList({QStringLiteral("extension.dat.corrupt-*")}, QDir::Files);
    QCOMPARE(aside.size(), store == QLatin1String("corrupt") ? 1 : 0);
    if (store == QLatin1String("read-only"))
        QVERIFY(QFile::setPermissions(storePath, QFile::ReadOwner | QFile::WriteOwner));
    StoreReader reader(storePath);
    QCOMPARE(reader.column(QStringLiteral("SELECT plug_symbolic FROM tbl_plugin WHERE plug_symbolic = 'ext.supplier'")),
             QStringList({"ext.supplier"}));
    QCOMPARE(reader.column(QStringLiteral("PRAGMA integrity_check")), QStringList({"ok"}));
}

QTEST_MAIN(tst_Faults)
#include "tst_faults.moc"
