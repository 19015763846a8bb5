// SPDX-License-Identifier: BSD-3-Clause
#include "eventmanager.h"
#include "eventmanager_p.h"

#include <event/customizedevent.h>
#include <event/extensionevent.h>
#include <event/frameworkevent.h>
#include <event/ilistener.h>
#include <event/pluginevent.h>
#include <event/serviceevent.h>
#include <event/subscribehelper.h>

#include <QtCore/QVarLengthArray>

namespace ExtensionSystem {
namespace Internal {

EventManagerPrivate::EventManagerPrivate()
    : context(nullptr)
{ }

EventManagerPrivate::~EventManagerPrivate() = default;

void EventManagerPrivate::dispatch(const QSharedDataPointer<EventData> &data)
{
    // A copy: listeners that subscribe or unsubscribe during the delivery do not
    // change it. The same pointers in the same order as values(type), newest
    // first; on the stack for the usual few listeners, since it is made for
    // every event.
    const int type = data->type;
    QVarLengthArray<IListener *, 64> targets;
    for (auto it = listeners.constFind(type); it != listeners.cend() && it.key() == type; ++it)
        targets.append(it.value());
    for (IListener *listener : qAsConst(targets)) {
        if (listener)
            listener->event(data);
    }
}

void EventManagerPrivate::registerListener(const QString &symbolic, IListener *listener)
{
    if (!listener || listener->listenerType() == 0)
        return;
    if (listeners.contains(listener->listenerType(), listener))
        return;
    listeners.insert(listener->listenerType(), listener);
    listenerPlugins.insert(symbolic, listener);
}

void EventManagerPrivate::cleanup(IListener *listener)
{
    if (!listener)
        return;
    listeners.remove(listener->listenerType(), listener);
    for (auto it = listenerPlugins.cbegin(); it != listenerPlugins.cend(); ++it) {
        if (it.value() == listener) {
            const QString key = it.key();
            listenerPlugins.remove(key, listener);
            break;
        }
    }
}

EventManager::EventManager(PluginFrameworkContext *context, QObject *parent)
    : QObject(*new EventManagerPrivate, parent)
{
    Q_D(EventManager);
    d->context = context;
}

EventManager::~EventManager() = default;

void EventManager::publish(const PluginEvent &event)
{
    Q_D(EventManager);
    d->dispatch(event.sharedData());
}

void EventManager::publish(const FrameworkEvent &event)
{
    Q_D(EventManager);
    d->dispatch(event.sharedData());
}

void EventManager::publish(const ServiceEvent &event)
{
    Q_D(EventManager);
    d->dispatch(event.sharedData());
}

void EventManager::publish(const ExtensionEvent &event)
{
    Q_D(EventManager);
    d->dispatch(event.sharedData());
}

void EventManager::publish(const CustomizedEvent &event)
{
    Q_D(EventManager);
    d->dispatch(event.sharedData());
}

void EventManager::registerListener(const QString &symbolic, IListener *listener)
{
    Q_D(EventManager);
    d->registerListener(symbolic, listener);
}

void EventManager::unregisterListener(IListener *listener)
{
    Q_D(EventManager);
    d->cleanup(listener);
}

void EventManager::trackEvent(const QString &symbolic, int eventType, const QObject *receiver, const char *slot,
                              Qt::ConnectionType type)
{
    Q_D(EventManager);
    if (!receiver || !slot)
        return;
    // A pair of receiver and member pointer is tracked once, whatever the event type.
    if (d->receivers.contains(receiver, slot))
        return;

    auto *helper = new SubscribeHelper(this, eventType, receiver, slot, type);
    connect(helper, &SubscribeHelper::aboutDestory, this, &EventManager::trackerAboutDestory);
    helper->setCleanupHelper(d);
    helper->setProperty(QStringLiteral("plugin"), symbolic);
    helper->setProperty(QStringLiteral("type"), eventType);
    d->receivers.insert(receiver, slot);
    d->trackers.insert(symbolic, helper);
    auto *listener = static_cast<IListener *>(helper->qt_metacast(ExtensionSystem_IListener_iid));
    d->registerListener(symbolic, listener);
}

void EventManager::untrackEvent(const QString &symbolic, const QObject *receiver, const char *slot)
{
    Q_D(EventManager);
    if (!receiver)
        return;
    const QList<SubscribeHelper *> helpers = d->trackers.values(symbolic);
    for (SubscribeHelper *helper : helpers) {
        if (helper->receiver() != receiver || (slot && helper->slot() != slot))
            continue;
        d->receivers.remove(receiver, helper->slot());
        d->trackers.remove(symbolic, helper);
        // Stays in the routing table until the event loop deletes it, so that
        // untracking from inside a delivery is safe.
        helper->deleteLater();
        if (slot)
            break;
    }
}

void EventManager::trackerAboutDestory(SubscribeHelper *helper, int eventType, const QObject *receiver,
                                       const char *slot)
{
    Q_UNUSED(eventType)
    Q_D(EventManager);
    if (receiver)
        d->receivers.remove(receiver, slot);
    const QString symbolic = helper->property(QStringLiteral("plugin")).toString();
    d->trackers.remove(symbolic, helper);
    d->cleanup(static_cast<IListener *>(helper->qt_metacast(ExtensionSystem_IListener_iid)));
}

} // namespace Internal
} // namespace ExtensionSystem
