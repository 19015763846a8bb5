// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ISERVICEFACTORY_H
#define EXTENSIONSYSTEM_ISERVICEFACTORY_H

#include "extensionsystem_global.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

class PluginContext;

// A service object that makes the objects its consumers get, instead of being
// handed out itself. A factory declares
//     Q_INTERFACES(ExtensionSystem::IServiceFactory)
// and, to be filed as a factory when it is registered, names this interface
// unqualified in its list of base classes (public IServiceFactory).
class EXTENSIONSYSTEM_EXPORT IServiceFactory
{
public:
    virtual ~IServiceFactory();

    // True: one object per consumer plug-in; false: a new one for every getService.
    virtual bool sharedPerPlugin();
    // The result is owned by the factory or the consumer, never by the system.
    virtual QObject *createService(PluginContext *context) = 0;
};

} // namespace ExtensionSystem

#define ExtensionSystem_IServiceFactory_iid "ExtensionSystem.IServiceFactory"
Q_DECLARE_INTERFACE(ExtensionSystem::IServiceFactory, ExtensionSystem_IServiceFactory_iid)

#endif // EXTENSIONSYSTEM_ISERVICEFACTORY_H
