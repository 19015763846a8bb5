// SPDX-License-Identifier: BSD-3-Clause
#include "extensiondatafactory.h"
#include "extensiondatafactory_p.h"

#include <core/debugoutput_p.h>
#include <core/qtcompat_p.h>

#include <extension/extensionhandler.h>
#include <extension/extensionhandlerfactory.h>

#include <QtCore/QDebug>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

ExtensionDataFactoryPrivate::State::State()
    : factory(nullptr)
{ }

ExtensionDataFactoryPrivate::State::State(const QString &id, ExtensionDataFactoryPrivate *factory)
    : id(id)
    , factory(factory)
{ }

void ExtensionDataFactoryPrivate::State::saveCurrent()
{
    if (!factory)
        return;
    for (auto it = factory->watchedData.constBegin(); it != factory->watchedData.constEnd(); ++it) {
        if (it->data)
            savedAttributes[it.key()] = it->data->attributeData();
    }
}

void ExtensionDataFactoryPrivate::State::restore() const
{
    if (!factory)
        return;
    applyAll(false);
}

void ExtensionDataFactoryPrivate::State::restoreInitial() const
{
    if (!factory)
        return;
    ES_DEBUG_IF_SHOWN() << "ExtensionDataFactoryPrivate::State::restoreInitial()";
    applyAll(true);
}

void ExtensionDataFactoryPrivate::State::applyAll(bool initial) const
{
    const QMap<QString, WatchedData> &live = initial ? factory->initialData : factory->watchedData;
    // Every change reaches a handler, which may attach, detach or destroy watched data:
    // walk a copy, and touch an item only while the live table still holds it.
    const QMap<QString, WatchedData> table = live;
    for (auto it = table.constBegin(); it != table.constEnd(); ++it) {
        ExtensionData *data = it->data;
        if (!data || live.value(it.key()).data != data)
            continue;
        const auto saved = savedAttributes.constFind(data->id());
        const QHash<QString, QVariant> values = saved != savedAttributes.constEnd() ? *saved : it->attributes;
        for (auto value = values.constBegin(); value != values.constEnd(); ++value) {
            if (live.value(it.key()).data != data)
                break;
            data->setAttribute(value.key(), value.value());
        }
    }
}

void ExtensionDataFactoryPrivate::HandlerNotifier::attributeChanged(const QString &key, const QVariant &value)
{
    Q_UNUSED(key)
    Q_UNUSED(value)
}

void ExtensionDataFactoryPrivate::HandlerNotifier::childAdded(Object *child)
{
    factory->handlerChildAdded(child);
}

void ExtensionDataFactoryPrivate::ChlidHandlerNotifier::attributeChanged(const QString &key, const QVariant &value)
{
    factory->q_func()->setAttribute(key, value);
}

void ExtensionDataFactoryPrivate::WatchedExtDataNotifier::aboutDestory(Object *)
{
    // Deletes this notifier.
    factory->forgetWatched(this);
}

void ExtensionDataFactoryPrivate::ItemGuard::aboutDestory(Object *object)
{
    // Deletes this guard.
    factory->forgetItem(object);
}

ExtensionDataFactoryPrivate::ExtensionDataFactoryPrivate()
    : currentItem(nullptr)
    , handlerNotifier(nullptr)
{ }

ExtensionDataFactoryPrivate::~ExtensionDataFactoryPrivate() = default;

void ExtensionDataFactoryPrivate::handlerChildAdded(Object *child)
{
    // A child still under construction is only an Object and is passed over here.
    auto *handler = dynamic_cast<ExtensionHandler *>(child);
    if (!handler)
        return;
    Q_Q(ExtensionDataFactory);
    ExtensionData *item = q->create(handler);
    if (!item)
        return;
    auto *notifier = new ChlidHandlerNotifier(this);
    childNotifiers.append(notifier);
    item->setObjectNotifier(notifier);
    item->active();
}

void ExtensionDataFactoryPrivate::guard(ExtensionData *item)
{
    if (!item || itemGuards.contains(item))
        return;
    auto *itemGuard = new ItemGuard(this);
    itemGuards.insert(item, itemGuard);
    item->setObjectNotifier(itemGuard);
}

void ExtensionDataFactoryPrivate::forgetItem(Object *item)
{
    // Compared as addresses only: the item is being destroyed. The snapshot entries
    // stay with a null item, so that nothing follows the pointer any more.
    for (auto it = items.begin(); it != items.end();) {
        if (it.value() == item)
            it = items.erase(it);
        else
            ++it;
    }
    for (auto it = watchedData.begin(); it != watchedData.end();) {
        if (it->data == item)
            it = watchedData.erase(it);
        else
            ++it;
    }
    for (auto it = initialData.begin(); it != initialData.end(); ++it) {
        if (it->data == item)
            it->data = nullptr;
    }
    if (currentItem == item)
        currentItem = nullptr;
    delete itemGuards.take(item);
}

void ExtensionDataFactoryPrivate::forgetWatched(WatchedExtDataNotifier *notifier)
{
    // The detach of a dying item, done by its address.
    ExtensionData *data = notifier->data;
    for (auto it = watchedData.begin(); it != watchedData.end();) {
        if (it->data == data)
            it = watchedData.erase(it);
        else
            ++it;
    }
    if (watchedNotifiers.value(data) == notifier)
        watchedNotifiers.remove(data);
    delete notifier;
}

