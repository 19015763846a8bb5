// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGININFO_P_H
#define EXTENSIONSYSTEM_PLUGININFO_P_H

#include "plugininfo.h"
#include "plugindependency.h"

#include <QtCore/QSharedData>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginInfoPrivate : public QSharedData
{
public:
    PluginInfoPrivate();

    QString symbolic;
    int currentState;
    bool valid;
    QString location;
    QString filepath;
    int startupPolicy;
    QString version;
    QString compatVersion;
    bool eager;
    QString category;
    QString company;
    QString copyright;
    QString license;
    QString website;
    QString description;
    QMap<QString, PluginDependency> dependencies; // key: symbolic name as written
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGININFO_P_H
