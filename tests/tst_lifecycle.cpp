// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <event/eventmanager.h>
#include <event/frameworkevent.h>
#include <event/iframeworklistener.h>
#include <event/ipluginlistener.h>
#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/plugincontext.h>
#include <plugin/pluginmanager.h>
#include <plugin/pluginmetadata.h>

#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

EventManager *eventManagerOf(PluginFramework *framework)
{
    return frameworkContext(framework)->eventManager;
}

struct StateRecorder : IFrameworkListener
{
    void frameworkChanged(const FrameworkEvent &event) override
    {
        transitions << QStringLiteral("%1>%2").arg(event.prevAction()).arg(event.action());
        // A listener reads the state the event announces: it is taken before it is told.
        if (framework && framework->state() != int(event.action()))
            lagging << QStringLiteral("%1 while told %2").arg(framework->state()).arg(event.action());
    }
    const PluginFramework *framework = nullptr;
    QStringList transitions;
    QStringList lagging;
};

struct PluginEventRecorder : IPluginListener
{
    void pluginChanged(const PluginEvent &event) override
    {
        events << QStringLiteral("%1 %2>%3 %4/%5")
                          .arg(event.symbolic())
                          .arg(event.prevAction())
                          .arg(event.action())
                          .arg(event.initIndex())
                          .arg(event.pluginSize());
    }
    QStringList events;
};

class Receiver : public QObject
{
    Q_OBJECT
public:
    QStringList received;
public slots:
    void onPlugin(const ExtensionSystem::PluginEvent &event) { received << event.symbolic(); }
};

} // namespace

class tst_Lifecycle : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void dependencyChain();
    void waitersEnterNewestFirst();
    void stopAProviderOfADiamond();
    void frameworkStates();
    void quitRunsStopTwice();
    void missingPluginsDirectory();
    void blackAndWhiteLists();
    void uninstallAndReinstall();
    void watcherInstallsNewDirectory();
    void pluginContextOperations();
};

void tst_Lifecycle::dependencyChain()
{
    // Directory order c, b, a: the dependants are installed before what they need.
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("1_c"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("3_a"));

    PluginFramework framework;
    PluginEventRecorder recorder;
    eventManagerOf(&framework)->registerListener(QStringLiteral("test"), &recorder);
    auto *manager = framework.findChild<PluginManager *>();
    QVERIFY(manager);
    QSignalSpy queueSpy(manager, &PluginManager::loadingQueueChanged);
    // Counted, not spied: the library registers PluginEvent with the first plug-in context.
    int forwarded = 0;
    connect(&framework, &PluginFramework::pluginChanged, this, [&forwarded] { ++forwarded; });

    framework.init();
    QCOMPARE(framework.state(), int(PluginFramework::FrameworkInitialized));
    // A resolves at once and pulls b, then c, in behind it; its own 1>2 comes last.
    QCOMPARE(recorder.events, QStringList({"chain.c 1>2 1/3", "chain.b 1>2 2/3", "chain.a 2>4 3/3", "chain.b 2>4 3/3",
                                           "chain.c 2>4 3/3", "chain.a 1>2 3/3"}));
    QCOMPARE(forwarded, recorder.events.size());
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b", "chain.c"}));
    QCOMPARE(queueSpy.count(), 1);
    QCOMPARE(queueSpy.at(0).at(0).toStringList(), manager->loadQueue());
    // The snapshot of a keeps the 2 that was reported last.
    QCOMPARE(int(manager->pluginInfo(QStringLiteral("chain.a")).currentState()), int(PluginInfo::Installed));
    QCOMPARE(int(manager->pluginInfo(QStringLiteral("chain.c")).currentState()), int(PluginInfo::Resolved));

    recorder.events.clear();
    // The queue is written ("a", "b") whichever Qt the library is built with.
    QTest::ignoreMessage(QtDebugMsg, R"(START: ("chain.a", "chain.b", "chain.c"))");
    framework.start();
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:chain.b", "start:chain.c"}));
    // After the scan the index is the position in the queue.
    QCOMPARE(recorder.events.mid(0, 2), QStringList({"chain.a 4>8 0/3", "chain.a 8>32 0/3"}));
    QCOMPARE(recorder.events.last(), QStringLiteral("chain.c 8>32 2/3"));

    clearPluginLog();
    manager->stop(QStringLiteral("chain.a"));
    QCOMPARE(pluginLog(), QStringList({"stop:chain.c", "stop:chain.b", "stop:chain.a"}));
    clearPluginLog();
    manager->start(QStringLiteral("chain.c"));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:chain.b", "start:chain.c"}));
    clearPluginLog();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    manager->start(QStringLiteral("chain.c"));
    QVERIFY(pluginLog().isEmpty());
    QCOMPARE(errors.count(), 0);

    framework.stop();
    QCOMPARE(pluginLog(), QStringList({"stop:chain.c", "stop:chain.b", "stop:chain.a"}));
    QCOMPARE(errors.count(), 0);
    framework.stop();
    QCOMPARE(errors.count(), 3);
    const QStringList expected = {QStringLiteral("chain.c"), QStringLiteral("chain.b"), QStringLiteral("chain.a")};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(errors.at(i).at(0).toInt(), int(PluginManager::NotActiveError));
        QCOMPARE(errors.at(i).at(1).toString(),
                 QStringLiteral("Cannot stop plugin: %1, that is not actived").arg(expected.at(i)));
    }
    eventManagerOf(&framework)->unregisterListener(&recorder);
}

