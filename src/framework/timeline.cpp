// SPDX-License-Identifier: BSD-3-Clause
#include "timeline.h"
#include "timeline_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <algorithm>

namespace ExtensionSystem {

using namespace Internal;

namespace {

// The columns of the profile table, in lifecycle order; the file phases share one.
const Timeline::Phase pluginColumns[] = {Timeline::LibraryLoad, Timeline::MetaDataRead, Timeline::LoadQueue,
                                         Timeline::ActivatorStart, Timeline::ActivatorStop};
const int columnCount = int(sizeof(pluginColumns) / sizeof(pluginColumns[0])) + 1;

bool isFrameworkPhase(Timeline::Phase phase)
{
    return phase <= Timeline::FrameworkStop;
}

bool isFilePhase(Timeline::Phase phase)
{
    return phase >= Timeline::FileDigest;
}

int columnOf(Timeline::Phase phase)
{
    if (isFilePhase(phase))
        return columnCount - 1;
    for (int i = 0; i < columnCount - 1; ++i) {
        if (pluginColumns[i] == phase)
            return i;
    }
    return -1;
}

QString milliseconds(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e6, 'f', 2);
}

double microseconds(qint64 nanoseconds)
{
    return double(nanoseconds) / 1e3;
}

QString threadName(int thread)
{
    return thread == 0 ? QStringLiteral("main") : QStringLiteral("pool %1").arg(thread);
}

} // namespace

Timeline::Timeline()
    : d(new TimelinePrivate)
{ }

Timeline::Timeline(const QVector<Entry> &entries)
    : d(new TimelinePrivate)
{
    d->entries = entries;
}

Timeline::Timeline(const Timeline &other) = default;
Timeline &Timeline::operator=(const Timeline &other) = default;
Timeline::~Timeline() = default;

QVector<Timeline::Entry> Timeline::entries() const
{
    return d->entries;
}

bool Timeline::isEmpty() const
{
    return d->entries.isEmpty();
}

QString Timeline::phaseName(Phase phase)
{
    switch (phase) {
    case FrameworkInit:
        return QStringLiteral("init");
    case FrameworkStart:
        return QStringLiteral("start");
    case FrameworkStop:
        return QStringLiteral("stop");
    case LibraryLoad:
        return QStringLiteral("load");
    case MetaDataRead:
        return QStringLiteral("metadata");
    case LoadQueue:
        return QStringLiteral("queue");
    case ActivatorStart:
        return QStringLiteral("activator start");
    case ActivatorStop:
        return QStringLiteral("activator stop");
    case FileDigest:
        return QStringLiteral("digest");
    case FileParse:
        return QStringLiteral("parse");
    case StoreWrite:
        return QStringLiteral("store write");
    case Dispatch:
        return QStringLiteral("dispatch");
    case StoreRead:
        return QStringLiteral("store read");
    }
    return QString();
}

QByteArray Timeline::toTraceJson() const
{
    QJsonArray events;
    QVector<int> threads;
    for (const Entry &entry : qAsConst(d->entries)) {
        if (!threads.contains(entry.thread))
            threads << entry.thread;
        const QString phase = phaseName(entry.phase);
        QJsonObject args;
        args.insert(QStringLiteral("phase"), phase);
        if (!entry.name.isEmpty())
            args.insert(QStringLiteral("name"), entry.name);
        if (!entry.file.isEmpty())
            args.insert(QStringLiteral("file"), entry.file);
        QJsonObject event;
        // A file's path is long: the slice shows its directory's name, the arguments the whole path.
        const QString label = isFilePhase(entry.phase) ? QFileInfo(entry.file).dir().dirName() : entry.name;
        event.insert(QStringLiteral("name"), label.isEmpty() ? phase : QStringLiteral("%1 %2").arg(phase, label));
        event.insert(QStringLiteral("cat"), isFrameworkPhase(entry.phase) ? QStringLiteral("framework")
                                            : isFilePhase(entry.phase)    ? QStringLiteral("extension file")
                                                                          : QStringLiteral("plugin"));
        event.insert(QStringLiteral("ph"), QStringLiteral("X"));
        event.insert(QStringLiteral("ts"), microseconds(entry.begin));
        event.insert(QStringLiteral("dur"), microseconds(entry.duration()));
        event.insert(QStringLiteral("pid"), 1);
        event.insert(QStringLiteral("tid"), entry.thread);
        event.insert(QStringLiteral("args"), args);
        events.append(event);
    }
    std::sort(threads.begin(), threads.end());
    QJsonObject process{
            {QStringLiteral("name"), QStringLiteral("process_name")},
            {QStringLiteral("ph"), QStringLiteral("M")},
            {QStringLiteral("pid"), 1},
            {QStringLiteral("args"), QJsonObject{{QStringLiteral("name"), QStringLiteral("ExtensionSystem")}}}};
    events.append(process);
    for (int thread : qAsConst(threads)) {
        events.append(QJsonObject{{QStringLiteral("name"), QStringLiteral("thread_name")},
                                  {QStringLiteral("ph"), QStringLiteral("M")},
                                  {QStringLiteral("pid"), 1},
                                  {QStringLiteral("tid"), thread},
                                  {QStringLiteral("args"), QJsonObject{{QStringLiteral("name"), threadName(thread)}}}});
    }
    QJsonObject document;
    document.insert(QStringLiteral("traceEvents"), events);
    document.insert(QStringLiteral("displayTimeUnit"), QStringLiteral("ms"));
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
}

