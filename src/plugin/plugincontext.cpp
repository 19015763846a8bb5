// SPDX-License-Identifier: BSD-3-Clause
#include "plugincontext.h"
#include "plugincontext_p.h"

#include <core/metatype_p.h>
#include <event/customizedevent.h>
#include <event/eventmanager.h>
#include <event/icustomizedlistener.h>
#include <event/iextensionlistener.h>
#include <event/iframeworklistener.h>
#include <event/ipluginlistener.h>
#include <event/iservicelistener.h>
#include <event/pluginevent.h>
#include <extension/extensionmanager.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>
#include <service/servicemanager.h>
#include <service/servicereference.h>
#include <service/servicereference_p.h>
#include <service/serviceregistration.h>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

PluginContextPrivate::PluginContextPrivate(PluginFrameworkContext *context, Plugin *plugin)
    : context(context)
    , plugin(plugin)
{
    // Tracked plug-in events may be delivered through queued connections. Once
    // per process: every registration compares the name with all known types.
    static const int registered = registerMetaType<PluginEvent>("PluginEvent");
    Q_UNUSED(registered)
}

void PluginContextPrivate::registerListener(IListener *listener)
{
    context->eventManager->registerListener(plugin->symbolic(), listener);
}

void PluginContextPrivate::track(int eventType, const QObject *receiver, const char *slot, Qt::ConnectionType type)
{
    context->eventManager->trackEvent(plugin->symbolic(), eventType, receiver, slot, type);
}

QString PluginContextPrivate::nameOrSelf(const QString &symbolic) const
{
    return symbolic.length() ? symbolic : plugin->symbolic();
}

} // namespace Internal

PluginContext::PluginContext(Plugin *plugin, PluginFrameworkContext *context, QObject *parent)
    : QObject(*new PluginContextPrivate(context, plugin), parent)
{ }

PluginContext::~PluginContext() = default;

QString PluginContext::symbolic() const
{
    Q_D(const PluginContext);
    return d->plugin->symbolic();
}

QDir PluginContext::location() const
{
    Q_D(const PluginContext);
    return d->plugin->location();
}

QString PluginContext::resourcePath(const QString &path) const
{
    return QStringLiteral(":/%1/%2").arg(symbolic(), path);
}

const PluginMetaData *PluginContext::metaData() const
{
    Q_D(const PluginContext);
    return d->plugin->metaData();
}

void PluginContext::publishCustomizedEvent(const CustomizedEvent &event)
{
    Q_D(PluginContext);
    d->context->eventManager->publish(event);
}

void PluginContext::registerCustomizedListener(ICustomizedListener *listener)
{
    Q_D(PluginContext);
    d->registerListener(listener);
}

void PluginContext::registerExtensionListener(IExtensionListener *listener)
{
    Q_D(PluginContext);
    d->registerListener(listener);
}

void PluginContext::registerServiceListener(IServiceListener *listener)
{
    Q_D(PluginContext);
    d->registerListener(listener);
}

void PluginContext::registerFrameworkListener(IFrameworkListener *listener)
{
    Q_D(PluginContext);
    d->registerListener(listener);
}

void PluginContext::registerPluginListener(IPluginListener *listener)
{
    Q_D(PluginContext);
    d->registerListener(listener);
}

void PluginContext::unregisterlistener(IListener *listener)
{
    Q_D(PluginContext);
    d->context->eventManager->unregisterListener(listener);
}

void PluginContext::trackFrameworkEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type)
{
    Q_D(PluginContext);
    d->track(1, receiver, slot, type);
}

void PluginContext::trackPluginEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type)
{
    Q_D(PluginContext);
    d->track(2, receiver, slot, type);
}

void PluginContext::trackServiceEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type)
{
    Q_D(PluginContext);
    d->track(3, receiver, slot, type);
}

void PluginContext::trackExtensionEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type)
{
    Q_D(PluginContext);
    d->track(4, receiver, slot, type);
}

void PluginContext::trackCustomizedEvent(int eventType, const QObject *receiver, const char *slot,
                                         Qt::ConnectionType type)
{
    Q_D(PluginContext);
    d->track(eventType, receiver, slot, type);
}

void PluginContext::untrackEvent(const QObject *receiver, const char *slot)
{
    Q_D(PluginContext);
    d->context->eventManager->untrackEvent(d->plugin->symbolic(), receiver, slot);
}

void PluginContext::startPlugin(const QString &symbolic)
{
    Q_D(PluginContext);
    d->context->pluginManager->start(symbolic);
}

void PluginContext::stopPlugin(const QString &symbolic)
{
    Q_D(PluginContext);
    d->context->pluginManager->stop(d->nameOrSelf(symbolic));
}

PluginInfo PluginContext::pluginInfo(const QString &symbolic) const
{
    Q_D(const PluginContext);
    return d->context->pluginManager->pluginInfo(symbolic);
}

QList<PluginInfo> PluginContext::pluginInfos() const
{
    Q_D(const PluginContext);
    return d->context->pluginManager->pluginInfos();
}

PluginFrameworkConfig::StartupPolicy PluginContext::startupPolicy(const QString &symbolic) const
{
    Q_D(const PluginContext);
    return d->context->config->pluginStartupPolicy(d->nameOrSelf(symbolic));
}

void PluginContext::setStartupPolicy(PluginFrameworkConfig::StartupPolicy policy, const QString &symbolic)
{
    Q_D(PluginContext);
    d->context->pluginManager->setPluginStartupPolicy(d->nameOrSelf(symbolic), policy);
}

ServiceRegistration PluginContext::registerService(QObject *service, const QStringList &classes,
                                                   const QHash<QString, QVariant> &properties)
{
    Q_D(PluginContext);
    return d->context->serviceManager->registerService(d->plugin, service, classes, properties);
}

void PluginContext::unregisterService(const ServiceRegistration &registration)
{
    Q_D(PluginContext);
    d->context->serviceManager->unregisterService(registration);
}

QList<ServiceReference> PluginContext::findServiceReferences(const QString &clazz,
                                                             const QHash<QString, QVariant> &filter) const
{
    Q_D(const PluginContext);
    return d->context->serviceManager->findServiceReferences(clazz, filter);
}

QObject *PluginContext::getService(const ServiceReference &reference)
{
    Q_D(PluginContext);
    if (!reference)
        return nullptr;
    // Held for the length of the call, whatever the caller does with its own.
    const ServiceReference held(reference);
    return ServiceReferencePrivate::get(held)->getService(d->plugin);
}

void PluginContext::ungetService(const ServiceReference &reference, QObject *service)
{
    Q_D(PluginContext);
    if (!reference)
        return;
    const ServiceReference held(reference);
    ServiceReferencePrivate::get(held)->ungetService(d->plugin, service);
}

void PluginContext::registerExtensionPoint(ExtensionPoint *point)
{
    Q_D(PluginContext);
    d->context->extensionManager->registerExtensionPoint(point);
}

void PluginContext::unregisterExtensionPoint(const QString &id)
{
    Q_D(PluginContext);
    d->context->extensionManager->unregisterExtensionPoint(id);
}

void PluginContext::registerExtensionHandler(ExtensionHandler *handler)
{
    Q_D(PluginContext);
    d->context->extensionManager->registerExtensionHandler(handler);
}

void PluginContext::unregisterExtensionHandler(const QString &id)
{
    Q_D(PluginContext);
    d->context->extensionManager->unregisterExtensionHandler(id);
}

} // namespace ExtensionSystem
