// SPDX-License-Identifier: BSD-3-Clause
#ifndef OUTSIDEACTIVATOR_H
#define OUTSIDEACTIVATOR_H

#include <ExtensionSystem/IPluginActivator>

class OutsideActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override;
    void stop(ExtensionSystem::PluginContext *context) override;
};

#endif