void ExtensionDataFactoryPrivate::releaseNotifiers()
{
    // Each one leaves the node it watches, if that still lives.
    qDeleteAll(childNotifiers);
    childNotifiers.clear();
    qDeleteAll(watchedNotifiers);
    watchedNotifiers.clear();
    qDeleteAll(itemGuards);
    itemGuards.clear();
    delete handlerNotifier;
    handlerNotifier = nullptr;
}

} // namespace Internal

ExtensionDataFactory::ExtensionDataFactory(Object *parent)
    : ExtensionDataFactory(*new ExtensionDataFactoryPrivate, parent)
{ }

ExtensionDataFactory::ExtensionDataFactory(ExtensionDataFactoryPrivate &dd, Object *parent)
    : ExtensionData(dd, parent)
{
    Q_D(ExtensionDataFactory);
    setDataRoles({{CurrentItemRole, QStringLiteral("currentitem")}}, false);
    d->handlerNotifier = new ExtensionDataFactoryPrivate::HandlerNotifier(d);
}

ExtensionDataFactory::~ExtensionDataFactory()
{
    // The notifiers point back here; none may outlive this object on a node that lives on.
    Q_D(ExtensionDataFactory);
    d->releaseNotifiers();
}

void ExtensionDataFactory::aboutRemoveChild(Object *child)
{
    // The item goes from the table under whatever id it has now, compared by address
    // since the child may be in its destructor; other children make no difference.
    // The current item is left as it is: the caller chooses a new one first.
    Q_D(ExtensionDataFactory);
    if (!child)
        return;
    for (auto it = d->items.begin(); it != d->items.end();) {
        if (it.value() == child)
            it = d->items.erase(it);
        else
            ++it;
    }
}

void ExtensionDataFactory::onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous)
{
    // Replaces the base version: the attribute "ExtensionHandler" is not restarted here.
    Q_D(ExtensionDataFactory);
    if (previous) {
        auto *previousFactory = dynamic_cast<ExtensionHandlerFactory *>(previous);
        // Deliberately also when the new handler is a factory: it is not joined then.
        if (!previousFactory)
            return;
        const QList<ExtensionHandler *> watched = previousFactory->watchedExtHandler();
        for (ExtensionHandler *handler : watched)
            detach(handler->extensionData());
        previous->unsetObjectNotifier(d->handlerNotifier);
    }
    if (auto *currentFactory = dynamic_cast<ExtensionHandlerFactory *>(current)) {
        const QList<ExtensionHandler *> watched = currentFactory->watchedExtHandler();
        for (ExtensionHandler *handler : watched)
            attach(handler->extensionData());
        current->setObjectNotifier(d->handlerNotifier);
    }
}

ExtensionData *ExtensionDataFactory::create(ExtensionHandler *handler)
{
    Q_D(ExtensionDataFactory);
    if (!handler || handler->id().isEmpty())
        return nullptr;
    if (ExtensionData *present = d->items.value(handler->id()))
        return present;

    auto *item = new ExtensionData;
    item->cloneData(this);
    item->setData(IdRole, handler->id());
    item->setData(PluginRole, handler->plugin());
    item->setData(PointIdRole, handler->extPoint());
    item->setData(ExtPluginRole, handler->extPlugin());
    d->items[item->id()] = item;
    d->guard(item);
    addChild(item);
    item->setExtensionHandler(handler);
    return item;
}

void ExtensionDataFactory::setCurrentItem(const QString &id)
{
    Q_D(ExtensionDataFactory);
    ES_DEBUG_IF_SHOWN() << "setcurrentItem" << id << QtCompat::DebugList{d->items.keys()};
    ExtensionData *item = d->items.value(id);
    if (!item)
        return;
    if (d->currentItem)
        d->states[d->currentItem->id()].saveCurrent();
    d->currentItem = item;

    // Applied from a copy: the attribute changes reach handlers, which may come back here.
    const QString itemId = item->id();
    if (d->states.contains(itemId)) {
        const ExtensionDataFactoryPrivate::State state = d->states.value(itemId);
        state.restore();
    } else {
        const ExtensionDataFactoryPrivate::State state(itemId, d);
        d->states.insert(itemId, state);
        state.restoreInitial();
    }
}

void ExtensionDataFactory::attach(ExtensionData *data)
{
    Q_D(ExtensionDataFactory);
    if (!data)
        return;
    const QString id = data->id();
    if (id.isEmpty() || d->watchedData.contains(id))
        return;
    d->watchedData.insert(id, ExtensionDataFactoryPrivate::WatchedData(data, data->attributeData()));
    d->initialData.insert(id, ExtensionDataFactoryPrivate::WatchedData(data, data->attributeData()));
    d->guard(data);
    if (!d->watchedNotifiers.contains(data)) {
        auto *notifier = new ExtensionDataFactoryPrivate::WatchedExtDataNotifier(d, data);
        d->watchedNotifiers.insert(data, notifier);
        data->setObjectNotifier(notifier);
    }
}

void ExtensionDataFactory::detach(ExtensionData *data)
{
    Q_D(ExtensionDataFactory);
    if (!data)
        return;
    const QString id = data->id();
    if (id.isEmpty() || !d->watchedData.contains(id))
        return;
    // The entry in initialData stays: the snapshot is only replaced by a new attach.
    d->watchedData.remove(id);
    delete d->watchedNotifiers.take(data);
}

void ExtensionDataFactory::handlerAttached(ExtensionHandler *handler)
{
    if (!handler || handler->id().isEmpty())
        return;
    if (auto *data = dynamic_cast<ExtensionData *>(find(IdRole, handler->id())))
        attach(data);
}

void ExtensionDataFactory::handlerDetached(ExtensionHandler *handler)
{
    Q_UNUSED(handler)
}

} // namespace ExtensionSystem
