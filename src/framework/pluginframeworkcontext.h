// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H

#include "extensionsystem_global.h"

#include <QtCore/QSharedPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

class PluginFramework;
class PluginFrameworkConfig;
class PluginManager;
class ServiceManager;

namespace Internal {

class EventManager;
class TimelineRecorder;
class ExtensionManager;

// The record through which every component reaches the configuration and the
// managers. It owns none of them: they are QObject children of the framework.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginFrameworkContext
{
public:
    explicit PluginFrameworkContext(PluginFramework *framework);
    ~PluginFrameworkContext();

    PluginFrameworkConfig *config;
    PluginFramework *framework;
    PluginManager *pluginManager;
    EventManager *eventManager;
    ServiceManager *serviceManager;
    ExtensionManager *extensionManager;
    // Shared with the parse tasks on the pool, which may outlive the framework.
    QSharedPointer<TimelineRecorder> timeline;
    int error;
    QString errorString;

    void handleError(int error, const QString &errorString);

private:
    Q_DISABLE_COPY(PluginFrameworkContext)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H
