// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLER_P_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLER_P_H

#include "extensionhandler.h"

#include <objecttree/object_p.h>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionHandlerPrivate : public ObjectPrivate
{
public:
    ExtensionHandlerPrivate();
    ~ExtensionHandlerPrivate() override;

    ExtensionData *extensionData;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLER_P_H
