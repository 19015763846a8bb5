// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORK_P_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORK_P_H

#include "pluginframework.h"

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class PluginFrameworkContext;

class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginFrameworkPrivate : public QObjectPrivate
{
    ES_DECLARE_PUBLIC(PluginFramework)
public:
    PluginFrameworkPrivate();
    ~PluginFrameworkPrivate() override;

    void setState(int newState);
    void runStopSequence();

    int state;
    PluginFrameworkContext *context;
    int error;
    QString errorString;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORK_P_H
