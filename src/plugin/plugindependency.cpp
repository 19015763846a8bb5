// SPDX-License-Identifier: BSD-3-Clause
#include "plugindependency.h"
#include "plugindependency_p.h"

#include <qtcompat_p.h>

namespace ExtensionSystem {

using namespace Internal;

PluginDependencyPrivate::PluginDependencyPrivate()
    : resolved(false)
    , versionKey(30, QLatin1Char('0'))
{ }

PluginDependencyPrivate::PluginDependencyPrivate(const QString &symbolic, const QString &version, bool resolved)
    : symbolic(symbolic)
    , version(version)
    , resolved(resolved)
    , versionKey(computeVersionKey(version))
{ }

// Each field is QString("%1").arg(byte, 10, QLatin1Char('0')): nine '0' and the
// component's low byte as one Latin-1 character, written into a key of 30
// characters made once. It is computed for every dependency resolved: keep it
// free of per-part allocations.
QString PluginDependencyPrivate::computeVersionKey(const QString &version)
{
    QString key(30, QLatin1Char('0'));
    int from = 0; // start of the next component, -1 once there is none
    for (int i = 0; i < 3; ++i) {
        int value = 0; // what toInt() gives an absent component
        if (from >= 0) {
            const int dot = version.indexOf(QLatin1Char('.'), from);
            value = QtCompat::midPart(version, from, dot < 0 ? -1 : dot - from).toInt(nullptr, 10);
            from = dot < 0 ? -1 : dot + 1;
        }
        // Modulo 256 on purpose: only the low byte of each component counts.
        // Taken as Latin-1, so -1 becomes U+00FF, not U+FFFF.
        key[10 * i + 9] = QLatin1Char(static_cast<char>(value));
    }
    return key;
}

PluginDependency::PluginDependency()
    : d_ptr(new PluginDependencyPrivate)
{ }

PluginDependency::PluginDependency(const QString &symbolic, const QString &version)
    : d_ptr(new PluginDependencyPrivate(symbolic, version, false))
{ }

PluginDependency::PluginDependency(const PluginDependency &other)
    : d_ptr(new PluginDependencyPrivate(other.d_ptr->symbolic, other.d_ptr->version, other.d_ptr->resolved))
{ }

PluginDependency &PluginDependency::operator=(const PluginDependency &other)
{
    if (this == &other)
        return *this;
    Q_D(PluginDependency);
    d->symbolic = other.d_ptr->symbolic;
    d->version = other.d_ptr->version;
    d->resolved = other.d_ptr->resolved;
    d->versionKey = PluginDependencyPrivate::computeVersionKey(d->version);
    return *this;
}

PluginDependency::~PluginDependency() = default;

QString PluginDependency::symbolic() const
{
    Q_D(const PluginDependency);
    return d->symbolic;
}

QString PluginDependency::version() const
{
    Q_D(const PluginDependency);
    return d->version;
}

bool PluginDependency::isResolved() const
{
    Q_D(const PluginDependency);
    return d->resolved;
}

void PluginDependency::setResolved(bool resolved)
{
    Q_D(PluginDependency);
    d->resolved = resolved;
}

bool PluginDependency::isValid() const
{
    Q_D(const PluginDependency);
    return !d->symbolic.isEmpty();
}

bool PluginDependency::operator==(const PluginDependency &other) const
{
    Q_D(const PluginDependency);
    return QString::compare(d->symbolic, other.d_ptr->symbolic, Qt::CaseSensitive) == 0
           && QString::compare(d->version, other.d_ptr->version, Qt::CaseSensitive) == 0;
}

bool PluginDependency::checkCompatible(const QString &symbolic, const QString &version,
                                       const QString &compatVersion) const
{
    Q_D(const PluginDependency);
    if (QString::compare(d->symbolic, symbolic, Qt::CaseSensitive) != 0)
        return false;

    const QString provided = PluginDependencyPrivate::computeVersionKey(version);
    const QString oldest = PluginDependencyPrivate::computeVersionKey(compatVersion);
    // Both bounds inclusive: oldest <= needed <= provided.
    if (provided < d->versionKey)
        return false;
    if (d->versionKey < oldest)
        return false;
    return true;
}

} // namespace ExtensionSystem
