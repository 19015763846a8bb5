// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINQUARANTINE_H
#define EXTENSIONSYSTEM_PLUGINQUARANTINE_H

#include "../extensionsystem_global.h"

#include "../core/plugincrash.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ExtensionSystem {

namespace Internal {
class PluginQuarantinePrivate;
}

/*!
    \class ExtensionSystem::PluginQuarantine
    \brief The quarantine list and start journals of one program's application
    directory, for tools that look at it from outside a running host.

    A plug-in in whose library load, root object, translation or start() the
    previous process died is quarantined at the next init(): its library is not
    loaded at all until it is released. The list is the file
    "config/<program>/quarantine.ini", which exists only while it holds a
    record; the journals are "config/<program>/plugins-<pid>.journal", one for
    each running host. A running host answers the same through
    PluginManager::quarantinedPlugins() and PluginManager::previousCrash(); this
    class is what \c es-inspect uses. Reading changes no file; release() is the
    one operation that writes, and it writes the list only, never config.ini.

    \since 1.1
    \sa PluginCrash, PluginManager::releasePlugin()
*/
class EXTENSIONSYSTEM_EXPORT PluginQuarantine
{
public:
    /*!
        Opens the list of the program \a program (the name of its directory
        below "config/") in the application directory \a applicationDir, the
        one that holds "plugins/" and "config/". Nothing is read or written yet.
    */
    PluginQuarantine(const QString &applicationDir, const QString &program);
    /*!
        Destroys the object; nothing is written.
    */
    ~PluginQuarantine();

    /*!
        Returns the file name of the list, "quarantine.ini".
    */
    static QString listFileName();

    /*!
        Returns the records of the list as it stands on disk: quarantined
        plug-ins, and released ones that have not yet got through the phase
        they died in (PluginCrash::isReleased()). Empty without a list.
    */
    QList<PluginCrash> records() const;
    /*!
        Returns what the journals of processes that ended without a clean stop
        say they were running when they ended, oldest first; a host that is
        running is not looked at, and one that ended outside plug-in code is not
        listed. The next init() of the program reads the same journals, turns
        them into quarantine records and removes them. A journal that cannot be
        read adds a sentence to \a notes, if given.
    */
    QList<PluginCrash> unfinishedRuns(QStringList *notes = nullptr) const;
    /*!
        Returns the record that keeps the library file \a library from being
        loaded at the next start, or a null value: none when the plug-in is not
        quarantined, has been released, or its file no longer holds the bytes
        that died (a fixed build, which the next start releases).
    */
    PluginCrash blocks(const QString &library) const;
    /*!
        Releases the quarantined plug-in \a name (its symbolic name, its
        library's base name or its file below "plugins/"): it is loaded again
        at the next start of the host. The record is kept, marked released, until
        the plug-in gets through the phase it died in, so that a second death
        counts twice. Returns false, with the reason in \a errorString if
        given, when no quarantined plug-in has that name or the list cannot be
        written.
    */
    bool release(const QString &name, QString *errorString = nullptr);

private:
    Q_DISABLE_COPY(PluginQuarantine)
    QScopedPointer<Internal::PluginQuarantinePrivate> d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINQUARANTINE_H
