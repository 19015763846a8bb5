// SPDX-License-Identifier: BSD-3-Clause
#include "frameworkevent.h"
#include "eventdata_p.h"

#include <core/metatype_p.h>

namespace ExtensionSystem {

namespace {

const int FrameworkEventType = 1;

void registerMetaTypes()
{
    static const int actionType =
            Internal::registerMetaType<FrameworkEvent::Action>("ExtensionSystem::FrameworkEvent::Action");
    Q_UNUSED(actionType)
}

QSharedDataPointer<EventData> newFrameworkData()
{
    registerMetaTypes();
    QSharedDataPointer<EventData> d(new EventData(FrameworkEventType));
    d->roles.insert(FrameworkEvent::RoleAction, QStringLiteral("event.framework.action"));
    d->roles.insert(FrameworkEvent::RolePrevAction, QStringLiteral("event.framework.prevAction"));
    return d;
}

} // namespace

FrameworkEvent::FrameworkEvent(Action action)
    : d(newFrameworkData())
{
    setData(RoleAction, QVariant::fromValue(action));
}

FrameworkEvent::FrameworkEvent(Action action, Action prevAction)
    : d(newFrameworkData())
{
    setData(RoleAction, QVariant::fromValue(action));
    setData(RolePrevAction, QVariant::fromValue(prevAction));
}

FrameworkEvent::FrameworkEvent(const QSharedDataPointer<EventData> &data)
    : d(data)
{ }

FrameworkEvent::FrameworkEvent(const FrameworkEvent &other) = default;

FrameworkEvent::~FrameworkEvent() = default;

FrameworkEvent &FrameworkEvent::operator=(const FrameworkEvent &other) = default;

QVariant FrameworkEvent::data(Role role) const
{
    return Internal::eventValue(d, role);
}

bool FrameworkEvent::setData(Role role, const QVariant &value)
{
    return Internal::setEventValue(d, role, value);
}

QSharedDataPointer<EventData> FrameworkEvent::sharedData() const
{
    return d;
}

int FrameworkEvent::action() const
{
    return data(RoleAction).toInt();
}

int FrameworkEvent::prevAction() const
{
    return data(RolePrevAction).toInt();
}

} // namespace ExtensionSystem
