// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINPROBLEM_P_H
#define EXTENSIONSYSTEM_PLUGINPROBLEM_P_H

#include "pluginproblem.h"

#include <QtCore/QSharedData>

namespace ExtensionSystem {
namespace Internal {

class PluginProblemPrivate : public QSharedData
{
public:
    PluginProblem::Reason reason = PluginProblem::NoProblem;
    QString plugin;
    QString detail;
    QString dependency;
    QString requiredVersion;
    QString providedVersion;
    QString providedCompatVersion;
    QStringList cycle;
    PluginCrash crash;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINPROBLEM_P_H
