// SPDX-License-Identifier: BSD-3-Clause
#include "extensionfileparser.h"
#include "extensionfileparser_p.h"

#include "extensionfileparsetask.h"
#include "extensionstorage.h"

#include <core/timelinerecorder.h>

#include <QtCore/QFile>
#include <QtCore/QThreadPool>

namespace ExtensionSystem {

using namespace Internal;

ExtensionFileParserPrivate::ExtensionFileParserPrivate()
    : error(0)
    , errorString(QObject::tr("No Error"))
    , storage(nullptr)
{ }

void ExtensionFileParserPrivate::setError(int code, const QString &text)
{
    Q_Q(ExtensionFileParser);
    if (code == error)
        return;
    error = code;
    errorString = text;
    if (error != 0)
        emit q->errorOccured(error, errorString);
}

ExtensionFileParser::ExtensionFileParser(ExtensionStorage *storage, QObject *parent)
    : QObject(*new ExtensionFileParserPrivate, parent)
{
    Q_D(ExtensionFileParser);
    d->storage = storage;
}

ExtensionFileParser::~ExtensionFileParser() = default;

void ExtensionFileParser::setTimeline(const QSharedPointer<TimelineRecorder> &timeline)
{
    Q_D(ExtensionFileParser);
    d->timeline = timeline;
}

bool ExtensionFileParser::parse(QString filepath)
{
    Q_D(ExtensionFileParser);
    if (filepath.isEmpty() || !QFile::exists(filepath))
        return false;

    const QString key = ExtType::storedPath(filepath);

    QString symbolic;
    {
        const TimelineRecorder::Span span(d->timeline.data(), Timeline::FileDigest, filepath, filepath);
        QString storedDigest;
        if (d->storage)
            d->storage->pluginRecord(key, symbolic, storedDigest);
        if (ExtensionFileParseTask::digest(filepath).compare(storedDigest, Qt::CaseInsensitive) == 0)
            return false;
    }

    if (d->storage)
        d->storage->removeExtensions(symbolic);

    auto *task = new ExtensionFileParseTask(filepath, nullptr);
    task->setTimeline(d->timeline);
    // Queued to this thread: the task runs on the pool.
    connect(task, &ExtensionFileParseTask::extensionFound, this, [this, filepath](const ExtType::Plugin &plugin) {
        emit extensionFound(plugin);
        emit fileParsed(filepath, plugin);
    });
    connect(task, &ExtensionFileParseTask::errorOccured, this, [this, filepath] { emit fileFailed(filepath); });
    QThreadPool::globalInstance()->start(task, 0);
    return true;
}

} // namespace ExtensionSystem
