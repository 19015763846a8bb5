#include "pluginframeworkcontext.h"

#include "pluginframework.h"
#include "pluginframeworkconfig.h"

#include <event/eventmanager.h>
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
    , error(0)
    , errorString(QObject::tr("No Error"))
{
    // The order of creation is the order of destruction of the framework's children.
    config = new PluginFrameworkConfig(framework);
    pluginManager = new PluginManager(this, framework);
    eventManager = new EventManager(this, framework);
    serviceManager = new ServiceManager(this, framework);
}

PluginFrameworkContext::~PluginFrameworkContext()
{
}

void PluginFrameworkContext::handleError(int error, const QString &errorString)
{
    this->error = error;
    this->errorString = errorString;
    framework->handleError(error, errorString);
}

} // namespace Internal
} // namespace ExtensionSystem
