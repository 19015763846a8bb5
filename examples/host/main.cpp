// SPDX-License-Identifier: BSD-3-Clause
// The example host: creates the framework, runs init(), waits until the extension
// files are in, runs start(), prints what the framework made of the plug-ins beside
// it, activates the extension commands, and quits; stop() then runs through
// aboutToQuit.
//
//   es-demo-host [--trace <file>] [--profile]
//
// --trace writes the framework's timeline as a Chrome trace (open it in Perfetto or
// chrome://tracing); --profile prints a table of the plug-ins by the time they took.

#include "../plugins/common/demo.h"

#include <ExtensionSystem/PluginEvent>
#include <ExtensionSystem/PluginFramework>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/PluginCrash>
#include <ExtensionSystem/PluginInfo>
#include <ExtensionSystem/PluginManager>
#include <ExtensionSystem/PluginProblem>
#include <ExtensionSystem/ServiceManager>
#include <ExtensionSystem/ServiceProperty>
#include <ExtensionSystem/ServiceReference>

#include <ExtensionSystem/Timeline>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QMutex>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>

#include <algorithm>

using namespace ExtensionSystem;

namespace {

QFile *logFile = nullptr;
QMutex logMutex;

// The framework's debug output goes to demo-host.log. Parse tasks write on pool
// threads, two at a time: one at a time here.
void toLogFile(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QMutexLocker locker(&logMutex);
    if (logFile) {
        logFile->write(message.toUtf8());
        logFile->write("\n");
    }
    // A plug-in that hangs is told on the terminal too: the user waits for it.
    if ((type != QtDebugMsg && type != QtInfoMsg) || message.startsWith(QLatin1String("[Watchdog]")))
        QTextStream(stderr) << message << '\n';
}

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

void heading(const QString &title)
{
    out() << '\n' << "== " << title << '\n';
    out().flush();
}

QString stateName(int state)
{
    switch (state) {
    case PluginInfo::Uninstalled:
        return QStringLiteral("Uninstalled");
    case PluginInfo::Installed:
        return QStringLiteral("Installed");
    case PluginInfo::Resolved:
        return QStringLiteral("Resolved");
    case PluginInfo::Starting:
        return QStringLiteral("Starting");
    case PluginInfo::Stopping:
        return QStringLiteral("Stopping");
    case PluginInfo::Active:
        return QStringLiteral("Active");
    default:
        return QStringLiteral("-");
    }
}

QString policyName(int policy)
{
    return PluginFrameworkConfig::policyName(PluginFrameworkConfig::StartupPolicy(policy));
}

void printPlugins(PluginManager *manager)
{
    heading(QStringLiteral("Plug-ins"));
    out() << QStringLiteral("%1 %2 %3 %4 %5\n")
                     .arg(QStringLiteral("symbolic"), -15)
                     .arg(QStringLiteral("version"), -8)
                     .arg(QStringLiteral("state"), -11)
                     .arg(QStringLiteral("policy"), -9)
                     .arg(QStringLiteral("dependencies: required version (flag recorded at installation; now)"));
    const QList<PluginInfo> infos = manager->pluginInfos();
    for (const PluginInfo &info : infos) {
        QStringList dependencies;
        const auto map = info.dependency();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            // The flag is a snapshot taken before the load queue looked at the plug-in.
            const bool inQueue = manager->loadQueue().contains(it.key());
            dependencies << QStringLiteral("%1 %2 (%3; %4)")
                                    .arg(it.key(), it.value().first,
                                         it.value().second ? QStringLiteral("resolved")
                                                           : QStringLiteral("not resolved"),
                                         inQueue ? QStringLiteral("provider in queue")
                                                 : QStringLiteral("provider missing"));
        }
        const bool refused = !manager->find(info.symbolic());
        out() << QStringLiteral("%1 %2 %3 %4 %5\n")
                         .arg(info.symbolic(), -15)
                         .arg(info.version(), -8)
                         .arg(refused ? QStringLiteral("refused") : stateName(info.currentState()), -11)
                         .arg(policyName(info.startupPolicy()), -9)
                         .arg(dependencies.isEmpty() ? QStringLiteral("none")
                                                     : dependencies.join(QStringLiteral(", ")));
    }
    out() << "load queue (start order): " << manager->loadQueue().join(QStringLiteral(" -> ")) << '\n';
    // The framework says nothing on its own about a plug-in that does not run; asked, it says why.
    for (const PluginInfo &info : infos) {
        const QList<PluginProblem> problems = manager->problems(info.symbolic());
        for (const PluginProblem &problem : problems)
            out() << "why " << info.symbolic() << " does not run: " << problem.text() << '\n';
    }
    out().flush();
}

