// SPDX-License-Identifier: BSD-3-Clause
#ifndef TESTACTIVATOR_H
#define TESTACTIVATOR_H

#include <ExtensionSystem/IPluginActivator>

// One activator for most test plug-ins; what it does beyond logging is read
// from the plug-in's own META.INF, so each plug-in differs only by its metadata.
class TestActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override;
    void stop(ExtensionSystem::PluginContext *context) override;
};

#endif
