// SPDX-License-Identifier: BSD-3-Clause
// A plug-in that crashes or hangs the host, run in child hosts (crashhost) that
// share this test's plugins/: the next start names it, keeps it out and starts
// every other plug-in, and a fixed build, the API or es-inspect brings it back.

#include "testsupport.h"

#include <core/plugincrash.h>
#include <plugin/pluginproblem.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest>

using namespace ExtensionSystem;
using namespace TestSupport;

namespace {

struct HostRun
{
    bool clean = false; // exited by itself with 0
    QMultiMap<QString, QString> lines; // stdout, by the word before ": "
    QString err;

    QStringList all(const char *key) const
    {
        QStringList values = lines.values(QLatin1String(key));
        std::reverse(values.begin(), values.end()); // in the order written
        return values;
    }
    QString one(const char *key) const { return lines.value(QLatin1String(key)); }
};

QProcessEnvironment environment(const QByteArray &crash)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("ES_TEST_CRASH"));
    if (!crash.isEmpty())
        environment.insert(QStringLiteral("ES_TEST_CRASH"), QString::fromLatin1(crash));
    return environment;
}

HostRun finish(QProcess &host)
{
    HostRun run;
    if (!host.waitForFinished(60000))
        host.kill();
    host.waitForFinished();
    run.clean = host.exitStatus() == QProcess::NormalExit && host.exitCode() == 0;
    run.err = QString::fromUtf8(host.readAllStandardError());
    const QStringList lines = QString::fromUtf8(host.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        run.lines.insert(line.section(QStringLiteral(": "), 0, 0), line.section(QStringLiteral(": "), 1));
    return run;
}

HostRun runHost(const QStringList &arguments, const QByteArray &crash = QByteArray())
{
    QProcess host;
    host.setProcessEnvironment(environment(crash));
    host.start(QStringLiteral(ES_CRASH_HOST), arguments);
    return finish(host);
}

// Reads the host's stderr until it holds text, or the host ends.
bool waitForError(QProcess &host, QString &seen, const QString &text, int times = 1)
{
    QElapsedTimer guard;
    guard.start();
    while (seen.count(text) < times && guard.elapsed() < 60000) {
        if (host.state() == QProcess::NotRunning)
            return false;
        host.waitForReadyRead(1000);
        seen += QString::fromUtf8(host.readAllStandardError());
    }
    return seen.count(text) >= times;
}

QString configDirectory()
{
    return appDir() + QStringLiteral("/config/crashhost");
}

QString quarantineList()
{
    return configDirectory() + QStringLiteral("/quarantine.ini");
}

QString library()
{
    return pluginsDir() + QStringLiteral("/crash.prone/crash.prone" ES_TEST_LIBRARY_SUFFIX);
}

struct Inspection
{
    int exitCode = -1;
    QString out;
};

Inspection inspect(const QStringList &arguments, const QByteArray &crash = QByteArray())
{
    QProcess process;
    process.setProcessEnvironment(environment(crash));
    process.start(QStringLiteral(ES_INSPECT), arguments);
    Inspection inspection;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        inspection.exitCode = process.exitCode();
    inspection.out = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    return inspection;
}

QByteArray digest(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

} // namespace

class tst_CrashSafety : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { resetApplicationDirectory(); }

    void deathInLoadOrStartIsQuarantined_data();
    void deathInLoadOrStartIsQuarantined();
    void releaseByCallAndByInspect();
    void deathInStopOrHandlerQuarantinesNothing_data();
    void deathInStopOrHandlerQuarantinesNothing();
    void deathInAnOnDemandStart();
    void hangEndedByKillAfterTheWatchdogSpoke();
    void exceptionCaughtByTheHostQuarantinesNothing();
    void twoHostsAtOnce();
    void damagedJournalsAndReadOnlyConfiguration();
    void quarantineTurnedOff();
};

void tst_CrashSafety::init()
{
    resetApplicationDirectory();
    for (const char *name : {"chain.a", "chain.b", "ext.host", "crash.prone", "crash.dependant"})
        deployPlugin(QLatin1String(name));
    QFile::copy(QStringLiteral(ES_TEST_PLUGIN_DIR "/crash.prone/extension.xml"),
                pluginsDir() + QStringLiteral("/crash.prone/extension.xml"));
    QVERIFY(writeFile(configDirectory() + QStringLiteral("/config.ini"),
                      "[PluginManager]\nloadEnabledPluginOnly=false\nwatchPluginsDirectory=false\n"));
}

