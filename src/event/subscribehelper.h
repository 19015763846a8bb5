// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SUBSCRIBEHELPER_H
#define EXTENSIONSYSTEM_SUBSCRIBEHELPER_H

#include "extensionsystem_global.h"

#include <event/extensionevent.h>
#include <event/frameworkevent.h>
#include <event/ilistener.h>
#include <event/pluginevent.h>
#include <event/serviceevent.h>

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QVariant>

namespace ExtensionSystem {
namespace Internal {

// A tracked receiver: a listener that turns each event into a Qt signal
// connected to the receiver's member.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT SubscribeHelper : public QObject, public IListener
{
    Q_OBJECT
    Q_INTERFACES(ExtensionSystem::IListener)
public:
    SubscribeHelper(QObject *parent, int eventType, const QObject *receiver, const char *slot, Qt::ConnectionType type);
    ~SubscribeHelper() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    // QObject's event handler stays reachable beside the listener's entry.
    using QObject::event;

    bool isValid() const;
    bool operator==(const SubscribeHelper &other) const;

    int eventType() const { return m_eventType; }
    const QObject *receiver() const { return m_receiver; }
    const char *slot() const { return m_slot; }
    Qt::ConnectionType connectionType() const { return m_connectionType; }

    void setProperty(const QString &key, const QVariant &value);
    QVariant property(const QString &key) const;

signals:
    void aboutDestory(SubscribeHelper *helper, int eventType, const QObject *receiver, const char *slot);
    void pluginChanged(PluginEvent event);
    void frameworkChanged(FrameworkEvent event);
    void serviceChanged(ServiceEvent event);
    void extensionChanged(ExtensionEvent event);

private:
    int m_eventType;
    const QObject *m_receiver;
    const char *m_slot;
    Qt::ConnectionType m_connectionType;
    QHash<QString, QVariant> m_properties;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SUBSCRIBEHELPER_H
