// SPDX-License-Identifier: BSD-3-Clause
#include "pluginlog.h"

#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

// Defined by no library. Bound lazily, the first call would end the process.
extern "C" int es_function_that_no_library_defines();

class UnresolvedFunctionActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override
    {
        log(QStringLiteral("start:%1:%2").arg(context->symbolic()).arg(es_function_that_no_library_defines()));
    }
    void stop(ExtensionSystem::PluginContext *context) override { log(QStringLiteral("stop:") + context->symbolic()); }
};

#include "unresolvedfunction.moc"
