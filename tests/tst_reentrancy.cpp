// SPDX-License-Identifier: BSD-3-Clause
// Calls back into the framework from inside its own calls: a listener that
// uninstalls during a delivery, plug-ins that start plug-ins from their start,
// and an extension handler that uses another extension.

#include "testsupport.h"

#include <event/eventmanager.h>
#include <event/ipluginlistener.h>
#include <event/pluginevent.h>
#include <extension/extensiondata.h>
#include <extension/extensionhandler.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>

#include <QtCore/QPointer>
#include <QtTest>

#include <functional>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

// Records "name:from->to" of every plug-in event and may act on one.
struct Listener : IPluginListener
{
    void pluginChanged(const PluginEvent &event) override
    {
        const QString entry =
                QStringLiteral("%1:%2->%3").arg(event.symbolic()).arg(event.prevAction()).arg(event.action());
        events << entry;
        if (entry == trigger && action) {
            const auto run = std::move(action);
            action = nullptr; // once
            run();
        }
    }
    QStringList events;
    QString trigger;
    std::function<void()> action;
};

QStringList transitions(const QString &name, const QStringList &events)
{
    return events.filter(
            QRegularExpression(QStringLiteral("^") + QRegularExpression::escape(name) + QStringLiteral(":")));
}

class RelayHandler : public ExtensionHandler
{
public:
    using ExtensionHandler::ExtensionHandler;
    int active(QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        appendLog(QStringLiteral("relay:begin"));
        int result = -1;
        if (target) {
            const QString argument = QStringLiteral("from-relay");
            result = target->active(Q_ARG(QString, argument));
        }
        // Once more through its own item, from inside its own call.
        if (reenter-- > 0)
            extensionData()->active();
        appendLog(QStringLiteral("relay:end:%1").arg(result));
        return 5;
    }
    void dataChanged(const QString &, const QVariant &) override { }

    static void appendLog(const QString &entry) { qApp->setProperty("es.test.log", pluginLog() << entry); }

    ExtensionData *target = nullptr;
    int reenter = 0;
};

} // namespace

class tst_Reentrancy : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void cleanupTestCase() { resetApplicationDirectory(); }

    void listenerUninstallsDuringDelivery();
    void pluginsStartPluginsFromStart();
    void handlerUsesAnotherExtension();
};

