// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H

#include "extensionsystem_global.h"

#include <QtCore/QObject>
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
// managers. It owns none of them: they are QObject children of the framework,
// which makes them and fills the record. It sits beneath every subsystem, so it
// knows the classes it points to by name only.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginFrameworkContext
{
public:
    // Makes the configuration, the framework's first child, with owner, which is
    // the framework seen as the QObject it is; the rest is set by the framework.
    PluginFrameworkContext(PluginFramework *framework, QObject *owner);
    ~PluginFrameworkContext();

    PluginFrameworkConfig *config;
    PluginFramework *framework;
    QObject *owner;
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

    // Stores the error and emits the framework's errorOccured(). Kept as the
    // framework was designed, but nothing in the library calls it: the pair
    // that PluginFramework::error() reads stays at 0 and "No Error".
    void handleError(int error, const QString &errorString);

private:
    Q_DISABLE_COPY(PluginFrameworkContext)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONTEXT_H
