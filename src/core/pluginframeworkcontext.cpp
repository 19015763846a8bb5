// SPDX-License-Identifier: BSD-3-Clause
#include "pluginframeworkcontext.h"

#include "pluginframeworkconfig.h"
#include "startjournal.h"
#include "timelinerecorder.h"

#include <QtCore/QMetaObject>

namespace ExtensionSystem {
namespace Internal {

PluginFrameworkContext::PluginFrameworkContext(PluginFramework *framework, QObject *owner)
    : config(nullptr)
    , framework(framework)
    , owner(owner)
    , pluginManager(nullptr)
    , eventManager(nullptr)
    , serviceManager(nullptr)
    , extensionManager(nullptr)
    , timeline(new TimelineRecorder)
    , keepJournal(true)
    , hangWatchdogMsecs(-1)
    , error(0)
    , errorString(QObject::tr("No Error"))
{
    // The first of the framework's children; PluginFramework makes the managers
    // after it, in their order, and ties them together.
    config = new PluginFrameworkConfig(owner);
}

PluginFrameworkContext::~PluginFrameworkContext() = default;

int PluginFrameworkContext::hangWatchdog() const
{
    return hangWatchdogMsecs >= 0 ? hangWatchdogMsecs : config->hangWatchdogMsecs();
}

void PluginFrameworkContext::handleError(int error, const QString &errorString)
{
    this->error = error;
    this->errorString = errorString;
    // What PluginFramework::handleError() does, reached through the meta-object
    // so that this record needs nothing above it.
    QMetaObject::invokeMethod(owner, "errorOccured", Qt::DirectConnection, Q_ARG(int, error),
                              Q_ARG(QString, errorString));
}

} // namespace Internal
} // namespace ExtensionSystem
