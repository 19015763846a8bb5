// SPDX-License-Identifier: BSD-3-Clause
#include "pluginmetadata.h"
#include "pluginmetadata_p.h"

#include <core/debugoutput_p.h>
#include <core/qtcompat_p.h>

#include "pluginconstance.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QObject>

namespace ExtensionSystem {

using namespace Internal;

namespace {

// Case folding maps each character to one of the same length, so texts of
// different lengths never compare equal: most keys are told apart by that alone.
bool sameKey(const QString &key, const QString &known)
{
    return key.size() == known.size() && QString::compare(key, known, Qt::CaseInsensitive) == 0;
}

} // namespace

PluginMetaDataPrivate::PluginMetaDataPrivate(const QString &filepath)
    : filepath(filepath)
    , valid(false)
    , dependencyResolved(false)
    , error(PluginMetaData::NoError)
    , errorString(QObject::tr("No Error"))
    , eager(false)
{ }

void PluginMetaDataPrivate::read()
{
    QFile file(filepath);
    if (!file.open(QIODevice::ReadOnly)) {
        ES_DEBUG_IF_SHOWN() << "[ERROR] > Cannot open the meta file:" << filepath;
        setError(PluginMetaData::OpenError, QObject::tr("Cannot open the meta file: %1").arg(filepath));
        return;
    }

    // One read, then the lines as readLine() would give them, each with its
    // '\n': a resource costs far more per read than the split does.
    const QByteArray content = file.readAll();
    file.close();
    for (int from = 0; from < content.size();) {
        const int newline = content.indexOf('\n', from);
        const int end = newline < 0 ? content.size() : newline + 1;
        // A NUL byte ends the line, so binary junk cuts a line short.
        const QString line = QtCompat::fromUtf8UpToNul(content.constData() + from, end - from);
        from = end;
        if (line.isEmpty())
            continue;
        readLine(line);
    }

    if (symbolic.isEmpty()) {
        setError(PluginMetaData::FormatError, QObject::tr("The meta file format invalid: %1").arg(filepath));
        return;
    }
    valid = true;
    clearError();
}

void PluginMetaDataPrivate::readLine(const QString &line)
{
    // Split at the first colon: the same two parts as section(':', 0, 0) and
    // section(':', 1, -1), null value included when there is no colon, without
    // splitting the whole line into sections twice.
    const int colon = line.indexOf(QLatin1Char(':'));
    const QString key = (colon < 0 ? line : line.left(colon)).trimmed();
    const QString value = colon < 0 ? QString() : line.mid(colon + 1).trimmed();
    properties.insert(key, value);

    if (sameKey(key, PluginConstance::PLUGIN_SYMBOLIC))
        symbolic = value;
    else if (sameKey(key, PluginConstance::PLUGIN_VERSION))
        version = value;
    else if (sameKey(key, PluginConstance::PLUGIN_COMPATVERSION))
        compatVersion = value;
    else if (sameKey(key, PluginConstance::PLUGIN_COMPANY))
        company = value;
    else if (sameKey(key, PluginConstance::PLUGIN_COPYRIGHT))
        copyright = value;
    else if (sameKey(key, PluginConstance::PLUGIN_LICENSE))
        license = value;
    else if (sameKey(key, PluginConstance::PLUGIN_CATEGORY))
        category = value;
    else if (sameKey(key, PluginConstance::PLUGIN_DESCRIBE))
        describe = value;
    else if (sameKey(key, PluginConstance::PLUGIN_WEBSITE))
        website = value;
    else if (sameKey(key, PluginConstance::PLUGIN_ACTIVATION))
        eager = sameKey(value, PluginConstance::PLUGIN_ACTIVATION_EAGER);
    else if (sameKey(key, PluginConstance::PLUGIN_DEPENDENCY))
        addDependencies(value);
}

void PluginMetaDataPrivate::addDependencies(const QString &value)
{
    const QStringList entries = value.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        const QString depVersion = entry.section(QLatin1Char(','), 1, -1).trimmed();
        const QString depSymbolic = entry.section(QLatin1Char(','), 0, 0).trimmed();
        dependencies.insert(depSymbolic.toLower(), PluginDependency(depSymbolic, depVersion));
    }
    // Written only when a dependency line is met: a file without one keeps false,
    // while a blank line gives true. The load queue tells the two apart.
    dependencyResolved = dependencies.isEmpty();
}

void PluginMetaDataPrivate::setError(int code, const QString &text)
{
    error = code;
    errorString = text;
    valid = false;
}

void PluginMetaDataPrivate::clearError()
{
    error = PluginMetaData::NoError;
    errorString = QObject::tr("No Error");
}

PluginMetaData::PluginMetaData(const QString &filepath)
    : d_ptr(new PluginMetaDataPrivate(filepath))
{
    d_ptr->read();
}

PluginMetaData::~PluginMetaData() = default;

bool PluginMetaData::isValid() const
{
    Q_D(const PluginMetaData);
    return d->valid;
}

QString PluginMetaData::filepath() const
{
    Q_D(const PluginMetaData);
    return d->filepath;
}

int PluginMetaData::error() const
{
    Q_D(const PluginMetaData);
    return d->error;
}

QString PluginMetaData::errorString() const
{
    Q_D(const PluginMetaData);
    return d->errorString;
}

QString PluginMetaData::symbolic() const
{
    Q_D(const PluginMetaData);
    return d->symbolic;
}

QString PluginMetaData::version() const
{
    Q_D(const PluginMetaData);
    return d->version;
}

QString PluginMetaData::compatVersion() const
{
    Q_D(const PluginMetaData);
    return d->compatVersion;
}

QString PluginMetaData::category() const
{
    Q_D(const PluginMetaData);
    return d->category;
}

QString PluginMetaData::company() const
{
    Q_D(const PluginMetaData);
    return d->company;
}

QString PluginMetaData::copyright() const
{
    Q_D(const PluginMetaData);
    return d->copyright;
}

QString PluginMetaData::license() const
{
    Q_D(const PluginMetaData);
    return d->license;
}

QString PluginMetaData::website() const
{
    Q_D(const PluginMetaData);
    return d->website;
}

QString PluginMetaData::describe() const
{
    Q_D(const PluginMetaData);
    return d->describe;
}

bool PluginMetaData::isEager() const
{
    Q_D(const PluginMetaData);
    return d->eager;
}

bool PluginMetaData::dependencyResolved() const
{
    Q_D(const PluginMetaData);
    return d->dependencyResolved;
}

QString PluginMetaData::getProperty(const QString &key) const
{
    Q_D(const PluginMetaData);
    return d->properties.value(key);
}

void PluginMetaData::setProperty(const QString &key, const QString &value)
{
    Q_D(PluginMetaData);
    d->properties.insert(key, value);
}

PluginDependency PluginMetaData::dependency(const QString &symbolic) const
{
    Q_D(const PluginMetaData);
    return d->dependencies.value(symbolic);
}

QList<PluginDependency> PluginMetaData::dependencies() const
{
    Q_D(const PluginMetaData);
    return d->dependencies.values();
}

void PluginMetaData::setDependencyResolved(const QString &symbolic, bool resolved)
{
    Q_D(PluginMetaData);
    const auto it = d->dependencies.find(symbolic);
    if (it == d->dependencies.end() || it->isResolved() == resolved)
        return;
    it->setResolved(resolved);

    for (const PluginDependency &dependency : qAsConst(d->dependencies)) {
        if (!dependency.isResolved()) {
            d->dependencyResolved = false;
            return;
        }
    }
    d->dependencyResolved = true;
}

} // namespace ExtensionSystem
