// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONDATA_P_H
#define EXTENSIONSYSTEM_EXTENSIONDATA_P_H

#include "extensiondata.h"

#include <objecttree/object_p.h>

#include <QtCore/QList>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionDataPrivate : public ObjectPrivate
{
public:
    ExtensionDataPrivate();
    ~ExtensionDataPrivate() override;

    ExtensionHandler *extensionHandler;
    bool pendingActive;
    QList<QGenericArgument> pendingArguments;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATA_P_H