void tst_CrashSafety::deathInLoadOrStartIsQuarantined_data()
{
    QTest::addColumn<QByteArray>("crash");
    QTest::addColumn<int>("phase");
    QTest::addColumn<QString>("words");
    QTest::newRow("SIGSEGV in start()") << QByteArray("start-segv") << int(PluginCrash::ActivatorStart)
                                        << QStringLiteral("crash.prone crashed in start() on ");
    QTest::newRow("abort() in start()") << QByteArray("start-abort") << int(PluginCrash::ActivatorStart)
                                        << QStringLiteral("crash.prone crashed in start() on ");
    QTest::newRow("uncaught exception from start()") << QByteArray("start-throw") << int(PluginCrash::ActivatorStart)
                                                     << QStringLiteral("crash.prone crashed in start() on ");
    QTest::newRow("_exit() in start()") << QByteArray("start-exit") << int(PluginCrash::ActivatorStart)
                                        << QStringLiteral("crash.prone crashed in start() on ");
    QTest::newRow("static initialiser") << QByteArray("static-segv") << int(PluginCrash::LibraryLoad)
                                        << QStringLiteral("crash.prone crashed while loading its library on ");
    QTest::newRow("root object") << QByteArray("root-abort") << int(PluginCrash::RootObject)
                                 << QStringLiteral("crash.prone crashed while making its root object on ");
}

void tst_CrashSafety::deathInLoadOrStartIsQuarantined()
{
    QFETCH(QByteArray, crash);
    QFETCH(int, phase);
    QFETCH(QString, words);

    const HostRun first = runHost({}, crash);
    QVERIFY2(!first.clean, qPrintable(first.err));
    QVERIFY(first.err.contains(QStringLiteral("crash.prone: %1 now").arg(QString::fromLatin1(crash))));

    // Before the next start, es-inspect tells and does not load the library,
    // which would die in it just the same.
    const Inspection before = inspect({appDir()}, crash);
    QCOMPARE(before.exitCode, 1);
    QVERIFY2(before.out.contains(QStringLiteral("status:         the last run died in it: quarantined at the next "
                                                "start, not loaded")),
             qPrintable(before.out));
    QVERIFY(before.out.contains(QStringLiteral("Last runs that did not end cleanly:\n  ") + words));

    // The next run exits normally, starts everything else and says why not this one.
    const HostRun second = runHost({QStringLiteral("crash.prone"), QStringLiteral("crash.dependant")});
    QVERIFY2(second.clean, qPrintable(second.err));
    const QStringList quarantined = second.all("quarantined");
    QCOMPARE(quarantined.size(), 1);
    QVERIFY2(quarantined.first().startsWith(QStringLiteral("crash.prone %1 1 0 ").arg(phase)),
             qPrintable(quarantined.first()));
    QVERIFY2(quarantined.first().contains(words), qPrintable(quarantined.first()));
    QVERIFY(quarantined.first().endsWith(QStringLiteral("; it was not loaded")));
    QVERIFY(second.one("previous").startsWith(QStringLiteral("crash.prone %1 ").arg(phase)));
    QCOMPARE(second.one("log"), QStringLiteral("start:chain.a start:chain.b stop:chain.b stop:chain.a"));
    QCOMPARE(second.all("state").filter(QStringLiteral("crash.prone ")), QStringList({"crash.prone 0"}));
    const QStringList problems = second.all("problem");
    QCOMPARE(problems.filter(QRegularExpression(QStringLiteral("^crash.prone "))).size(), 1);
    QVERIFY(problems.contains(QStringLiteral("crash.prone %1 quarantined: ").arg(int(PluginProblem::Quarantined))
                              + quarantined.first().section(QLatin1Char(' '), 4)
                              + QStringLiteral("; replace its library with a fixed build, or release it "
                                               "(PluginManager::releasePlugin(), es-inspect --release)")));
    // Its dependant resolves as it does when a dependency is missing.
    const QStringList dependant = problems.filter(QRegularExpression(QStringLiteral("^crash.dependant ")));
    QCOMPARE(dependant.size(), 1);
    QVERIFY2(dependant.first().startsWith(QStringLiteral("crash.dependant %1 missing dependency: needs crash.prone "
                                                         "1.0.0, which is not installed (crash.prone is refused: "
                                                         "quarantined: ")
                                                  .arg(int(PluginProblem::MissingDependency))),
             qPrintable(dependant.first()));
    QVERIFY(QFile::exists(quarantineList()));

    // The same run again: still out, counted once.
    const HostRun third = runHost({});
    QVERIFY(third.clean);
    QVERIFY(third.one("quarantined").startsWith(QStringLiteral("crash.prone %1 1 0 ").arg(phase)));
    QCOMPARE(third.one("previous"), QStringLiteral("none"));

    // A fixed build: other bytes. It loads and starts, and the record goes.
    QFile file(library());
    QVERIFY(file.open(QIODevice::Append));
    file.write("a fixed build");
    file.close();
    const HostRun fixed = runHost({});
    QVERIFY2(fixed.clean, qPrintable(fixed.err));
    QVERIFY(fixed.all("quarantined").isEmpty());
    QVERIFY2(fixed.one("log").contains(QStringLiteral("start:crash.prone start:crash.dependant")),
             qPrintable(fixed.one("log")));
    QVERIFY(fixed.err.contains(QStringLiteral("released from quarantine, its library changed")));
    QVERIFY(!QFile::exists(quarantineList()));
}