void tst_Reentrancy::listenerUninstallsDuringDelivery()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("3_c"));

    {
        PluginFramework framework;
        auto *manager = framework.findChild<PluginManager *>();
        QSignalSpy errors(manager, &PluginManager::errorOccured);
        framework.init();
        // Registered last, so called first: while chain.c's 8->32 is delivered it
        // uninstalls chain.b, which stops chain.c and chain.b first.
        Listener recorder;
        Listener uninstaller;
        uninstaller.trigger = QStringLiteral("chain.c:8->32");
        uninstaller.action = [manager] { manager->uninstall(QStringLiteral("chain.b")); };
        frameworkContext(&framework)->eventManager->registerListener(QStringLiteral("test"), &recorder);
        frameworkContext(&framework)->eventManager->registerListener(QStringLiteral("test"), &uninstaller);
        QPointer<Plugin> b = manager->find(QStringLiteral("chain.b"));

        framework.start();
        // The nested deliveries are complete before the outer one goes on.
        QCOMPARE(recorder.events,
                 QStringList({"chain.a:4->8", "chain.a:8->32", "chain.b:4->8", "chain.b:8->32", "chain.c:4->8",
                              "chain.c:32->16", "chain.c:16->4", "chain.b:32->16", "chain.b:16->4", "chain.c:8->32"}));
        QCOMPARE(uninstaller.events.mid(uninstaller.events.indexOf("chain.c:8->32")),
                 QStringList({"chain.c:8->32", "chain.c:32->16", "chain.c:16->4", "chain.b:32->16", "chain.b:16->4"}));
        QCOMPARE(pluginLog(),
                 QStringList({"start:chain.a", "start:chain.b", "start:chain.c", "stop:chain.c", "stop:chain.b"}));
        QVERIFY(!manager->find(QStringLiteral("chain.b")));
        QCOMPARE(manager->find(QStringLiteral("chain.c"))->state(), int(PluginInfo::Resolved));
        QCOMPARE(errors.count(), 0);

        // The uninstalled plug-in goes with the next turn of the loop, silently.
        QVERIFY(b);
        const int before = recorder.events.size();
        QTRY_VERIFY(!b);
        QCOMPARE(recorder.events.size(), before);

        // Stop walks the queue, which still names chain.b.
        framework.stop();
        QCOMPARE(pluginLog().last(), QStringLiteral("stop:chain.a"));
        QCOMPARE(errors.count(), 2);
        QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotActiveError)); // chain.c, resolved
        QCOMPARE(errors.at(1).at(0).toInt(), int(PluginManager::InvalidPluginError)); // chain.b, gone
        frameworkContext(&framework)->eventManager->unregisterListener(&recorder);
        frameworkContext(&framework)->eventManager->unregisterListener(&uninstaller);
    }

    // Uninstalled while it is being started: its activator still runs, but the
    // manager has let it go, so its change to Active is told to nobody.
    clearPluginLog();
    {
        PluginFramework framework;
        auto *manager = framework.findChild<PluginManager *>();
        QSignalSpy errors(manager, &PluginManager::errorOccured);
        framework.init();
        Listener recorder;
        recorder.trigger = QStringLiteral("chain.c:4->8");
        recorder.action = [manager] { manager->uninstall(QStringLiteral("chain.c")); };
        frameworkContext(&framework)->eventManager->registerListener(QStringLiteral("test"), &recorder);
        QPointer<Plugin> c = manager->find(QStringLiteral("chain.c"));
        framework.start();
        QCOMPARE(transitions(QStringLiteral("chain.c"), recorder.events), QStringList({"chain.c:4->8"}));
        QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:chain.b", "start:chain.c"}));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Cannot stop plugin: chain.c, that is not actived"));
        QVERIFY(!manager->find(QStringLiteral("chain.c")));
        QTRY_VERIFY(!c);
        framework.stop();
        QCOMPARE(pluginLog().mid(3), QStringList({"stop:chain.b", "stop:chain.a"}));
        frameworkContext(&framework)->eventManager->unregisterListener(&recorder);
    }
}

void tst_Reentrancy::pluginsStartPluginsFromStart()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("starter"), QStringLiteral("2_starter"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("3_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("4_c"));
    deployPlugin(QStringLiteral("starter.self"), QStringLiteral("5_self"));
    deployPlugin(QStringLiteral("starter.ping"), QStringLiteral("6_ping"));
    deployPlugin(QStringLiteral("starter.pong"), QStringLiteral("7_pong"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    Listener recorder;
    frameworkContext(&framework)->eventManager->registerListener(QStringLiteral("test"), &recorder);
    QSignalSpy selfErrors(manager->find(QStringLiteral("starter.self")), &Plugin::errorOccured);
    QSignalSpy pingErrors(manager->find(QStringLiteral("starter.ping")), &Plugin::errorOccured);
    QSignalSpy managerErrors(manager, &PluginManager::errorOccured);

    framework.start();
    // starter starts chain.c, with chain.b before it, inside its own start;
    // starter.self asks for itself and starter.ping for starter.pong, which asks
    // for starter.ping again: a plug-in in Starting is refused, and nothing loops.
    QCOMPARE(recorder.events,
             QStringList({"chain.a:4->8", "chain.a:8->32", "starter:4->8", "chain.b:4->8", "chain.b:8->32",
                          "chain.c:4->8", "chain.c:8->32", "starter:8->32", "starter.self:4->8", "starter.self:8->32",
                          "starter.ping:4->8", "starter.pong:4->8", "starter.pong:8->32", "starter.ping:8->32"}));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:starter", "start:chain.b", "start:chain.c",
                                       "start:starter.self", "start:starter.ping", "start:starter.pong"}));
    QCOMPARE(selfErrors.count(), 1);
    QCOMPARE(selfErrors.at(0).at(0).toInt(), int(Plugin::InStartingError));
    QCOMPARE(pingErrors.count(), 1);
    QCOMPARE(pingErrors.at(0).at(1).toString(), QStringLiteral("The Plugin: %1 is in starting progress"));
    QCOMPARE(managerErrors.count(), 0);
    for (const PluginInfo &info : manager->pluginInfos())
        QCOMPARE(int(info.currentState()), int(PluginInfo::Active));

    // Stopped in the reverse of the queue, whatever order they started in.
    clearPluginLog();
    framework.stop();
    QStringList queue = manager->loadQueue();
    std::reverse(queue.begin(), queue.end());
    QStringList expected;
    for (const QString &name : queue)
        expected << QStringLiteral("stop:") + name;
    QCOMPARE(pluginLog(), expected);
    frameworkContext(&framework)->eventManager->unregisterListener(&recorder);
}

