// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINLOADQUEUE_H
#define EXTENSIONSYSTEM_PLUGINLOADQUEUE_H

#include "extensionsystem_global.h"

#include <plugin/pluginproblem.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class PluginMetaData;

namespace Internal {

// Decides who may run and in what order: a plug-in enters the queue only once
// each of its dependencies is in it and compatible. The queue is the start order.
// It also says why a plug-in is not in it. The framework's manager and the
// resolver that tools use are its two kinds of members.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginLoadQueue
{
public:
    struct DependencyKey
    {
        QString symbolic;
        QString version;
    };

    // What the queue needs to know of the plug-ins it orders.
    class Members
    {
    public:
        virtual ~Members() = default;
        // The metadata of the installed plug-in of that name, or null. The queue
        // keeps the resolution flags of its dependencies on it.
        virtual PluginMetaData *memberMetaData(const QString &symbolic) const = 0;
        // The plug-in has just entered the queue.
        virtual void memberResolved(const QString &symbolic) = 0;
        // Every installed name, for hints about a dependency that is missing.
        virtual QStringList memberNames() const = 0;
        // Why a plug-in of that name was refused at installation, if it was.
        virtual PluginProblem memberRefusal(const QString &symbolic) const = 0;
    };

    PluginLoadQueue();

    void setMembers(Members *members) { this->members = members; }
    void add(const QString &symbolic);
    QStringList startList(const QString &symbolic) const;
    QStringList stopList(const QString &symbolic) const;
    QStringList queue() const { return m_queue; }
    QStringList reversed() const;
    // Membership and position without a walk over the queue: both are asked
    // for at every state change of every plug-in.
    bool contains(const QString &symbolic) const { return m_positions.contains(symbolic); }
    int indexOf(const QString &symbolic) const { return m_positions.value(symbolic, -1); }
    int size() const { return m_queue.size(); }

    // Why an installed plug-in with valid metadata is not in the queue; empty
    // when it is.
    QList<PluginProblem> problems(const QString &symbolic) const;

private:
    bool resolve(const QString &symbolic);
    bool collectStartList(const QString &symbolic, QStringList &list) const;
    const PluginMetaData *validMetaData(const QString &symbolic) const;
    QStringList successors(const QString &symbolic) const;
    QStringList cycleThrough(const QString &symbolic) const;
    bool reaches(const QString &from, const QString &to) const;
    PluginProblem missing(const QString &self, const QString &name, const QString &version) const;

    Members *members;
    QStringList m_queue;
    // Each name's position in m_queue, which only ever grows at its end.
    QHash<QString, int> m_positions;
    QMultiHash<QString, DependencyKey> waitingFor;
    QMultiHash<QString, QString> waitedBy;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINLOADQUEUE_H
