// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEREGISTRATION_H
#define EXTENSIONSYSTEM_SERVICEREGISTRATION_H

#include "extensionsystem_global.h"

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

// The registering plug-in's handle on one registered service. Handles share one
// record by count; see the notes on the constructors and on assignment.
class EXTENSIONSYSTEM_EXPORT ServiceRegistration
{
public:
    // A record of its own with a count of 0: this is what a failed registration
    // looks like. Keep it where it was returned; a copy that outlives it frees
    // the record under it.
    ServiceRegistration();
    ServiceRegistration(Plugin *plugin, QObject *service, const ServiceProperty &property);
    explicit ServiceRegistration(Internal::ServiceRegistrationPrivate *d);
    ServiceRegistration(const ServiceRegistration &other);
    virtual ~ServiceRegistration();

    // Shares other's record without releasing the one held before, which is
    // therefore never freed.
    ServiceRegistration &operator=(const ServiceRegistration &other);

    // By record address only.
    bool operator<(const ServiceRegistration &other) const;
    // True for every handle, a failed or an unregistered one too: a failure is
    // told by plugin() being null.
    explicit operator bool() const;

    ServiceReference reference() const;
    Plugin *plugin() const;
    QObject *serviceObject() const;
    QStringList classList() const;
    ServiceProperty property() const;
    bool match(const QHash<QString, QVariant> &filter) const;

    // Unregisters through the registering plug-in's context, then clears
    // plugin() and serviceObject() for every handle of the record.
    void unregister();

private:
    friend class Internal::ServiceRegistrationPrivate;

    Internal::ServiceRegistrationPrivate *d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREGISTRATION_H
