// SPDX-License-Identifier: BSD-3-Clause
#include "extensionconstance.h"

namespace ExtensionSystem {

const QString ExtensionConstance::EXT_EVENT_TYPE = QStringLiteral("ext.event.type");
const QString ExtensionConstance::EXT_EVENT_EXTID = QStringLiteral("ext.event.extid");
const QString ExtensionConstance::EXT_EVENT_PLUGIN = QStringLiteral("ext.event.plugin");
const QString ExtensionConstance::EXT_EVENT_POINT = QStringLiteral("ext.event.point");
const QString ExtensionConstance::EXT_EVENT_EXTPLUGIN = QStringLiteral("ext.event.extplugin");
const QString ExtensionConstance::EXT_EVENT_TYPE_START_PLUGIN = QStringLiteral("ext.event.type.startPlugin");
const QString ExtensionConstance::EXT_EVENT_TYPE_STOP_PLUGIN = QStringLiteral("ext.event.type.stopPlugin");
const QString ExtensionConstance::EXT_EVENT_TYPE_CHILD_ADDED = QStringLiteral("ext.event.type.childAdded");
const QString ExtensionConstance::POINT_ID = QStringLiteral("id");
const QString ExtensionConstance::POINT_NAME = QStringLiteral("name");
const QString ExtensionConstance::POINT_PLUGIN = QStringLiteral("plugin");
const QString ExtensionConstance::POINT_DESCRIPTION = QStringLiteral("description");
const QString ExtensionConstance::DATA_ID = QStringLiteral("id");
const QString ExtensionConstance::DATA_PLUGIN = QStringLiteral("plugin");
const QString ExtensionConstance::DATA_TITLE = QStringLiteral("title");
const QString ExtensionConstance::DATA_EXTPLUGIN = QStringLiteral("extPlugin");
const QString ExtensionConstance::DATA_POINTID = QStringLiteral("pointId");
const QString ExtensionConstance::DATA_LOCATION = QStringLiteral("location");
const QString ExtensionConstance::EXTENSION_FILE_NAME = QStringLiteral("extension.xml");

const QString ExtensionConstance::FILE_TAG_PLUGIN = QStringLiteral("Plugin");
const QString ExtensionConstance::FILE_PLUGIN_ID = QStringLiteral("id");
const QString ExtensionConstance::FILE_PLUGIN_FILENAME = QStringLiteral("filename");
const QString ExtensionConstance::FILE_TAG_EXTPOINTSET = QStringLiteral("ExtPointSet");
const QString ExtensionConstance::FILE_TAG_EXTPOINT = QStringLiteral("ExtPoint");
const QString ExtensionConstance::FILE_TAG_SUBPOINT = QStringLiteral("SubPoint");
const QString ExtensionConstance::FILE_POINT_ID = QStringLiteral("id");
const QString ExtensionConstance::FILE_POINT_NAME = QStringLiteral("name");
const QString ExtensionConstance::FILE_POINT_PLUGIN = QStringLiteral("plugin");
const QString ExtensionConstance::FILE_POINT_DISPLAYLABEL = QStringLiteral("displayLabel");
const QString ExtensionConstance::FILE_POINT_DISPLAYICON = QStringLiteral("displayIcon");
const QString ExtensionConstance::FILE_POINT_DESCRIPTION = QStringLiteral("description");
const QString ExtensionConstance::FILE_POINT_CHILDTYPE = QStringLiteral("childType");
const QString ExtensionConstance::FILE_TAG_EXTDATASET = QStringLiteral("ExtDataSet");
const QString ExtensionConstance::FILE_TAG_EXTDATA = QStringLiteral("ExtData");
const QString ExtensionConstance::FILE_DATA_ID = QStringLiteral("id");
const QString ExtensionConstance::FILE_DATA_PLUGIN = QStringLiteral("plugin");
const QString ExtensionConstance::FILE_DATA_EXTPLUGIN = QStringLiteral("extPlugin");

} // namespace ExtensionSystem
