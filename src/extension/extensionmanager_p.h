// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H
#define EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H

#include "extensionmanager.h"

#include <event/ipluginlistener.h>

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParser;

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionManagerPrivate : public QObjectPrivate, public IPluginListener
{
    Q_DECLARE_PUBLIC(ExtensionManager)
public:
    explicit ExtensionManagerPrivate(PluginFrameworkContext *context);
    ~ExtensionManagerPrivate() override;

    void initialize();
    // Keeps the store's list of active plug-ins as plug-ins change state.
    void pluginChanged(const PluginEvent &event) override;

    PluginFrameworkContext *frameworkContext;
    ExtensionPointAdmin *extensionPointAdmin;
    ExtensionFileParser *extensionFileParser;
    ExtensionStorage *extensionStorage;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H
