// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGININFO_H
#define EXTENSIONSYSTEM_PLUGININFO_H

#include "../extensionsystem_global.h"

#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QPair>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

class PluginMetaData;

namespace Internal {
class PluginInfoPrivate;
}

/*!
    \class ExtensionSystem::PluginInfo
    \brief A snapshot of an installed plug-in: its metadata and what the framework
    knows about it at run time.

    Returned by PluginManager::pluginInfo(), PluginContext::pluginInfo() and the
    \c pluginInfos() functions. Implicitly shared: copies share the data until
    one of them is changed by a setter, which detaches it. The manager keeps one
    PluginInfo per plug-in and keeps only its state (and its startup policy, when
    set through the manager) current; a copy handed out does not follow later
    changes, and the dependency flags are those at installation.

    A copy may be read on any thread; one object must not be read and written at
    the same time.
*/
class EXTENSIONSYSTEM_EXPORT PluginInfo
{
public:
    /*!
        The states of a plug-in, also the actions of PluginEvent. The values are
        single bits in start-up order, one at a time; "startable" is tested as
        state > 3. The value 0 is no state: it marks an empty PluginInfo.
    */
    enum State {
        Uninstalled = 1, ///< The plug-in object is being built, or being destroyed.
        Installed = 2, ///< Library loaded and metadata read; dependencies not known to be met.
        Resolved = 4, ///< In the load queue: every dependency is met. A stopped plug-in comes back here.
        Starting = 8, ///< Its activator's start() is running.
        Stopping = 16, ///< Its activator's stop() is running.
        Active = 32 ///< Started.
    };

    /*!
        Creates an empty snapshot: null strings, currentState() 0, isValid() and
        isEager() false, startupPolicy() 0 and no dependencies.
    */
    PluginInfo();
    /*!
        Creates a snapshot of \a metaData, which must not be null, with the given
        \a state (a State value), \a valid flag, \a location (the directory of
        the library), \a filepath (the library file) and \a startupPolicy (a
        PluginFrameworkConfig::StartupPolicy value). The metadata is copied, not
        kept: later changes to it, such as resolved dependencies, do not show
        here.
    */
    PluginInfo(const PluginMetaData *metaData, int state, bool valid, const QString &location, const QString &filepath,
               int startupPolicy);
    /*!
        Creates a copy of \a other that shares its data.
    */
    PluginInfo(const PluginInfo &other);
    /*!
        Makes this object share the data of \a other and returns it.
    */
    PluginInfo &operator=(const PluginInfo &other);
    /*!
        Releases this object's reference to the shared data.
    */
    ~PluginInfo();

    /*!
        Returns the plug-in's symbolic name, the \c symbolic value of its
        META.INF; null for an empty snapshot.
    */
    QString symbolic() const;
    /*!
        Returns the \c version value of the plug-in's META.INF, as written.
    */
    QString version() const;
    /*!
        Returns the \c compatVersion value of META.INF, as written: the oldest
        version this plug-in can stand in for.
    */
    QString compatVersion() const;
    /*!
        Returns the absolute path of the directory that holds the plug-in's
        library.
    */
    QString location() const;
    /*!
        Returns the path of the plug-in's library file, as the directory scan or
        PluginFramework::installPlugin() gave it.
    */
    QString filepath() const;
    /*!
        Returns the \c category value of META.INF, free text.
    */
    QString category() const;
    /*!
        Returns the \c company value of META.INF, free text.
    */
    QString company() const;
    /*!
        Returns the \c website value of META.INF, free text.
    */
    QString website() const;
    /*!
        Returns the \c copyright value of META.INF, free text.
    */
    QString copyright() const;
    /*!
        Returns the \c license value of META.INF, free descriptive text.
    */
    QString license() const;
    /*!
        Returns the \c describe value of META.INF, free text.
    */
    QString description() const;

    /*!
        Returns the plug-in's state as last recorded: in the manager's own copy
        it follows every state change, in a copy handed out it is the state at
        the time of the copy. 0, which is no State value, for an empty snapshot.

        \note Right after installation the manager's copy may still read
        Installed for a plug-in that resolved at once, until its next change.
    */
    PluginInfo::State currentState() const;
    /*!
        Returns whether the snapshot describes a plug-in. The framework's
        snapshots are always valid; an empty one, as returned for an unknown
        name, is not.
    */
    bool isValid() const;
    /*!
        Returns whether META.INF says "activation: eager". Informative only: the
        framework starts eager and lazy plug-ins alike.
    */
    bool isEager() const;
    /*!
        Returns the startup policy, a PluginFrameworkConfig::StartupPolicy value:
        the one config.ini held at installation, or the one set later through
        PluginManager::setPluginStartupPolicy() or
        PluginContext::setStartupPolicy().
    */
    int startupPolicy() const;

    /*!
        Sets the recorded state to \a state, in this copy only; the plug-in is
        not affected. Used by the manager to keep its own copy current.
    */
    void setCurrentState(PluginInfo::State state);
    /*!
        Sets the valid flag to \a valid, in this copy only.
    */
    void setValid(bool valid);
    /*!
        Sets the recorded startup policy to \a policy, in this copy only;
        config.ini is not written.
    */
    void setStartupPolicy(int policy);

    /*!
        Returns the plug-in's dependencies, a new map on each call: the key is the
        symbolic name as written in META.INF, the value the pair of required
        version text and resolved flag, sorted by name. The flags are those at the
        time the snapshot was made, so they may all read false for a plug-in that
        resolved later.
    */
    QMap<QString, QPair<QString, bool>> dependency() const;

private:
    QSharedDataPointer<Internal::PluginInfoPrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginInfo)

#endif // EXTENSIONSYSTEM_PLUGININFO_H
