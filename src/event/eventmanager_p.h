// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EVENTMANAGER_P_H
#define EXTENSIONSYSTEM_EVENTMANAGER_P_H

#include "eventmanager.h"

#include <event/cleanuphelper.h>
#include <event/eventdata.h>

#include <QtCore/QMultiHash>
#include <QtCore/QSharedDataPointer>
#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class EventManagerPrivate : public QObjectPrivate, public CleanupHelper
{
    Q_DECLARE_PUBLIC(EventManager)
public:
    EventManagerPrivate();
    ~EventManagerPrivate() override;

    void dispatch(const QSharedDataPointer<EventData> &data);
    void registerListener(const QString &symbolic, IListener *listener);
    void cleanup(IListener *listener) override;

    PluginFrameworkContext *context;
    QMultiHash<int, IListener *> listeners;
    QMultiHash<QString, IListener *> listenerPlugins;
    QMultiHash<const QObject *, const char *> receivers;
    QMultiHash<QString, SubscribeHelper *> trackers;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTMANAGER_P_H
