#include "iservicefactory.h"

namespace ExtensionSystem {

IServiceFactory::~IServiceFactory()
{
}

bool IServiceFactory::sharedPerPlugin()
{
    return true;
}

} // namespace ExtensionSystem
