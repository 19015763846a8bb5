// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_SERVICEREFERENCE_P_H
#define EXTENSIONSYSTEM_SERVICEREFERENCE_P_H

#include "servicereference.h"

#include <QtCore/QAtomicInt>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace ExtensionSystem {

class Plugin;

namespace Internal {

class ServiceRegistrationPrivate;

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ServiceReferencePrivate
{
public:
    explicit ServiceReferencePrivate(ServiceRegistrationPrivate *registration);

    QObject *getService(Plugin *consumer);
    void ungetService(Plugin *consumer, QObject *service);

    static ServiceReferencePrivate *get(const ServiceReference &reference) { return reference.d; }

    QAtomicInt ref;
    // Not counted and never cleared: it dangles once the registration record is gone.
    ServiceRegistrationPrivate *registration;

private:
    Q_DISABLE_COPY(ServiceReferencePrivate)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEREFERENCE_P_H
