// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEEVENT_H
#define EXTENSIONSYSTEM_SERVICEEVENT_H

#include "extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class ServiceProperty;

// A service was registered or is about to be unregistered.
class EXTENSIONSYSTEM_EXPORT ServiceEvent
{
public:
    enum Role { RoleAction = 1, RolePlugin = 2, RoleClazz = 3, RoleProperty = 4 };

    enum Action { Registered = 1, Unregistering = 2 };

    explicit ServiceEvent(Action action = Action(0));
    ServiceEvent(Action action, const QString &plugin, const QStringList &classes, const ServiceProperty &property);
    ServiceEvent(const QSharedDataPointer<EventData> &data);
    ServiceEvent(const ServiceEvent &other);
    ~ServiceEvent();
    ServiceEvent &operator=(const ServiceEvent &other);

    QVariant data(Role role) const;
    bool setData(Role role, const QVariant &value);
    QSharedDataPointer<EventData> sharedData() const;

    int action() const;
    QString plugin() const;
    QStringList classList() const;
    ServiceProperty property() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ServiceEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::ServiceEvent)

#endif // EXTENSIONSYSTEM_SERVICEEVENT_H
