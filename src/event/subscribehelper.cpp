// SPDX-License-Identifier: BSD-3-Clause
#include "subscribehelper.h"

namespace ExtensionSystem {
namespace Internal {

SubscribeHelper::SubscribeHelper(QObject *parent, int eventType, const QObject *receiver, const char *slot,
                                 Qt::ConnectionType type)
    : QObject(parent)
    , IListener(eventType)
    , m_eventType(eventType)
    , m_receiver(receiver)
    , m_slot(slot)
    , m_connectionType(type)
{
    const char *signal = nullptr;
    switch (eventType) {
    case 1:
        signal = SIGNAL(frameworkChanged(FrameworkEvent));
        break;
    case 2:
        signal = SIGNAL(pluginChanged(PluginEvent));
        break;
    case 3:
        signal = SIGNAL(serviceChanged(ServiceEvent));
        break;
    case 4:
        signal = SIGNAL(extensionChanged(ExtensionEvent));
        break;
    default:
        break; // customized types are accepted but reach listeners only
    }
    if (signal && receiver && slot)
        QObject::connect(this, signal, receiver, slot, type);
}

SubscribeHelper::~SubscribeHelper()
{
    emit aboutDestory(this, m_eventType, m_receiver, m_slot);
}

void SubscribeHelper::event(const QSharedDataPointer<EventData> &data)
{
    switch (data->type) {
    case 1:
        emit frameworkChanged(FrameworkEvent(data));
        break;
    case 2:
        emit pluginChanged(PluginEvent(data));
        break;
    case 3:
        emit serviceChanged(ServiceEvent(data));
        break;
    case 4:
        emit extensionChanged(ExtensionEvent(data));
        break;
    default:
        break;
    }
}

bool SubscribeHelper::isValid() const
{
    return m_eventType >= 1 && m_receiver && m_slot;
}

bool SubscribeHelper::operator==(const SubscribeHelper &other) const
{
    return m_eventType == other.m_eventType && m_receiver == other.m_receiver && m_slot == other.m_slot;
}

void SubscribeHelper::setProperty(const QString &key, const QVariant &value)
{
    m_properties.insert(key, value);
}

QVariant SubscribeHelper::property(const QString &key) const
{
    return m_properties.value(key);
}

} // namespace Internal
} // namespace ExtensionSystem
