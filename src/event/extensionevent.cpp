// SPDX-License-Identifier: BSD-3-Clause
#include "extensionevent.h"
#include "eventdata_p.h"

#include <core/metatype_p.h>

namespace ExtensionSystem {

namespace {

const int ExtensionEventType = 4;

void registerMetaTypes()
{
    static const int actionType =
            Internal::registerMetaType<ExtensionEvent::Action>("ExtensionSystem::ExtensionEvent::Action");
    Q_UNUSED(actionType)
}

QSharedDataPointer<EventData> newExtensionData()
{
    registerMetaTypes();
    QSharedDataPointer<EventData> d(new EventData(ExtensionEventType));
    d->roles.insert(ExtensionEvent::RoleAction, QStringLiteral("event.extension.action"));
    d->roles.insert(ExtensionEvent::RolePlugin, QStringLiteral("event.extension.plugin"));
    d->roles.insert(ExtensionEvent::RolePointId, QStringLiteral("event.extension.pointId"));
    return d;
}

} // namespace

ExtensionEvent::ExtensionEvent(Action action)
    : d(newExtensionData())
{
    setData(RoleAction, QVariant::fromValue(action));
}

ExtensionEvent::ExtensionEvent(Action action, const QString &plugin, const QString &pointId)
    : d(newExtensionData())
{
    setData(RoleAction, QVariant::fromValue(action));
    setData(RolePlugin, plugin);
    setData(RolePointId, pointId);
}

ExtensionEvent::ExtensionEvent(const QSharedDataPointer<EventData> &data)
    : d(data)
{ }

ExtensionEvent::ExtensionEvent(const ExtensionEvent &other) = default;

ExtensionEvent::~ExtensionEvent() = default;

ExtensionEvent &ExtensionEvent::operator=(const ExtensionEvent &other) = default;

QVariant ExtensionEvent::data(Role role) const
{
    return Internal::eventValue(d, role);
}

bool ExtensionEvent::setData(Role role, const QVariant &value)
{
    return Internal::setEventValue(d, role, value);
}

QSharedDataPointer<EventData> ExtensionEvent::sharedData() const
{
    return d;
}

int ExtensionEvent::action() const
{
    return data(RoleAction).toInt();
}

QString ExtensionEvent::plugin() const
{
    return data(RolePlugin).toString();
}

QString ExtensionEvent::pointId() const
{
    return data(RolePointId).toString();
}

} // namespace ExtensionSystem