void printServices(ServiceManager *services)
{
    heading(QStringLiteral("Services"));
    for (const char *clazz : {"demo.IGreeter", "demo.IShell"}) {
        const QList<ServiceReference> references = services->findServiceReferences(QString::fromLatin1(clazz), {});
        for (const ServiceReference &reference : references) {
            const ServiceProperty property = reference.serviceProperty();
            out() << QStringLiteral("%1 from %2: id %3, ranking %4, factory %5\n")
                             .arg(QString::fromLatin1(clazz), reference.plugin())
                             .arg(property.serviceId())
                             .arg(property.ranking())
                             .arg(property.isFactory() ? QStringLiteral("yes") : QStringLiteral("no"));
        }
        if (references.isEmpty())
            out() << clazz << ": none\n";
    }
    out().flush();
}

// A plug-in in whose loading or start() the previous run died is not loaded
// again until it is fixed or released: the user is told which, and how.
void printQuarantine(PluginManager *manager)
{
    const QList<PluginCrash> quarantined = manager->quarantinedPlugins();
    const PluginCrash previous = manager->previousCrash();
    if (quarantined.isEmpty() && previous.isNull())
        return;
    heading(QStringLiteral("Crashes"));
    for (const PluginCrash &crash : quarantined) {
        out() << crash.text() << '\n'
              << "  to load it again, install a fixed build or run: es-inspect --release " << crash.plugin() << ' '
              << QCoreApplication::applicationDirPath() << '\n';
    }
    if (!previous.isNull() && !previous.quarantines())
        out() << "the previous run ended inside a plug-in's code: " << previous.text() << '\n';
    out().flush();
}

PluginContext *contextOf(PluginFramework *framework, const QString &symbolic)
{
    const QList<PluginContext *> contexts = framework->findChildren<PluginContext *>();
    for (PluginContext *context : contexts) {
        if (context->symbolic() == symbolic)
            return context;
    }
    return nullptr;
}

