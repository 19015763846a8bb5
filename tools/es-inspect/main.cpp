// SPDX-License-Identifier: BSD-3-Clause
// es-inspect: says which plug-ins of an application directory the framework would
// resolve, in which order, and in plain words why the others would not.

#include "extensionlisting.h"
#include "inspector.h"
#include "report.h"

#include <ExtensionSystem/PluginFrameworkConstance>
#include <ExtensionSystem/PluginQuarantine>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QTextStream>

#include <cstdio>

namespace {

// The library and the plug-ins log their own progress with qDebug(); that is
// noise here, while warnings still reach stderr.
void messageHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

int usageError(const QString &message)
{
    QTextStream(stderr) << QCoreApplication::applicationName() << ": " << message << '\n'
                        << QObject::tr("Try '%1 --help'.").arg(QCoreApplication::applicationName()) << '\n';
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("es-inspect"));
    qInstallMessageHandler(messageHandler);

    QCommandLineParser parser;
    parser.setApplicationDescription(
            QObject::tr("Lists the plug-ins below <directory>/plugins with their metadata, says why each one that "
                        "would not resolve does not, and prints the load queue the framework would compute. "
                        "Reads only: no plug-in is started and no file is changed, but for --release, which "
                        "changes the quarantine list and nothing else.\n"
                        "Exit code: 0 when every plug-in resolves, 1 when one does not, 2 on bad usage; "
                        "with --release 0 when it released, 1 when it did not."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption program(QStringLiteral("program"),
                                     QObject::tr("Read config/<name>/ (default: the only directory in config/)."),
                                     QObject::tr("name"));
    const QCommandLineOption dot(QStringLiteral("dot"),
                                 QObject::tr("Print the dependency graph in Graphviz form instead of the report."));
    const QCommandLineOption extensions(QStringLiteral("extensions"),
                                        QObject::tr("Also list what extension.dat holds."));
    const QCommandLineOption release(QStringLiteral("release"),
                                     QObject::tr("Release the quarantined plug-in <name> (its symbolic name or its "
                                                 "library's base name), so that the next start loads it again. "
                                                 "Writes config/<program>/quarantine.ini, never config.ini."),
                                     QObject::tr("name"));
    parser.addOption(program);
    parser.addOption(dot);
    parser.addOption(extensions);
    parser.addOption(release);
    parser.addPositionalArgument(QStringLiteral("directory"),
                                 QObject::tr("The application directory: the one that holds plugins/ and config/."));

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(help) || parser.isSet(QStringLiteral("help-all")))
        parser.showHelp(0);
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1)
        return usageError(QObject::tr("give exactly one application directory"));
    if (parser.isSet(dot) && parser.isSet(extensions))
        return usageError(QObject::tr("--dot and --extensions cannot be combined"));

    const QDir applicationDir(positional.first());
    if (!applicationDir.exists())
        return usageError(QObject::tr("no such directory: %1").arg(positional.first()));
    if (!QDir(applicationDir.filePath(ExtensionSystem::PluginFrameworkConstance::PLUGIN_DIR)).exists())
        return usageError(QObject::tr("%1 holds no %2/ directory: not an application directory")
                                  .arg(positional.first(), ExtensionSystem::PluginFrameworkConstance::PLUGIN_DIR));

    const QString programName =
            parser.isSet(program) ? parser.value(program) : Inspector::defaultProgram(applicationDir);
    if (parser.isSet(release)) {
        if (parser.isSet(dot) || parser.isSet(extensions))
            return usageError(QObject::tr("--release cannot be combined with --dot or --extensions"));
        if (programName.isEmpty())
            return usageError(QObject::tr("name the program with --program: config/ does not hold exactly one"));
        QString why;
        const QString name = parser.value(release);
        ExtensionSystem::PluginQuarantine quarantine(applicationDir.absolutePath(), programName);
        if (!quarantine.release(name, &why)) {
            QTextStream(stderr) << QCoreApplication::applicationName() << ": " << why << '\n';
            return 1;
        }
        QTextStream(stdout) << QObject::tr("%1 released: the next start of %2 loads it again").arg(name, programName)
                            << '\n';
        return 0;
    }

    Inspector inspector(QDir(applicationDir.absolutePath()), programName);
    inspector.run();

    QTextStream out(stdout);
    const Report report(inspector);
    if (parser.isSet(dot)) {
        report.writeDot(out);
    } else {
        report.writeText(out);
        if (parser.isSet(extensions)) {
            out << '\n';
            const QString store = programName.isEmpty()
                                          ? QString()
                                          : applicationDir.absoluteFilePath(
                                                  ExtensionSystem::PluginFrameworkConstance::CONFIG_DIR
                                                  + QLatin1Char('/') + programName + QStringLiteral("/extension.dat"));
            ExtensionListing(store).write(out);
        }
    }
    out.flush();
    return inspector.allResolve() ? 0 : 1;
}
