#ifndef EXTENSIONSYSTEM_PLUGINLOADQUEUE_H
#define EXTENSIONSYSTEM_PLUGINLOADQUEUE_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class Plugin;
class PluginManager;

namespace Internal {

// Decides who may run and in what order: a plug-in enters the queue only once
// each of its dependencies is in it and compatible. The queue is the start order.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginLoadQueue
{
public:
    struct DependencyKey
    {
        QString symbolic;
        QString version;
    };

    PluginLoadQueue();

    void setManager(PluginManager *manager) { this->manager = manager; }
    void add(Plugin *plugin);
    QStringList startList(const QString &symbolic) const;
    QStringList stopList(const QString &symbolic) const;
    QStringList queue() const { return m_queue; }
    QStringList reversed() const;
    // Membership and position without a walk over the queue: both are asked
    // for at every state change of every plug-in.
    bool contains(const QString &symbolic) const { return m_positions.contains(symbolic); }
    int indexOf(const QString &symbolic) const { return m_positions.value(symbolic, -1); }
    int size() const { return m_queue.size(); }

private:
    bool resolve(Plugin *plugin);
    bool collectStartList(const QString &symbolic, QStringList &list) const;

    PluginManager *manager;
    QStringList m_queue;
    // Each name's position in m_queue, which only ever grows at its end.
    QHash<QString, int> m_positions;
    QMultiHash<QString, DependencyKey> waitingFor;
    QMultiHash<QString, QString> waitedBy;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINLOADQUEUE_H