void tst_Reentrancy::handlerUsesAnotherExtension()
{
    deployPlugin(QStringLiteral("ext.host"));
    const QString supplier = deployPlugin(QStringLiteral("ext.supplier"));
    QFile::copy(QFileInfo(builtPlugin(QStringLiteral("ext.supplier"))).absolutePath()
                        + QStringLiteral("/extension.xml"),
                QFileInfo(supplier).absolutePath() + QStringLiteral("/extension.xml"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    framework.init();
    manager->start(QStringLiteral("ext.host"));
    ExtensionPointAdmin *admin = frameworkContext(&framework)->extensionManager->pointAdmin();
    ExtensionPoint *point = admin->findExtensionPoint(QStringLiteral("test.point"));
    QVERIFY(point);
    QTRY_VERIFY(point->extensionData(QStringLiteral("supplier.action")));
    point->updateExtensionText(
            {QStringLiteral("<ExtData plugin=\"tst\" extPlugin=\"ext.host\"><Item id=\"relay\"/>"
                            "<Item id=\"orphan.user\"/></ExtData>"),
             QStringLiteral("<ExtData plugin=\"nobody\" extPlugin=\"ext.host\"><Item id=\"orphan\"/></ExtData>")});
    ExtensionData *relay = point->extensionData(QStringLiteral("relay"));
    ExtensionData *supplied = point->extensionData(QStringLiteral("supplier.action"));
    QVERIFY(relay && supplied);

    RelayHandler handler(QStringLiteral("relay"), QStringLiteral("tst"), QStringLiteral("test.point"),
                         QStringLiteral("ext.host"));
    handler.target = supplied;
    handler.reenter = 1;
    admin->registerExtensionHandler(&handler);
    QCOMPARE(relay->extensionHandler(), &handler);
    QCOMPARE(manager->find(QStringLiteral("ext.supplier"))->state(), int(PluginInfo::Resolved));

    // The supplier starts from inside the relay's call, its handler takes the
    // stored call, and the relay goes on; then it uses its own item once more.
    QCOMPARE(relay->active(), 5);
    QCOMPARE(pluginLog(),
             QStringList({"relay:begin", "start:ext.supplier", "active:supplier.action:from-relay", "relay:begin",
                          "active:supplier.action:from-relay", "relay:end:7", "relay:end:0"}));
    QCOMPARE(manager->find(QStringLiteral("ext.supplier"))->state(), int(PluginInfo::Active));

    // A handler that reaches for an extension whose plug-in nobody installed: the
    // request is refused by the manager and the call waits, the caller goes on.
    RelayHandler orphanUser(QStringLiteral("orphan.user"), QStringLiteral("tst"), QStringLiteral("test.point"),
                            QStringLiteral("ext.host"));
    orphanUser.target = point->extensionData(QStringLiteral("orphan"));
    admin->registerExtensionHandler(&orphanUser);
    clearPluginLog();
    QCOMPARE(point->extensionData(QStringLiteral("orphan.user"))->active(), 5);
    QCOMPARE(pluginLog(), QStringList({"relay:begin", "relay:end:0"}));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Cannot start plugin: nobody, that is not installed"));
    QVERIFY(!point->extensionData(QStringLiteral("orphan"))->extensionHandler());

    admin->unregisterExtensionHandler(QStringLiteral("relay"));
    admin->unregisterExtensionHandler(QStringLiteral("orphan.user"));
    QVERIFY(!relay->extensionHandler());
    framework.stop();
}

QTEST_MAIN(tst_Reentrancy)
#include "tst_reentrancy.moc"
