// SPDX-License-Identifier: BSD-3-Clause
#include <event/customizedevent.h>
#include <event/eventmanager.h>
#include <event/icustomizedlistener.h>
#include <event/ipluginlistener.h>
#include <event/pluginevent.h>

#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;

namespace {

class RecordingListener : public IPluginListener
{
public:
    RecordingListener(const QString &name, QStringList *calls)
        : name(name)
        , calls(calls)
    { }
    void pluginChanged(const PluginEvent &event) override
    {
        *calls << name + QLatin1Char(':') + event.symbolic();
        if (onEvent)
            onEvent(event);
    }
    QString name;
    QStringList *calls;
    std::function<void(const PluginEvent &)> onEvent;
};

class CustomListener : public ICustomizedListener
{
public:
    explicit CustomListener(int type)
        : ICustomizedListener(type)
    { }
    void customizedChanged(const CustomizedEvent &event) override { types << event.sharedData()->type; }
    QList<int> types;
};

class Receiver : public QObject
{
    Q_OBJECT
public:
    QStringList received;
public slots:
    void onPlugin(PluginEvent event) { received << QStringLiteral("plugin:") + event.symbolic(); }
    void onOther(PluginEvent event) { received << QStringLiteral("other:") + event.symbolic(); }
};

PluginEvent pluginEvent(const QString &symbolic)
{
    return PluginEvent(PluginEvent::Resolved, PluginEvent::Installed, symbolic, QString(), QString(), QString(), 0, 0);
}

void flushDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class tst_EventManager : public QObject
{
    Q_OBJECT
private slots:
    void listenersNewestFirstAndRefusals();
    void changesDuringDelivery();
    void trackers();
    void untrackKeepsDeliveringUntilTheLoopTurns();
    void customizedEvents();
};

void tst_EventManager::listenersNewestFirstAndRefusals()
{
    EventManager manager(nullptr, nullptr);
    QStringList calls;
    RecordingListener a(QStringLiteral("A"), &calls), b(QStringLiteral("B"), &calls), c(QStringLiteral("C"), &calls);
    manager.registerListener(QStringLiteral("p1"), &a);
    manager.registerListener(QStringLiteral("p1"), &b);
    manager.registerListener(QStringLiteral("p2"), &c);
    manager.registerListener(QStringLiteral("p3"), &a); // same pointer again: nothing changes
    CustomListener typeless(0);
    manager.registerListener(QStringLiteral("p1"), &typeless);
    manager.registerListener(QStringLiteral("p1"), nullptr);

    manager.publish(pluginEvent(QStringLiteral("x")));
    QCOMPARE(calls, QStringList({"C:x", "B:x", "A:x"}));

    // Routing is by type alone: a customized event of type 2 reaches plug-in listeners, empty.
    calls.clear();
    manager.publish(CustomizedEvent(2));
    QCOMPARE(calls, QStringList({"C:", "B:", "A:"}));
    QVERIFY(typeless.types.isEmpty());

    calls.clear();
    manager.unregisterListener(&b);
    manager.unregisterListener(&b); // safe twice
    manager.publish(pluginEvent(QStringLiteral("y")));
    QCOMPARE(calls, QStringList({"C:y", "A:y"}));
}

void tst_EventManager::changesDuringDelivery()
{
    EventManager manager(nullptr, nullptr);
    QStringList calls;
    RecordingListener first(QStringLiteral("first"), &calls), second(QStringLiteral("second"), &calls);
    RecordingListener late(QStringLiteral("late"), &calls);
    manager.registerListener(QStringLiteral("p"), &first);
    manager.registerListener(QStringLiteral("p"), &second);

    // The newest listener unregisters the older one and subscribes a new one:
    // the delivery in progress still reaches the older one and not the new one.
    second.onEvent = [&](const PluginEvent &event) {
        if (event.symbolic() != QLatin1String("outer"))
            return;
        manager.unregisterListener(&first);
        manager.registerListener(QStringLiteral("p"), &late);
        manager.publish(pluginEvent(QStringLiteral("inner")));
    };
    manager.publish(pluginEvent(QStringLiteral("outer")));
    // A nested publish is complete before the outer delivery goes on.
    QCOMPARE(calls, QStringList({"second:outer", "late:inner", "second:inner", "first:outer"}));
}

void tst_EventManager::trackers()
{
    EventManager manager(nullptr, nullptr);
    Receiver receiver;
    const char *slot = SLOT(onPlugin(PluginEvent));
    manager.trackEvent(QStringLiteral("p"), 2, &receiver, slot, Qt::DirectConnection);
    // The same pointers for another type are refused: the first subscription stands.
    manager.trackEvent(QStringLiteral("p"), 3, &receiver, slot, Qt::DirectConnection);
    manager.trackEvent(QStringLiteral("p"), 2, nullptr, slot, Qt::DirectConnection);
    manager.publish(pluginEvent(QStringLiteral("a")));
    QCOMPARE(receiver.received, QStringList({"plugin:a"}));

    // The same text at another address is a new subscription, and is called first.
    QByteArray copy(slot);
    manager.trackEvent(QStringLiteral("p"), 2, &receiver, copy.constData(), Qt::DirectConnection);
    receiver.received.clear();
    manager.publish(pluginEvent(QStringLiteral("b")));
    QCOMPARE(receiver.received, QStringList({"plugin:b", "plugin:b"}));

    // Untracking every member of a receiver touches only that subscriber's helpers.
    Receiver other;
    manager.trackEvent(QStringLiteral("q"), 2, &receiver, SLOT(onOther(PluginEvent)), Qt::DirectConnection);
    manager.untrackEvent(QStringLiteral("p"), &receiver, nullptr);
    flushDeferredDeletes();
    receiver.received.clear();
    manager.publish(pluginEvent(QStringLiteral("c")));
    QCOMPARE(receiver.received, QStringList({"other:c"}));

    // Once the helper is gone the pair can be tracked again.
    manager.trackEvent(QStringLiteral("p"), 2, &receiver, slot, Qt::DirectConnection);
    receiver.received.clear();
    manager.publish(pluginEvent(QStringLiteral("d")));
    QCOMPARE(receiver.received, QStringList({"plugin:d", "other:d"}));
}

void tst_EventManager::untrackKeepsDeliveringUntilTheLoopTurns()
{
    EventManager manager(nullptr, nullptr);
    Receiver receiver;
    const char *slot = SLOT(onPlugin(PluginEvent));
    manager.trackEvent(QStringLiteral("p"), 2, &receiver, slot, Qt::DirectConnection);
    manager.untrackEvent(QStringLiteral("p"), &receiver, slot);
    manager.publish(pluginEvent(QStringLiteral("before")));
    QCOMPARE(receiver.received, QStringList({"plugin:before"}));
    flushDeferredDeletes();
    manager.publish(pluginEvent(QStringLiteral("after")));
    QCOMPARE(receiver.received, QStringList({"plugin:before"}));

    // A helper whose manager goes first must not take anything down with it.
    auto *helperOwner = new EventManager(nullptr, nullptr);
    helperOwner->trackEvent(QStringLiteral("p"), 2, &receiver, slot, Qt::DirectConnection);
    delete helperOwner;
}

void tst_EventManager::customizedEvents()
{
    EventManager manager(nullptr, nullptr);
    Receiver receiver;
    // A tracker of a customized type is accepted and never called.
    manager.trackEvent(QStringLiteral("p"), 100, &receiver, SLOT(onPlugin(PluginEvent)), Qt::DirectConnection);
    // A tracker of type 2 is a plug-in tracker.
    manager.trackEvent(QStringLiteral("p"), 2, &receiver, SLOT(onOther(PluginEvent)), Qt::DirectConnection);
    CustomListener hundred(100), other(101);
    manager.registerListener(QStringLiteral("p"), &hundred);
    manager.registerListener(QStringLiteral("p"), &other);

    manager.publish(CustomizedEvent(100));
    QCOMPARE(hundred.types, QList<int>({100}));
    QVERIFY(other.types.isEmpty());
    QVERIFY(receiver.received.isEmpty());

    manager.publish(pluginEvent(QStringLiteral("z")));
    QCOMPARE(receiver.received, QStringList({"other:z"}));
}

QTEST_MAIN(tst_EventManager)
#include "tst_eventmanager.moc"