void tst_CrashSafety::releaseByCallAndByInspect()
{
    QVERIFY(!runHost({}, "start-segv").clean);
    const QByteArray config = digest(configDirectory() + QStringLiteral("/config.ini"));

    // Released by the host in code, it is installed at once and started; it dies
    // again and is back in quarantine, counted twice.
    const HostRun released = runHost({QStringLiteral("--release"), QStringLiteral("crash.prone")}, "start-segv");
    QVERIFY(!released.clean);
    QCOMPARE(released.one("release"), QStringLiteral("done"));
    const HostRun twice = runHost({});
    QVERIFY(twice.clean);
    QVERIFY2(twice.one("quarantined").startsWith(QStringLiteral("crash.prone 4 2 0 ")),
             qPrintable(twice.one("quarantined")));
    QVERIFY(twice.one("quarantined").contains(QStringLiteral(" (2 times); it was not loaded")));
    QCOMPARE(runHost({QStringLiteral("--release"), QStringLiteral("nobody")}).one("release"),
             QStringLiteral("refused"));

    // es-inspect shows it, and releases it: the one file it changes is the list.
    const Inspection shown = inspect({appDir()});
    QVERIFY2(shown.out.contains(QStringLiteral("status:         quarantined, not loaded")), qPrintable(shown.out));
    QVERIFY(shown.out.contains(QStringLiteral("crashed in start() on ")));
    QVERIFY(shown.out.contains(QStringLiteral("(2 times)")));
    const Inspection release = inspect({QStringLiteral("--release"), QStringLiteral("crash.prone"), appDir()});
    QCOMPARE(release.exitCode, 0);
    QVERIFY2(release.out.contains(QStringLiteral("released")), qPrintable(release.out));
    QCOMPARE(inspect({QStringLiteral("--release"), QStringLiteral("crash.prone"), appDir()}).exitCode, 1);
    QCOMPARE(digest(configDirectory() + QStringLiteral("/config.ini")), config);

    const HostRun back = runHost({});
    QVERIFY(back.clean);
    QVERIFY(back.all("quarantined").isEmpty());
    QVERIFY(back.one("log").contains(QStringLiteral("start:crash.prone")));
    QVERIFY(!QFile::exists(quarantineList()));
}

void tst_CrashSafety::deathInStopOrHandlerQuarantinesNothing_data()
{
    QTest::addColumn<QByteArray>("crash");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("previous");
    QTest::newRow("stop()") << QByteArray("stop-segv") << QStringList()
                            << QStringLiteral("crash.prone 5 crash.prone crashed in stop() on ");
    QTest::newRow("a handler's active()")
            << QByteArray("active-segv") << QStringList{QStringLiteral("--item")}
            << QStringLiteral("crash.prone 6 crash.prone crashed in a handler's active() on ");
}