void tst_Lifecycle::waitersEnterNewestFirst()
{
    // chain.b and then diamond.right wait for chain.a: when it comes, the wait
    // recorded last enters first, and the start follows the queue.
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("1_b"));
    deployPlugin(QStringLiteral("diamond.right"), QStringLiteral("2_right"));
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("3_a"));
    PluginFramework framework;
    framework.init();
    auto *manager = framework.findChild<PluginManager *>();
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "diamond.right", "chain.b"}));
    framework.start();
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:diamond.right", "start:chain.b"}));
}

void tst_Lifecycle::frameworkStates()
{
    QDir().mkpath(pluginsDir());
    StateRecorder states;
    {
        PluginFramework framework;
        eventManagerOf(&framework)->registerListener(QStringLiteral("test"), &states);
        states.framework = &framework;
        QSignalSpy stopped(&framework, &PluginFramework::stopped);
        QSignalSpy stateChanged(&framework, &PluginFramework::stateChanged);
        framework.stop();
        QCOMPARE(states.transitions, QStringList({"0>4", "4>2"}));
        QCOMPARE(framework.state(), int(PluginFramework::FrameworkInitialized));
        QCOMPARE(stopped.count(), 1);

        states.transitions.clear();
        framework.exit(); // 2 is not above 2
        QVERIFY(states.transitions.isEmpty());
        framework.init();
        framework.start();
        QCOMPARE(states.transitions, QStringList({"2>1", "1>2", "2>8", "8>16"}));
        // A second init is not refused: it scans again and goes through 1 to 2.
        states.transitions.clear();
        framework.init();
        QCOMPARE(states.transitions, QStringList({"16>1", "1>2"}));
        framework.start();
        states.transitions.clear();
        framework.exit();
        QCOMPARE(states.transitions, QStringList({"16>4", "4>2"}));
        QCOMPARE(stateChanged.count(), 0); // state changes go out as events only
        QCOMPARE(states.lagging, QStringList());
        states.framework = nullptr;
        states.transitions.clear();
    }
    // Destruction runs the stop sequence.
    QCOMPARE(states.transitions, QStringList({"2>4", "4>2"}));
}

void tst_Lifecycle::quitRunsStopTwice()
{
    deployPlugin(QStringLiteral("chain.a"));
    PluginFramework framework;
    StateRecorder states;
    eventManagerOf(&framework)->registerListener(QStringLiteral("test"), &states);
    framework.init();
    framework.start();
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    QSignalSpy stopped(&framework, &PluginFramework::stopped);
    states.transitions.clear();

    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    qApp->exec();
    QCOMPARE(stopped.count(), 2);
    QCOMPARE(states.transitions, QStringList({"16>4", "4>2", "2>4", "4>2"}));
    // The second run finds the plug-in stopped already.
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotActiveError));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "stop:chain.a"}));
    eventManagerOf(&framework)->unregisterListener(&states);
}

void tst_Lifecycle::missingPluginsDirectory()
{
    PluginFramework framework;
    QSignalSpy errors(&framework, &PluginFramework::errorOccured);
    QSignalSpy initialized(&framework, &PluginFramework::initialized);
    framework.init();
    QCOMPARE(framework.state(), int(PluginFramework::FrameworkUninitialized));
    QCOMPARE(framework.error(), int(PluginFramework::NoError));
    QCOMPARE(framework.errorString(), QStringLiteral("No Error"));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginFramework::PluginsDirMissingError));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("The Plugins Directory not exists"));
    QCOMPARE(initialized.count(), 0);

    // Installing one file needs no init.
    const QString file = deployPlugin(QStringLiteral("chain.a"));
    framework.installPlugin(file);
    auto *manager = framework.findChild<PluginManager *>();
    QVERIFY(manager->find(QStringLiteral("chain.a")));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Resolved));
}

