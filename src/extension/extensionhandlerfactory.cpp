// SPDX-License-Identifier: BSD-3-Clause
#include "extensionhandlerfactory.h"
#include "extensionhandlerfactory_p.h"

#include <extension/extensiondatafactory.h>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

void ExtensionHandlerFactoryPrivate::WatchedHandlerNotifier::aboutDestory(Object *object)
{
    ExtensionHandlerFactoryPrivate *d = factory;
    d->aboutDestory(object);
    d->handlerNotifiers.remove(handler);
    delete this;
}

ExtensionHandlerFactoryPrivate::ExtensionHandlerFactoryPrivate()
    : currentHandler(nullptr)
{ }

ExtensionHandlerFactoryPrivate::~ExtensionHandlerFactoryPrivate() = default;

void ExtensionHandlerFactoryPrivate::aboutDestory(Object *object)
{
    // The dying handler is only an Object by now: it is known by its address.
    // A child of the factory is dropped. One with another parent should have been
    // detached first; its entry stays, emptied, so that the pointer is never followed.
    if (!object)
        return;
    const bool child = object->parent() == q;
    for (auto it = watchedHandlers.begin(); it != watchedHandlers.end();) {
        if (it.value() != object) {
            ++it;
        } else if (child) {
            it = watchedHandlers.erase(it);
        } else {
            it.value() = nullptr;
            ++it;
        }
    }
    if (currentHandler == object)
        currentHandler = nullptr;
}

void ExtensionHandlerFactoryPrivate::watch(ExtensionHandler *handler)
{
    if (handlerNotifiers.contains(handler))
        return;
    auto *notifier = new WatchedHandlerNotifier(this, handler);
    handlerNotifiers.insert(handler, notifier);
    handler->setObjectNotifier(notifier);
}

void ExtensionHandlerFactoryPrivate::releaseNotifiers()
{
    qDeleteAll(handlerNotifiers);
    handlerNotifiers.clear();
}

} // namespace Internal

ExtensionHandlerFactory::ExtensionHandlerFactory(Object *parent)
    : ExtensionHandler(*new ExtensionHandlerFactoryPrivate, nullptr)
{
    Q_UNUSED(parent)
}

ExtensionHandlerFactory::ExtensionHandlerFactory(const QString &id, const QString &plugin, const QString &extPoint,
                                                 const QString &extPlugin, Object *parent)
    : ExtensionHandlerFactory(*new ExtensionHandlerFactoryPrivate, id, plugin, extPoint, extPlugin, parent)
{ }

ExtensionHandlerFactory::ExtensionHandlerFactory(ExtensionHandlerFactoryPrivate &dd, const QString &id,
                                                 const QString &plugin, const QString &extPoint,
                                                 const QString &extPlugin, Object *parent)
    : ExtensionHandler(dd, id, plugin, extPoint, extPlugin, parent)
{ }

ExtensionHandlerFactory::~ExtensionHandlerFactory()
{
    // The relays point back here; the watched handlers, children included, outlive this body.
    Q_D(ExtensionHandlerFactory);
    d->releaseNotifiers();
}

ExtensionDataFactory *ExtensionHandlerFactory::dataFactory() const
{
    return dynamic_cast<ExtensionDataFactory *>(extensionData());
}

QList<ExtensionHandler *> ExtensionHandlerFactory::watchedExtHandler() const
{
    Q_D(const ExtensionHandlerFactory);
    QList<ExtensionHandler *> handlers;
    for (ExtensionHandler *handler : d->watchedHandlers) {
        if (handler)
            handlers.append(handler);
    }
    return handlers;
}

void ExtensionHandlerFactory::attach(ExtensionHandler *handler)
{
    Q_D(ExtensionHandlerFactory);
    if (!handler)
        return;
    const QString id = handler->id();
    if (id.isEmpty() || d->watchedHandlers.contains(id))
        return;
    // Without a data factory yet, the handler is only recorded: the data factory
    // takes it up when the two are joined.
    if (ExtensionDataFactory *factory = dataFactory())
        factory->handlerAttached(handler);
    d->watchedHandlers.insert(id, handler);
    d->watch(handler);
}

void ExtensionHandlerFactory::detach(ExtensionHandler *handler)
{
    // Only forgotten here: the data factory goes on watching its data, and the relay
    // stays on the handler.
    Q_D(ExtensionHandlerFactory);
    if (!handler)
        return;
    const QString id = handler->id();
    if (id.isEmpty() || !d->watchedHandlers.contains(id))
        return;
    d->watchedHandlers.remove(id);
}

void ExtensionHandlerFactory::setCurrentItem(const QString &id)
{
    // Nothing fills itemHandlers, so this ends at the first step; the data factory's
    // setCurrentItem is what switches the current item.
    Q_D(ExtensionHandlerFactory);
    ExtensionHandler *handler = d->itemHandlers.value(id);
    if (!handler)
        return;
    if (d->currentHandler && !d->handlerStates.contains(d->currentHandler->id()))
        d->handlerStates.insert(d->currentHandler->id(),
                                ExtensionDataFactoryPrivate::State(d->currentHandler->id(), nullptr));
    if (!d->handlerStates.contains(handler->id()))
        d->handlerStates.insert(handler->id(), ExtensionDataFactoryPrivate::State(handler->id(), nullptr));
    d->currentHandler = handler;
}

} // namespace ExtensionSystem
