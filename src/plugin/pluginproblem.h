// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINPROBLEM_H
#define EXTENSIONSYSTEM_PLUGINPROBLEM_H

#include "extensionsystem_global.h"

#include <QtCore/QList>
#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ExtensionSystem {

namespace Internal {
class PluginProblemPrivate;
}

// One reason why a plug-in or a plug-in library is not running, with the names
// and versions it concerns and a sentence that says it. Implicitly shared.
//
// PluginManager::problems() answers for a running framework; PluginResolver
// answers the same for libraries a tool has loaded without starting them.
class EXTENSIONSYSTEM_EXPORT PluginProblem
{
public:
    enum Reason {
        NoProblem = 0,
        UnknownPlugin, // no installed plug-in or library has the name
        LoadFailed, // the library did not load; detail(): the loader's message
        NoMetaFile, // no META.INF resource; detail(): the resource path looked at
        InvalidMetaFile, // META.INF names no symbolic; detail(): its resource path
        DuplicateName, // another file holds the symbolic name; detail(): that file
        Blacklisted, // config.ini disables it; detail(): the value written there
        NotWhitelisted, // loadEnabledPluginOnly is on and the plug-in is not enabled
        NoDependencyLine, // META.INF has no dependency line, so it never resolves
        DependencyCycle, // cycle(): the names around the cycle, first one repeated
        SelfDependency, // dependency() is the plug-in itself
        MissingDependency, // dependency() is not installed; detail(): what stands in its place
        IncompatibleVersion, // dependency() is installed in a version that does not fit
        CapitalisedDependency, // dependency() is written with capitals and so is never met
        UnresolvedDependency, // dependency() is installed but does not resolve itself
        NotResolved, // does not resolve, for a reason none of the above names
        NoActivator, // the root object is not an activator, so it cannot start
        NotStarted // resolved, but not started yet or stopped since
    };

    PluginProblem();
    explicit PluginProblem(Reason reason, const QString &plugin = QString(), const QString &detail = QString());
    PluginProblem(const PluginProblem &other);
    PluginProblem &operator=(const PluginProblem &other);
    ~PluginProblem();

    Reason reason() const;
    bool isProblem() const { return reason() != NoProblem; }

    // The plug-in's symbolic name, or the library's base name when it has none.
    QString plugin() const;
    QString detail() const;
    QString dependency() const;
    QString requiredVersion() const;
    QString providedVersion() const;
    QString providedCompatVersion() const;
    QStringList cycle() const;

    void setDependency(const QString &symbolic, const QString &requiredVersion);
    void setProvided(const QString &version, const QString &compatVersion);
    void setCycle(const QStringList &names);

    // One translated sentence, e.g. "incompatible version: needs core 2.0.0 but core
    // is 1.0.0 (compatible back to 1.0.0)".
    QString text() const;

    bool operator==(const PluginProblem &other) const;
    bool operator!=(const PluginProblem &other) const { return !(*this == other); }

private:
    QSharedDataPointer<Internal::PluginProblemPrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginProblem)

#endif // EXTENSIONSYSTEM_PLUGINPROBLEM_H