void tst_Lifecycle::blackAndWhiteLists()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("3_c"));
    QVERIFY(writeFile(configFile(), "[PluginManager]\nloadEnabledPluginOnly=true\n"
                                    "[Plugin]\nchain.a=enable\nchain.b= ENABLE \nchain.c=disable\n"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    QVERIFY(framework.loadEnabledPluginOnly());
    framework.init();

    QVERIFY(manager->find(QStringLiteral("chain.a")));
    QVERIFY(manager->find(QStringLiteral("chain.b"))); // trimmed and folded: enabled
    QVERIFY(!manager->find(QStringLiteral("chain.c")));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::BlacklistedError));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Plugin: 'chain.c' in the blacklist, cannot install it!"));
    // The refused plug-in stays visible with its policy.
    const PluginInfo refused = manager->pluginInfo(QStringLiteral("chain.c"));
    QCOMPARE(refused.symbolic(), QStringLiteral("chain.c"));
    QCOMPARE(refused.startupPolicy(), int(PluginFrameworkConfig::PolicyDisable));
    QCOMPARE(manager->pluginInfos().size(), 3);

    // Not listed while only enabled plug-ins load: refused with error 10.
    resetApplicationDirectory();
    deployPlugin(QStringLiteral("chain.a"));
    deployPlugin(QStringLiteral("translated"));
    QVERIFY(writeFile(configFile(), "[PluginManager]\nloadEnabledPluginOnly=true\n[Plugin]\nchain.a=enable\n"));
    PluginFramework second;
    auto *secondManager = second.findChild<PluginManager *>();
    QSignalSpy secondErrors(secondManager, &PluginManager::errorOccured);
    second.init();
    QVERIFY(secondManager->find(QStringLiteral("chain.a")));
    QVERIFY(!secondManager->find(QStringLiteral("translated")));
    QCOMPARE(secondErrors.count(), 1);
    QCOMPARE(secondErrors.at(0).at(0).toInt(), int(PluginManager::NotWhitelistedError));
}

void tst_Lifecycle::stopAProviderOfADiamond()
{
    // chain.a below chain.b and diamond.right, which diamond.top both needs.
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    deployPlugin(QStringLiteral("diamond.right"), QStringLiteral("3_right"));
    deployPlugin(QStringLiteral("diamond.top"), QStringLiteral("4_top"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    framework.start();
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b", "diamond.right", "diamond.top"}));
    clearPluginLog();
    QSignalSpy errors(manager, &PluginManager::errorOccured);

    // The top stands in the stop list once for each path to chain.a: it stops
    // once, and the second stop is refused, once.
    manager->stop(QStringLiteral("chain.a"));
    QCOMPARE(pluginLog(), QStringList({"stop:diamond.top", "stop:diamond.right", "stop:chain.b", "stop:chain.a"}));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotActiveError));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Cannot stop plugin: diamond.top, that is not actived"));
    for (const char *name : {"chain.a", "chain.b", "diamond.right", "diamond.top"})
        QCOMPARE(manager->find(QString::fromLatin1(name))->state(), int(PluginInfo::Resolved));

    // Starting the top again brings up both paths below it, each once.
    clearPluginLog();
    manager->start(QStringLiteral("diamond.top"));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:chain.b", "start:diamond.right", "start:diamond.top"}));
}

