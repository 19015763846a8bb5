// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONCALLBACK_P_H
#define EXTENSIONSYSTEM_EXTENSIONCALLBACK_P_H

#include "extensioncallback.h"

#include <extension/extensionhandler_p.h>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionCallbackPrivate : public ExtensionHandlerPrivate
{
public:
    ExtensionCallbackPrivate(const QString &id, const QString &plugin, const QString &extenedPlugin,
                             const QString &extenedPointId);
    ~ExtensionCallbackPrivate() override;

    // Trimmed; the attributes keep the arguments as they came.
    QString id;
    QString plugin;
    QString extenedPlugin;
    QString extenedPointId;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONCALLBACK_P_H
