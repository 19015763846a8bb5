// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONCALLBACK_H
#define EXTENSIONSYSTEM_EXTENSIONCALLBACK_H

#include "extensionsystem_global.h"

#include <extension/extensionhandler.h>

namespace ExtensionSystem {

namespace Internal {
class ExtensionCallbackPrivate;
}

// A ready-made handler for ExtensionHandlerAdmin: active() and dataChanged() become
// calls on the admin above it, with this handler's id in front. Mind the order of the
// constructor: the extended plug-in comes before the extended point.
class EXTENSIONSYSTEM_EXPORT ExtensionCallback : public ExtensionHandler
{
    ES_DECLARE_PRIVATE(ExtensionCallback)
public:
    ExtensionCallback(const QString &id, const QString &plugin, const QString &extenedPlugin,
                      const QString &extenedPointId, Object *parent = nullptr);
    ~ExtensionCallback() override;

    QString id() const override;
    QString plugin() const override;
    int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
               QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
               QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
               QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
               QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument()) override;
    void dataChanged(const QString &key, const QVariant &value) override;

    QString extenedPlugin() const;
    QString extenedPointId() const;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONCALLBACK_H