void tst_CrashSafety::deathInStopOrHandlerQuarantinesNothing()
{
    QFETCH(QByteArray, crash);
    QFETCH(QStringList, arguments);
    QFETCH(QString, previous);

    QVERIFY(!runHost(arguments, crash).clean);
    const Inspection shown = inspect({appDir()});
    QVERIFY2(shown.out.contains(QStringLiteral("Last runs that did not end cleanly:\n  ")
                                + previous.section(QLatin1Char(' '), 2)),
             qPrintable(shown.out));
    QVERIFY(shown.out.contains(QStringLiteral("status:         resolved, position")));
    // Reported, not quarantined: it does not repeat at every start.
    const HostRun next = runHost({});
    QVERIFY(next.clean);
    QVERIFY(next.all("quarantined").isEmpty());
    QVERIFY2(next.one("previous").startsWith(previous), qPrintable(next.one("previous")));
    QVERIFY(!next.one("previous").contains(QStringLiteral("not loaded")));
    QVERIFY(next.one("log").contains(QStringLiteral("start:crash.prone")));
    QVERIFY(!QFile::exists(quarantineList()));
    // And what ran last is forgotten once a run ends cleanly.
    QCOMPARE(runHost({}).one("previous"), QStringLiteral("none"));
}

void tst_CrashSafety::deathInAnOnDemandStart()
{
    const HostRun first = runHost({QStringLiteral("--on-demand")}, "start-abort");
    QVERIFY(!first.clean);
    QCOMPARE(first.one("item"), QStringLiteral("called"));
    const HostRun next = runHost({QStringLiteral("--on-demand")});
    QVERIFY(next.clean);
    QVERIFY2(next.one("quarantined").startsWith(QStringLiteral("crash.prone 4 1 0 crash.prone crashed in start()")),
             qPrintable(next.one("quarantined")));
    // Its extension file is not read while it is out, so its item is not offered.
    QCOMPARE(next.one("item"), QStringLiteral("missing"));
    QVERIFY(!next.one("log").contains(QStringLiteral("crash.prone")));
}

void tst_CrashSafety::hangEndedByKillAfterTheWatchdogSpoke()
{
    QProcess host;
    host.setProcessEnvironment(environment("start-hang"));
    host.start(QStringLiteral(ES_CRASH_HOST), {QStringLiteral("--watchdog"), QStringLiteral("300")});
    QString seen;
    // The line comes from the watchdog's thread while start() blocks, and again.
    QVERIFY2(waitForError(host, seen, QStringLiteral("[Watchdog] > \"crash.prone\" has been in start() for "), 2),
             qPrintable(seen));
    host.kill();
    host.waitForFinished();
    const QStringList lines = seen.split(QLatin1Char('\n')).filter(QStringLiteral("[Watchdog]"));
    const double firstSeconds = lines.at(0).section(QLatin1Char(' '), -2, -2).toDouble();
    const double secondSeconds = lines.at(1).section(QLatin1Char(' '), -2, -2).toDouble();
    QVERIFY2(firstSeconds >= 0.3 && secondSeconds >= 0.6 && secondSeconds > firstSeconds,
             qPrintable(lines.join(QLatin1Char('\n'))));

    const HostRun next = runHost({});
    QVERIFY(next.clean);
    const QString record = next.one("quarantined");
    QVERIFY2(record.startsWith(QStringLiteral("crash.prone 4 1 1 crash.prone did not return from start() within 1 s")),
             qPrintable(record));
    QVERIFY(next.one("log").contains(QStringLiteral("start:chain.b")));
}

void tst_CrashSafety::exceptionCaughtByTheHostQuarantinesNothing()
{
    const HostRun first = runHost({QStringLiteral("--catch")}, "start-throw");
    QVERIFY2(first.clean, qPrintable(first.err));
    QCOMPARE(first.one("caught"), QStringLiteral("crash.prone throws"));
    const HostRun next = runHost({});
    QVERIFY(next.clean);
    QVERIFY(next.all("quarantined").isEmpty());
    QCOMPARE(next.one("previous"), QStringLiteral("none"));
    QVERIFY(next.one("log").contains(QStringLiteral("start:crash.prone")));
}

