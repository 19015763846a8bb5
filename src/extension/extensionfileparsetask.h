// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_H
#define EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_H

#include "extensionsystem_global.h"
#include "exttype.h"

#include <QtCore/QObject>
#include <QtCore/QRunnable>
#include <QtCore/QSharedPointer>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParseTaskPrivate;
class TimelineRecorder;

// Reads one extension.xml on a pool thread. It touches nothing shared: the record
// leaves by value through extensionFound, and the pool deletes the task after run().
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionFileParseTask : public QObject, public QRunnable
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ExtensionFileParseTask)

public:
    ExtensionFileParseTask(const QString &filepath, QObject *parent);
    ~ExtensionFileParseTask() override;

    void run() override;
    // Where run() records its parse; may be null.
    void setTimeline(const QSharedPointer<TimelineRecorder> &timeline);

    // Tells whether a file changed without opening it: SHA-1 over its directory
    // relative to the application directory, its size and its modification time,
    // as 40 lower-case hex digits.
    static QString digest(const QString &filepath);

signals:
    void errorOccured(QString errorString);
    void extensionFound(ExtType::Plugin plugin);

private:
    Q_DISABLE_COPY(ExtensionFileParseTask)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_H
