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

    // Makes the four managers into the context and ties them together.
    void makeManagers();
    void setState(int newState);
    void runStopSequence();

    int state;
    PluginFrameworkContext *context;
    // The facade's own error, written by a failed init() only; error() reads
    // the context's pair instead, so nothing reads this one back.
    int error;
    QString errorString;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORK_P_H
