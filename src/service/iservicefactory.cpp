// SPDX-License-Identifier: BSD-3-Clause
#include "iservicefactory.h"

namespace ExtensionSystem {

IServiceFactory::~IServiceFactory() = default;

bool IServiceFactory::sharedPerPlugin()
{
    return true;
}

} // namespace ExtensionSystem
