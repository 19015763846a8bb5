// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_SERVICEREGISTRATION_P_H
#define EXTENSIONSYSTEM_SERVICEREGISTRATION_P_H

#include "serviceproperty.h"
#include "servicereference.h"
#include "serviceregistration.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QHash>
#include <QtCore/QMultiHash>

namespace ExtensionSystem {
namespace Internal {

// The one record of a registered service, shared by its registration handles.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ServiceRegistrationPrivate
{
public:
    ServiceRegistrationPrivate(Plugin *plugin, QObject *service, const ServiceProperty &properties);
    virtual ~ServiceRegistrationPrivate();

    bool isValid() const;
    bool operator<(const ServiceRegistrationPrivate &other) const;

    static ServiceRegistrationPrivate *get(const ServiceRegistration &registration) { return registration.d; }

    QAtomicInt ref;
    Plugin *plugin;
    QObject *service;
    ServiceProperty properties;
    ServiceReference reference;
    // Outstanding getService calls of each consumer plug-in.
    QHash<Plugin *, int> useCounts;
    // What a factory made for each consumer, the newest first.
    QMultiHash<Plugin *, QObject *> factoryInstances;

private:
    Q_DISABLE_COPY(ServiceRegistrationPrivate)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREGISTRATION_P_H
