// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEMANAGER_H
#define EXTENSIONSYSTEM_SERVICEMANAGER_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class Plugin;
class ServiceReference;
class ServiceRegistration;

namespace Internal {
class PluginFrameworkContext;
class ServiceManagerPrivate;
} // namespace Internal

/*!
    The service registry of one framework: files services under their class
    names, announces them as service events and answers lookups, newest first.

    The framework creates one, as a child of the PluginFramework, and it lives as
    long as the framework; plug-ins reach it only through the service functions
    of their PluginContext. It holds ServiceRegistration handles by value and
    pointers to service objects, and owns no service object: registrants keep
    theirs, and must unregister before destroying them. Nothing is unregistered
    for a plug-in when it stops.

    Failures are reported through errorOccured() and the return value; there is
    no public reader of the last error, and a success does not reset it. All
    functions run on the caller's thread without locks, and service listeners
    are called inside them: use the registry from the framework's thread only.
*/
class EXTENSIONSYSTEM_EXPORT ServiceManager : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(ServiceManager)
public:
    /*!
        Creates an empty registry for the framework \a context, as a child of
        \a parent; the framework does this. \a context is not owned.
    */
    ServiceManager(Internal::PluginFrameworkContext *context, QObject *parent);
    /*!
        Destroys the registry and its tables, without sending any event. Service
        objects are not deleted.
    */
    ~ServiceManager() override;

    /*!
        Registers the object \a service of \a plugin under the class names
        \a classes with the registrant's \a properties, and publishes
        ServiceEvent::Registered.

        The object must answer qt_metacast() for each name in \a classes (its
        class name, a base class, or a Q_INTERFACES identifier), unless it is a
        factory: an object that answers qt_metacast("IServiceFactory"), that is,
        lists IServiceFactory unqualified among its base classes. A factory may be
        registered under names it does not implement, and its "service.isfactory"
        property is \c true. The manager adds "service.plugin",
        "service.objectclass", "service.id", "service.pid" and "service.isfactory"
        to \a properties, overriding what the registrant gave under those keys.
        Ids run 0, 1, 1, 1, ... and start again at 0 after any unregistration;
        they are not unique.

        Ownership does not change: the framework keeps the pointers to \a plugin
        and \a service and never deletes either.

        \return the registration; the caller keeps it to unregister later. On
        failure, nothing is filed, errorOccured() is emitted, and the result is a
        default-constructed registration: still \c true by operator bool(), its
        plugin() \c nullptr. The failures, by error number: 1 "Cannot register
        service with invalid parmaters" (\a plugin or \a service null, or
        \a classes empty); 2 "The service object is not inherits from the class:
        %1" (with the first class name the object does not answer); 4 "The service
        object has been registered" (\a service is filed already).
    */
    ServiceRegistration registerService(Plugin *plugin, QObject *service, const QStringList &classes,
                                        const QHash<QString, QVariant> &properties);
    /*!
        Unregisters the service of \a registration: publishes
        ServiceEvent::Unregistering, while the service can still be found, then
        takes it out of the tables. The service object is not deleted.

        It does not clear the registration's plugin() and serviceObject(); use
        ServiceRegistration::unregister(), which calls this and then clears them.
        A handle whose plugin() is \c nullptr (a failed or an unregistered one) is
        refused with error 5, "The ServiceRegistration is invalid", through
        errorOccured().

        \warning Removal is by class name: every other service filed under one of
        the same class names disappears from lookups under that name as well,
        without an event, and its object cannot be registered again.
    */
    void unregisterService(const ServiceRegistration &registration);
    /*!
        Returns references to the services registered under the class name
        \a clazz whose properties match \a filter.

        A service matches when every entry of \a filter is present in its
        properties with an equal value (see ServiceProperty::match()); an empty
        \a filter matches all.

        The list is newest registration first; "service.ranking" plays no part in
        the order, so sort by it yourself if you need to. An empty \a clazz or an
        unknown one gives an empty list and no error; there is no way to list all
        services. The references are handles to the registrations and own
        nothing; they must not be used after the service is gone.
    */
    QList<ServiceReference> findServiceReferences(const QString &clazz, const QHash<QString, QVariant> &filter) const;

signals:
    /*!
        Emitted when an operation fails.

        \a error is the error number and \a errorString the translated message:
        1 "Cannot register service with invalid parmaters", 2 "The service object
        is not inherits from the class: %1", 3 "Cannot create the service
        registration", 4 "The service object has been registered", 5 "The
        ServiceRegistration is invalid". Emitted synchronously, on the caller's
        thread. Nothing inside the framework is connected to it.
    */
    void errorOccured(int error, const QString &errorString);

private:
    Q_DISABLE_COPY(ServiceManager)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEMANAGER_H