void printCommands(IShell *shell)
{
    heading(QStringLiteral("Extension point demo.commands"));
    const QStringList commands = shell->commands();
    for (const QString &command : commands) {
        const QStringList fields = command.split(QLatin1Char('|'));
        out() << QStringLiteral("%1 \"%2\" from %3, %4\n")
                         .arg(fields.value(0), fields.value(1), fields.value(2), fields.value(3));
    }
    if (commands.isEmpty())
        out() << "no items\n";
    out().flush();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Runs the example plug-ins and reports what they did."));
    options.addHelpOption();
    const QCommandLineOption traceOption(QStringLiteral("trace"),
                                         QStringLiteral("Write the startup timeline to <file> as a Chrome trace."),
                                         QStringLiteral("file"));
    const QCommandLineOption profileOption(QStringLiteral("profile"),
                                           QStringLiteral("Print the plug-ins sorted by the time they took."));
    options.addOption(traceOption);
    options.addOption(profileOption);
    options.process(app);

    // Static: the framework still logs while it is destroyed, after main's locals.
    static QFile log(QCoreApplication::applicationDirPath() + QStringLiteral("/demo-host.log"));
    if (log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        logFile = &log;
    qInstallMessageHandler(toLogFile);

    out() << "ExtensionSystem example host, " << QDateTime::currentDateTime().toString(Qt::ISODate) << '\n'
          << "plug-ins below " << QCoreApplication::applicationDirPath() << "/plugins\n"
          << "framework debug output goes to " << log.fileName() << '\n';

    PluginFramework framework;
    // A start() that blocks for 10 s is named on the terminal, again every 10 s.
    framework.setHangWatchdog(10000);
    auto *manager = framework.findChild<PluginManager *>();
    auto *services = framework.findChild<ServiceManager *>();
    const QMetaObject::Connection errorPrinter =
            QObject::connect(manager, &PluginManager::errorOccured, [](int error, const QString &text) {
                out() << "    ! plug-in manager error " << error << ": " << text << '\n';
                out().flush();
            });
    QStringList startedOnDemand;
    bool onDemand = false;
    QObject::connect(&framework, &PluginFramework::pluginChanged, [&](const PluginEvent &event) {
        if (onDemand && event.action() == PluginEvent::Active)
            startedOnDemand << event.symbolic();
    });

    // Extension files are read after the scan, on the event loop and a pool
    // thread. Started only once they are in, the points see this run's files,
    // an edited extension.xml included.
    heading(QStringLiteral("init(), the extension files, start()"));
    QStringList parsedFiles;
    QStringList storedFiles;
    QStringList failedFiles;
    QEventLoop extensionFiles;
    QObject::connect(&framework, &PluginFramework::extensionFilesReady, &extensionFiles,
                     [&](const QStringList &parsed, const QStringList &stored, const QStringList &failed) {
                         parsedFiles = parsed;
                         storedFiles = stored;
                         failedFiles = failed;
                         extensionFiles.quit();
                     });
    framework.init();
    printQuarantine(manager);
    if (framework.state() == PluginFramework::FrameworkInitialized)
        extensionFiles.exec();
    framework.start();

    PluginContext *shellContext = contextOf(&framework, QStringLiteral("demo.shell"));
    IShell *shell = nullptr;
    QObject *shellObject = nullptr;
    const QList<ServiceReference> shells = services->findServiceReferences(QStringLiteral("demo.IShell"), {});
    if (shellContext && !shells.isEmpty()) {
        // A host has no context of its own: it calls the shell through the
        // context of the plug-in that owns it.
        shellObject = shellContext->getService(shells.first());
        shell = qobject_cast<IShell *>(shellObject);
    }
    printPlugins(manager);
    printServices(services);
    heading(QStringLiteral("Extension files"));
    if (parsedFiles.isEmpty())
        out() << "parsed in this run: none\n";
    for (const QString &file : qAsConst(parsedFiles))
        out() << "parsed in this run: " << file << '\n';
    for (const QString &file : qAsConst(storedFiles))
        out() << "unchanged, from extension.dat: " << file << '\n';
    for (const QString &file : qAsConst(failedFiles))
        out() << "could not be parsed: " << file << '\n';
    out().flush();

    if (shell) {
        printCommands(shell);

        heading(QStringLiteral("Start on demand"));
        out() << "stopping demo.export and demo.tools, then activating their commands\n";
        out().flush();
        manager->stop(QStringLiteral("demo.export"));
        manager->stop(QStringLiteral("demo.tools"));
        onDemand = true;
        // Last first: demo.export then runs, and hears the customised event the tools send.
        QStringList commands = shell->commands();
        std::reverse(commands.begin(), commands.end());
        for (const QString &command : qAsConst(commands)) {
            const QString id = command.section(QLatin1Char('|'), 0, 0);
            out() << "activate " << id << '\n';
            out().flush();
            shell->run(id, QStringLiteral("Plug-ins meet here"));
        }
        onDemand = false;
        out() << "started on demand: "
              << (startedOnDemand.isEmpty() ? QStringLiteral("none") : startedOnDemand.join(QStringLiteral(", ")))
              << '\n';
        printCommands(shell);
        shellContext->ungetService(shells.first(), shellObject);
    } else {
        out() << "the shell service is not there: see demo-host.log\n";
    }

    heading(QStringLiteral("Quit: stop() runs through aboutToQuit, which is connected twice"));
    out().flush();
    QTimer::singleShot(0, &app, &QCoreApplication::quit);
    int result = app.exec();
    printPlugins(manager);

    // Read after quitting, so that the stop sequence is in too.
    const Timeline timeline = framework.timeline();
    if (options.isSet(profileOption)) {
        heading(QStringLiteral("Profile"));
        out() << timeline.profileTable();
        out().flush();
    }
    if (options.isSet(traceOption)) {
        QString why;
        if (timeline.writeTrace(options.value(traceOption), &why)) {
            out() << "trace written to " << options.value(traceOption)
                  << ": open it at https://ui.perfetto.dev or chrome://tracing\n";
        } else {
            QTextStream(stderr) << why << '\n';
            result = 1;
        }
        out().flush();
    }
    // The destructor runs the stop sequence once more; its reports go to the log only.
    QObject::disconnect(errorPrinter);
    return result;
}
