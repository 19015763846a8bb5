#include "plugindependency.h"
#include "plugindependency_p.h"

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;

PluginDependencyPrivate::PluginDependencyPrivate()
    : resolved(false)
    , versionKey(30, QLatin1Char('0'))
{
}

PluginDependencyPrivate::PluginDependencyPrivate(const QString &symbolic, const QString &version,
                                                 bool resolved)
    : symbolic(symbolic)
    , version(version)
    , resolved(resolved)
    , versionKey(computeVersionKey(version))
{
}

QString PluginDependencyPrivate::computeVersionKey(const QString &version)
{
    const QString dot = QStringLiteral(".");
    QString fields[3];
    for (int i = 0; i < 3; ++i) {
        // Modulo 256 on purpose: only the low byte of each component counts.
        // arg(char) takes the byte as Latin-1, so -1 becomes U+00FF, not U+FFFF.
        const char byte = static_cast<char>(version.section(dot, i, i).toInt(nullptr, 10));
        fields[i] = QStringLiteral("%1").arg(byte, 10, QLatin1Char('0'));
    }
    // One pass over the template: chained arg() calls would read a '%' byte of one
    // field followed by the next field's '0's as a placeholder ("%00").
    return QStringLiteral("%1%2%3").arg(fields[0], fields[1], fields[2]);
}

PluginDependency::PluginDependency()
    : d_ptr(new PluginDependencyPrivate)
{
}

PluginDependency::PluginDependency(const QString &symbolic, const QString &version)
    : d_ptr(new PluginDependencyPrivate(symbolic, version, false))
{
}

PluginDependency::PluginDependency(const PluginDependency &other)
    : d_ptr(new PluginDependencyPrivate(other.d_ptr->symbolic, other.d_ptr->version,
                                        other.d_ptr->resolved))
{
}

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

PluginDependency::~PluginDependency()
{
    delete d_ptr;
}

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
