// SPDX-License-Identifier: BSD-3-Clause
#include "pluginconstance.h"

namespace ExtensionSystem {

const QString PluginConstance::PLUGIN_METAFILE = QStringLiteral(":/%1/META-DATA/META.INF");
const QString PluginConstance::PLUGIN_SYMBOLIC = QStringLiteral("symbolic");
const QString PluginConstance::PLUGIN_VERSION = QStringLiteral("version");
const QString PluginConstance::PLUGIN_COMPATVERSION = QStringLiteral("compatVersion");
const QString PluginConstance::PLUGIN_ACTIVATION = QStringLiteral("activation");
const QString PluginConstance::PLUGIN_ACTIVATION_EAGER = QStringLiteral("eager");
const QString PluginConstance::PLUGIN_ACTIVATION_LAZY = QStringLiteral("lazy");
const QString PluginConstance::PLUGIN_CATEGORY = QStringLiteral("category");
const QString PluginConstance::PLUGIN_COMPANY = QStringLiteral("company");
const QString PluginConstance::PLUGIN_COPYRIGHT = QStringLiteral("copyright");
const QString PluginConstance::PLUGIN_LICENSE = QStringLiteral("license");
const QString PluginConstance::PLUGIN_WEBSITE = QStringLiteral("website");
const QString PluginConstance::PLUGIN_DESCRIBE = QStringLiteral("describe");
const QString PluginConstance::PLUGIN_DEPENDENCY = QStringLiteral("dependency");

const QString PluginConstance::SERVICE_OBJECTCLASS = QStringLiteral("service.objectclass");
const QString PluginConstance::SERVICE_PLUGIN = QStringLiteral("service.plugin");
const QString PluginConstance::SERVICE_RANKING = QStringLiteral("service.ranking");
const QString PluginConstance::SERVICE_DESCRIPTION = QStringLiteral("service.description");
const QString PluginConstance::SERVICE_ISFACTORY = QStringLiteral("service.isfactory");
const QString PluginConstance::SERVICE_VENDER = QStringLiteral("service.vender");
const QString PluginConstance::SERVICE_ID = QStringLiteral("service.id");
const QString PluginConstance::SERVICE_PID = QStringLiteral("service.pid");

} // namespace ExtensionSystem
