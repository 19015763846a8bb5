// SPDX-License-Identifier: BSD-3-Clause
#include "pluginlog.h"

#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

// Defined by no library; a data reference is bound when the library is loaded.
extern "C" int es_data_that_no_library_defines;

class UnresolvedDataActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override
    {
        log(QStringLiteral("start:%1:%2").arg(context->symbolic()).arg(es_data_that_no_library_defines));
    }
    void stop(ExtensionSystem::PluginContext *context) override { log(QStringLiteral("stop:") + context->symbolic()); }
};

#include "unresolveddata.moc"
