// SPDX-License-Identifier: BSD-3-Clause
#include "pluginproblem.h"
#include "pluginproblem_p.h"

#include <plugin/ipluginactivator.h>

#include <QtCore/QObject>

namespace ExtensionSystem {

using namespace Internal;

namespace {

QString shownVersion(const QString &version)
{
    return version.isEmpty() ? QObject::tr("no version (counts as 0.0.0)") : version;
}

QString shownName(const QString &symbolic)
{
    return symbolic.isEmpty() ? QObject::tr("(no name)") : symbolic;
}

} // namespace

PluginProblem::PluginProblem()
    : d(new PluginProblemPrivate)
{ }

PluginProblem::PluginProblem(Reason reason, const QString &plugin, const QString &detail)
    : d(new PluginProblemPrivate)
{
    d->reason = reason;
    d->plugin = plugin;
    d->detail = detail;
}

PluginProblem::PluginProblem(const PluginProblem &other) = default;
PluginProblem &PluginProblem::operator=(const PluginProblem &other) = default;
PluginProblem::~PluginProblem() = default;

PluginProblem::Reason PluginProblem::reason() const
{
    return d->reason;
}

QString PluginProblem::plugin() const
{
    return d->plugin;
}

QString PluginProblem::detail() const
{
    return d->detail;
}

QString PluginProblem::dependency() const
{
    return d->dependency;
}

QString PluginProblem::requiredVersion() const
{
    return d->requiredVersion;
}

QString PluginProblem::providedVersion() const
{
    return d->providedVersion;
}

QString PluginProblem::providedCompatVersion() const
{
    return d->providedCompatVersion;
}

QStringList PluginProblem::cycle() const
{
    return d->cycle;
}

void PluginProblem::setDependency(const QString &symbolic, const QString &requiredVersion)
{
    d->dependency = symbolic;
    d->requiredVersion = requiredVersion;
}

void PluginProblem::setProvided(const QString &version, const QString &compatVersion)
{
    d->providedVersion = version;
    d->providedCompatVersion = compatVersion;
}

void PluginProblem::setCycle(const QStringList &names)
{
    d->cycle = names;
}

PluginCrash PluginProblem::crash() const
{
    return d->crash;
}

void PluginProblem::setCrash(const PluginCrash &crash)
{
    d->crash = crash;
}

QString PluginProblem::text() const
{
    switch (d->reason) {
    case NoProblem:
        return QString();
    case UnknownPlugin:
        return QObject::tr("no installed plug-in or library is called %1").arg(shownName(d->plugin));
    case LoadFailed:
        return QObject::tr("library fails to load: %1").arg(d->detail);
    case NoMetaFile:
        return QObject::tr("no META.INF at %1: a library carries its metadata as a resource "
                           "under its own base name")
                .arg(d->detail);
    case InvalidMetaFile:
        return QObject::tr("META.INF at %1 names no symbolic").arg(d->detail);
    case DuplicateName:
        return QObject::tr("same symbolic name %1 as %2, which comes first in directory order: "
                           "this file is refused")
                .arg(shownName(d->plugin), d->detail);
    case Blacklisted:
        return QObject::tr("blacklisted: config.ini sets Plugin/%1 to \"%2\"")
                .arg(d->plugin, d->detail.isEmpty() ? QStringLiteral("disable") : d->detail);
    case NotWhitelisted:
        return QObject::tr("not whitelisted: loadEnabledPluginOnly is on and config.ini has no "
                           "\"enable\" for Plugin/%1")
                .arg(shownName(d->plugin));
    case NoDependencyLine:
        return QObject::tr("no `dependency` line in META.INF: a plug-in without dependencies "
                           "needs an empty `dependency:` line");
    case DependencyCycle:
        return QObject::tr("dependency cycle: %1").arg(d->cycle.join(QStringLiteral(" -> ")));
    case SelfDependency:
        return QObject::tr("depends on itself (%1 %2): such a dependency is never met")
                .arg(d->dependency, shownVersion(d->requiredVersion));
    case MissingDependency: {
        QString text = QObject::tr("missing dependency: needs %1 %2, which is not installed")
                               .arg(d->dependency, shownVersion(d->requiredVersion));
        if (!d->detail.isEmpty())
            text += QStringLiteral(" (%1)").arg(d->detail);
        return text;
    }
    case IncompatibleVersion:
        return QObject::tr("incompatible version: needs %1 %2 but %1 is %3 (compatible back to %4)")
                .arg(d->dependency, shownVersion(d->requiredVersion), shownVersion(d->providedVersion),
                     d->providedCompatVersion.isEmpty() ? QStringLiteral("0.0.0") : d->providedCompatVersion);
    case CapitalisedDependency:
        return QObject::tr("depends on %1, written with capitals: dependencies are filed in lower case, "
                           "so this one is never counted as met")
                .arg(d->dependency);
    case UnresolvedDependency:
        return QObject::tr("depends on %1, which does not resolve").arg(d->dependency);
    case NotResolved:
        return QObject::tr("does not resolve, for a reason that cannot be named");
    case NoActivator:
        return QObject::tr("the root object does not implement %1: it cannot start")
                .arg(QStringLiteral(ExtensionSystem_IPluginActivator_iid));
    case NotStarted:
        return QObject::tr("resolved, but not started: the framework has not started it yet, or it was stopped");
    case Quarantined:
        return QObject::tr("quarantined: %1; replace its library with a fixed build, or release it "
                           "(PluginManager::releasePlugin(), es-inspect --release)")
                .arg(d->crash.text());
    }
    return QString();
}

bool PluginProblem::operator==(const PluginProblem &other) const
{
    return d == other.d
           || (d->reason == other.d->reason && d->plugin == other.d->plugin && d->detail == other.d->detail
               && d->dependency == other.d->dependency && d->requiredVersion == other.d->requiredVersion
               && d->providedVersion == other.d->providedVersion
               && d->providedCompatVersion == other.d->providedCompatVersion && d->cycle == other.d->cycle
               && d->crash == other.d->crash);
}

} // namespace ExtensionSystem
