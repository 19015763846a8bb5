// A second process for tst_faults.
//
//   faulthelper lock <database>   holds an exclusive SQLite lock on <database>,
//                                 says "locked", and lets go when stdin closes.
//   faulthelper write             hosts a framework beside this executable and has
//                                 it parse every plugins/*/extension.xml again and
//                                 again, so that extension.dat is always being
//                                 written; says "writing" once it has begun. It
//                                 runs until it is killed.

#include <extension/extensionfileparser.h>
#include <extension/extensionmanager.h>
#include <framework/pluginframework.h>
#include <framework/pluginframeworkconfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

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

void quiet(QtMsgType, const QMessageLogContext &, const QString &)
{
}

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

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.value(1) == QLatin1String("lock") && arguments.size() == 3)
        return holdLock(arguments.at(2));
    if (arguments.value(1) == QLatin1String("write"))
        return keepWriting();
    std::fprintf(stderr, "usage: faulthelper lock <database> | write\n");
    return 64;
}
