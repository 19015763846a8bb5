// SPDX-License-Identifier: BSD-3-Clause
#include "extensionfileparsetask.h"
#include "extensionfileparsetask_p.h"

#include "extensionconstance.h"

#include <core/debugoutput_p.h>
#include <core/timelinerecorder.h>
#include <core/qtcompat_p.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

namespace ExtensionSystem {

using namespace Internal;

namespace {

// The element as the file wrote it, to be handed on as text. UTF-8 so that
// QDomNode::save never turns a character into a character reference.
QString elementText(const QDomElement &element)
{
    QString text;
    QTextStream stream(&text, QIODevice::ReadWrite);
    QtCompat::useUtf8(stream);
    element.save(stream, 0);
    stream.flush();
    return text;
}

QString trimmedAttribute(const QDomElement &element, const QString &name)
{
    return element.attribute(name, QString()).trimmed();
}

} // namespace

ExtensionFileParseTask::ExtensionFileParseTask(const QString &filepath, QObject *parent)
    : QObject(*new ExtensionFileParseTaskPrivate, parent)
{
    Q_D(ExtensionFileParseTask);
    d->filepath = filepath;
}

ExtensionFileParseTask::~ExtensionFileParseTask() = default;

void ExtensionFileParseTask::setTimeline(const QSharedPointer<TimelineRecorder> &timeline)
{
    Q_D(ExtensionFileParseTask);
    d->timeline = timeline;
}

QString ExtensionFileParseTask::digest(const QString &filepath)
{
    const QFileInfo info(filepath);
    const QString directory = ExtType::storedPath(info.path());

    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(directory.toUtf8());
    hash.addData(QByteArray::number(info.size(), 10));
    hash.addData(info.lastModified().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss-zzz")).toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

void ExtensionFileParseTask::run()
{
    Q_D(ExtensionFileParseTask);
    ES_DEBUG_IF_SHOWN() << "virtual void ExtensionSystem::Internal::ExtensionFileParseTask::run()"
                        << ">" << d->filepath;
    // The task holds a reference: the recorder outlives a framework destroyed meanwhile.
    TimelineRecorder::Span span(d->timeline.data(), Timeline::FileParse, d->filepath, d->filepath);
    // The phase ends before its result leaves: the receiving thread may store it
    // before this function returns.
    const auto fail = [&](const QString &text) {
        span.finish();
        emit errorOccured(text);
    };

    QFile file(d->filepath);
    if (!file.exists()) {
        fail(QObject::tr("File: '%1' not exists").arg(d->filepath));
        return;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        fail(QObject::tr("File: '%1' cannot open").arg(d->filepath));
        return;
    }

    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(&file, &message, &line, &column)) {
        const auto invalidFormat = [&] {
            return QObject::tr("Invalid file format, File: %1 > Line: %2, Column: %3, Error: %4")
                    .arg(d->filepath, QString::number(line), QString::number(column), message);
        };
        fail(invalidFormat());
        ES_DEBUG_IF_SHOWN() << invalidFormat();
        file.close();
        return;
    }

    const QDomElement root = document.documentElement();
    if (root.tagName().compare(ExtensionConstance::FILE_TAG_PLUGIN, Qt::CaseInsensitive) != 0) {
        fail(QObject::tr("Cannot find the plugin node in extension file: %1").arg(d->filepath));
        return;
    }

    const QString md5 = digest(file.fileName());
    d->filepath = ExtType::storedPath(d->filepath);

    ExtType::Plugin plugin;
    plugin.symbolic = trimmedAttribute(root, ExtensionConstance::FILE_PLUGIN_ID);
    plugin.filepath = d->filepath;
    plugin.md5 = md5;

    for (QDomElement set = root.firstChildElement(ExtensionConstance::FILE_TAG_EXTPOINTSET); !set.isNull();
         set = set.nextSiblingElement(ExtensionConstance::FILE_TAG_EXTPOINTSET)) {
        for (QDomElement element = set.firstChildElement(ExtensionConstance::FILE_TAG_EXTPOINT); !element.isNull();
             element = element.nextSiblingElement(ExtensionConstance::FILE_TAG_EXTPOINT)) {
            ExtType::Point point;
            point.id = trimmedAttribute(element, ExtensionConstance::FILE_POINT_ID);
            point.name = trimmedAttribute(element, ExtensionConstance::FILE_POINT_NAME);
            point.plugin = plugin.symbolic;
            point.description = trimmedAttribute(element, ExtensionConstance::FILE_POINT_DESCRIPTION);
            if (point.id.isEmpty() || plugin.symbolic.isEmpty())
                continue;
            point.data = elementText(element);
            plugin.points.append(point);
        }
    }

    for (QDomElement set = root.firstChildElement(ExtensionConstance::FILE_TAG_EXTDATASET); !set.isNull();
         set = set.nextSiblingElement(ExtensionConstance::FILE_TAG_EXTDATASET)) {
        for (QDomElement element = set.firstChildElement(ExtensionConstance::FILE_TAG_EXTDATA); !element.isNull();
             element = element.nextSiblingElement(ExtensionConstance::FILE_TAG_EXTDATA)) {
            ExtType::Data data;
            data.point = trimmedAttribute(element, ExtensionConstance::FILE_DATA_ID);
            data.plugin = trimmedAttribute(element, ExtensionConstance::FILE_DATA_PLUGIN);
            data.extPlugin = trimmedAttribute(element, ExtensionConstance::FILE_DATA_EXTPLUGIN);
            if (data.point.isEmpty() || data.plugin.isEmpty() || data.extPlugin.isEmpty())
                continue;
            data.data = elementText(element);
            plugin.data.append(data);
        }
    }

    file.close();
    span.finish();
    emit extensionFound(plugin);
}

} // namespace ExtensionSystem
