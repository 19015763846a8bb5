// SPDX-License-Identifier: BSD-3-Clause
#include "extensioncallback.h"
#include "extensioncallback_p.h"

#include <extension/extensionhandleradmin.h>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

ExtensionCallbackPrivate::ExtensionCallbackPrivate(const QString &id, const QString &plugin,
                                                   const QString &extenedPlugin, const QString &extenedPointId)
    : id(id.trimmed())
    , plugin(plugin.trimmed())
    , extenedPlugin(extenedPlugin.trimmed())
    , extenedPointId(extenedPointId.trimmed())
{ }

ExtensionCallbackPrivate::~ExtensionCallbackPrivate() = default;

} // namespace Internal

ExtensionCallback::ExtensionCallback(const QString &id, const QString &plugin, const QString &extenedPlugin,
                                     const QString &extenedPointId, Object *parent)
    : ExtensionHandler(*new ExtensionCallbackPrivate(id, plugin, extenedPlugin, extenedPointId), id, plugin,
                       extenedPointId, extenedPlugin, parent)
{ }

ExtensionCallback::~ExtensionCallback() = default;

QString ExtensionCallback::id() const
{
    Q_D(const ExtensionCallback);
    return d->id;
}

QString ExtensionCallback::plugin() const
{
    Q_D(const ExtensionCallback);
    return d->plugin;
}

QString ExtensionCallback::extenedPlugin() const
{
    Q_D(const ExtensionCallback);
    return d->extenedPlugin;
}

QString ExtensionCallback::extenedPointId() const
{
    Q_D(const ExtensionCallback);
    return d->extenedPointId;
}

int ExtensionCallback::active(QGenericArgument a0, QGenericArgument a1, QGenericArgument a2, QGenericArgument a3,
                              QGenericArgument a4, QGenericArgument a5, QGenericArgument a6, QGenericArgument a7,
                              QGenericArgument a8, QGenericArgument a9)
{
    // Only the admin above it knows what to do; moved elsewhere, the callback is inert.
    auto *admin = dynamic_cast<ExtensionHandlerAdmin *>(parent());
    if (!admin)
        return -1;
    return admin->callbackActived(id(), a0, a1, a2, a3, a4, a5, a6, a7, a8, a9);
}

void ExtensionCallback::dataChanged(const QString &key, const QVariant &value)
{
    if (auto *admin = dynamic_cast<ExtensionHandlerAdmin *>(parent()))
        admin->callbackDataChanged(id(), key, value);
}

} // namespace ExtensionSystem
