// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINPROBLEM_H
#define EXTENSIONSYSTEM_PLUGINPROBLEM_H

#include "../extensionsystem_global.h"

#include "../core/plugincrash.h"

#include <QtCore/QList>
#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ExtensionSystem {

namespace Internal {
class PluginProblemPrivate;
}

/*!
    \class ExtensionSystem::PluginProblem
    \brief One reason why a plug-in or a plug-in library is not running, with the
    names and versions it concerns and a sentence that says it.

    PluginManager::problems() answers for a running framework; PluginResolver
    answers the same for libraries a tool has loaded without starting them.
    Implicitly shared: copies share the data until one is changed by a setter.
*/
class EXTENSIONSYSTEM_EXPORT PluginProblem
{
public:
    /*!
        What is wrong. The accessors that each reason fills are named with it;
        plugin() is set for every reason but NoProblem.
    */
    enum Reason {
        NoProblem = 0, ///< Nothing is wrong; text() is empty.
        UnknownPlugin, ///< No installed plug-in or library has the name.
        LoadFailed, ///< The library did not load; detail(): the loader's message.
        NoMetaFile, ///< No META.INF resource; detail(): the resource path looked at.
        InvalidMetaFile, ///< META.INF names no symbolic; detail(): its resource path.
        DuplicateName, ///< Another file holds the symbolic name; detail(): that file.
        Blacklisted, ///< config.ini disables it; detail(): the value written there, if given.
        NotWhitelisted, ///< loadEnabledPluginOnly is on and the plug-in is not enabled.
        NoDependencyLine, ///< META.INF has no dependency line, so it never resolves.
        DependencyCycle, ///< cycle(): the names around the cycle, first one repeated.
        SelfDependency, ///< dependency() is the plug-in itself.
        MissingDependency, ///< dependency() is not installed; detail(): what stands in its place, if anything.
        IncompatibleVersion, ///< dependency() is installed in a version that does not fit; see providedVersion().
        CapitalisedDependency, ///< dependency() is written with capitals and so is never met.
        UnresolvedDependency, ///< dependency() is installed but does not resolve itself.
        NotResolved, ///< Does not resolve, for a reason none of the above names.
        NoActivator, ///< The root object is not an activator, so it cannot start.
        NotStarted, ///< Resolved, but not started yet or stopped since.
        /*! The previous process died in its code while loading or starting it,
            so its library is not loaded: crash() says when, where and how often.
            \since 1.1 */
        Quarantined
    };

    /*!
        Creates a value that reports NoProblem, with every field empty.
    */
    PluginProblem();
    /*!
        Creates a problem of \a reason concerning \a plugin, with \a detail as
        the reason's detail (see Reason). The dependency, versions and cycle are
        set with the setters.
    */
    explicit PluginProblem(Reason reason, const QString &plugin = QString(), const QString &detail = QString());
    /*!
        Creates a copy of \a other that shares its data.
    */
    PluginProblem(const PluginProblem &other);
    /*!
        Makes this value share the data of \a other and returns it.
    */
    PluginProblem &operator=(const PluginProblem &other);
    /*!
        Releases this value's reference to the shared data.
    */
    ~PluginProblem();

    /*!
        Returns what is wrong; NoProblem for a default value.
    */
    Reason reason() const;
    /*!
        Returns whether reason() is anything but NoProblem.
    */
    bool isProblem() const { return reason() != NoProblem; }

    /*!
        Returns the name concerned: the plug-in's symbolic name, or the library's
        base name when it has none.
    */
    QString plugin() const;
    /*!
        Returns the reason's detail, as listed under Reason: the loader's message,
        a path, a file or a value from config.ini; empty for the other reasons.
    */
    QString detail() const;
    /*!
        Returns the symbolic name of the dependency concerned, as written in
        META.INF; empty unless the reason is about a dependency.
    */
    QString dependency() const;
    /*!
        Returns the version that plugin() requires of dependency(), as written;
        empty when none is given.
    */
    QString requiredVersion() const;
    /*!
        Returns the version of the installed dependency, for IncompatibleVersion.
    */
    QString providedVersion() const;
    /*!
        Returns the version the installed dependency is compatible back to, for
        IncompatibleVersion.
    */
    QString providedCompatVersion() const;
    /*!
        Returns the names around a dependency cycle, starting and ending with
        plugin(), for DependencyCycle; otherwise empty.
    */
    QStringList cycle() const;
    /*!
        Returns the record of the deaths that quarantine the plug-in, for
        Quarantined; otherwise a null value.

        \since 1.1
    */
    PluginCrash crash() const;

    /*!
        Sets the dependency concerned to \a symbolic and the version plugin()
        requires of it to \a requiredVersion.
    */
    void setDependency(const QString &symbolic, const QString &requiredVersion);
    /*!
        Sets the installed dependency's \a version and the version
        \a compatVersion it is compatible back to.
    */
    void setProvided(const QString &version, const QString &compatVersion);
    /*!
        Sets the names around the cycle to \a names, first one repeated at the end.
    */
    void setCycle(const QStringList &names);
    /*!
        Sets the record of a Quarantined plug-in to \a crash.

        \since 1.1
    */
    void setCrash(const PluginCrash &crash);

    /*!
        Returns one translated sentence that says the problem, e.g. "incompatible
        version: needs core 2.0.0 but core is 1.0.0 (compatible back to 1.0.0)";
        empty for NoProblem. An empty version is shown as "no version (counts as
        0.0.0)", an empty name as "(no name)".
    */
    QString text() const;

    /*!
        Returns true when both values have the same reason and the same fields.
    */
    bool operator==(const PluginProblem &other) const;
    /*!
        Returns true when the values differ in their reason or any field.
    */
    bool operator!=(const PluginProblem &other) const { return !(*this == other); }

private:
    QSharedDataPointer<Internal::PluginProblemPrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginProblem)

#endif // EXTENSIONSYSTEM_PLUGINPROBLEM_H
