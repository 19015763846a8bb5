// SPDX-License-Identifier: BSD-3-Clause
#include "pluginloadqueue.h"

#include <plugin/plugindependency.h>
#include <plugin/pluginmetadata.h>
#include <plugin/pluginmetadata_p.h>

#include <QtCore/QObject>
#include <QtCore/QQueue>
#include <QtCore/QSet>

#include <algorithm>

namespace ExtensionSystem {
namespace Internal {

PluginLoadQueue::PluginLoadQueue()
    : members(nullptr)
{ }

const PluginMetaData *PluginLoadQueue::validMetaData(const QString &symbolic) const
{
    const PluginMetaData *metaData = members->memberMetaData(symbolic);
    return metaData && metaData->isValid() ? metaData : nullptr;
}

void PluginLoadQueue::add(const QString &symbolic)
{
    if (contains(symbolic))
        return;
    resolve(symbolic);
}

bool PluginLoadQueue::resolve(const QString &self)
{
    // A library that could not be loaded has no metadata, and metadata without a
    // symbolic name names nobody: neither may enter, whatever it depends on.
    PluginMetaData *metaData = members->memberMetaData(self);
    if (!metaData || !metaData->isValid())
        return false;
    // Read in place: dependencies() copies every entry. Marking one resolved
    // changes no entry but its flag.
    const QMap<QString, PluginDependency> &dependencies = PluginMetaDataPrivate::get(metaData)->dependencies;

    if (!dependencies.isEmpty() && !metaData->dependencyResolved()) {
        for (const PluginDependency &dependency : dependencies) {
            if (dependency.symbolic() == self)
                continue;
            const PluginMetaData *provider =
                    contains(dependency.symbolic()) ? members->memberMetaData(dependency.symbolic()) : nullptr;
            if (provider
                && dependency.checkCompatible(provider->symbolic(), provider->version(), provider->compatVersion())) {
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
        members->memberResolved(self);
    }

    const QList<DependencyKey> waited = waitingFor.values(self);
    for (const DependencyKey &key : waited)
        waitedBy.remove(key.symbolic, self);
    waitingFor.remove(self);

    // Newest wait first: a waiting plug-in enters right behind what completed it.
    const QList<QString> waiting = waitedBy.values(self);
    for (const QString &name : waiting)
        resolve(name);
    return true;
}

bool PluginLoadQueue::collectStartList(const QString &symbolic, QStringList &list) const
{
    if (!contains(symbolic))
        return false;
    const PluginMetaData *metaData = members->memberMetaData(symbolic);
    if (!metaData)
        return false;
    const QList<PluginDependency> dependencies = metaData->dependencies();
    for (const PluginDependency &dependency : dependencies) {
        if (!members->memberMetaData(dependency.symbolic()) || dependency.symbolic() == symbolic)
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
    if (m_queue.isEmpty() || !contains(symbolic) || !members->memberMetaData(symbolic))
        return list;
    list.append(symbolic);
    for (int i = indexOf(symbolic) + 1; i < m_queue.size(); ++i) {
        const PluginMetaData *metaData = members->memberMetaData(m_queue.at(i));
        if (!metaData)
            continue;
        const QList<PluginDependency> dependencies = metaData->dependencies();
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

// Dependencies of a plug-in outside the queue that are installed, compatible and
// outside the queue themselves: the edges along which a cycle can run.
QStringList PluginLoadQueue::successors(const QString &symbolic) const
{
    QStringList names;
    const PluginMetaData *metaData = validMetaData(symbolic);
    if (!metaData || contains(symbolic))
        return names;
    const QList<PluginDependency> dependencies = metaData->dependencies();
    for (const PluginDependency &dependency : dependencies) {
        const PluginMetaData *provider = validMetaData(dependency.symbolic());
        if (dependency.isResolved() || dependency.symbolic() == symbolic || !provider
            || contains(dependency.symbolic()))
            continue;
        if (dependency.checkCompatible(provider->symbolic(), provider->version(), provider->compatVersion()))
            names << provider->symbolic();
    }
    return names;
}

bool PluginLoadQueue::reaches(const QString &from, const QString &to) const
{
    QSet<QString> seen{from};
    QQueue<QString> open;
    open.enqueue(from);
    while (!open.isEmpty()) {
        const QString name = open.dequeue();
        if (name == to)
            return true;
        const QStringList next = successors(name);
        for (const QString &n : next) {
            if (!seen.contains(n)) {
                seen.insert(n);
                open.enqueue(n);
            }
        }
    }
    return false;
}

// The shortest cycle through a plug-in, first name repeated at the end, or empty.
QStringList PluginLoadQueue::cycleThrough(const QString &symbolic) const
{
    QHash<QString, QString> parent;
    QQueue<QString> open;
    open.enqueue(symbolic);
    while (!open.isEmpty()) {
        const QString name = open.dequeue();
        const QStringList next = successors(name);
        for (const QString &n : next) {
            if (n == symbolic) {
                QStringList cycle{symbolic};
                for (QString at = name; at != symbolic; at = parent.value(at))
                    cycle.prepend(at);
                cycle.prepend(symbolic);
                return cycle;
            }
            if (!parent.contains(n)) {
                parent.insert(n, name);
                open.enqueue(n);
            }
        }
    }
    return QStringList();
}

PluginProblem PluginLoadQueue::missing(const QString &self, const QString &name, const QString &version) const
{
    // What stands in the dependency's place, if anything: a refusal, or a name
    // that differs only in case.
    QString detail;
    const PluginProblem refusal = members->memberRefusal(name);
    if (refusal.isProblem()) {
        detail = QObject::tr("%1 is refused: %2").arg(name, refusal.text());
    } else {
        const QStringList names = members->memberNames();
        for (const QString &other : names) {
            if (other.compare(name, Qt::CaseInsensitive) == 0) {
                detail = QObject::tr("there is %1, but names are case-sensitive").arg(other);
                break;
            }
        }
    }
    PluginProblem problem(PluginProblem::MissingDependency, self, detail);
    problem.setDependency(name, version);
    return problem;
}

QList<PluginProblem> PluginLoadQueue::problems(const QString &self) const
{
    QList<PluginProblem> found;
    const PluginMetaData *metaData = validMetaData(self);
    if (!metaData || contains(self))
        return found;

    const QList<PluginDependency> dependencies = metaData->dependencies();
    if (dependencies.isEmpty() && !metaData->dependencyResolved()) {
        found << PluginProblem(PluginProblem::NoDependencyLine, self);
        return found;
    }

    const QStringList cycle = cycleThrough(self);
    if (!cycle.isEmpty()) {
        PluginProblem problem(PluginProblem::DependencyCycle, self);
        problem.setCycle(cycle);
        found << problem;
    }

    for (const PluginDependency &dependency : dependencies) {
        if (dependency.isResolved())
            continue;
        const QString name = dependency.symbolic();
        auto because = [&](PluginProblem::Reason reason) {
            PluginProblem problem(reason, self);
            problem.setDependency(name, dependency.version());
            return problem;
        };
        if (name == self) {
            found << because(PluginProblem::SelfDependency);
            continue;
        }
        const PluginMetaData *provider = members->memberMetaData(name);
        if (!provider) {
            if (members->memberNames().contains(name))
                found << because(PluginProblem::UnresolvedDependency); // installed, but its library did not load
            else
                found << missing(self, name, dependency.version());
            continue;
        }
        if (!provider->isValid()) {
            found << because(PluginProblem::UnresolvedDependency);
            continue;
        }
        if (!dependency.checkCompatible(provider->symbolic(), provider->version(), provider->compatVersion())) {
            PluginProblem problem = because(PluginProblem::IncompatibleVersion);
            problem.setProvided(provider->version(), provider->compatVersion());
            found << problem;
            continue;
        }
        if (contains(name)) {
            // Dependencies are filed under lower-case names but marked met under the
            // name as written, so a name with capitals is never marked.
            found << because(PluginProblem::CapitalisedDependency);
            continue;
        }
        if (!cycle.isEmpty() && reaches(name, self))
            continue; // told as the cycle above
        found << because(PluginProblem::UnresolvedDependency);
    }
    if (found.isEmpty())
        found << PluginProblem(PluginProblem::NotResolved, self);
    return found;
}

} // namespace Internal
} // namespace ExtensionSystem