void tst_Lifecycle::uninstallAndReinstall()
{
    const QString file = deployPlugin(QStringLiteral("chain.a"));
    deployPlugin(QStringLiteral("chain.b"));
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    framework.start();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    QSignalSpy uninstalled(manager, &PluginManager::uninstalled);
    Plugin *old = manager->find(QStringLiteral("chain.a"));

    clearPluginLog();
    manager->uninstall(QStringLiteral("chain.a"));
    // Dependants are stopped first.
    QCOMPARE(pluginLog(), QStringList({"stop:chain.b", "stop:chain.a"}));
    QCOMPARE(uninstalled.count(), 1);
    QVERIFY(!manager->find(QStringLiteral("chain.a")));
    QVERIFY(manager->pluginInfo(QStringLiteral("chain.a")).symbolic().isEmpty());
    QCOMPARE(manager->findByFile(QFileInfo(file).filePath()), old);
    // The name stays in the queue.
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b"}));

    manager->install(QFileInfo(file));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::AlreadyInstalledError));
    QCOMPARE(errors.at(0).at(1).toString(),
             QStringLiteral("The specified plugin has been installed, file: %1").arg(file));
    QVERIFY(!manager->find(QStringLiteral("chain.a")));

    // The stale queue entry: start passes over it, stop reports it as invalid.
    errors.clear();
    framework.stop();
    QCOMPARE(errors.count(), 2);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotActiveError)); // chain.b is already stopped
    QCOMPARE(errors.at(1).at(0).toInt(), int(PluginManager::InvalidPluginError));
    QCOMPARE(errors.at(1).at(1).toString(), QStringLiteral("Cannot stop plugin, that is invalid"));

    errors.clear();
    manager->uninstall(QStringLiteral("nothing"));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("The plugin: nothing is not installed"));
}

void tst_Lifecycle::watcherInstallsNewDirectory()
{
    deployPlugin(QStringLiteral("chain.a"));
    PluginFramework framework;
    QVERIFY(framework.watchingPluginDirEnabled());
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    framework.start();

    // Prepared beside the plug-ins directory and moved in at once, so that the
    // scan never sees a half-copied directory.
    const QString staging = appDir() + QStringLiteral("/staging");
    QDir(staging).removeRecursively();
    QDir().mkpath(staging);
    QFile::copy(builtPlugin(QStringLiteral("chain.b")), staging + QStringLiteral("/chain.b" ES_TEST_LIBRARY_SUFFIX));
    QVERIFY(QDir().rename(staging, pluginsDir() + QStringLiteral("/chain.b")));

    QTRY_VERIFY(manager->find(QStringLiteral("chain.b")));
    QCOMPARE(manager->find(QStringLiteral("chain.b"))->state(), int(PluginInfo::Resolved));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Active));
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b"}));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a"}));
}

void tst_Lifecycle::pluginContextOperations()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    framework.start();
    PluginContext *context = manager->find(QStringLiteral("chain.a"))->pluginContext();
    QCOMPARE(context->symbolic(), QStringLiteral("chain.a"));
    QCOMPARE(context->resourcePath(QString()), QStringLiteral(":/chain.a/"));
    QCOMPARE(context->location(), QDir(pluginsDir() + QStringLiteral("/1_a")));
    QCOMPARE(context->metaData()->version(), QStringLiteral("1.0.0"));
    QCOMPARE(context->pluginInfos().size(), 2);
    QCOMPARE(context->pluginInfo(QStringLiteral("chain.b")).symbolic(), QStringLiteral("chain.b"));

    // A receiver tracked through the context hears plug-in events until untracked.
    Receiver receiver;
    context->trackPluginEvent(&receiver, SLOT(onPlugin(ExtensionSystem::PluginEvent)), Qt::DirectConnection);
    // An empty name means the plug-in itself, stopped with its dependants first.
    clearPluginLog();
    context->stopPlugin();
    QCOMPARE(pluginLog(), QStringList({"stop:chain.b", "stop:chain.a"}));
    QCOMPARE(receiver.received, QStringList({"chain.b", "chain.b", "chain.a", "chain.a"}));
    context->untrackEvent(&receiver, nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // startPlugin has no such default: an empty name is not installed.
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    context->startPlugin(QString());
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotInstalledError));
    context->startPlugin(QStringLiteral("chain.b"));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Active));
    QCOMPARE(receiver.received.size(), 4);

    // The policy of the plug-in itself is written now and counts at the next installation.
    context->setStartupPolicy(PluginFrameworkConfig::PolicyDisable);
    QCOMPARE(context->startupPolicy(), PluginFrameworkConfig::PolicyDisable);
    QCOMPARE(context->startupPolicy(QStringLiteral("chain.b")), PluginFrameworkConfig::PolicyUndefine);
    QCOMPARE(manager->pluginInfo(QStringLiteral("chain.a")).startupPolicy(), int(PluginFrameworkConfig::PolicyDisable));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Active));
    QSettings written(configFile(), QSettings::IniFormat);
    QCOMPARE(written.value(QStringLiteral("Plugin/chain.a")).toString(), QStringLiteral("disable"));
}

QTEST_MAIN(tst_Lifecycle)
#include "tst_lifecycle.moc"
