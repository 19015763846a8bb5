// SPDX-License-Identifier: BSD-3-Clause
#include "servicereference.h"
#include "servicereference_p.h"

#include "iservicefactory.h"
#include "serviceproperty.h"
#include "serviceregistration_p.h"

#include <plugin/pluginconstance.h>
#include <plugin/plugin.h>

#include <functional>

namespace ExtensionSystem {

using namespace Internal;

namespace {

IServiceFactory *factoryOf(QObject *service)
{
    return static_cast<IServiceFactory *>(service->qt_metacast(ExtensionSystem_IServiceFactory_iid));
}

} // namespace

namespace Internal {

ServiceReferencePrivate::ServiceReferencePrivate(ServiceRegistrationPrivate *registration)
    : ref(1)
    , registration(registration)
{ }

QObject *ServiceReferencePrivate::getService(Plugin *consumer)
{
    if (!registration || !consumer)
        return nullptr;
    const int previous = registration->useCounts.value(consumer, 0);
    registration->useCounts.insert(consumer, previous + 1);

    QObject *service = registration->service;
    if (!service)
        return nullptr;
    IServiceFactory *factory = factoryOf(service);
    if (!factory)
        return service;

    if (previous >= 1) {
        // The first value under a key is the one inserted last.
        const auto made = registration->factoryInstances.constFind(consumer);
        if (made != registration->factoryInstances.cend() && factory->sharedPerPlugin())
            return made.value();
    }
    QObject *instance = factory->createService(consumer->pluginContext());
    registration->factoryInstances.insert(consumer, instance);
    return instance;
}

void ServiceReferencePrivate::ungetService(Plugin *consumer, QObject *service)
{
    if (!registration || !consumer)
        return;
    const auto entry = registration->useCounts.constFind(consumer);
    const int count = entry == registration->useCounts.cend() ? -1 : entry.value() - 1;
    registration->useCounts.insert(consumer, qMax(count, 0));

    QObject *object = registration->service;
    if (!object)
        return;
    IServiceFactory *factory = factoryOf(object);
    if (!factory)
        return;

    // A shared instance goes on the first unget, whatever the count says.
    if (factory->sharedPerPlugin() || count <= 0 || !service) {
        registration->useCounts.remove(consumer);
        registration->factoryInstances.remove(consumer);
        return;
    }
    registration->factoryInstances.remove(consumer, service);
}

} // namespace Internal

ServiceReference::ServiceReference()
    : d(new ServiceReferencePrivate(nullptr))
{ }

ServiceReference::ServiceReference(ServiceRegistrationPrivate *registration)
    : d(new ServiceReferencePrivate(registration))
{ }

ServiceReference::ServiceReference(const ServiceReference &other)
    : d(other.d)
{
    d->ref.ref();
}

ServiceReference::~ServiceReference()
{
    if (!d->ref.deref())
        delete d;
}

ServiceReference &ServiceReference::operator=(const ServiceReference &other)
{
    if (this == &other)
        return *this;
    // The record held before keeps the count this handle gave it.
    d = other.d;
    d->ref.ref();
    return *this;
}

bool ServiceReference::operator==(const ServiceReference &other)
{
    return d == other.d;
}

bool ServiceReference::operator<(const ServiceReference &other) const
{
    return std::less<const ServiceReferencePrivate *>()(d, other.d);
}

ServiceReference::operator bool() const
{
    return d->registration != nullptr;
}

bool ServiceReference::match(const QHash<QString, QVariant> &filter) const
{
    return d->registration && d->registration->properties.match(filter);
}

QVariant ServiceReference::property(const QString &key) const
{
    if (!d->registration)
        return QVariant();
    return d->registration->properties.m_properties.value(key);
}

void ServiceReference::setProperty(const QString &key, const QVariant &value)
{
    if (!d->registration)
        return;
    const QString managed[] = {PluginConstance::SERVICE_OBJECTCLASS, PluginConstance::SERVICE_PLUGIN,
                               PluginConstance::SERVICE_ISFACTORY, PluginConstance::SERVICE_ID,
                               PluginConstance::SERVICE_PID};
    for (const QString &refused : managed) {
        if (key.compare(refused, Qt::CaseInsensitive) == 0)
            return;
    }
    d->registration->properties.m_properties.insert(key, value);
}

QStringList ServiceReference::propertyKeys() const
{
    if (!d->registration)
        return QStringList();
    return d->registration->properties.m_properties.keys();
}

ServiceProperty ServiceReference::serviceProperty() const
{
    if (!d->registration)
        return ServiceProperty();
    return d->registration->properties;
}

QString ServiceReference::plugin() const
{
    if (!d->registration || !d->registration->plugin)
        return QString();
    return d->registration->plugin->symbolic();
}

} // namespace ExtensionSystem
