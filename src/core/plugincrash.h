// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINCRASH_H
#define EXTENSIONSYSTEM_PLUGINCRASH_H

#include "../extensionsystem_global.h"

#include <QtCore/QDateTime>
#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

namespace Internal {
class PluginCrashPrivate;
}

/*!
    \class ExtensionSystem::PluginCrash
    \brief Which plug-in's code a process was running when it ended without a
    clean stop, in which phase and when; for a quarantined plug-in also how
    often that happened.

    The framework keeps a start journal while a host runs: a record of the
    plug-in code it is inside. When a process dies there (a crash, \c abort(),
    an uncaught exception, \c _exit(), a kill), the next init() reads what it
    was doing. PluginManager::previousCrash() gives it to the host, and a
    plug-in that died in its library load, its root object, its translation or
    its start() is quarantined: PluginManager::quarantinedPlugins() lists them,
    and PluginQuarantine reads the same for tools. Implicitly shared.

    \since 1.1
    \sa PluginQuarantine, PluginProblem::Quarantined
*/
class EXTENSIONSYSTEM_EXPORT PluginCrash
{
public:
    /*!
        The plug-in code that was running, in the order of a plug-in's life.
    */
    enum Phase {
        NoPhase = 0, ///< Nothing: a null value.
        LibraryLoad = 1, ///< Loading the library; its static initialisers run there.
        RootObject = 2, ///< Making the library's root object.
        Translation = 3, ///< Loading the plug-in's translation, before its start().
        ActivatorStart = 4, ///< The activator's start(), also on demand or for another plug-in.
        ActivatorStop = 5, ///< The activator's stop().
        HandlerCall = 6 ///< An extension handler's active(), for an item of the plug-in.
    };

    /*!
        Creates a null value: no plug-in, NoPhase.
    */
    PluginCrash();
    /*!
        Creates the record of \a plugin (its symbolic name, or its library's
        base name when the name was not known yet), whose library is \a file,
        dying in \a phase at \a time.
    */
    PluginCrash(const QString &plugin, const QString &file, Phase phase, const QDateTime &time);
    /*!
        Creates a copy of \a other that shares its data.
    */
    PluginCrash(const PluginCrash &other);
    /*!
        Makes this value share the data of \a other and returns it.
    */
    PluginCrash &operator=(const PluginCrash &other);
    /*!
        Releases this value's reference to the shared data.
    */
    ~PluginCrash();

    /*!
        Returns true for a value that records nothing (phase() is NoPhase).
    */
    bool isNull() const;
    /*!
        Returns the plug-in's symbolic name, or its library's base name when the
        process died before the name was read.
    */
    QString plugin() const;
    /*!
        Returns the absolute path of the plug-in's library; empty for a
        HandlerCall.
    */
    QString file() const;
    /*!
        Returns the phase the process died in.
    */
    Phase phase() const;
    /*!
        Returns when that phase began, in UTC.
    */
    QDateTime time() const;
    /*!
        Returns how many times the plug-in has died in a phase that quarantines;
        1 for a record of one run.
    */
    int count() const;
    /*!
        Returns for how many seconds the hang watchdog had seen the phase run
        when the process ended, or 0 when it had not reported it (off, or the
        phase was not slow): the process was most likely ended by the user
        because it hung.
    */
    int hangSeconds() const;
    /*!
        Returns true for a quarantined plug-in that has been released (by a new
        library file, PluginManager::releasePlugin() or es-inspect
        --release) and has not yet got through the phase it died in. It is
        loaded again; dying once more quarantines it with count() increased.
    */
    bool isReleased() const;
    /*!
        Returns true when dying in phase() quarantines the plug-in: the phases
        up to and including its start(). A crash in stop() or in a handler does
        not repeat at every start and quarantines nothing.
    */
    bool quarantines() const;

    /*!
        Sets count() to \a count.
    */
    void setCount(int count);
    /*!
        Sets hangSeconds() to \a seconds.
    */
    void setHangSeconds(int seconds);
    /*!
        Sets isReleased() to \a released.
    */
    void setReleased(bool released);

    /*!
        Returns the words for \a phase as text() uses them, e.g. "start()" or
        "loading its library".
    */
    static QString phaseName(Phase phase);
    /*!
        Returns one translated sentence: e.g. "demo.crash crashed in start() on
        2026-11-24 16:30:12; it was not loaded" for a quarantined plug-in,
        "demo.slow did not return from start() within 30 s (on ...)" when the
        watchdog saw it hang. Times are local. Empty for a null value.
    */
    QString text() const;

    /*!
        Returns true when both values have the same fields.
    */
    bool operator==(const PluginCrash &other) const;
    /*!
        Returns true when the values differ in any field.
    */
    bool operator!=(const PluginCrash &other) const { return !(*this == other); }

private:
    QSharedDataPointer<Internal::PluginCrashPrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginCrash)

#endif // EXTENSIONSYSTEM_PLUGINCRASH_H
