// SPDX-License-Identifier: BSD-3-Clause
#include "pluginevent.h"
#include "eventdata_p.h"

#include <core/metatype_p.h>

namespace ExtensionSystem {

namespace {

const int PluginEventType = 2;

void registerMetaTypes()
{
    static const int actionType =
            Internal::registerMetaType<PluginEvent::Action>("ExtensionSystem::PluginEvent::Action");
    Q_UNUSED(actionType)
}

QMap<int, QString> pluginRoles(bool withPrevAction)
{
    QMap<int, QString> roles;
    roles.insert(PluginEvent::RoleAction, QStringLiteral("event.plugin.action"));
    if (withPrevAction)
        roles.insert(PluginEvent::RolePrevAction, QStringLiteral("event.plugin.prevAction"));
    roles.insert(PluginEvent::RoleSymbolic, QStringLiteral("event.plugin.symbolic"));
    roles.insert(PluginEvent::RoleLocationDir, QStringLiteral("event.plugin.locationDir"));
    roles.insert(PluginEvent::RoleFilepath, QStringLiteral("event.plugin.filepath"));
    roles.insert(PluginEvent::RoleVersion, QStringLiteral("event.plugin.version"));
    roles.insert(PluginEvent::RoleInitIndex, QStringLiteral("event.plugin.initIndex"));
    roles.insert(PluginEvent::RolePluginSize, QStringLiteral("event.plugin.pluginSize"));
    return roles;
}

QSharedDataPointer<EventData> newPluginData(bool withPrevAction)
{
    registerMetaTypes();
    // Every plug-in event has the same table of roles: built once and shared
    // (QMap is implicitly shared), not built again for each of them.
    static const QMap<int, QString> rolesWithPrevAction = pluginRoles(true);
    static const QMap<int, QString> rolesWithoutPrevAction = pluginRoles(false);
    QSharedDataPointer<EventData> d(new EventData(PluginEventType));
    d->roles = withPrevAction ? rolesWithPrevAction : rolesWithoutPrevAction;
    // Room for every role at once: the full constructor fills them all, and a
    // plug-in makes four of these on its way to Active.
    if (withPrevAction)
        d->data.reserve(d->roles.size());
    return d;
}

} // namespace

PluginEvent::PluginEvent(Action action)
    : d(newPluginData(false)) // never carries a previous action
{
    setData(RoleAction, QVariant::fromValue(action));
}

PluginEvent::PluginEvent(Action action, Action prevAction, const QString &symbolic, const QString &locationDir,
                         const QString &filepath, const QString &version, int initIndex, int pluginSize)
    : d(newPluginData(true))
{
    // Four of these go out for every plug-in on its way to Active.
    EventData *record = d.data();
    Internal::putEventValue(record, RoleAction, QVariant::fromValue(action));
    Internal::putEventValue(record, RolePrevAction, QVariant::fromValue(prevAction));
    Internal::putEventValue(record, RoleSymbolic, symbolic);
    Internal::putEventValue(record, RoleLocationDir, locationDir);
    Internal::putEventValue(record, RoleFilepath, filepath);
    Internal::putEventValue(record, RoleVersion, version);
    Internal::putEventValue(record, RoleInitIndex, initIndex);
    Internal::putEventValue(record, RolePluginSize, pluginSize);
}

PluginEvent::PluginEvent(const QSharedDataPointer<EventData> &data)
    : d(data)
{ }

PluginEvent::PluginEvent(const PluginEvent &other) = default;

PluginEvent::~PluginEvent() = default;

PluginEvent &PluginEvent::operator=(const PluginEvent &other) = default;

QVariant PluginEvent::data(Role role) const
{
    return Internal::eventValue(d, role);
}

bool PluginEvent::setData(Role role, const QVariant &value)
{
    return Internal::setEventValue(d, role, value);
}

QSharedDataPointer<EventData> PluginEvent::sharedData() const
{
    return d;
}

namespace {

// toInt() of a stored Action goes through the meta-type system's conversions;
// every listener reads the action of every plug-in event, so take it directly.
int actionOf(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<PluginEvent::Action>())
        return int(*static_cast<const PluginEvent::Action *>(value.constData()));
    return value.toInt();
}

} // namespace

int PluginEvent::action() const
{
    return actionOf(data(RoleAction));
}

int PluginEvent::prevAction() const
{
    return actionOf(data(RolePrevAction));
}

QString PluginEvent::symbolic() const
{
    return data(RoleSymbolic).toString();
}

QString PluginEvent::locationDir() const
{
    return data(RoleLocationDir).toString();
}

QString PluginEvent::filepath() const
{
    return data(RoleFilepath).toString();
}

QString PluginEvent::version() const
{
    return data(RoleVersion).toString();
}

int PluginEvent::initIndex() const
{
    return data(RoleInitIndex).toInt();
}

int PluginEvent::pluginSize() const
{
    return data(RolePluginSize).toInt();
}

} // namespace ExtensionSystem
