// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINCONSTANCE_H
#define EXTENSIONSYSTEM_PLUGINCONSTANCE_H

#include "../extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

/*!
    \class ExtensionSystem::PluginConstance
    \brief Names of the metadata resource and its keys, and the standard service
    property keys.

    Process-wide constant strings, built when the library is loaded and exported
    for plug-ins. The metadata keys are compared ignoring case when META.INF is
    read; a META.INF line has the form "key: value", one entry a line.
*/
class EXTENSIONSYSTEM_EXPORT PluginConstance
{
public:
    /*!
        ":/%1/META-DATA/META.INF": the Qt resource path of a plug-in's metadata
        file, %1 being the base name of the library file (its file name without
        the last suffix, so "a.b.dll" gives "a.b"). A plug-in compiles META.INF
        into its resources under that prefix.
    */
    static const QString PLUGIN_METAFILE;
    /*!
        "symbolic": the plug-in's unique name, required; a META.INF without a
        non-empty value is invalid. The name is case-sensitive everywhere else.
    */
    static const QString PLUGIN_SYMBOLIC;
    /*!
        "version": the plug-in's own version, "major.minor.patch"; missing parts
        count as 0.
    */
    static const QString PLUGIN_VERSION;
    /*!
        "compatVersion": the oldest version this one can stand in for. A
        dependency is met when compatVersion <= required version <= version.
    */
    static const QString PLUGIN_COMPATVERSION;
    /*!
        "activation": the value PLUGIN_ACTIVATION_EAGER, in any case, marks an
        eager plug-in; any other value, or none, a lazy one. Only reported (see
        PluginInfo::isEager()): the start order does not depend on it.
    */
    static const QString PLUGIN_ACTIVATION;
    static const QString PLUGIN_ACTIVATION_EAGER; ///< "eager": the \c activation value of an eager plug-in.
    /*!
        "lazy": offered to plug-ins for the \c activation value; the framework does
        not read it, since every value but "eager" means lazy.
    */
    static const QString PLUGIN_ACTIVATION_LAZY;
    static const QString PLUGIN_CATEGORY; ///< "category": free text, see PluginMetaData::category().
    static const QString PLUGIN_COMPANY; ///< "company": free text, see PluginMetaData::company().
    static const QString PLUGIN_COPYRIGHT; ///< "copyright": free text, see PluginMetaData::copyright().
    static const QString PLUGIN_LICENSE; ///< "license": free text, see PluginMetaData::license().
    static const QString PLUGIN_WEBSITE; ///< "website": free text, see PluginMetaData::website().
    static const QString PLUGIN_DESCRIBE; ///< "describe": free text, see PluginMetaData::describe().
    /*!
        "dependency": the plug-ins this one needs, as "symbolic,version" entries
        separated by ";", e.g. "dependency: core.log,1.2.0; core.db,2.0". The key
        may occur on several lines. A plug-in without dependencies must still
        have an empty "dependency:" line, or it is never resolved.
    */
    static const QString PLUGIN_DEPENDENCY;

    /*!
        "service.objectclass": the class names a service is registered under, a
        QStringList; set by the registry.
    */
    static const QString SERVICE_OBJECTCLASS;
    /*!
        "service.plugin": the symbolic name of the registering plug-in; set by the
        registry.
    */
    static const QString SERVICE_PLUGIN;
    /*!
        "service.ranking": an integer ranking, 0 when absent; the registrant may
        set it. Lookups do not sort by it.
    */
    static const QString SERVICE_RANKING;
    static const QString SERVICE_DESCRIPTION; ///< "service.description": free text the registrant may set.
    /*!
        "service.isfactory": whether the service object is an IServiceFactory;
        set by the registry.
    */
    static const QString SERVICE_ISFACTORY;
    static const QString SERVICE_VENDER; ///< "service.vender": free text the registrant may set (written so).
    static const QString SERVICE_ID; ///< "service.id": the registration's number, an int; set by the registry.
    static const QString SERVICE_PID; ///< "service.pid": the same number as text; set by the registry.
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINCONSTANCE_H
