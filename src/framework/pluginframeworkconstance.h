// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H

#include "extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

// Names of the directories below the application's directory.
namespace PluginFrameworkConstance {
EXTENSIONSYSTEM_EXPORT extern const QString CONFIG_DIR;
EXTENSIONSYSTEM_EXPORT extern const QString PLUGIN_DIR;
EXTENSIONSYSTEM_EXPORT extern const QString LANGUAGE_DIR;
} // namespace PluginFrameworkConstance

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H
