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

// Whole microseconds, rounded alike at both ends of every phase: a phase that
// ends where the next begins still touches it rather than overlapping it by
// a rounding error, which viewers would show as nesting.
qint64 microseconds(qint64 nanoseconds)
{
    return (nanoseconds + 500) / 1000;
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
    // By begin, the outer of two phases that begin together first: viewers
    // that rebuild the nesting from the order need it so.
    QVector<Entry> sorted = d->entries;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Entry &a, const Entry &b) {
        return a.begin != b.begin ? a.begin < b.begin : a.end > b.end;
    });
    QJsonArray events;
    QVector<int> threads;
    for (const Entry &entry : qAsConst(sorted)) {
        if (!threads.contains(entry.thread))
            threads << entry.thread;
        const QString phase = phaseName(entry.phase);
        QJsonObject event;
        // A file's path is long: the name has its directory's name, the arguments the whole path.
        const QString label = isFilePhase(entry.phase) ? QFileInfo(entry.file).dir().dirName() : entry.name;
        event.insert(QStringLiteral("name"), label.isEmpty() ? phase : QStringLiteral("%1 %2").arg(phase, label));
        event.insert(QStringLiteral("cat"), isFrameworkPhase(entry.phase) ? QStringLiteral("framework")
                                            : isFilePhase(entry.phase)    ? QStringLiteral("extension file")
                                                                          : QStringLiteral("plugin"));
        event.insert(QStringLiteral("ph"), QStringLiteral("X"));
        event.insert(QStringLiteral("ts"), microseconds(entry.begin));
        event.insert(QStringLiteral("dur"), microseconds(entry.end) - microseconds(entry.begin));
        event.insert(QStringLiteral("pid"), 1);
        event.insert(QStringLiteral("tid"), entry.thread);
        // Viewers show the arguments beside the name: only what the name lacks.
        if (!entry.file.isEmpty())
            event.insert(QStringLiteral("args"), QJsonObject{{QStringLiteral("file"), entry.file}});
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
    // Each number column as wide as its header, and never narrower than a number.
    const auto width = [&headers](int column) { return qMax(9, headers.at(column).size()); };

    QString table;
    table += headers.first().leftJustified(nameWidth);
    for (int i = 1; i < headers.size(); ++i)
        table += QLatin1Char(' ') + headers.at(i).rightJustified(width(i));
    table += QLatin1Char('\n');
    for (const Row &row : qAsConst(rows)) {
        table += row.name.leftJustified(nameWidth);
        for (int i = 0; i < columnCount; ++i)
            table += QLatin1Char(' ') + milliseconds(row.columns[i]).rightJustified(width(i + 1));
        table += QLatin1Char(' ') + milliseconds(row.total).rightJustified(width(columnCount + 1)) + QLatin1Char('\n');
    }
    table += QObject::tr("times in ms; framework: init %1, start %2, stop %3\n")
                     .arg(milliseconds(framework[FrameworkInit]), milliseconds(framework[FrameworkStart]),
                          milliseconds(framework[FrameworkStop]));
    return table;
}

} // namespace ExtensionSystem
