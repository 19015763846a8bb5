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
class StartJournal;
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
    // The process's start journal, held from the first installation on; the
    // last framework to let it go removes its file.
    QSharedPointer<StartJournal> journal;
    bool keepJournal;
    // The hang watchdog's threshold as the host set it, or -1 for config.ini's.
    int hangWatchdogMsecs;
    // The threshold in force: the host's, else config.ini's; 0 is off.
    int hangWatchdog() const;
    int error;
    QString errorString;

    void handleError(int error, const QString &errorString);

private:
    Q_DISABLE_COPY(PluginFrameworkContext)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H
