// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H
#define EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H

#include "../extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

/*!
    String constants of the extension subsystem: keys and attribute names of the
    extension objects, then the vocabulary of \c extension.xml.

    The first group names the keys of the event hashes that ExtensionData raises
    in the Object tree and the attribute keys of ExtensionPoint, ExtensionData and
    ExtensionHandler. The \c FILE_ group names elements and attributes of
    \c extension.xml; the framework reads only some of them (the root, the sets,
    and the attributes of \c ExtPoint and \c ExtData). The \c FILE_ names that the
    framework does not read are there for point implementations that interpret the
    element text themselves in ExtensionPoint::parseExtensionText().

    The class only holds static members and is never instantiated. Element names
    are matched case-sensitively, except the root \c Plugin tag.
*/
class EXTENSIONSYSTEM_EXPORT ExtensionConstance
{
public:
    /// Event hash key holding the event type: "ext.event.type".
    static const QString EXT_EVENT_TYPE;
    /// Event hash key holding the id of the ExtensionData that raised the event: "ext.event.extid".
    static const QString EXT_EVENT_EXTID;
    /// Event hash key holding the raising item's supplying plug-in (its \c plugin attribute): "ext.event.plugin".
    static const QString EXT_EVENT_PLUGIN;
    /// Event hash key holding the raising item's point id (its \c pointId attribute): "ext.event.point".
    static const QString EXT_EVENT_POINT;
    /// Event hash key holding the raising item's extended plug-in (its \c extPlugin attribute): "ext.event.extplugin".
    static const QString EXT_EVENT_EXTPLUGIN;
    /*!
        Event type "ext.event.type.startPlugin": raised by ExtensionData::active() on
        an item without a handler to ask for the supplying plug-in to be started.
    */
    static const QString EXT_EVENT_TYPE_START_PLUGIN;
    /// Event type "ext.event.type.stopPlugin": declared only; nothing raises or examines it.
    static const QString EXT_EVENT_TYPE_STOP_PLUGIN;
    /*!
        Event type "ext.event.type.childAdded": raised by ExtensionData::childAdded()
        when an item gets a child; the nearest ExtensionPoint above consumes it.
    */
    static const QString EXT_EVENT_TYPE_CHILD_ADDED;
    /// Attribute key "id" of an ExtensionPoint, read by ExtensionPoint::id().
    static const QString POINT_ID;
    /// Attribute key "name" of an ExtensionPoint; the framework does not set it.
    static const QString POINT_NAME;
    /// Attribute key "plugin" of an ExtensionPoint: the owning plug-in, read by ExtensionPoint::plugin().
    static const QString POINT_PLUGIN;
    /// Attribute key "description" of an ExtensionPoint; the framework does not set it.
    static const QString POINT_DESCRIPTION;
    /// Attribute key "id" of ExtensionData and ExtensionHandler; items and handlers are matched by it.
    static const QString DATA_ID;
    /// Attribute key "plugin": the symbolic name of the plug-in that supplies the extension.
    static const QString DATA_PLUGIN;
    /// Attribute key "title" of an ExtensionData; it has no data role and no accessor.
    static const QString DATA_TITLE;
    /// Attribute key "extPlugin": the symbolic name of the extended plug-in, the owner of the point.
    static const QString DATA_EXTPLUGIN;
    /// Attribute key "pointId": the id of the extension point extended.
    static const QString DATA_POINTID;
    /// Attribute key "location" of an ExtensionData, read by ExtensionData::pluginLocation().
    static const QString DATA_LOCATION;
    /// Name of the extension file looked for beside each plug-in library: "extension.xml".
    static const QString EXTENSION_FILE_NAME;

    /// Root element "Plugin" of \c extension.xml; the only tag compared ignoring case.
    static const QString FILE_TAG_PLUGIN;
    /// Attribute "id" of the root element: the symbolic name of the declaring plug-in.
    static const QString FILE_PLUGIN_ID;
    /// Attribute name "filename"; declared only, not read by the framework.
    static const QString FILE_PLUGIN_FILENAME;
    /// Element "ExtPointSet", a child of the root holding \c ExtPoint elements.
    static const QString FILE_TAG_EXTPOINTSET;
    /// Element "ExtPoint": one extension point, kept whole as XML text.
    static const QString FILE_TAG_EXTPOINT;
    /// Element name "SubPoint"; declared only, not read by the framework.
    static const QString FILE_TAG_SUBPOINT;
    /// Attribute "id" of an \c ExtPoint element: the point id.
    static const QString FILE_POINT_ID;
    /// Attribute "name" of an \c ExtPoint element.
    static const QString FILE_POINT_NAME;
    /*!
        Attribute name "plugin" of an \c ExtPoint element; declared only: a point's
        plug-in is always the root's "id", whatever this attribute says.
    */
    static const QString FILE_POINT_PLUGIN;
    /// Attribute name "displayLabel"; declared only, not read by the framework.
    static const QString FILE_POINT_DISPLAYLABEL;
    /// Attribute name "displayIcon"; declared only, not read by the framework.
    static const QString FILE_POINT_DISPLAYICON;
    /// Attribute "description" of an \c ExtPoint element.
    static const QString FILE_POINT_DESCRIPTION;
    /// Attribute name "childType"; declared only, not read by the framework.
    static const QString FILE_POINT_CHILDTYPE;
    /// Element "ExtDataSet", a child of the root holding \c ExtData elements.
    static const QString FILE_TAG_EXTDATASET;
    /// Element "ExtData": one extension contributed to a point, kept whole as XML text.
    static const QString FILE_TAG_EXTDATA;
    /// Attribute "id" of an \c ExtData element: the id of the point it contributes to.
    static const QString FILE_DATA_ID;
    /// Attribute "plugin" of an \c ExtData element: the plug-in that supplies the extension.
    static const QString FILE_DATA_PLUGIN;
    /// Attribute "extPlugin" of an \c ExtData element: the plug-in that declares the point.
    static const QString FILE_DATA_EXTPLUGIN;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONCONSTANCE_H
