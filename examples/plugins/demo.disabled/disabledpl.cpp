// SPDX-License-Identifier: BSD-3-Clause
#include "../common/demo.h"

#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

// Never started: config.ini puts it on the blacklist.
class DisabledActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *) override
    {
        tell(QStringLiteral("demo.disabled"), QStringLiteral("started?!"));
    }
    void stop(ExtensionSystem::PluginContext *) override { }
};

#include "disabledpl.moc"
