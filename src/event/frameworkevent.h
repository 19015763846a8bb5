// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_FRAMEWORKEVENT_H
#define EXTENSIONSYSTEM_FRAMEWORKEVENT_H

#include "../extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QVariant>

namespace ExtensionSystem {

/*!
    A change of the framework's state: the new state and the old one.

    The framework publishes one on every change of its state, after the state has
    changed; IFrameworkListener objects and receivers tracked with
    PluginContext::trackFrameworkEvent() get it. A value class: copies share one
    EventData record (event type number 1) and setData() detaches.
*/
class EXTENSIONSYSTEM_EXPORT FrameworkEvent
{
public:
    /*! The values of the event, each stored under its own property key. */
    enum Role {
        RoleAction = 1, ///< The new state, key "event.framework.action"; read by action().
        RolePrevAction = 2 ///< The state left, key "event.framework.prevAction"; read by prevAction().
    };

    /*!
        The framework states. Stored in the event as a QVariant of this type
        (registered as "ExtensionSystem::FrameworkEvent::Action") and read back
        as \c int.
    */
    enum Action {
        FrameworkUninitialized = 0, ///< Not initialized yet.
        FrameworkInitializing = 1, ///< PluginFramework::init() is running.
        FrameworkInitialized = 2, ///< Initialized, or stopped again after a start.
        FrameworkStopping = 4, ///< PluginFramework::stop() is stopping the plug-ins.
        FrameworkStarting = 8, ///< PluginFramework::start() is starting the plug-ins.
        FrameworkStarted = 16 ///< Started: the plug-ins have been started.
    };

    /*!
        Creates an event that carries only the state \a action; both roles are
        mapped, so setData() works for either.
    */
    explicit FrameworkEvent(Action action = FrameworkUninitialized);
    /*! Creates an event for the change from \a prevAction to \a action. */
    FrameworkEvent(Action action, Action prevAction);
    /*!
        Creates a view that shares the record \a data; its type is not checked.
        Listeners and trackers use it to rebuild the event they receive.
    */
    FrameworkEvent(const QSharedDataPointer<EventData> &data);
    /*! Creates a copy that shares the record of \a other. */
    FrameworkEvent(const FrameworkEvent &other);
    /*! Releases this view's share of the record. */
    ~FrameworkEvent();
    /*! Makes this event share the record of \a other. */
    FrameworkEvent &operator=(const FrameworkEvent &other);

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

    /*! Returns the new state, an Action value as \c int; 0 when none is stored. */
    int action() const;
    /*! Returns the state left, an Action value as \c int; 0 when none is stored. */
    int prevAction() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::FrameworkEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::FrameworkEvent)

#endif // EXTENSIONSYSTEM_FRAMEWORKEVENT_H
