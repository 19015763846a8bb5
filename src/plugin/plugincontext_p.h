// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINCONTEXT_P_H
#define EXTENSIONSYSTEM_PLUGINCONTEXT_P_H

#include "plugincontext.h"

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class PluginContextPrivate : public QObjectPrivate
{
    ES_DECLARE_PUBLIC(PluginContext)
public:
    PluginContextPrivate(PluginFrameworkContext *context, Plugin *plugin);

    void registerListener(IListener *listener);
    void track(int eventType, const QObject *receiver, const char *slot, Qt::ConnectionType type);
    QString nameOrSelf(const QString &symbolic) const;

    PluginFrameworkContext *context;
    Plugin *plugin;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINCONTEXT_P_H
