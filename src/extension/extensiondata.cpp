// SPDX-License-Identifier: BSD-3-Clause
#include "extensiondata.h"
#include "extensiondata_p.h"

#include <core/debugoutput_p.h>
#include <core/startjournal.h>

#include <extension/extensionconstance.h>
#include <extension/extensionhandler.h>

#include <QtCore/QDebug>

namespace ExtensionSystem {

using namespace Internal;

namespace {

const QString handlerAttribute = QStringLiteral("ExtensionHandler");

QMap<int, QString> dataRoleTable()
{
    QMap<int, QString> roles;
    roles.insert(ExtensionData::IdRole, ExtensionConstance::DATA_ID);
    roles.insert(ExtensionData::PluginRole, ExtensionConstance::DATA_PLUGIN);
    roles.insert(ExtensionData::ExtPluginRole, ExtensionConstance::DATA_EXTPLUGIN);
    roles.insert(ExtensionData::PointIdRole, ExtensionConstance::DATA_POINTID);
    roles.insert(ExtensionData::LocationRole, ExtensionConstance::DATA_LOCATION);
    roles.insert(ExtensionData::UserRole, QStringLiteral("UserRole"));
    return roles;
}

QHash<QString, QVariant> makeExtensionEvent(const QString &type, const QString &id, const QString &plugin,
                                            const QString &pointId, const QString &extPlugin)
{
    QHash<QString, QVariant> event;
    event.insert(ExtensionConstance::EXT_EVENT_TYPE, type);
    event.insert(ExtensionConstance::EXT_EVENT_EXTID, id);
    event.insert(ExtensionConstance::EXT_EVENT_PLUGIN, plugin);
    event.insert(ExtensionConstance::EXT_EVENT_POINT, pointId);
    event.insert(ExtensionConstance::EXT_EVENT_EXTPLUGIN, extPlugin);
    return event;
}

} // namespace

namespace Internal {

ExtensionDataPrivate::ExtensionDataPrivate()
    : extensionHandler(nullptr)
    , pendingActive(false)
{ }

ExtensionDataPrivate::~ExtensionDataPrivate() = default;

} // namespace Internal

ExtensionData::ExtensionData(Object *parent)
    : ExtensionData(*new ExtensionDataPrivate, parent)
{ }

ExtensionData::ExtensionData(ExtensionDataPrivate &dd, Object *parent)
    : Object(dd, parent)
{
    setDataRoles(dataRoleTable(), false);
}

ExtensionData::~ExtensionData()
{
    // Unlinked while this object is still whole; a waiting call dies with it.
    Q_D(ExtensionData);
    if (ExtensionHandler *handler = d->extensionHandler) {
        d->extensionHandler = nullptr;
        handler->setExtensionData(nullptr);
    }
}

QString ExtensionData::id() const
{
    return attribute(ExtensionConstance::DATA_ID).toString();
}

QString ExtensionData::plugin() const
{
    return attribute(ExtensionConstance::DATA_PLUGIN).toString();
}

QString ExtensionData::extendPlugin() const
{
    return attribute(ExtensionConstance::DATA_EXTPLUGIN).toString();
}

QString ExtensionData::pointId() const
{
    return attribute(ExtensionConstance::DATA_POINTID).toString();
}

QString ExtensionData::pluginLocation() const
{
    return attribute(ExtensionConstance::DATA_LOCATION).toString();
}

ExtensionHandler *ExtensionData::extensionHandler() const
{
    Q_D(const ExtensionData);
    return d->extensionHandler;
}

void ExtensionData::setExtensionHandler(ExtensionHandler *handler)
{
    Q_D(ExtensionData);
    ExtensionHandler *previous = d->extensionHandler;
    if (previous == handler)
        return;
    d->extensionHandler = handler;
    // Only a handler that still points here is unlinked: one that has moved on
    // to another item keeps that link.
    if (previous && previous->extensionData() == this)
        previous->setExtensionData(nullptr);
    if (!handler) {
        // Taking a handler away is told by the attribute alone.
        setAttribute(handlerAttribute, QStringLiteral("stop"));
        return;
    }
    handler->setExtensionData(this);
    onExtensionHandlerChanged(handler, previous);
    if (d->pendingActive) {
        d->pendingActive = false;
        const QList<QGenericArgument> args = d->pendingArguments;
        active(args.at(0), args.at(1), args.at(2), args.at(3), args.at(4), args.at(5), args.at(6), args.at(7),
               args.at(8), args.at(9));
        d->pendingArguments.clear();
    }
}

void ExtensionData::attributeChanged(const QString &key, const QVariant &value)
{
    Q_D(ExtensionData);
    if (d->extensionHandler)
        d->extensionHandler->extDataAttributeChanged(key, value);
    Object::attributeChanged(key, value);
}

void ExtensionData::childAdded(Object *child)
{
    handleEvent(makeExtensionEvent(ExtensionConstance::EXT_EVENT_TYPE_CHILD_ADDED, id(), plugin(), pointId(),
                                   extendPlugin()),
                child);
    Object::childAdded(child);
}

int ExtensionData::active(QGenericArgument a0, QGenericArgument a1, QGenericArgument a2, QGenericArgument a3,
                          QGenericArgument a4, QGenericArgument a5, QGenericArgument a6, QGenericArgument a7,
                          QGenericArgument a8, QGenericArgument a9)
{
    Q_D(ExtensionData);
    if (d->extensionHandler) {
        // The handler is the supplying plug-in's own code.
        const StartJournal::Scope journal(PluginCrash::HandlerCall, plugin(), QString());
        return d->extensionHandler->active(a0, a1, a2, a3, a4, a5, a6, a7, a8, a9);
    }

    // One slot, not a queue: a later call replaces a waiting one.
    d->pendingActive = true;
    d->pendingArguments = {a0, a1, a2, a3, a4, a5, a6, a7, a8, a9};
    handleEvent(makeExtensionEvent(ExtensionConstance::EXT_EVENT_TYPE_START_PLUGIN, id(), plugin(), pointId(),
                                   extendPlugin()),
                nullptr);
    ES_DEBUG_IF_SHOWN() << "virtual int ExtensionSystem::ExtensionData::active(QGenericArgument, QGenericArgument, "
                           "QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, "
                           "QGenericArgument, QGenericArgument, QGenericArgument)"
                        << "Request Start Plugin:" << plugin();
    return 0;
}

void ExtensionData::onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous)
{
    Q_UNUSED(current)
    if (!previous && attribute(handlerAttribute).toString() == QLatin1String("stop"))
        setAttribute(handlerAttribute, QStringLiteral("start"));
}

void ExtensionData::test() { }

} // namespace ExtensionSystem
