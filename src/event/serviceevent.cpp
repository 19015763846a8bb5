// SPDX-License-Identifier: BSD-3-Clause
#include "serviceevent.h"
#include "eventdata_p.h"

#include <core/metatype_p.h>
#include <service/serviceproperty.h>

namespace ExtensionSystem {

namespace {

const int ServiceEventType = 3;

void registerMetaTypes()
{
    static const int actionType =
            Internal::registerMetaType<ServiceEvent::Action>("ExtensionSystem::ServiceEvent::Action");
    static const int propertyType = Internal::registerMetaType<ServiceProperty>("ExtensionSystem::ServiceProperty");
    Q_UNUSED(actionType)
    Q_UNUSED(propertyType)
}

QSharedDataPointer<EventData> newServiceData()
{
    registerMetaTypes();
    QSharedDataPointer<EventData> d(new EventData(ServiceEventType));
    d->roles.insert(ServiceEvent::RoleAction, QStringLiteral("event.service.action"));
    d->roles.insert(ServiceEvent::RolePlugin, QStringLiteral("event.service.plugin"));
    d->roles.insert(ServiceEvent::RoleClazz, QStringLiteral("event.service.clazz"));
    d->roles.insert(ServiceEvent::RoleProperty, QStringLiteral("event.service.property"));
    return d;
}

} // namespace

ServiceEvent::ServiceEvent(Action action)
    : d(newServiceData())
{
    setData(RoleAction, QVariant::fromValue(action));
}

ServiceEvent::ServiceEvent(Action action, const QString &plugin, const QStringList &classes,
                           const ServiceProperty &property)
    : d(newServiceData())
{
    setData(RoleAction, QVariant::fromValue(action));
    setData(RolePlugin, plugin);
    setData(RoleClazz, classes);
    setData(RoleProperty, QVariant::fromValue(property));
}

ServiceEvent::ServiceEvent(const QSharedDataPointer<EventData> &data)
    : d(data)
{ }

ServiceEvent::ServiceEvent(const ServiceEvent &other) = default;

ServiceEvent::~ServiceEvent() = default;

ServiceEvent &ServiceEvent::operator=(const ServiceEvent &other) = default;

QVariant ServiceEvent::data(Role role) const
{
    return Internal::eventValue(d, role);
}

bool ServiceEvent::setData(Role role, const QVariant &value)
{
    return Internal::setEventValue(d, role, value);
}

QSharedDataPointer<EventData> ServiceEvent::sharedData() const
{
    return d;
}

int ServiceEvent::action() const
{
    return data(RoleAction).toInt();
}

QString ServiceEvent::plugin() const
{
    return data(RolePlugin).toString();
}

QStringList ServiceEvent::classList() const
{
    return data(RoleClazz).toStringList();
}

ServiceProperty ServiceEvent::property() const
{
    return qvariant_cast<ServiceProperty>(data(RoleProperty));
}

} // namespace ExtensionSystem
