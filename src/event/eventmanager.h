// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EVENTMANAGER_H
#define EXTENSIONSYSTEM_EVENTMANAGER_H

#include "extensionsystem_global.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

class CustomizedEvent;
class ExtensionEvent;
class FrameworkEvent;
class IListener;
class PluginEvent;
class ServiceEvent;

namespace Internal {

class EventManagerPrivate;
class PluginFrameworkContext;
class SubscribeHelper;

// The framework's event switch: every subscriber of an event type is called at
// once, on the publisher's thread, newest subscription first.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT EventManager : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(EventManager)
public:
    EventManager(PluginFrameworkContext *context, QObject *parent);
    ~EventManager() override;

    void publish(const PluginEvent &event);
    void publish(const FrameworkEvent &event);
    void publish(const ServiceEvent &event);
    void publish(const ExtensionEvent &event);
    void publish(const CustomizedEvent &event);

    void registerListener(const QString &symbolic, IListener *listener);
    void unregisterListener(IListener *listener);

    void trackEvent(const QString &symbolic, int eventType, const QObject *receiver, const char *slot,
                    Qt::ConnectionType type);
    void untrackEvent(const QString &symbolic, const QObject *receiver, const char *slot);

private slots:
    void trackerAboutDestory(SubscribeHelper *helper, int eventType, const QObject *receiver, const char *slot);

private:
    Q_DISABLE_COPY(EventManager)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTMANAGER_H
