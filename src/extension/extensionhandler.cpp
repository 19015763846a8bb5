// SPDX-License-Identifier: BSD-3-Clause
#include "extensionhandler.h"
#include "extensionhandler_p.h"

#include <extension/extensionconstance.h>
#include <extension/extensiondata.h>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

ExtensionHandlerPrivate::ExtensionHandlerPrivate()
    : extensionData(nullptr)
{ }

ExtensionHandlerPrivate::~ExtensionHandlerPrivate() = default;

} // namespace Internal

ExtensionHandler::ExtensionHandler(Object *parent)
    : Object(*new ExtensionHandlerPrivate, parent)
{ }

ExtensionHandler::ExtensionHandler(const QString &id, const QString &plugin, const QString &extPoint,
                                   const QString &extPlugin, Object *parent)
    : ExtensionHandler(*new ExtensionHandlerPrivate, id, plugin, extPoint, extPlugin, parent)
{ }

ExtensionHandler::ExtensionHandler(ExtensionHandlerPrivate &dd, Object *parent)
    : Object(dd, parent)
{ }

ExtensionHandler::ExtensionHandler(ExtensionHandlerPrivate &dd, const QString &id, const QString &plugin,
                                   const QString &extPoint, const QString &extPlugin, Object *parent)
    : Object(dd, parent)
{
    setAttribute(ExtensionConstance::DATA_ID, id);
    setAttribute(ExtensionConstance::DATA_PLUGIN, plugin);
    setAttribute(ExtensionConstance::DATA_POINTID, extPoint);
    setAttribute(ExtensionConstance::DATA_EXTPLUGIN, extPlugin);
}

ExtensionHandler::~ExtensionHandler()
{
    // Unlinked while this object is still whole: the item goes free and reads "stop".
    Q_D(ExtensionHandler);
    if (ExtensionData *data = d->extensionData) {
        d->extensionData = nullptr;
        data->setExtensionHandler(nullptr);
    }
}

QString ExtensionHandler::id() const
{
    return attribute(ExtensionConstance::DATA_ID).toString();
}

QString ExtensionHandler::plugin() const
{
    return attribute(ExtensionConstance::DATA_PLUGIN).toString();
}

QString ExtensionHandler::extPoint() const
{
    return attribute(ExtensionConstance::DATA_POINTID).toString();
}

QString ExtensionHandler::extPlugin() const
{
    return attribute(ExtensionConstance::DATA_EXTPLUGIN).toString();
}

ExtensionData *ExtensionHandler::extensionData() const
{
    Q_D(const ExtensionHandler);
    return d->extensionData;
}

void ExtensionHandler::setExtensionData(ExtensionData *data)
{
    Q_D(ExtensionHandler);
    ExtensionData *previous = d->extensionData;
    if (previous == data)
        return;
    d->extensionData = data;
    // Only an item that still points here is unlinked: one that already took
    // another handler keeps it.
    if (previous && previous->extensionHandler() == this)
        previous->setExtensionHandler(nullptr);
    // Read again: the call above may have run other code.
    if (d->extensionData && d->extensionData->extensionHandler() != this)
        d->extensionData->setExtensionHandler(this);
}

QVariant ExtensionHandler::data(const QString &key) const
{
    Q_D(const ExtensionHandler);
    return d->extensionData ? d->extensionData->attribute(key) : attribute(key);
}

bool ExtensionHandler::setData(const QString &key, const QVariant &value)
{
    Q_D(ExtensionHandler);
    if (!d->extensionData)
        return false;
    // Stored here first, so that the echo from the item finds the value equal
    // and the handler is not told of its own write.
    setAttribute(key, value);
    return d->extensionData->setAttribute(key, value);
}

void ExtensionHandler::extDataAttributeChanged(const QString &key, const QVariant &value)
{
    if (attribute(key) == value)
        return;
    setAttribute(key, value);
    dataChanged(key, value);
}

} // namespace ExtensionSystem
