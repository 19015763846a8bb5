// SPDX-License-Identifier: BSD-3-Clause
#include "pluginframeworkcontext.h"

#include "pluginframework.h"
#include "pluginframeworkconfig.h"
#include "startjournal.h"
#include "timelinerecorder.h"

#include <event/eventmanager.h>
#include <extension/extensionmanager.h>
#include <plugin/pluginmanager.h>
#include <service/servicemanager.h>

namespace ExtensionSystem {
namespace Internal {

PluginFrameworkContext::PluginFrameworkContext(PluginFramework *framework)
    : config(nullptr)
    , framework(framework)
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
    // The order of creation is the order of destruction of the framework's children.
    config = new PluginFrameworkConfig(framework);
    pluginManager = new PluginManager(this, framework);
    eventManager = new EventManager(this, framework);
    serviceManager = new ServiceManager(this, framework);
    extensionManager = new ExtensionManager(this, framework);

    // Queued: extension files are parsed once the directory scan has returned to the event loop.
    QObject::connect(pluginManager, &PluginManager::parsingExtensionFile, extensionManager,
                     &ExtensionManager::parseExtensionFile, Qt::QueuedConnection);
    // Queued like the announcements, so that it closes the scan after them.
    QObject::connect(pluginManager, &PluginManager::directoryScanned, extensionManager, &ExtensionManager::scanFinished,
                     Qt::QueuedConnection);
    QObject::connect(extensionManager, &ExtensionManager::extensionFilesReady, framework,
                     &PluginFramework::extensionFilesReady);
    QObject::connect(extensionManager, &ExtensionManager::requestStartingPlugin, pluginManager,
                     QOverload<QString>::of(&PluginManager::start));
    QObject::connect(extensionManager, &ExtensionManager::requestStoppingPlugin, pluginManager,
                     QOverload<QString>::of(&PluginManager::stop));
    QObject::connect(pluginManager, &PluginManager::loadingQueueChanged, extensionManager,
                     &ExtensionManager::loadingQueueChanged);
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
    framework->handleError(error, errorString);
}

} // namespace Internal
} // namespace ExtensionSystem
