// SPDX-License-Identifier: BSD-3-Clause
#include "serviceregistration.h"
#include "serviceregistration_p.h"

#include <plugin/plugin.h>
#include <plugin/plugincontext.h>

#include <functional>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

ServiceRegistrationPrivate::ServiceRegistrationPrivate(Plugin *plugin, QObject *service,
                                                       const ServiceProperty &properties)
    : ref(0)
    , plugin(plugin)
    , service(service)
    , properties(properties)
    , reference(this)
{ }

ServiceRegistrationPrivate::~ServiceRegistrationPrivate() = default;

bool ServiceRegistrationPrivate::isValid() const
{
    return plugin && service;
}

bool ServiceRegistrationPrivate::operator<(const ServiceRegistrationPrivate &other) const
{
    return properties.serviceId() < other.properties.serviceId();
}

} // namespace Internal

ServiceRegistration::ServiceRegistration()
    : d(new ServiceRegistrationPrivate(nullptr, nullptr, ServiceProperty()))
{
    // The count stays 0: no handle counts on a failed registration's record.
}

ServiceRegistration::ServiceRegistration(Plugin *plugin, QObject *service, const ServiceProperty &property)
    : d(new ServiceRegistrationPrivate(plugin, service, property))
{
    d->ref.ref();
}

ServiceRegistration::ServiceRegistration(ServiceRegistrationPrivate *d)
    : d(d)
{
    if (d)
        d->ref.ref();
}

ServiceRegistration::ServiceRegistration(const ServiceRegistration &other)
    : d(other.d)
{
    if (d)
        d->ref.ref();
}

ServiceRegistration::~ServiceRegistration()
{
    if (d && !d->ref.deref())
        delete d;
}

ServiceRegistration &ServiceRegistration::operator=(const ServiceRegistration &other)
{
    if (this == &other)
        return *this;
    // The record held before keeps the count this handle gave it.
    d = other.d;
    if (d)
        d->ref.ref();
    return *this;
}

bool ServiceRegistration::operator<(const ServiceRegistration &other) const
{
    return std::less<const ServiceRegistrationPrivate *>()(d, other.d);
}

ServiceRegistration::operator bool() const
{
    return d != nullptr;
}

ServiceReference ServiceRegistration::reference() const
{
    return d->reference;
}

Plugin *ServiceRegistration::plugin() const
{
    return d->plugin;
}

QObject *ServiceRegistration::serviceObject() const
{
    return d->service;
}

QStringList ServiceRegistration::classList() const
{
    return d->properties.classList();
}

ServiceProperty ServiceRegistration::property() const
{
    return d->properties;
}

bool ServiceRegistration::match(const QHash<QString, QVariant> &filter) const
{
    return d->properties.match(filter);
}

void ServiceRegistration::unregister()
{
    // The manager reads the plug-in's name while it unregisters, so the fields
    // are cleared only afterwards.
    if (d->plugin)
        d->plugin->pluginContext()->unregisterService(*this);
    d->plugin = nullptr;
    d->service = nullptr;
}

} // namespace ExtensionSystem