void tst_CrashSafety::twoHostsAtOnce()
{
    // One host hangs inside start(); a second one of the same program runs
    // beside it and must not take the first one's journal for a crash.
    QProcess hanging;
    hanging.setProcessEnvironment(environment("start-hang"));
    hanging.start(QStringLiteral(ES_CRASH_HOST), QStringList());
    QString seen;
    QVERIFY2(waitForError(hanging, seen, QStringLiteral("crash.prone: start-hang now")), qPrintable(seen));
    const HostRun beside = runHost({});
    QVERIFY2(beside.clean, qPrintable(beside.err));
    QVERIFY(beside.all("quarantined").isEmpty());
    QCOMPARE(beside.one("previous"), QStringLiteral("none"));
    QVERIFY(beside.one("log").contains(QStringLiteral("start:crash.prone")));
    QVERIFY(!QFile::exists(quarantineList()));
    QCOMPARE(QDir(configDirectory()).entryList({QStringLiteral("*.journal")}, QDir::Files).size(), 1);

    // Ended by the user, without the watchdog: quarantined all the same.
    hanging.kill();
    hanging.waitForFinished();
    const HostRun next = runHost({});
    QVERIFY(next.clean);
    QVERIFY2(next.one("quarantined").startsWith(QStringLiteral("crash.prone 4 1 0 crash.prone crashed in start()")),
             qPrintable(next.one("quarantined")));
}

void tst_CrashSafety::damagedJournalsAndReadOnlyConfiguration()
{
    QByteArray garbage(4096, '\0');
    for (int i = 0; i < garbage.size(); ++i)
        garbage[i] = char(i * 7 + 3);
    QByteArray header("ESJRNL1");
    header.append('\0');
    QVERIFY(writeFile(configDirectory() + QStringLiteral("/plugins-900001.journal"), garbage));
    QVERIFY(writeFile(configDirectory() + QStringLiteral("/plugins-900002.journal"), header + QByteArray(92, '\1')));
    QVERIFY(writeFile(configDirectory() + QStringLiteral("/plugins-900003.journal"), QByteArray()));
    // A valid header pointing at a slot whose checksum does not match.
    QByteArray damaged = header + QByteArray(4096 - header.size(), '\0');
    damaged[68] = 4; // the first slot's phase, without its checksum
    QVERIFY(writeFile(configDirectory() + QStringLiteral("/plugins-900004.journal"), damaged));

    const HostRun run = runHost({});
    QVERIFY2(run.clean, qPrintable(run.err));
    QVERIFY(run.all("quarantined").isEmpty());
    QCOMPARE(run.one("previous"), QStringLiteral("none"));
    QCOMPARE(run.err.count(QStringLiteral("[Journal] > ignored")), 4);
    for (const char *why : {"it is not a journal", "it is truncated", "it is empty", "its record is damaged"})
        QVERIFY2(run.err.contains(QLatin1String(why)), why);
    QVERIFY(QDir(configDirectory()).entryList({QStringLiteral("*.journal")}, QDir::Files).isEmpty());
    QVERIFY(run.one("log").contains(QStringLiteral("start:crash.prone")));

    // An application installed read-only: no journal, not a word about it.
    QVERIFY(QFile::setPermissions(configDirectory(), QFile::ReadOwner | QFile::ExeOwner));
    const HostRun readOnly = runHost({QStringLiteral("--obey-modes")});
    QFile::setPermissions(configDirectory(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY2(readOnly.clean, qPrintable(readOnly.err));
    QVERIFY(!readOnly.err.contains(QStringLiteral("Journal")));
    QVERIFY(readOnly.one("log").contains(QStringLiteral("start:crash.prone")));
}

void tst_CrashSafety::quarantineTurnedOff()
{
    // A clean run leaves the configuration directory as it always was.
    QVERIFY(runHost({}).clean);
    QCOMPARE(QDir(configDirectory()).entryList(QDir::Files | QDir::Hidden),
             QStringList({"config.ini", "extension.dat"}));

    QVERIFY(writeFile(configDirectory() + QStringLiteral("/config.ini"),
                      "[PluginManager]\nloadEnabledPluginOnly=false\nwatchPluginsDirectory=false\n"
                      "quarantineCrashedPlugins=false\n"));
    const QByteArray config = digest(configDirectory() + QStringLiteral("/config.ini"));
    QVERIFY(!runHost({}, "start-segv").clean);
    // Off: the plug-in runs again; what ran when the host died is still told.
    const HostRun next = runHost({});
    QVERIFY(next.clean);
    QVERIFY(next.all("quarantined").isEmpty());
    QVERIFY(next.one("previous").startsWith(QStringLiteral("crash.prone 4 ")));
    QVERIFY(next.one("log").contains(QStringLiteral("start:crash.prone")));
    QVERIFY(!QFile::exists(quarantineList()));
    QCOMPARE(digest(configDirectory() + QStringLiteral("/config.ini")), config);
}

QTEST_GUILESS_MAIN(tst_CrashSafety)

#include "tst_crashsafety.moc"
