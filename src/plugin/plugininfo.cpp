// SPDX-License-Identifier: BSD-3-Clause
#include "plugininfo.h"
#include "plugininfo_p.h"

#include "pluginmetadata.h"

namespace ExtensionSystem {

using namespace Internal;

PluginInfoPrivate::PluginInfoPrivate()
    : currentState(0)
    , valid(false)
    , startupPolicy(0)
    , eager(false)
{ }

PluginInfo::PluginInfo()
    : d(new PluginInfoPrivate)
{ }

PluginInfo::PluginInfo(const PluginMetaData *metaData, int state, bool valid, const QString &location,
                       const QString &filepath, int startupPolicy)
    : d(new PluginInfoPrivate)
{
    d->symbolic = metaData->symbolic();
    d->currentState = state;
    d->valid = valid;
    d->location = location;
    d->filepath = filepath;
    d->startupPolicy = startupPolicy;
    d->version = metaData->version();
    d->compatVersion = metaData->compatVersion();
    d->eager = metaData->isEager();
    d->category = metaData->category();
    d->company = metaData->company();
    d->copyright = metaData->copyright();
    d->license = metaData->license();
    d->website = metaData->website();
    d->description = metaData->describe();

    // The resolved flags are a snapshot: later resolution does not reach this copy.
    const QList<PluginDependency> dependencies = metaData->dependencies();
    for (const PluginDependency &dependency : dependencies)
        d->dependencies.insert(dependency.symbolic(), dependency);
}

PluginInfo::PluginInfo(const PluginInfo &other) = default;

PluginInfo &PluginInfo::operator=(const PluginInfo &other) = default;

PluginInfo::~PluginInfo() = default;

QString PluginInfo::symbolic() const
{
    return d->symbolic;
}

QString PluginInfo::version() const
{
    return d->version;
}

QString PluginInfo::compatVersion() const
{
    return d->compatVersion;
}

QString PluginInfo::location() const
{
    return d->location;
}

QString PluginInfo::filepath() const
{
    return d->filepath;
}

QString PluginInfo::category() const
{
    return d->category;
}

QString PluginInfo::company() const
{
    return d->company;
}

QString PluginInfo::website() const
{
    return d->website;
}

QString PluginInfo::copyright() const
{
    return d->copyright;
}

QString PluginInfo::license() const
{
    return d->license;
}

QString PluginInfo::description() const
{
    return d->description;
}

PluginInfo::State PluginInfo::currentState() const
{
    return static_cast<PluginInfo::State>(d->currentState);
}

bool PluginInfo::isValid() const
{
    return d->valid;
}

bool PluginInfo::isEager() const
{
    return d->eager;
}

int PluginInfo::startupPolicy() const
{
    return d->startupPolicy;
}

void PluginInfo::setCurrentState(PluginInfo::State state)
{
    if (d->currentState != state)
        d->currentState = state;
}

void PluginInfo::setValid(bool valid)
{
    if (d->valid != valid)
        d->valid = valid;
}

void PluginInfo::setStartupPolicy(int policy)
{
    d->startupPolicy = policy;
}

QMap<QString, QPair<QString, bool>> PluginInfo::dependency() const
{
    QMap<QString, QPair<QString, bool>> result;
    for (const PluginDependency &dependency : qAsConst(d->dependencies))
        result.insert(dependency.symbolic(), qMakePair(dependency.version(), dependency.isResolved()));
    return result;
}

} // namespace ExtensionSystem
