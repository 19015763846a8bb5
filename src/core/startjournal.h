// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_STARTJOURNAL_H
#define EXTENSIONSYSTEM_STARTJOURNAL_H

#include "extensionsystem_global.h"

#include "plugincrash.h"

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QVector>

#include <memory>

namespace ExtensionSystem {
namespace Internal {

class HangWatchdog;
struct JournalFile;

// Which plug-in code this process runs now, kept in a file of the
// configuration directory so that the next process can read it after this one
// died at any instant. One journal per process, shared by its frameworks; the
// last one to let go ends the run cleanly and removes the file. The file is
// locked while its process lives, so that two hosts of one program never take
// each other's journal for a crash. A directory that cannot be written means
// no journal, silently. Used on the framework's thread; the watchdog thread
// shares only atomics with it.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT StartJournal
{
public:
    ~StartJournal();

    // The journal of this process in configDir, made on the first call; null
    // when no journal can be kept there.
    static QSharedPointer<StartJournal> acquire(const QDir &configDir);
    // The journal of this process while a framework holds it, else null.
    static QSharedPointer<StartJournal> current();

    // What the journals of processes that ended without a clean stop say they
    // were running, oldest first; a process that ended outside plug-in code is
    // not listed. Journals of running processes are left alone. With take, the
    // journals read are removed, and each one that cannot be read gives one
    // debug line; otherwise the notes get a sentence for each.
    static QList<PluginCrash> finishedRuns(const QDir &configDir, bool take, QStringList *notes = nullptr);

    // Reports a phase that runs longer than msecs, and again each time that
    // much more has passed, from a thread of its own; 0 turns it off.
    void setWatchdog(int msecs);
    int watchdog() const;

    QString fileName() const;

    // Records a phase for as long as it lives, also when the call is left by
    // an exception; phases nest (a plug-in that starts another).
    class Scope
    {
    public:
        Scope(PluginCrash::Phase phase, const QString &plugin, const QString &file);
        ~Scope();

    private:
        QSharedPointer<StartJournal> journal;
        Q_DISABLE_COPY(Scope)
    };

private:
    StartJournal();
    void push(PluginCrash::Phase phase, const QString &plugin, const QString &file);
    void pop();
    void publish();

    struct Entry
    {
        PluginCrash::Phase phase;
        QString plugin;
        QString file;
        qint64 time; // ms since the epoch
        qint64 began; // steady clock, ms
    };
    std::unique_ptr<JournalFile> file;
    QVector<Entry> stack;
    std::unique_ptr<HangWatchdog> hangWatchdog;
    Q_DISABLE_COPY(StartJournal)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_STARTJOURNAL_H
