// SPDX-License-Identifier: BSD-3-Clause
// A second process for tst_faults.
//
//   faulthelper lock <database>   holds an exclusive SQLite lock on <database>,
//                                 says "locked", and lets go when stdin closes.
//   faulthelper write             hosts a framework beside this executable and has
//                                 it parse every plugins/*/extension.xml again and
//                                 again, so that extension.dat is always being
//                                 written; says "writing" once it has begun. It
//                                 runs until it is killed.
//   faulthelper host [--read-only] <name>...
//                                 hosts a framework as an application would: init,
//                                 the extension files, start, a call of the supplier's
//                                 item, then quits through the event loop. Prints the
//                                 state of every plug-in, the load queue and the
//                                 reasons why each <name> does not run. With
//                                 --read-only it obeys file modes even as root.

#include "dacoverride.h"
#include "plugins/src/pluginlog.h"

#include <extension/extensiondata.h>
#include <extension/extensionfileparser.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <framework/pluginframework.h>
#include <core/pluginframeworkconfig.h>
#include <plugin/pluginmanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QThreadPool>
#include <QtCore/QTimer>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtCore/QTextStream>

#include <cstdio>
#include <iostream>
#include <string>

using namespace ExtensionSystem;

namespace {

void say(const char *line)
{
    std::fprintf(stdout, "%s\n", line);
    std::fflush(stdout);
}

void quiet(QtMsgType, const QMessageLogContext &, const QString &) { }

int holdLock(const QString &path)
{
    int result = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("faulthelper.lock"));
        db.setDatabaseName(path);
        QSqlQuery query(db);
        if (!db.open() || !query.exec(QStringLiteral("BEGIN EXCLUSIVE"))) {
            std::fprintf(stderr, "cannot lock %s: %s\n", qPrintable(path), qPrintable(db.lastError().text()));
            return 1;
        }
        say("locked");
        std::string line;
        std::getline(std::cin, line); // until the test lets go
        if (!query.exec(QStringLiteral("ROLLBACK")))
            result = 2;
        query.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("faulthelper.lock"));
    return result;
}

int keepWriting()
{
    qInstallMessageHandler(quiet);
    PluginFramework framework;
    framework.init();
    framework.start();
    auto *manager = framework.findChild<Internal::ExtensionManager *>();
    auto *parser = framework.findChild<Internal::ExtensionFileParser *>();
    if (!manager || !parser)
        return 1;
    int written = 0;
    QObject::connect(parser, &Internal::ExtensionFileParser::extensionFound, [&written] { ++written; });

    QStringList files;
    const QDir plugins = PluginFrameworkConfig::pluginsDir();
    for (const QString &directory : plugins.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString file = plugins.absoluteFilePath(directory + QStringLiteral("/extension.xml"));
        if (QFile::exists(file))
            files << file;
    }
    if (files.isEmpty())
        return 1;

    say("writing");
    QDateTime stamp = QDateTime::currentDateTime();
    for (;;) {
        // A new time stamp makes every file count as changed, so each is parsed
        // and its rows are replaced in one transaction.
        stamp = stamp.addSecs(1);
        const int before = written;
        for (const QString &path : qAsConst(files)) {
            QFile file(path);
            if (file.open(QIODevice::ReadWrite))
                file.setFileTime(stamp, QFileDevice::FileModificationTime);
            manager->parseExtensionFile(path);
        }
        while (written - before < files.size())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

int host(QStringList names)
{
    qInstallMessageHandler(quiet);
    if (names.value(0) == QLatin1String("--read-only")) {
        names.removeFirst();
        if (!setDacOverride(false))
            return 3;
    }
    QTextStream out(stdout);
    {
        PluginFramework framework;
        framework.init();
        // The announced extension files are looked at on the next turn of the
        // loop and parsed on the pool; both are done before anything is started.
        QCoreApplication::processEvents();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        framework.start();

        auto *manager = framework.findChild<PluginManager *>();
        auto *extensions = framework.findChild<Internal::ExtensionManager *>();
        ExtensionPoint *point =
                extensions ? extensions->pointAdmin()->findExtensionPoint(QStringLiteral("test.point")) : nullptr;
        ExtensionData *item = point ? point->extensionData(QStringLiteral("supplier.action")) : nullptr;
        const QString argument = QStringLiteral("matrix");
        out << "item: " << (item ? item->active(Q_ARG(QString, argument)) : -1) << '\n';

        const QList<PluginInfo> infos = manager->pluginInfos();
        for (const PluginInfo &info : infos)
            out << "state: " << info.symbolic() << ' ' << info.currentState() << '\n';
        out << "queue: " << manager->loadQueue().join(QLatin1Char(' ')) << '\n';
        for (const QString &name : qAsConst(names)) {
            const QList<PluginProblem> problems = manager->problems(name);
            for (const PluginProblem &problem : problems)
                out << "problem: " << name << ' ' << problem.reason() << ' ' << problem.text() << '\n';
        }
        out.flush();
        // Quitting stops the plug-ins, as in any host.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        out << "log: " << qApp->property(ES_TEST_PLUGIN_LOG).toStringList().join(QLatin1Char(' ')) << '\n';
    }
    out << "exit\n";
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.value(1) == QLatin1String("lock") && arguments.size() == 3)
        return holdLock(arguments.at(2));
    if (arguments.value(1) == QLatin1String("write"))
        return keepWriting();
    if (arguments.value(1) == QLatin1String("host"))
        return host(arguments.mid(2));
    std::fprintf(stderr, "usage: faulthelper lock <database> | write | host [--read-only] <name>...\n");
    return 64;
}