bool Timeline::writeTrace(const QString &fileName, QString *errorString) const
{
    // Written aside and renamed: a failed write leaves no half trace behind.
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(toTraceJson());
        if (file.commit())
            return true;
    }
    if (errorString)
        *errorString = QObject::tr("Cannot write the trace to %1: %2").arg(fileName, file.errorString());
    return false;
}

QString Timeline::profileTable() const
{
    struct Row
    {
        QString name;
        qint64 columns[columnCount] = {};
        qint64 total = 0;
    };
    // Rows by the directory of the plug-in: its extension file lies beside its library.
    QHash<QString, int> rowOfDirectory;
    QVector<Row> rows;
    qint64 framework[FrameworkStop + 1] = {};
    for (const Entry &entry : qAsConst(d->entries)) {
        if (isFrameworkPhase(entry.phase)) {
            framework[entry.phase] += entry.duration();
            continue;
        }
        const QString directory = QFileInfo(entry.file).absolutePath();
        auto found = rowOfDirectory.constFind(directory);
        int index = found == rowOfDirectory.constEnd() ? -1 : found.value();
        if (index < 0) {
            index = rows.size();
            rowOfDirectory.insert(directory, index);
            rows.append(Row());
            rows.last().name = entry.file;
        }
        Row &row = rows[index];
        if (!isFilePhase(entry.phase))
            row.name = entry.name;
        row.columns[columnOf(entry.phase)] += entry.duration();
        row.total += entry.duration();
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.total > b.total; });

    QStringList headers{QObject::tr("plug-in")};
    for (Phase phase : pluginColumns)
        headers << phaseName(phase);
    headers << QObject::tr("ext. file") << QObject::tr("total");
    int nameWidth = headers.first().size();
    for (const Row &row : qAsConst(rows))
        nameWidth = qMax(nameWidth, row.name.size());
    int numberWidth = 9;
    for (const QString &header : qAsConst(headers))
        numberWidth = qMax(numberWidth, header.size());

    QString table;
    table += headers.first().leftJustified(nameWidth);
    for (int i = 1; i < headers.size(); ++i)
        table += QLatin1Char(' ') + headers.at(i).rightJustified(numberWidth);
    table += QLatin1Char('\n');
    for (const Row &row : qAsConst(rows)) {
        table += row.name.leftJustified(nameWidth);
        for (qint64 column : row.columns)
            table += QLatin1Char(' ') + milliseconds(column).rightJustified(numberWidth);
        table += QLatin1Char(' ') + milliseconds(row.total).rightJustified(numberWidth) + QLatin1Char('\n');
    }
    table += QObject::tr("times in ms; framework: init %1, start %2, stop %3\n")
                     .arg(milliseconds(framework[FrameworkInit]), milliseconds(framework[FrameworkStart]),
                          milliseconds(framework[FrameworkStop]));
    return table;
}

} // namespace ExtensionSystem
