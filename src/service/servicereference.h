// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEREFERENCE_H
#define EXTENSIONSYSTEM_SERVICEREFERENCE_H

#include "extensionsystem_global.h"

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

// A consumer's handle on a registered service, as lookups hand it out. It does
// not keep the registration alive: stop using it when the service goes, which
// the service event Unregistering announces.
class EXTENSIONSYSTEM_EXPORT ServiceReference
{
public:
    ServiceReference();
    explicit ServiceReference(Internal::ServiceRegistrationPrivate *registration);
    ServiceReference(const ServiceReference &other);
    ~ServiceReference();

    // Shares other's record without releasing the one held before.
    ServiceReference &operator=(const ServiceReference &other);

    // The two handles share one record.
    bool operator==(const ServiceReference &other);
    // By record address: no order of rank or id.
    bool operator<(const ServiceReference &other) const;
    explicit operator bool() const;

    bool match(const QHash<QString, QVariant> &filter) const;
    QVariant property(const QString &key) const;
    // Keys that the manager sets (class list, plug-in, factory flag, id, pid)
    // are refused in any case; every other key is stored at once for all handles.
    void setProperty(const QString &key, const QVariant &value);
    QStringList propertyKeys() const;
    ServiceProperty serviceProperty() const;
    // Symbolic name of the registering plug-in.
    QString plugin() const;

private:
    friend class Internal::ServiceReferencePrivate;

    Internal::ServiceReferencePrivate *d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREFERENCE_H
