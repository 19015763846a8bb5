// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINCONTEXT_H
#define EXTENSIONSYSTEM_PLUGINCONTEXT_H

#include "../extensionsystem_global.h"

#include "../core/pluginframeworkconfig.h"
#include "plugininfo.h"

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class CustomizedEvent;
class ExtensionHandler;
class ExtensionPoint;
class ICustomizedListener;
class IExtensionListener;
class IFrameworkListener;
class IListener;
class IPluginListener;
class IServiceListener;
class Plugin;
class PluginMetaData;
class ServiceReference;
class ServiceRegistration;

namespace Internal {
class PluginContextPrivate;
class PluginFrameworkContext;
} // namespace Internal

/*!
    \class ExtensionSystem::PluginContext
    \brief What a plug-in gets in its activator's start() and stop(): its one door
    into the system, which files everything it does under its symbolic name.

    Each installed plug-in has exactly one context. The framework makes it when it
    installs the library and owns it (it is a QObject child of the framework's
    internal object for the plug-in); a plug-in must not delete it. It lives until
    the plug-in is uninstalled or the framework is destroyed, and it may be used in
    every state of the plug-in: no function refuses because the plug-in is not
    active.

    Every function forwards to one of the framework's managers (events, plug-ins,
    services, extensions) and adds this plug-in's symbolic name where the manager
    files things by plug-in; an empty name means "this plug-in" where a function
    says so. The context checks nothing and reports nothing itself: a failure is
    that of the manager the call reaches and leaves by that manager's
    \c errorOccured() signal (for plug-in operations PluginManager::errorOccured());
    many refusals are silent.

    Ownership, in short: listeners, tracked receivers, service objects and
    extension handlers stay the caller's; the framework keeps raw pointers to them
    and never deletes them. Extension points pass to the framework while they are
    registered. Nothing a plug-in registers is withdrawn when it stops, so a
    plug-in unregisters its listeners, subscriptions, services, points and
    handlers in its activator's stop().

    All functions must be called on the framework's thread; no lock is taken.
    Listeners are called synchronously, inside the call that causes an event;
    tracked receivers as their connection type says.

    \sa IPluginActivator, PluginFramework
*/
class EXTENSIONSYSTEM_EXPORT PluginContext : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginContext)
public:
    /*!
        Creates the context of \a plugin, which reaches the managers through
        \a context (not owned), with \a parent as QObject parent (the plug-in
        object). The framework calls this when it installs a library; plug-ins
        never create a context. Also registers the metatype "PluginEvent", so that
        tracked plug-in events can cross queued connections.
    */
    PluginContext(Plugin *plugin, Internal::PluginFrameworkContext *context, QObject *parent);
    /*!
        Destroys the context; it goes with its plug-in object, when the plug-in
        is uninstalled or the framework is destroyed. It withdraws nothing:
        listeners, subscriptions, services, extension points and handlers
        registered through it stay where they are.
    */
    ~PluginContext() override;

    // Identity and resources
    /*!
        Returns this plug-in's symbolic name: the value of the \c symbolic key of
        its META.INF (empty when META.INF is missing or names no one), or the
        base name of the library file when the library could not be loaded.
        Listeners, subscriptions and services registered through this context are
        filed under this name.
    */
    QString symbolic() const;
    /*!
        Returns the directory that holds this plug-in's library file, as an
        absolute path: the place of files shipped beside the library.
    */
    QDir location() const;
    /*!
        Returns the Qt resource path ":/\<symbolic\>/\<path\>" for \a path, for
        example ":/core.db/icons/db.png" for "icons/db.png"; an empty \a path
        gives the prefix followed by a slash. Whether the resource exists is not checked.

        \note The prefix is the symbolic name, whereas META.INF is looked for under
        the library's base name: both agree only if the plug-in gives its
        resources the prefix of its symbolic name.
    */
    QString resourcePath(const QString &path) const;
    /*!
        Returns the metadata read from this plug-in's META.INF, or \c nullptr when
        the library could not be loaded. The object belongs to the framework and
        lives as long as the plug-in is installed; do not delete it.
    */
    const PluginMetaData *metaData() const;

    // Events
    /*!
        Publishes \a event to every listener registered for its type number,
        newest registration first, synchronously: all listeners have run when the
        call returns. Nothing is kept; the event is a shared value. Type 0 reaches
        nobody, since listeners of type 0 are refused, and receivers tracked with
        trackCustomizedEvent() are not called.
    */
    void publishCustomizedEvent(const CustomizedEvent &event);
    /*!
        Registers \a listener, filed under this plug-in, for the events of its own
        type number (the one given to the ICustomizedListener constructor).

        Ownership stays with the caller: the framework keeps the raw pointer only,
        never deletes the listener and does not remove it when the plug-in stops.
        Call unregisterlistener() before destroying it; a listener destroyed while
        registered leaves a dangling pointer behind, which the next event of its
        type is delivered to. A null listener, one of type 0 and one already
        registered are ignored.

        \sa publishCustomizedEvent()
    */
    void registerCustomizedListener(ICustomizedListener *listener);
    /*!
        Registers \a listener, filed under this plug-in, for extension events
        (type 4): extension points registered and unregistered.

        The caller keeps ownership and must call unregisterlistener() before
        destroying the listener, as for registerCustomizedListener(); nothing is
        removed when the plug-in stops. Null and already registered listeners are
        ignored.
    */
    void registerExtensionListener(IExtensionListener *listener);
    /*!
        Registers \a listener, filed under this plug-in, for service events
        (type 3): services registered and about to be unregistered.

        The caller keeps ownership and must call unregisterlistener() before
        destroying the listener, as for registerCustomizedListener(); nothing is
        removed when the plug-in stops. Null and already registered listeners are
        ignored.
    */
    void registerServiceListener(IServiceListener *listener);
    /*!
        Registers \a listener, filed under this plug-in, for framework events
        (type 1): every change of the framework's state.

        The caller keeps ownership and must call unregisterlistener() before
        destroying the listener, as for registerCustomizedListener(); nothing is
        removed when the plug-in stops. Null and already registered listeners are
        ignored.
    */
    void registerFrameworkListener(IFrameworkListener *listener);
    /*!
        Registers \a listener, filed under this plug-in, for plug-in events
        (type 2): every state change of every plug-in.

        The caller keeps ownership and must call unregisterlistener() before
        destroying the listener, as for registerCustomizedListener(); nothing is
        removed when the plug-in stops. Null and already registered listeners are
        ignored.

        \note All five \c register...Listener() functions do the same thing: the
        event type is read from the listener's IListener::listenerType(), not from
        the function that was called.
    */
    void registerPluginListener(IPluginListener *listener);
    /*!
        Removes \a listener from the event tables, whichever plug-in registered
        it. It does not delete it: the caller still owns it and may destroy it
        afterwards, though not during a delivery, because a delivery already in
        progress still calls it. Null and unknown listeners are ignored. (The name
        is written with a small \c l.)
    */
    void unregisterlistener(IListener *listener);
    /*!
        Subscribes \a slot of \a receiver to framework events (type 1): from now
        on every FrameworkEvent is passed to it through a Qt connection of
        \a type. \a slot is a string made with SLOT() or SIGNAL(), whose signature
        takes a FrameworkEvent or nothing, e.g. \c SLOT(onFramework(FrameworkEvent)).

        The subscription is filed under this plug-in and lasts until
        untrackEvent(); it is not removed when the plug-in stops. The framework
        owns the helper object it creates for it; \a receiver stays the caller's.
        \a slot is kept as a pointer, not copied, so it must stay valid (a string
        literal does). A pair of receiver and slot pointer is tracked once,
        whatever the event type: a second call with the same pair is ignored, and
        so is a call with a null receiver or slot.
    */
    void trackFrameworkEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    /*!
        Subscribes \a slot of \a receiver to plug-in events (type 2), passed as a
        PluginEvent through a Qt connection of \a type; the metatype "PluginEvent"
        is registered, so queued connections work.

        Ownership, lifetime and the once-per-receiver-and-slot rule are those of
        trackFrameworkEvent().
    */
    void trackPluginEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    /*!
        Subscribes \a slot of \a receiver to service events (type 3), passed as a
        ServiceEvent through a Qt connection of \a type.

        Ownership, lifetime and the once-per-receiver-and-slot rule are those of
        trackFrameworkEvent().
    */
    void trackServiceEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    /*!
        Subscribes \a slot of \a receiver to extension events (type 4), passed as
        an ExtensionEvent through a Qt connection of \a type.

        Ownership, lifetime and the once-per-receiver-and-slot rule are those of
        trackFrameworkEvent().
    */
    void trackExtensionEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    /*!
        Records a subscription of \a slot of \a receiver to the events of type
        \a eventType, filed under this plug-in. For the numbers 1 to 4 this is the
        same as the matching \c track...Event() function.

        \warning For any other number the receiver is never called: customized
        events reach ICustomizedListener objects only. The subscription is kept
        all the same, counts for the once-per-receiver-and-slot rule of
        trackFrameworkEvent() and lasts until untrackEvent().
    */
    void trackCustomizedEvent(int eventType, const QObject *receiver, const char *slot,
                              Qt::ConnectionType type = Qt::AutoConnection);
    /*!
        Ends the subscriptions of \a receiver that were made through this context:
        the one whose slot is the pointer \a slot, or all of them when \a slot is
        null. The slot is compared as a pointer, not as text: pass the pointer
        given to the \c track...Event() call. Subscriptions made by other plug-ins
        are not touched; a null receiver is ignored.

        The helper objects are deleted from the event loop, so this is safe inside
        a delivery; until then, events published before control returns to the
        event loop still reach the slot.
    */
    void untrackEvent(const QObject *receiver, const char *slot);

    // Plug-ins
    /*!
        Starts the plug-in \a symbolic after the plug-ins it depends on,
        dependencies first; active ones are passed over. Synchronous: the
        activators have run when the call returns.

        Failures go out by PluginManager::errorOccured(): error 6
        (PluginManager::NotInstalledError, "Cannot start plugin: %1, that is not
        installed") when no plug-in of that name is installed, which includes an
        empty name (unlike stopPlugin(), an empty name does not mean this
        plug-in); error 7 ("Cannot start plugin: %1, that is not resolved") for a
        listed plug-in that is not resolved. A plug-in that is installed but not
        resolved has nothing to start, and nothing is reported for it.
    */
    void startPlugin(const QString &symbolic);
    /*!
        Stops the plug-in \a symbolic, or this plug-in when \a symbolic is empty,
        after stopping the plug-ins that depend on it, the last resolved first.
        Synchronous.

        Failures go out by PluginManager::errorOccured(): error 6 ("The plugin: %1
        is not installed") for an unknown name, error 8 ("Cannot stop plugin: %1,
        that is not actived") for each listed plug-in that is not active. A
        dependant that needs two listed plug-ins is listed twice, so its second
        stop reports error 8. Called from this plug-in's own activator, the
        plug-in is still starting or stopping and is not stopped (error 8).
    */
    void stopPlugin(const QString &symbolic = QString());
    /*!
        Returns a snapshot of the plug-in \a symbolic: its metadata, its current
        state, its directory, file and startup policy. The copy does not follow
        later changes. A plug-in refused by the black or white list is still known
        here; an unknown name, or an empty one, gives an empty PluginInfo
        (PluginInfo::isValid() false, PluginInfo::currentState() 0).
    */
    PluginInfo pluginInfo(const QString &symbolic) const;
    /*!
        Returns snapshots of all plug-ins the framework knows, sorted by symbolic
        name, refused ones included. Libraries that could not be loaded have no
        metadata and are not listed.
    */
    QList<PluginInfo> pluginInfos() const;
    /*!
        Returns the startup policy that config.ini holds for \a symbolic, or for
        this plug-in when \a symbolic is empty. The entry "Plugin/\<symbolic\>" is
        read at each call, trimmed and in any case; a missing or unknown value
        gives PluginFrameworkConfig::PolicyUndefine.
    */
    PluginFrameworkConfig::StartupPolicy startupPolicy(const QString &symbolic = QString()) const;
    /*!
        Writes \a policy for \a symbolic, or for this plug-in when \a symbolic is
        empty, to config.ini, and updates the framework's PluginInfo of that name.
        PluginFrameworkConfig::PolicyUndefine removes the entry, which reaches the
        file at the next flush; the other values are written and synced at once.

        The policy counts at the next installation only: installed and running
        plug-ins are not touched. Nothing is reported.
    */
    void setStartupPolicy(PluginFrameworkConfig::StartupPolicy policy, const QString &symbolic = QString());

    // Services, filed under this plug-in
    /*!
        Registers \a service under each class name in \a classes, filed under this
        plug-in, publishes a ServiceEvent with ServiceEvent::Registered and returns
        the registration handle.

        \a service stays the caller's: the registry keeps its pointer only and
        never deletes it, and nothing unregisters it when the plug-in stops. Keep
        it alive until it is unregistered, and unregister it in the activator's
        stop() at the latest (unregisterService() or
        ServiceRegistration::unregister()).

        An object that implements IServiceFactory, named unqualified among its
        base classes, is filed as a factory: consumers get the objects it makes
        (see getService()), and the class names are not checked. Any other object
        must answer QObject::qt_metacast() for every name in \a classes: a class
        name of its inheritance chain, or an interface identifier it declares with
        Q_INTERFACES. \a properties are stored with the service; the registry
        sets the keys PluginConstance::SERVICE_PLUGIN, SERVICE_OBJECTCLASS,
        SERVICE_ID, SERVICE_PID and SERVICE_ISFACTORY itself, over any value given
        for them.

        On failure nothing is filed and the service registry emits its
        \c errorOccured(): 1 "Cannot register service with invalid parmaters" (null
        \a service, empty \a classes), 2 "The service object is not inherits from
        the class: %1", 4 "The service object has been registered". The returned
        handle then has a null ServiceRegistration::plugin(); it converts to
        \c true all the same.
    */
    ServiceRegistration registerService(QObject *service, const QStringList &classes,
                                        const QHash<QString, QVariant> &properties = QHash<QString, QVariant>());
    /*!
        Withdraws the service of \a registration, which any plug-in may have
        made: publishes a ServiceEvent with ServiceEvent::Unregistering first,
        while the service is still filed, then removes it from the registry.
        Neither the service object nor objects a factory made are deleted.

        A handle whose ServiceRegistration::plugin() is null (a failed
        registration, or one already unregistered through
        ServiceRegistration::unregister()) is refused with error 5 "The
        ServiceRegistration is invalid" on the registry's \c errorOccured().

        \warning The removal is wide: every service filed under any of the class
        names of \a registration becomes unfindable, not only this one.
    */
    void unregisterService(const ServiceRegistration &registration);
    /*!
        Returns references to the services filed under the class name \a clazz
        whose properties match \a filter, newest registration first; the ranking
        plays no part. A service matches when every key of \a filter is present
        with an equal value; an empty filter matches all. An empty or unknown
        class name gives an empty list.

        A reference owns nothing; it shares the registration's record. Do not use
        it after the service has been unregistered.
    */
    QList<ServiceReference>
    findServiceReferences(const QString &clazz,
                          const QHash<QString, QVariant> &filter = QHash<QString, QVariant>()) const;
    /*!
        Returns the service object behind \a reference for this plug-in and counts
        the call for this plug-in; pair it with ungetService().

        For a plain service this is the registered object itself, which stays its
        registrant's: do not delete it, and stop using it when its service is
        unregistered. For a factory the object comes from
        IServiceFactory::createService(), called with this context: with
        IServiceFactory::sharedPerPlugin() true the same object is returned again
        while this plug-in's count is above zero, otherwise a new one on every
        call. A factory-made object belongs to the factory or to this plug-in,
        never to the framework, which never deletes it.

        Returns \c nullptr for a null reference and for a service already
        unregistered through ServiceRegistration::unregister().
    */
    QObject *getService(const ServiceReference &reference);
    /*!
        Tells the registry that this plug-in no longer uses the object \a service
        it got from getService() for \a reference: its count drops by one, not
        below zero. For a factory the registry also forgets \a service, or every
        object made for this plug-in when the factory shares one per plug-in, the
        count has reached zero or \a service is null.

        Nothing is deleted: a factory-made object is still to be disposed of by the
        factory or by this plug-in. A null reference is ignored.
    */
    void ungetService(const ServiceReference &reference, QObject *service);

    // Extensions
    /*!
        Registers the extension point \a point under its ExtensionPoint::id() and
        publishes an ExtensionEvent with ExtensionEvent::PointRegistered. Handlers
        that were waiting for that id are handed to the point, then the point gets
        the extension texts that the store holds for its ExtensionPoint::plugin()
        and id, from which it builds its ExtensionData items.

        Ownership passes to the framework: the point becomes a child of the
        extension registry's Object tree (leaving any earlier Object parent) and
        is deleted with the framework if it is still registered then.
        unregisterExtensionPoint() hands it back. A point registered under an id
        already in use replaces the earlier one for look-ups by id; the earlier one
        stays owned by the registry. A null point or one with an empty id is
        ignored.
    */
    void registerExtensionPoint(ExtensionPoint *point);
    /*!
        Unregisters the point registered under \a id (matched exactly): detaches
        it from the registry without deleting it, so the caller owns it again and
        may delete it, with its data items. Handlers waiting at the registry for
        that id are dropped, and an ExtensionEvent with
        ExtensionEvent::PointUnregistered is published, twice, because the
        detachment reports the removal twice. An unknown or empty id is ignored.
    */
    void unregisterExtensionPoint(const QString &id);
    /*!
        Registers \a handler for the ExtensionData item of the same
        ExtensionHandler::id() under the point named by its
        ExtensionHandler::extPoint(), matched ignoring case. If that point is
        registered, the handler is attached to the item, or waits at the point
        until such an item appears; otherwise it waits at the registry until the
        point is registered. Attaching replaces an earlier handler of the item and
        replays an ExtensionData::active() call that was waiting for a handler.

        \a handler stays the caller's: the framework keeps its pointer only and
        never deletes it. It may be deleted at any time; it then detaches itself
        (the item's "ExtensionHandler" attribute reads "stop") and leaves the
        waiting tables. A null handler, or one with an empty id or extPoint(), is
        ignored, and so is a second handler for an id that already waits at the
        point.
    */
    void registerExtensionHandler(ExtensionHandler *handler);
    /*!
        Detaches the handler registered with the id \a id from its point: the
        data item of that id loses its handler (its "ExtensionHandler" attribute
        reads "stop"), or a handler waiting at the point is dropped. The handler
        is not deleted; the caller still owns it.

        \note A handler still waiting at the registry for a point that is not
        registered yet is not reached; delete it instead.
    */
    void unregisterExtensionHandler(const QString &id);

private:
    Q_DISABLE_COPY(PluginContext)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINCONTEXT_H
