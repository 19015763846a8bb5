// SPDX-License-Identifier: BSD-3-Clause
#ifndef BENCHACTIVATOR_H
#define BENCHACTIVATOR_H

#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/ServiceRegistration>

#include <QtCore/QList>

namespace ExtensionSystem {
class ExtensionPoint;
}

// The service that half of the synthetic plug-ins register.
class BenchService : public QObject
{
    Q_OBJECT
};

// The one activator of every synthetic plug-in. What it does is read from the
// plug-in's META.INF: "bench.points" names the points it opens, and
// "bench.service: yes" makes it register a BenchService. Points are opened only
// when the host sets the application property "es.bench.points".
class BenchActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override;
    void stop(ExtensionSystem::PluginContext *context) override;

private:
    QList<ExtensionSystem::ExtensionPoint *> m_points;
    ExtensionSystem::ServiceRegistration m_registration;
    BenchService *m_service = nullptr;
};

#endif
