// SPDX-License-Identifier: BSD-3-Clause
#include "plugindependency.h"
#include "plugindependency_p.h"

#include <core/qtcompat_p.h>

namespace ExtensionSystem {

using namespace Internal;

namespace {

// toInt() of a component. Plain decimal digits, the usual case, are read here;
// anything else (signs, blanks, overflow) goes to toInt() for its exact rules.
int componentValue(const QString &version, int from, int length)
{
    if (length > 0 && length <= 9) {
        int value = 0;
        const QChar *c = version.constData() + from;
        for (int i = 0; i < length; ++i) {
            const ushort u = c[i].unicode();
            if (u < '0' || u > '9')
                return QtCompat::midPart(version, from, length).toInt(nullptr, 10);
            value = value * 10 + (u - '0');
        }
        return value;
    }
    return QtCompat::midPart(version, from, length).toInt(nullptr, 10);
}

} // namespace

// The key of a default-made dependency is thirty '0' characters, which is not
// the key of an empty version: as a number, three bytes '0'.
PluginDependencyPrivate::PluginDependencyPrivate()
    : resolved(false)
    , versionKey(0x303030)
{ }

PluginDependencyPrivate::PluginDependencyPrivate(const QString &symbolic, const QString &version, bool resolved)
    : symbolic(symbolic)
    , version(version)
    , resolved(resolved)
    , versionKey(versionOrder(version))
{ }

// Each field is QString("%1").arg(byte, 10, QLatin1Char('0')): nine '0' and the
// component's low byte as one Latin-1 character.
QString PluginDependencyPrivate::computeVersionKey(const QString &version)
{
    const quint32 order = versionOrder(version);
    QString key(30, QLatin1Char('0'));
    for (int i = 0; i < 3; ++i)
        key[10 * i + 9] = QLatin1Char(static_cast<char>(order >> (8 * (2 - i))));
    return key;
}

// Computed for every dependency and twice for every compatibility check: no
// allocation per component.
quint32 PluginDependencyPrivate::versionOrder(const QString &version)
{
    quint32 order = 0;
    int from = 0; // start of the next component, -1 once there is none
    for (int i = 0; i < 3; ++i) {
        int value = 0; // what toInt() gives an absent component
        if (from >= 0) {
            const int dot = version.indexOf(QLatin1Char('.'), from);
            value = componentValue(version, from, (dot < 0 ? version.size() : dot) - from);
            from = dot < 0 ? -1 : dot + 1;
        }
        // Modulo 256 on purpose: only the low byte of each component counts,
        // so -1 becomes 255.
        order = (order << 8) | quint8(value);
    }
    return order;
}

PluginDependency::PluginDependency()
    : d_ptr(new PluginDependencyPrivate)
{ }

PluginDependency::PluginDependency(const QString &symbolic, const QString &version)
    : d_ptr(new PluginDependencyPrivate(symbolic, version, false))
{ }

// A deep copy; the key is a function of the version, so it is copied, not made again.
PluginDependency::PluginDependency(const PluginDependency &other)
    : d_ptr(new PluginDependencyPrivate(*other.d_ptr))
{ }

PluginDependency &PluginDependency::operator=(const PluginDependency &other)
{
    if (this == &other)
        return *this;
    Q_D(PluginDependency);
    d->symbolic = other.d_ptr->symbolic;
    d->version = other.d_ptr->version;
    d->resolved = other.d_ptr->resolved;
    d->versionKey = other.d_ptr->versionKey;
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

    // Both bounds inclusive: oldest <= needed <= provided.
    if (PluginDependencyPrivate::versionOrder(version) < d->versionKey)
        return false;
    if (d->versionKey < PluginDependencyPrivate::versionOrder(compatVersion))
        return false;
    return true;
}

} // namespace ExtensionSystem
