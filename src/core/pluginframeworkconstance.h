// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H

#include "../extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

/*!
    \namespace ExtensionSystem::PluginFrameworkConstance
    \brief Names of the directories below the application's directory.

    Process-wide constants, built when the library is loaded. PluginFrameworkConfig
    joins them to QCoreApplication::applicationDirPath().
*/
namespace PluginFrameworkConstance {
/*!
    "config": the directory that holds one sub-directory per program, each with
    its config.ini (see PluginFrameworkConfig::configDir()).
*/
EXTENSIONSYSTEM_EXPORT extern const QString CONFIG_DIR;
/*!
    "plugins": the plug-ins directory, with one sub-directory per plug-in (see
    PluginFrameworkConfig::pluginsDir()).
*/
EXTENSIONSYSTEM_EXPORT extern const QString PLUGIN_DIR;
/*!
    "languages": the name of the application's language directory (see
    PluginFrameworkConfig::languageDir()); plug-ins keep their translations in a
    directory of that name beside their library.
*/
EXTENSIONSYSTEM_EXPORT extern const QString LANGUAGE_DIR;
} // namespace PluginFrameworkConstance

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONSTANCE_H
