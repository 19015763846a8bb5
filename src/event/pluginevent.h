// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINEVENT_H
#define EXTENSIONSYSTEM_PLUGINEVENT_H

#include "../extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

/*!
    A change of state of one plug-in: the state entered and the state left.

    The plug-in manager publishes one on every state change of a plug-in;
    IPluginListener objects and receivers tracked with
    PluginContext::trackPluginEvent() get it. A value class: copies share one
    EventData record (event type number 2) and setData() detaches. The class is
    registered with the meta-type system as "PluginEvent" when the first plug-in
    context is created, so tracked receivers can take it through queued
    connections.
*/
class EXTENSIONSYSTEM_EXPORT PluginEvent
{
public:
    /*! The values of the event, each stored under its own property key. */
    enum Role {
        RoleAction = 1, ///< The state entered, key "event.plugin.action"; read by action().
        RolePrevAction = 2, ///< The state left, key "event.plugin.prevAction"; read by prevAction().
        RoleSymbolic = 3, ///< The plug-in's symbolic name, key "event.plugin.symbolic".
        RoleLocationDir = 4, ///< The plug-in's directory, key "event.plugin.locationDir".
        RoleFilepath = 5, ///< The library file's path, key "event.plugin.filepath".
        RoleVersion = 6, ///< The plug-in's version, key "event.plugin.version".
        RoleInitIndex = 7, ///< The progress index, key "event.plugin.initIndex".
        RolePluginSize = 8 ///< The progress total, key "event.plugin.pluginSize".
    };

    /*!
        The plug-in states, with the numbers of PluginInfo::State; 0 is no state,
        the action of a default-built event. Stored in the event as a QVariant of
        this type (registered as "ExtensionSystem::PluginEvent::Action") and read
        back as \c int.
    */
    enum Action {
        Uninstalled = 1, ///< Not installed, or uninstalled.
        Installed = 2, ///< The library is loaded and its metadata read.
        Resolved = 4, ///< Its dependencies are satisfied; it is in the load queue.
        Starting = 8, ///< Its activator's start is running.
        Stopping = 16, ///< Its activator's stop is running.
        Active = 32 ///< Started and running.
    };

    /*!
        Creates an event that carries only the state \a action.

        \note Such an event maps every role but RolePrevAction, which can then
        never be set: setData(RolePrevAction, ...) returns \c false and
        prevAction() reads 0.
    */
    explicit PluginEvent(Action action = Action(0));
    /*!
        Creates the event for the change of the plug-in \a symbolic from
        \a prevAction to \a action. \a locationDir is the path of the plug-in's
        directory, \a filepath the path of its library file and \a version its
        version. \a initIndex and \a pluginSize tell the progress: the plug-in's
        index in the load queue and the queue's size, or, while the plug-ins
        directory is still being scanned, the number of plug-ins installed so far
        and the number of plug-in directories found.
    */
    PluginEvent(Action action, Action prevAction, const QString &symbolic, const QString &locationDir,
                const QString &filepath, const QString &version, int initIndex, int pluginSize);
    /*!
        Creates a view that shares the record \a data; its type is not checked, so
        a view of another class's record reads as empty. Listeners and trackers
        use it to rebuild the event they receive.
    */
    PluginEvent(const QSharedDataPointer<EventData> &data);
    /*! Creates a copy that shares the record of \a other. */
    PluginEvent(const PluginEvent &other);
    /*! Releases this view's share of the record. */
    ~PluginEvent();
    /*! Makes this event share the record of \a other. */
    PluginEvent &operator=(const PluginEvent &other);

    /*!
        Returns the value stored for \a role, or an invalid QVariant when the
        record does not map the role or holds no value for it.
    */
    QVariant data(Role role) const;
    /*!
        Stores \a value for \a role in this event only: the record is detached
        first, so other copies keep their value.

        \return \c false, storing nothing, when the record does not map \a role
        (RolePrevAction on an event built from an action alone); otherwise
        \c true.
    */
    bool setData(Role role, const QVariant &value);
    /*! Returns the shared record behind the event, as the event manager delivers it. */
    QSharedDataPointer<EventData> sharedData() const;

    /*! Returns the state entered, an Action value as \c int; 0 when none is stored. */
    int action() const;
    /*! Returns the state left, an Action value as \c int; 0 when none is stored. */
    int prevAction() const;
    /*! Returns the symbolic name of the plug-in that changed state, or an empty string. */
    QString symbolic() const;
    /*! Returns the path of the plug-in's directory, or an empty string. */
    QString locationDir() const;
    /*! Returns the path of the plug-in's library file, or an empty string. */
    QString filepath() const;
    /*! Returns the plug-in's version text from its metadata, or an empty string. */
    QString version() const;
    /*!
        Returns the progress index; 0 when none is stored.

        It is the plug-in's position in the load queue (-1 when it is not in the
        queue), or during the directory scan the number of plug-ins installed so
        far.
    */
    int initIndex() const;
    /*!
        Returns the progress total: the load queue's size, or during the directory
        scan the number of plug-in directories found; 0 when none is stored.
    */
    int pluginSize() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::PluginEvent)

#endif // EXTENSIONSYSTEM_PLUGINEVENT_H
