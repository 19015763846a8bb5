// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_P_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_P_H

#include "extensionhandleradmin.h"

#include <objecttree/object_p.h>
#include <plugin/plugincontext.h>

#include <QtCore/QPointer>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionHandlerAdminPrivate : public ObjectPrivate
{
public:
    ExtensionHandlerAdminPrivate();
    ~ExtensionHandlerAdminPrivate() override;

    // Not owned. A guarded pointer, so that a context that went first reads as none.
    QPointer<PluginContext> context;
    int error;
    QString errorString;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_P_H
