// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_TIMELINERECORDER_H
#define EXTENSIONSYSTEM_TIMELINERECORDER_H

#include "timeline.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QSharedPointer>

class QThread;

namespace ExtensionSystem {
namespace Internal {

// Collects the phases of one framework. Shared: a parse task on the pool keeps
// it alive if the framework goes first. Every function may be called from any
// thread; a phase is stored once it has ended.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT TimelineRecorder
{
public:
    TimelineRecorder();

    // Nanoseconds since construction; the clock of every entry.
    qint64 now() const { return clock.nsecsElapsed(); }
    void record(Timeline::Phase phase, const QString &name, const QString &file, qint64 begin, qint64 end);

    void setEnabled(bool on);
    bool isEnabled() const;
    Timeline timeline() const;

    // Records its phase from its construction to its destruction; with a null
    // recorder, or one that is off, it does nothing.
    class Span
    {
    public:
        Span(TimelineRecorder *recorder, Timeline::Phase phase, const QString &name, const QString &file);
        ~Span();
        // Names the phase after the fact, for a plug-in whose name comes out of the phase itself.
        void setName(const QString &name) { this->name = name; }
        // Ends the phase at \a end rather than at destruction.
        void setEnd(qint64 end) { this->end = end; }
        // Ends the phase now; the destructor then records it.
        void finish()
        {
            if (recorder)
                end = recorder->now();
        }

    private:
        TimelineRecorder *recorder;
        Timeline::Phase phase;
        QString name;
        QString file;
        qint64 begin;
        qint64 end = -1;
        Q_DISABLE_COPY(Span)
    };

private:
    QElapsedTimer clock;
    mutable QMutex mutex;
    QThread *mainThread;
    QVector<QThread *> otherThreads;
    QVector<Timeline::Entry> entries;
    QAtomicInt enabled;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_TIMELINERECORDER_H
