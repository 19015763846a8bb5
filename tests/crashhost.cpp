// SPDX-License-Identifier: BSD-3-Clause
// A host for tst_crashsafety, run as a child process beside it so that it shares
// its plugins/ and config/ and may die. What the host sees goes to stdout:
//
//   quarantined: <plugin> <phase> <count> <hang seconds> <text>   one per plug-in
//   previous: <plugin> <phase> <text>, or previous: none
//   caught: <what>                a start() left by an exception the host caught
//   state: <name> <state>         each plug-in of the load queue and each <name>
//   problem: <name> <reason> <text>
//   log: <what the plug-ins did>
//   exit
//
//   crashhost [--watchdog <ms>] [--catch] [--on-demand] [--item] [--release <name>]
//             [--obey-modes] <name>...
//
// --on-demand starts only ext.host and calls the crash.action item, so that its
// plug-in starts on demand; --item calls it after start(). --obey-modes makes
// root obey file modes, for a read-only config/.

#include "dacoverride.h"
#include "plugins/src/pluginlog.h"

#include <extension/extensiondata.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <framework/pluginframework.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>

#include <exception>

using namespace ExtensionSystem;

namespace {

QTextStream out(stdout);

void callItem(PluginFramework &framework)
{
    auto *extensions = framework.findChild<Internal::ExtensionManager *>();
    ExtensionPoint *point = extensions->pointAdmin()->findExtensionPoint(QStringLiteral("test.point"));
    ExtensionData *item = point ? point->extensionData(QStringLiteral("crash.action")) : nullptr;
    out << "item: " << (item ? "called" : "missing") << '\n';
    out.flush();
    if (item)
        item->active();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    const auto option = [&arguments](const char *name) { return arguments.removeAll(QLatin1String(name)) > 0; };
    const auto value = [&arguments](const char *name) {
        const int at = arguments.indexOf(QLatin1String(name));
        if (at < 0 || at + 1 >= arguments.size())
            return QString();
        const QString found = arguments.at(at + 1);
        arguments.erase(arguments.begin() + at, arguments.begin() + at + 2);
        return found;
    };
    const QString watchdog = value("--watchdog");
    const QString release = value("--release");
    const bool catching = option("--catch");
    const bool onDemand = option("--on-demand");
    const bool item = option("--item");
    if (option("--obey-modes") && !setDacOverride(false))
        return 64;

    {
        PluginFramework framework;
        if (!watchdog.isEmpty())
            framework.setHangWatchdog(watchdog.toInt());
        QEventLoop filesRead;
        QObject::connect(&framework, &PluginFramework::extensionFilesReady, &filesRead, &QEventLoop::quit);
        framework.init();
        auto *manager = framework.findChild<PluginManager *>();
        const QList<PluginCrash> quarantined = manager->quarantinedPlugins();
        for (const PluginCrash &crash : quarantined)
            out << "quarantined: " << crash.plugin() << ' ' << crash.phase() << ' ' << crash.count() << ' '
                << crash.hangSeconds() << ' ' << crash.text() << '\n';
        const PluginCrash previous = manager->previousCrash();
        if (previous.isNull())
            out << "previous: none\n";
        else
            out << "previous: " << previous.plugin() << ' ' << previous.phase() << ' ' << previous.text() << '\n';
        if (!release.isEmpty())
            out << "release: " << (manager->releasePlugin(release) ? "done" : "refused") << '\n';
        out.flush();
        filesRead.exec();

        if (onDemand) {
            manager->start(QStringLiteral("ext.host"));
            callItem(framework);
        } else if (catching) {
            // Only a host that catches unwinds the stack: an exception nobody
            // catches ends the process where it was thrown.
            try {
                framework.start();
            } catch (const std::exception &exception) {
                out << "caught: " << exception.what() << '\n';
            }
        } else {
            framework.start();
        }
        if (item)
            callItem(framework);

        QStringList names = manager->loadQueue() + arguments;
        names.removeDuplicates();
        for (const QString &name : qAsConst(names)) {
            const Plugin *plugin = manager->find(name);
            out << "state: " << name << ' ' << (plugin ? plugin->state() : 0) << '\n';
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
