// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEREFERENCE_H
#define EXTENSIONSYSTEM_SERVICEREFERENCE_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class ServiceProperty;

namespace Internal {
class ServiceReferencePrivate;
class ServiceRegistrationPrivate;
} // namespace Internal

/*!
    A consumer's handle on a registered service, as lookups hand it out.

    PluginContext::findServiceReferences() returns these; pass one to
    PluginContext::getService() to obtain the service object and to
    PluginContext::ungetService() when done. All references to one service are
    copies of one handle that the registration holds, sharing a small record by
    an atomic count.

    Ownership: a reference owns neither the service object nor the registration.
    It does not keep the registration alive: once the service is unregistered and
    the registering plug-in has dropped its ServiceRegistration, the reference
    points at a freed record and any use of it, even operator bool(), is
    undefined. Stop using references when the service goes, which
    ServiceEvent::Unregistering announces before anything is removed.

    \warning Assigning over a reference never releases the record it held (a
    small leak). Construct references in place or keep them in containers.
*/
class EXTENSIONSYSTEM_EXPORT ServiceReference
{
public:
    /*!
        Creates a reference to no service: it is false, getService() returns
        \c nullptr for it, and its readers return empty values.
    */
    ServiceReference();
    /*!
        Creates a new reference record linked to \a registration; for the
        framework's own use. The link is not counted and never cleared.
    */
    explicit ServiceReference(Internal::ServiceRegistrationPrivate *registration);
    /*! Creates a handle that shares the record of \a other. */
    ServiceReference(const ServiceReference &other);
    /*!
        Drops this handle's count and frees the small reference record at 0; the
        registration and the service object are never freed by it.
    */
    ~ServiceReference();

    /*!
        Makes this handle share the record of \a other.

        \warning The record held before is not released, so it is never freed.
        Assigning a reference to itself does nothing.
    */
    ServiceReference &operator=(const ServiceReference &other);

    /*!
        Returns \c true when both handles share one record, that is, refer to the
        same registration. Two default-constructed references are not equal.
    */
    bool operator==(const ServiceReference &other);
    /*!
        Orders handles by the address of their record only, so that they can be
        sorted or used as map keys. It is no order of ranking or service id.
    */
    bool operator<(const ServiceReference &other) const;
    /*!
        Returns \c true when the reference is linked to a registration, which
        every reference from a lookup is, also after the service has been
        unregistered. Returns \c false for a default-constructed reference.
    */
    explicit operator bool() const;

    /*!
        Returns whether the service's properties match \a filter, as
        ServiceProperty::match() tests; \c false for a reference to no service.
    */
    bool match(const QHash<QString, QVariant> &filter) const;
    /*!
        Returns the current value of the service property \a key, such as
        "service.ranking", or an invalid QVariant when the key is absent or the
        reference is to no service.
    */
    QVariant property(const QString &key) const;
    /*!
        Stores \a value under \a key in the registration's property set.

        The entry is created or replaced, and the change is seen at once through
        every handle of the service and by later lookup filters.

        The keys that the service manager sets, "service.objectclass",
        "service.plugin", "service.isfactory", "service.id" and "service.pid",
        are refused in any letter case, silently. No ServiceEvent is sent. Does
        nothing for a reference to no service.
    */
    void setProperty(const QString &key, const QVariant &value);
    /*!
        Returns the keys of the service's property set, in no particular order;
        an empty list for a reference to no service.
    */
    QStringList propertyKeys() const;
    /*!
        Returns a copy of the service's property set, or a default-constructed
        ServiceProperty (service id -1) for a reference to no service. Changing
        the copy changes nothing in the registration.
    */
    ServiceProperty serviceProperty() const;
    /*!
        Returns the symbolic name of the plug-in that registered the service: the
        "symbolic" value of its metadata, or the base name of its library file when
        no metadata is loaded. Returns an empty string for a reference to no
        service and after ServiceRegistration::unregister().
    */
    QString plugin() const;

private:
    friend class Internal::ServiceReferencePrivate;

    Internal::ServiceReferencePrivate *d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREFERENCE_H
