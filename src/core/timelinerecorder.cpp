// SPDX-License-Identifier: BSD-3-Clause
#include "timelinerecorder.h"

#include <QtCore/QThread>

namespace ExtensionSystem {
namespace Internal {

TimelineRecorder::TimelineRecorder()
    : mainThread(QThread::currentThread())
    , enabled(1)
{
    clock.start();
}

void TimelineRecorder::record(Timeline::Phase phase, const QString &name, const QString &file, qint64 begin, qint64 end)
{
    if (!enabled.loadRelaxed())
        return;
    QThread *thread = QThread::currentThread();
    const QMutexLocker locker(&mutex);
    int index = 0;
    if (thread != mainThread) {
        index = otherThreads.indexOf(thread) + 1;
        if (index == 0) {
            otherThreads.append(thread);
            index = otherThreads.size();
        }
    }
    Timeline::Entry entry;
    entry.phase = phase;
    entry.name = name;
    entry.file = file;
    entry.begin = begin;
    entry.end = qMax(begin, end);
    entry.thread = index;
    entries.append(entry);
}

void TimelineRecorder::setEnabled(bool on)
{
    enabled.storeRelaxed(on ? 1 : 0);
}

bool TimelineRecorder::isEnabled() const
{
    return enabled.loadRelaxed() != 0;
}

Timeline TimelineRecorder::timeline() const
{
    const QMutexLocker locker(&mutex);
    return Timeline(entries);
}

TimelineRecorder::Span::Span(TimelineRecorder *recorder, Timeline::Phase phase, const QString &name,
                             const QString &file)
    : recorder(recorder && recorder->isEnabled() ? recorder : nullptr)
    , phase(phase)
    , name(name)
    , file(file)
    , begin(this->recorder ? this->recorder->now() : 0)
{ }

TimelineRecorder::Span::~Span()
{
    if (recorder)
        recorder->record(phase, name, file, begin, end >= 0 ? end : recorder->now());
}

} // namespace Internal
} // namespace ExtensionSystem
