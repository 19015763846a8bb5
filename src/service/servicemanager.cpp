// SPDX-License-Identifier: BSD-3-Clause
#include "servicemanager.h"
#include "servicemanager_p.h"

#include "serviceproperty.h"
#include "servicereference.h"

#include <event/eventmanager.h>
#include <event/serviceevent.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

ServiceManagerPrivate::ServiceManagerPrivate(PluginFrameworkContext *context)
    : error(NoError)
    , errorString(QObject::tr("No Error"))
    , context(context)
{ }

ServiceManagerPrivate::~ServiceManagerPrivate()
{
    objectRegistrations.clear();
    classRegistrations.clear();
    registrationClasses.clear();
    pluginRegistrations.clear();
}

void ServiceManagerPrivate::handleError(int error, const QString &errorString)
{
    Q_Q(ServiceManager);
    this->error = error;
    this->errorString = errorString;
    emit q->errorOccured(error, errorString);
}

void ServiceManagerPrivate::clearError()
{
    error = NoError;
    errorString = QObject::tr("No Error");
}

} // namespace Internal

ServiceManager::ServiceManager(PluginFrameworkContext *context, QObject *parent)
    : QObject(*new ServiceManagerPrivate(context), parent)
{ }

ServiceManager::~ServiceManager() = default;

ServiceRegistration ServiceManager::registerService(Plugin *plugin, QObject *service, const QStringList &classes,
                                                    const QHash<QString, QVariant> &properties)
{
    Q_D(ServiceManager);
    // Every check runs before the first table is touched, so a failure files nothing.
    if (!plugin || !service || classes.isEmpty()) {
        d->handleError(ServiceManagerPrivate::InvalidParameters,
                       QObject::tr("Cannot register service with invalid parmaters"));
        return ServiceRegistration();
    }

    // The bare interface name, not the identifier that getService asks for:
    // a factory may answer one and not the other.
    const bool isFactory = service->qt_metacast("IServiceFactory") != nullptr;
    if (!isFactory) {
        for (const QString &clazz : classes) {
            if (!service->qt_metacast(clazz.toLatin1().constData())) {
                d->handleError(ServiceManagerPrivate::ClassMismatch,
                               QObject::tr("The service object is not inherits from the class: %1").arg(clazz));
                return ServiceRegistration();
            }
        }
    }

    if (d->objectRegistrations.contains(service)) {
        d->handleError(ServiceManagerPrivate::AlreadyRegistered, QObject::tr("The service object has been registered"));
        return ServiceRegistration();
    }

    const int count = d->registrationClasses.size();
    const ServiceProperty property(plugin->symbolic(), classes, count, QString::number(count, 10), isFactory,
                                   properties);
    ServiceRegistration registration(plugin, service, property);
    if (!registration) {
        d->handleError(ServiceManagerPrivate::CreateRegistrationFailed,
                       QObject::tr("Cannot create the service registration"));
        return registration;
    }

    for (const QString &clazz : classes)
        d->classRegistrations.insert(clazz, registration);
    d->registrationClasses[registration] = classes;
    d->objectRegistrations.insert(service, registration);
    d->pluginRegistrations.insert(plugin, registration);

    d->context->eventManager->publish(ServiceEvent(ServiceEvent::Registered, plugin->symbolic(), classes, property));
    return registration;
}

void ServiceManager::unregisterService(const ServiceRegistration &registration)
{
    Q_D(ServiceManager);
    // A handle without its plug-in, failed or unregistered, has nothing to name
    // in the event and is refused like one without a record.
    if (!registration || !registration.plugin()) {
        d->handleError(ServiceManagerPrivate::InvalidRegistration, QObject::tr("The ServiceRegistration is invalid"));
        return;
    }

    // Announced first, so that listeners still find the service filed.
    const QStringList classes = registration.classList();
    d->context->eventManager->publish(ServiceEvent(ServiceEvent::Unregistering, registration.plugin()->symbolic(),
                                                   classes, registration.property()));

    const FiledRegistration filed(registration);
    for (const QString &clazz : classes)
        d->classRegistrations.remove(clazz, filed);
    d->registrationClasses.remove(filed);
    d->objectRegistrations.remove(registration.serviceObject());
    d->pluginRegistrations.remove(registration.plugin(), filed);
}

QList<ServiceReference> ServiceManager::findServiceReferences(const QString &clazz,
                                                              const QHash<QString, QVariant> &filter) const
{
    Q_D(const ServiceManager);
    QList<ServiceReference> references;
    if (clazz.isEmpty())
        return references;
    // Newest first, as the table holds them; the ranking plays no part.
    for (auto it = d->classRegistrations.constFind(clazz); it != d->classRegistrations.cend() && it.key() == clazz;
         ++it) {
        if (filter.isEmpty() || it.value().registration.match(filter))
            references.append(it.value().registration.reference());
    }
    return references;
}

} // namespace ExtensionSystem
