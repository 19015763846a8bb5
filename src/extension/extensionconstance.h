// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H
#define EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H

#include "extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

// Keys and attribute names of the extension objects, then the vocabulary of
// extension.xml. The FILE_ names that the framework does not read are there for
// point implementations that interpret the element text themselves.
class EXTENSIONSYSTEM_EXPORT ExtensionConstance
{
public:
    static const QString EXT_EVENT_TYPE;
    static const QString EXT_EVENT_EXTID;
    static const QString EXT_EVENT_PLUGIN;
    static const QString EXT_EVENT_POINT;
    static const QString EXT_EVENT_EXTPLUGIN;
    static const QString EXT_EVENT_TYPE_START_PLUGIN;
    static const QString EXT_EVENT_TYPE_STOP_PLUGIN;
    static const QString EXT_EVENT_TYPE_CHILD_ADDED;
    static const QString POINT_ID;
    static const QString POINT_NAME;
    static const QString POINT_PLUGIN;
    static const QString POINT_DESCRIPTION;
    static const QString DATA_ID;
    static const QString DATA_PLUGIN;
    static const QString DATA_TITLE;
    static const QString DATA_EXTPLUGIN;
    static const QString DATA_POINTID;
    static const QString DATA_LOCATION;
    static const QString EXTENSION_FILE_NAME;

    static const QString FILE_TAG_PLUGIN;
    static const QString FILE_PLUGIN_ID;
    static const QString FILE_PLUGIN_FILENAME;
    static const QString FILE_TAG_EXTPOINTSET;
    static const QString FILE_TAG_EXTPOINT;
    static const QString FILE_TAG_SUBPOINT;
    static const QString FILE_POINT_ID;
    static const QString FILE_POINT_NAME;
    static const QString FILE_POINT_PLUGIN;
    static const QString FILE_POINT_DISPLAYLABEL;
    static const QString FILE_POINT_DISPLAYICON;
    static const QString FILE_POINT_DESCRIPTION;
    static const QString FILE_POINT_CHILDTYPE;
    static const QString FILE_TAG_EXTDATASET;
    static const QString FILE_TAG_EXTDATA;
    static const QString FILE_DATA_ID;
    static const QString FILE_DATA_PLUGIN;
    static const QString FILE_DATA_EXTPLUGIN;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H
