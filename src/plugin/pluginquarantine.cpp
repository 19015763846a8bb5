// SPDX-License-Identifier: BSD-3-Clause
#include "pluginquarantine.h"
#include "pluginquarantine_p.h"

#include <core/pluginframeworkconstance.h>
#include <core/startjournal.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QSettings>

namespace ExtensionSystem {
namespace Internal {

namespace {

const QString arrayName = QStringLiteral("quarantine");

// The phases as config files write them: words a user can read.
const char *const phaseWords[] = {"", "load", "root object", "translation", "start", "stop", "handler"};

QString phaseWord(PluginCrash::Phase phase)
{
    return QLatin1String(phaseWords[phase]);
}

PluginCrash::Phase phaseOfWord(const QString &word)
{
    for (int phase = PluginCrash::LibraryLoad; phase <= PluginCrash::HandlerCall; ++phase) {
        if (word == QLatin1String(phaseWords[phase]))
            return PluginCrash::Phase(phase);
    }
    return PluginCrash::NoPhase;
}

QByteArray digestOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return QByteArray();
    return hash.result().toHex();
}

} // namespace

PluginQuarantinePrivate::PluginQuarantinePrivate(const QString &applicationDir, const QString &program)
    : configDir(QDir(applicationDir).filePath(PluginFrameworkConstance::CONFIG_DIR + QLatin1Char('/') + program))
    , pluginsDir(QDir(applicationDir).filePath(PluginFrameworkConstance::PLUGIN_DIR))
{ }

void PluginQuarantinePrivate::load()
{
    records.clear();
    const QString path = configDir.absoluteFilePath(PluginQuarantine::listFileName());
    if (!QFileInfo(path).isFile())
        return;
    QSettings settings(path, QSettings::IniFormat);
    const int size = settings.beginReadArray(arrayName);
    for (int i = 0; i < size; ++i) {
        settings.setArrayIndex(i);
        Record record;
        record.file = settings.value(QStringLiteral("file")).toString();
        const PluginCrash::Phase phase = phaseOfWord(settings.value(QStringLiteral("phase")).toString());
        // A hand-edited record that says nothing usable is passed over.
        if (record.file.isEmpty() || phase == PluginCrash::NoPhase)
            continue;
        record.crash = PluginCrash(
                settings.value(QStringLiteral("plugin")).toString(), pluginsDir.absoluteFilePath(record.file), phase,
                QDateTime::fromString(settings.value(QStringLiteral("time")).toString(), Qt::ISODate));
        record.crash.setCount(qMax(1, settings.value(QStringLiteral("count"), 1).toInt()));
        record.crash.setHangSeconds(settings.value(QStringLiteral("hangSeconds"), 0).toInt());
        record.crash.setReleased(settings.value(QStringLiteral("released"), false).toBool());
        record.identity.size = settings.value(QStringLiteral("size"), -1).toLongLong();
        record.identity.modified = settings.value(QStringLiteral("modified")).toLongLong();
        record.identity.changed = settings.value(QStringLiteral("changed")).toLongLong();
        record.identity.inode = settings.value(QStringLiteral("inode")).toULongLong();
        record.identity.device = settings.value(QStringLiteral("device")).toULongLong();
        record.digest = settings.value(QStringLiteral("sha256")).toString().toLatin1();
        records << record;
    }
    settings.endArray();
}

bool PluginQuarantinePrivate::save(QString *errorString)
{
    const QString path = configDir.absoluteFilePath(PluginQuarantine::listFileName());
    // The list exists only while it holds something.
    if (records.isEmpty()) {
        if (!QFile::exists(path) || QFile::remove(path))
            return true;
        if (errorString)
            *errorString = QObject::tr("Cannot remove %1").arg(path);
        return false;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.clear();
    settings.beginWriteArray(arrayName, records.size());
    for (int i = 0; i < records.size(); ++i) {
        const Record &record = records.at(i);
        settings.setArrayIndex(i);
        settings.setValue(QStringLiteral("file"), record.file);
        settings.setValue(QStringLiteral("plugin"), record.crash.plugin());
        settings.setValue(QStringLiteral("phase"), phaseWord(record.crash.phase()));
        settings.setValue(QStringLiteral("time"), record.crash.time().toString(Qt::ISODate));
        settings.setValue(QStringLiteral("count"), record.crash.count());
        settings.setValue(QStringLiteral("hangSeconds"), record.crash.hangSeconds());
        settings.setValue(QStringLiteral("released"), record.crash.isReleased());
        settings.setValue(QStringLiteral("size"), record.identity.size);
        settings.setValue(QStringLiteral("modified"), record.identity.modified);
        settings.setValue(QStringLiteral("changed"), record.identity.changed);
        settings.setValue(QStringLiteral("inode"), record.identity.inode);
        settings.setValue(QStringLiteral("device"), record.identity.device);
        settings.setValue(QStringLiteral("sha256"), QString::fromLatin1(record.digest));
    }
    settings.endArray();
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return true;
    if (errorString)
        *errorString = QObject::tr("Cannot write %1").arg(path);
    return false;
}

int PluginQuarantinePrivate::indexOf(const QString &name) const
{
    for (int i = 0; i < records.size(); ++i) {
        const Record &record = records.at(i);
        const QFileInfo file(record.file);
        if (record.crash.plugin() == name || record.file == name || file.completeBaseName() == name
            || file.baseName() == name)
            return i;
    }
    return -1;
}

bool PluginQuarantinePrivate::release(const QString &name, QString *errorString)
{
    const int index = indexOf(name);
    if (index < 0 || records.at(index).crash.isReleased()) {
        if (errorString)
            *errorString = QObject::tr("No quarantined plug-in is called %1").arg(name);
        return false;
    }
    records[index].crash.setReleased(true);
    return save(errorString);
}

PluginCrash PluginQuarantinePrivate::quarantine(const PluginCrash &crash)
{
    Record record;
    record.file = pluginsDir.relativeFilePath(crash.file());
    record.crash = crash;
    record.crash.setReleased(false);
    record.identity = FileIdentity::of(crash.file());
    record.digest = digestOf(crash.file());
    const int index = indexOf(record.file);
    if (index >= 0) {
        record.crash.setCount(records.at(index).crash.count() + 1);
        records[index] = record;
    } else {
        record.crash.setCount(1);
        records << record;
    }
    save();
    return record.crash;
}

int PluginQuarantinePrivate::blocking(const QFileInfo &library, bool *changed) const
{
    *changed = false;
    if (records.isEmpty())
        return -1;
    const int index = indexOf(pluginsDir.relativeFilePath(library.absoluteFilePath()));
    if (index < 0 || records.at(index).crash.isReleased())
        return -1;
    // Unchanged to the nanosecond needs no reading; a file touched or copied
    // over with the same bytes is still the library that died.
    const Record &record = records.at(index);
    *changed = FileIdentity::of(library.absoluteFilePath()) != record.identity
               && digestOf(library.absoluteFilePath()) != record.digest;
    return index;
}

PluginCrash PluginQuarantinePrivate::check(const QFileInfo &library, bool *releasedNow)
{
    const int index = blocking(library, releasedNow);
    if (index < 0)
        return PluginCrash();
    if (!*releasedNow)
        return records.at(index).crash;
    records[index].crash.setReleased(true);
    save();
    return PluginCrash();
}

void PluginQuarantinePrivate::passed(const QString &library, PluginCrash::Phase phase)
{
    const int index = indexOf(pluginsDir.relativeFilePath(library));
    if (index < 0 || !records.at(index).crash.isReleased() || records.at(index).crash.phase() > phase)
        return;
    records.removeAt(index);
    save();
}

bool PluginQuarantinePrivate::hasReleased() const
{
    for (const Record &record : records) {
        if (record.crash.isReleased())
            return true;
    }
    return false;
}

QList<PluginCrash> PluginQuarantinePrivate::crashes() const
{
    QList<PluginCrash> crashes;
    for (const Record &record : records)
        crashes << record.crash;
    return crashes;
}

} // namespace Internal

using namespace Internal;

PluginQuarantine::PluginQuarantine(const QString &applicationDir, const QString &program)
    : d(new PluginQuarantinePrivate(applicationDir, program))
{ }

PluginQuarantine::~PluginQuarantine() = default;

QString PluginQuarantine::listFileName()
{
    return QStringLiteral("quarantine.ini");
}

QList<PluginCrash> PluginQuarantine::records() const
{
    d->load();
    return d->crashes();
}

QList<PluginCrash> PluginQuarantine::unfinishedRuns(QStringList *notes) const
{
    return StartJournal::finishedRuns(d->configDir, false, notes);
}

PluginCrash PluginQuarantine::blocks(const QString &library) const
{
    d->load();
    bool changed = false;
    const int index = d->blocking(QFileInfo(library), &changed);
    return index < 0 || changed ? PluginCrash() : d->records.at(index).crash;
}

bool PluginQuarantine::release(const QString &name, QString *errorString)
{
    d->load();
    return d->release(name, errorString);
}

} // namespace ExtensionSystem
