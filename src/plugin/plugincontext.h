// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINCONTEXT_H
#define EXTENSIONSYSTEM_PLUGINCONTEXT_H

#include "extensionsystem_global.h"

#include <framework/pluginframeworkconfig.h>
#include <plugin/plugininfo.h>

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class CustomizedEvent;
class ExtensionHandler;
class ExtensionPoint;
class ICustomizedListener;
class IExtensionListener;
class IFrameworkListener;
class IListener;
class IPluginListener;
class IServiceListener;
class Plugin;
class PluginMetaData;
class ServiceReference;
class ServiceRegistration;

namespace Internal {
class PluginContextPrivate;
class PluginFrameworkContext;
} // namespace Internal

// What a plug-in gets in its activator's start() and stop(): its one door into
// the system, which files everything it does under its symbolic name.
class EXTENSIONSYSTEM_EXPORT PluginContext : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginContext)
public:
    PluginContext(Plugin *plugin, Internal::PluginFrameworkContext *context, QObject *parent);
    ~PluginContext() override;

    // Identity and resources
    QString symbolic() const;
    QDir location() const;
    QString resourcePath(const QString &path) const;
    const PluginMetaData *metaData() const;

    // Events
    void publishCustomizedEvent(const CustomizedEvent &event);
    void registerCustomizedListener(ICustomizedListener *listener);
    void registerExtensionListener(IExtensionListener *listener);
    void registerServiceListener(IServiceListener *listener);
    void registerFrameworkListener(IFrameworkListener *listener);
    void registerPluginListener(IPluginListener *listener);
    void unregisterlistener(IListener *listener);
    void trackFrameworkEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    void trackPluginEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    void trackServiceEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    void trackExtensionEvent(const QObject *receiver, const char *slot, Qt::ConnectionType type = Qt::AutoConnection);
    void trackCustomizedEvent(int eventType, const QObject *receiver, const char *slot,
                              Qt::ConnectionType type = Qt::AutoConnection);
    void untrackEvent(const QObject *receiver, const char *slot);

    // Plug-ins
    void startPlugin(const QString &symbolic);
    void stopPlugin(const QString &symbolic = QString());
    PluginInfo pluginInfo(const QString &symbolic) const;
    QList<PluginInfo> pluginInfos() const;
    PluginFrameworkConfig::StartupPolicy startupPolicy(const QString &symbolic = QString()) const;
    void setStartupPolicy(PluginFrameworkConfig::StartupPolicy policy, const QString &symbolic = QString());

    // Services, filed under this plug-in
    ServiceRegistration registerService(QObject *service, const QStringList &classes,
                                        const QHash<QString, QVariant> &properties = QHash<QString, QVariant>());
    void unregisterService(const ServiceRegistration &registration);
    QList<ServiceReference>
    findServiceReferences(const QString &clazz,
                          const QHash<QString, QVariant> &filter = QHash<QString, QVariant>()) const;
    // Counts the call for this plug-in; a factory makes the object for it.
    QObject *getService(const ServiceReference &reference);
    void ungetService(const ServiceReference &reference, QObject *service);

    // Extensions
    void registerExtensionPoint(ExtensionPoint *point);
    void unregisterExtensionPoint(const QString &id);
    void registerExtensionHandler(ExtensionHandler *handler);
    void unregisterExtensionHandler(const QString &id);

private:
    Q_DISABLE_COPY(PluginContext)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINCONTEXT_H
