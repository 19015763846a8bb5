// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEREGISTRATION_H
#define EXTENSIONSYSTEM_SERVICEREGISTRATION_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace ExtensionSystem {

class Plugin;
class ServiceProperty;
class ServiceReference;

namespace Internal {
class ServiceRegistrationPrivate;
}

/*!
    The registering plug-in's handle on one registered service.

    PluginContext::registerService() returns it. Handles share one internal
    record by an atomic count; the service manager's tables hold handles too, so
    the record lives until it is unregistered and the last handle is gone. The
    record holds the service object's pointer, the plug-in, the ServiceProperty
    set and the one ServiceReference that every lookup hands out a copy of.

    Ownership: the service object stays the registrant's. Neither the handle, its
    record nor the framework ever deletes it; the registrant must call
    unregister() (normally in its activator's stop) before destroying it, or
    consumers get a dangling pointer from PluginContext::getService().

    \warning Assignment never releases the record the target held, and the
    record of a default-constructed handle, which is what a failed registration
    returns, is counted from 0. Hence:
    \li assigning over a handle leaks the record it held; assigning over a
        default-constructed member, as in
        `registration = context->registerService(...)`, leaks that default
        record;
    \li assigning a failed result to an existing handle leaves the handle
        pointing at a freed record once the returned temporary is destroyed;
    \li a copy of a default-constructed handle frees the record when the first
        of the two is destroyed, leaving the other dangling.

    Initialize the handle from the call instead
    (`ServiceRegistration registration = context->registerService(...);`),
    keep a failed result where it was returned and do not copy it, and add
    handles to containers rather than assigning over existing ones.

    Not thread-safe beyond the count: use a registration from one thread.
*/
class EXTENSIONSYSTEM_EXPORT ServiceRegistration
{
public:
    /*!
        Creates a handle on a new empty record: no plug-in, no service object, a
        default ServiceProperty (service id -1). This is what a failed
        registration looks like.

        \warning The record's count starts at 0, not 1: this handle's own
        destruction never frees it (a small leak), and a copy of it frees the
        record as soon as either of the two is destroyed. Do not copy or assign
        such a handle.
    */
    ServiceRegistration();
    /*!
        Creates a handle on a new record for the object \a service of \a plugin
        with the properties \a property. Neither pointer is owned.

        \note Used by the service manager. Constructing a registration yourself
        files nothing: use PluginContext::registerService().
    */
    ServiceRegistration(Plugin *plugin, QObject *service, const ServiceProperty &property);
    /*!
        Creates a handle that shares the record \a d and counts on it; for the
        framework's own use. Passing \c nullptr makes a handle without a record,
        which is false and must not be used otherwise.
    */
    explicit ServiceRegistration(Internal::ServiceRegistrationPrivate *d);
    /*! Creates a handle that shares the record of \a other and counts on it. */
    ServiceRegistration(const ServiceRegistration &other);
    /*!
        Drops this handle's count; the record is freed when the count reaches 0.
        The service object is never deleted. Destroying the plug-in's handle does
        not unregister the service: the manager's handles keep it filed.
    */
    virtual ~ServiceRegistration();

    /*!
        Makes this handle share the record of \a other and count on it.

        \warning The record held before is not released, so it is never freed:
        assigning over a handle, a default-constructed one included, leaks its
        record. If \a other is a failed (default-constructed) result, this handle
        dangles once \a other is destroyed. Assigning a handle to itself does
        nothing.
    */
    ServiceRegistration &operator=(const ServiceRegistration &other);

    /*!
        Orders handles by the address of their record only, so that they can be
        sorted or used as map keys; handles of one record are equivalent. It is
        no order of ranking or service id.
    */
    bool operator<(const ServiceRegistration &other) const;
    /*!
        Returns \c true when the handle has a record, which every handle returned
        by the framework has, a failed or an unregistered one too.

        \note This does not tell success: a registration failed when plugin() is
        \c nullptr.
    */
    explicit operator bool() const;

    /*!
        Returns a copy of the registration's ServiceReference, the same handle
        that lookups give consumers.
    */
    ServiceReference reference() const;
    /*!
        Returns the plug-in that registered the service, or \c nullptr for a
        failed registration and after unregister(). The plug-in is owned by the
        plug-in manager.
    */
    Plugin *plugin() const;
    /*!
        Returns the registered service object, or \c nullptr for a failed
        registration and after unregister(). The object is owned by the
        registrant, not by the registration or the framework.
    */
    QObject *serviceObject() const;
    /*! Returns the class names the service was registered under ("service.objectclass"). */
    QStringList classList() const;
    /*!
        Returns a copy of the service's property set. Changing the copy changes
        nothing in the registration; use ServiceReference::setProperty() to do
        that.
    */
    ServiceProperty property() const;
    /*! Returns whether the service's properties match \a filter, as ServiceProperty::match() tests. */
    bool match(const QHash<QString, QVariant> &filter) const;

    /*!
        Unregisters the service and clears plugin() and serviceObject() for every
        handle of the record.

        If plugin() is set, this calls PluginContext::unregisterService() of the
        registering plug-in, which publishes ServiceEvent::Unregistering (while the
        service can still be found) and then takes the service out of the
        lookups; the plug-in must still have its context. The fields are cleared
        afterwards in any case, so a second call, or a call on a failed
        registration, only clears them. The service object is not deleted: it
        stays the registrant's.

        \warning Lookups forget by class name: every other service filed under one
        of this service's class names is no longer found under that name either,
        no event is sent for it, and its object cannot be registered again.
        Give each service a class name of its own.
    */
    void unregister();

private:
    friend class Internal::ServiceRegistrationPrivate;

    Internal::ServiceRegistrationPrivate *d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREGISTRATION_H
