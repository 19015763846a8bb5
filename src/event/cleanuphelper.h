// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_CLEANUPHELPER_H
#define EXTENSIONSYSTEM_CLEANUPHELPER_H

#include "extensionsystem_global.h"

namespace ExtensionSystem {

class IListener;

// Told by a listener that is being destroyed, so that no table keeps its pointer.
class EXTENSIONSYSTEM_EXPORT CleanupHelper
{
public:
    virtual ~CleanupHelper();
    virtual void cleanup(IListener *listener) = 0;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_CLEANUPHELPER_H
