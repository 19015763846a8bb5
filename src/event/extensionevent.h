// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONEVENT_H
#define EXTENSIONSYSTEM_EXTENSIONEVENT_H

#include "../extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

/*!
    An extension point was opened or closed by a plug-in.

    The extension point registry publishes one when a point is registered and when
    one is removed; IExtensionListener objects and receivers tracked with
    PluginContext::trackExtensionEvent() get it. A value class: copies share one
    EventData record (event type number 4) and setData() detaches.
*/
class EXTENSIONSYSTEM_EXPORT ExtensionEvent
{
public:
    /*! The values of the event, each stored under its own property key. */
    enum Role {
        RoleAction = 1, ///< What happened, key "event.extension.action"; read by action().
        RolePlugin = 2, ///< The symbolic name of the point's plug-in, key "event.extension.plugin".
        RolePointId = 3 ///< The extension point's id, key "event.extension.pointId".
    };

    /*!
        What happened to the extension point. Stored in the event as a QVariant of
        this type (registered as "ExtensionSystem::ExtensionEvent::Action") and
        read back as \c int.
    */
    enum Action {
        PointRegistered = 1, ///< The extension point has been registered.
        PointUnregistered = 2 ///< The extension point is being removed; one removal sends this twice.
    };

    /*!
        Creates an event that carries only \a action; all roles are mapped, so
        setData() works for each of them.
    */
    explicit ExtensionEvent(Action action = Action(0));
    /*!
        Creates the event for \a action on the extension point \a pointId of the
        plug-in with the symbolic name \a plugin.
    */
    ExtensionEvent(Action action, const QString &plugin, const QString &pointId);
    /*!
        Creates a view that shares the record \a data; its type is not checked.
        Listeners and trackers use it to rebuild the event they receive.
    */
    ExtensionEvent(const QSharedDataPointer<EventData> &data);
    /*! Creates a copy that shares the record of \a other. */
    ExtensionEvent(const ExtensionEvent &other);
    /*! Releases this view's share of the record. */
    ~ExtensionEvent();
    /*! Makes this event share the record of \a other. */
    ExtensionEvent &operator=(const ExtensionEvent &other);

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
    /*! Returns the symbolic name of the plug-in the extension point belongs to, or an empty string. */
    QString plugin() const;
    /*! Returns the id of the extension point, or an empty string. */
    QString pointId() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ExtensionEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::ExtensionEvent)

#endif // EXTENSIONSYSTEM_EXTENSIONEVENT_H
