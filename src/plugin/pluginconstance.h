// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINCONSTANCE_H
#define EXTENSIONSYSTEM_PLUGINCONSTANCE_H

#include "extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {

// Names of the metadata resource and its keys, and the standard service property keys.
class EXTENSIONSYSTEM_EXPORT PluginConstance
{
public:
    static const QString PLUGIN_METAFILE;
    static const QString PLUGIN_SYMBOLIC;
    static const QString PLUGIN_VERSION;
    static const QString PLUGIN_COMPATVERSION;
    static const QString PLUGIN_ACTIVATION;
    static const QString PLUGIN_ACTIVATION_EAGER;
    static const QString PLUGIN_ACTIVATION_LAZY;
    static const QString PLUGIN_CATEGORY;
    static const QString PLUGIN_COMPANY;
    static const QString PLUGIN_COPYRIGHT;
    static const QString PLUGIN_LICENSE;
    static const QString PLUGIN_WEBSITE;
    static const QString PLUGIN_DESCRIBE;
    static const QString PLUGIN_DEPENDENCY;

    static const QString SERVICE_OBJECTCLASS;
    static const QString SERVICE_PLUGIN;
    static const QString SERVICE_RANKING;
    static const QString SERVICE_DESCRIPTION;
    static const QString SERVICE_ISFACTORY;
    static const QString SERVICE_VENDER;
    static const QString SERVICE_ID;
    static const QString SERVICE_PID;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINCONSTANCE_H
