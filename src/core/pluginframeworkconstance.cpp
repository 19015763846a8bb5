// SPDX-License-Identifier: BSD-3-Clause
#include "pluginframeworkconstance.h"

namespace ExtensionSystem {
namespace PluginFrameworkConstance {

const QString CONFIG_DIR = QStringLiteral("config");
const QString PLUGIN_DIR = QStringLiteral("plugins");
const QString LANGUAGE_DIR = QStringLiteral("languages");

} // namespace PluginFrameworkConstance
} // namespace ExtensionSystem
