#include "pluginloadqueue.h"

#include <plugin/plugin.h>
#include <plugin/plugindependency.h>
#include <plugin/plugininfo.h>
#include <plugin/pluginmanager.h>
#include <plugin/pluginmetadata.h>
#include <plugin/pluginmetadata_p.h>

#include <algorithm>

namespace ExtensionSystem {
namespace Internal {

PluginLoadQueue::PluginLoadQueue()
    : manager(nullptr)
{
}

void PluginLoadQueue::add(Plugin *plugin)
{
    // A library that could not be loaded has no metadata and stays out of the queue.
    if (!plugin || !plugin->metaData() || contains(plugin->symbolic()))
        return;
    resolve(plugin);
}

bool PluginLoadQueue::resolve(Plugin *plugin)
{
    if (!plugin || !plugin->metaData())
        return false;
    const QString self = plugin->symbolic();
    // Resolution flags live on the plug-in's own metadata, which only the queue changes.
    auto *metaData = const_cast<PluginMetaData *>(plugin->metaData());
    // Read in place: dependencies() copies every entry, and each copy works its
    // version key out again. Marking one resolved changes no entry but its flag.
    const QMap<QString, PluginDependency> &dependencies = PluginMetaDataPrivate::get(metaData)->dependencies;

    if (!dependencies.isEmpty() && !metaData->dependencyResolved()) {
        for (const PluginDependency &dependency : dependencies) {
            if (dependency.symbolic() == self)
                continue;
            Plugin *provider = contains(dependency.symbolic()) ? manager->find(dependency.symbolic()) : nullptr;
            if (provider && provider->metaData()
                && dependency.checkCompatible(provider->symbolic(), provider->version(),
                                              provider->metaData()->compatVersion())) {
                metaData->setDependencyResolved(dependency.symbolic(), true);
            }
            waitingFor.insert(self, DependencyKey{dependency.symbolic(), dependency.version()});
            waitedBy.insert(dependency.symbolic(), self);
        }
    }
    // Without a dependency line the flag stays false: such a plug-in never resolves.
    if (!metaData->dependencyResolved())
        return false;

    if (!contains(self)) {
        m_positions.insert(self, m_queue.size());
        m_queue.append(self);
        plugin->setState(PluginInfo::Resolved);
    }

    const QList<DependencyKey> waited = waitingFor.values(self);
    for (const DependencyKey &key : waited)
        waitedBy.remove(key.symbolic, self);
    waitingFor.remove(self);

    // Newest wait first: a waiting plug-in enters right behind what completed it.
    const QList<QString> waiting = waitedBy.values(self);
    for (const QString &name : waiting)
        resolve(manager->find(name));
    return true;
}

bool PluginLoadQueue::collectStartList(const QString &symbolic, QStringList &list) const
{
    if (!contains(symbolic))
        return false;
    Plugin *plugin = manager->find(symbolic);
    if (!plugin || !plugin->metaData())
        return false;
    const QList<PluginDependency> dependencies = plugin->metaData()->dependencies();
    for (const PluginDependency &dependency : dependencies) {
        Plugin *provider = manager->find(dependency.symbolic());
        if (!provider || provider->symbolic() == symbolic)
            continue;
        if (collectStartList(dependency.symbolic(), list))
            list.append(dependency.symbolic());
    }
    return true;
}

QStringList PluginLoadQueue::startList(const QString &symbolic) const
{
    QStringList list;
    if (m_queue.isEmpty() || !contains(symbolic))
        return list;
    collectStartList(symbolic, list);
    list.append(symbolic);
    return list;
}

QStringList PluginLoadQueue::stopList(const QString &symbolic) const
{
    QStringList list;
    if (m_queue.isEmpty() || !contains(symbolic) || !manager->find(symbolic))
        return list;
    list.append(symbolic);
    for (int i = indexOf(symbolic) + 1; i < m_queue.size(); ++i) {
        Plugin *plugin = manager->find(m_queue.at(i));
        if (!plugin || !plugin->metaData())
            continue;
        const QList<PluginDependency> dependencies = plugin->metaData()->dependencies();
        // No break after a match: a plug-in that needs two listed ones is listed twice.
        for (const PluginDependency &dependency : dependencies) {
            if (list.contains(dependency.symbolic()))
                list.prepend(m_queue.at(i));
        }
    }
    return list;
}

QStringList PluginLoadQueue::reversed() const
{
    QStringList list = m_queue;
    std::reverse(list.begin(), list.end());
    return list;
}

} // namespace Internal
} // namespace ExtensionSystem
