// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IPLUGINACTIVATOR_H
#define EXTENSIONSYSTEM_IPLUGINACTIVATOR_H

#include "extensionsystem_global.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

class PluginContext;

// The root object of every plug-in library implements this interface and declares
//     Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
//     Q_INTERFACES(ExtensionSystem::IPluginActivator)
class IPluginActivator
{
public:
    virtual ~IPluginActivator() { }
    virtual void start(PluginContext *context) = 0;
    virtual void stop(PluginContext *context) = 0;
};

} // namespace ExtensionSystem

#define ExtensionSystem_IPluginActivator_iid "extensionsystem.ipluginactivator/1.0"
Q_DECLARE_INTERFACE(ExtensionSystem::IPluginActivator, ExtensionSystem_IPluginActivator_iid)

#endif // EXTENSIONSYSTEM_IPLUGINACTIVATOR_H
