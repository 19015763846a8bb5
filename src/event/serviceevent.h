// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEEVENT_H
#define EXTENSIONSYSTEM_SERVICEEVENT_H

#include "../extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class ServiceProperty;

/*!
    A service was registered or is about to be unregistered.

    The service manager publishes one after each registration and before each
    unregistration; IServiceListener objects and receivers tracked with
    PluginContext::trackServiceEvent() get it. Unregistering is sent while the
    service is still filed: it is the consumers' signal to unget the service and
    drop their ServiceReference handles. A value class: copies share one
    EventData record (event type number 3) and setData() detaches.
*/
class EXTENSIONSYSTEM_EXPORT ServiceEvent
{
public:
    /*! The values of the event, each stored under its own property key. */
    enum Role {
        RoleAction = 1, ///< What happened, key "event.service.action"; read by action().
        RolePlugin = 2, ///< The registering plug-in's symbolic name, key "event.service.plugin".
        RoleClazz = 3, ///< The class names of the service, key "event.service.clazz".
        RoleProperty = 4 ///< The service's ServiceProperty, key "event.service.property".
    };

    /*!
        What happened to the service. Stored in the event as a QVariant of this
        type (registered as "ExtensionSystem::ServiceEvent::Action") and read back
        as \c int.
    */
    enum Action {
        Registered = 1, ///< The service has been registered and can be found.
        Unregistering = 2 ///< The service is about to be unregistered; it is still filed.
    };

    /*!
        Creates an event that carries only \a action; all roles are mapped, so
        setData() works for each of them.
    */
    explicit ServiceEvent(Action action = Action(0));
    /*!
        Creates the event for \a action on the service that the plug-in with the
        symbolic name \a plugin registered under \a classes, with a copy of its
        \a property set.
    */
    ServiceEvent(Action action, const QString &plugin, const QStringList &classes, const ServiceProperty &property);
    /*!
        Creates a view that shares the record \a data; its type is not checked.
        Listeners and trackers use it to rebuild the event they receive.
    */
    ServiceEvent(const QSharedDataPointer<EventData> &data);
    /*! Creates a copy that shares the record of \a other. */
    ServiceEvent(const ServiceEvent &other);
    /*! Releases this view's share of the record. */
    ~ServiceEvent();
    /*! Makes this event share the record of \a other. */
    ServiceEvent &operator=(const ServiceEvent &other);

    /*!
        Returns the value stored for \a role, or an invalid QVariant when the
        record does not map the role or holds no value for it.
    */
    QVariant data(Role role) const;
    /*!
        Stores \a value for \a role in this event only: the record is detached
        first, so other copies keep their value.

        \return \c false, storing nothing, when the record does not map \a role;
        otherwise \c true.
    */
    bool setData(Role role, const QVariant &value);
    /*! Returns the shared record behind the event, as the event manager delivers it. */
    QSharedDataPointer<EventData> sharedData() const;

    /*! Returns what happened, an Action value as \c int; 0 when none is stored. */
    int action() const;
    /*! Returns the symbolic name of the plug-in that registered the service, or an empty string. */
    QString plugin() const;
    /*! Returns the class names the service was registered under, or an empty list. */
    QStringList classList() const;
    /*!
        Returns a copy of the service's property set as it was when the event was
        built, or a default-constructed ServiceProperty (service id -1) when none
        is stored. Changing the copy changes nothing in the registry.
    */
    ServiceProperty property() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ServiceEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::ServiceEvent)

#endif // EXTENSIONSYSTEM_SERVICEEVENT_H
