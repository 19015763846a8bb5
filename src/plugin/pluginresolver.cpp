// SPDX-License-Identifier: BSD-3-Clause
#include "pluginresolver.h"

#include <plugin/pluginloadqueue.h>
#include <plugin/pluginmetadata.h>

#include <QtCore/QHash>

namespace ExtensionSystem {
namespace Internal {

class PluginResolverPrivate : public PluginLoadQueue::Members
{
public:
    PluginMetaData *memberMetaData(const QString &symbolic) const override { return installed.value(symbolic); }
    void memberResolved(const QString &) override { }
    QStringList memberNames() const override { return names; }
    PluginProblem memberRefusal(const QString &symbolic) const override { return refused.value(symbolic); }

    PluginLoadQueue queue;
    QHash<QString, PluginMetaData *> installed;
    QStringList names; // installed names in the order offered
    QHash<QString, PluginProblem> refused;
    QHash<QString, QString> loaderErrors;
};

} // namespace Internal

using namespace Internal;

PluginResolver::PluginResolver()
    : d(new PluginResolverPrivate)
{
    d->queue.setMembers(d.data());
}

PluginResolver::~PluginResolver() = default;

QLibrary::LoadHints PluginResolver::libraryLoadHints()
{
    // PreventUnloadHint is QPluginLoader's own default: libraries stay loaded.
    return QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint;
}

PluginProblem PluginResolver::libraryProblem(const QString &name, const PluginMetaData *metaData,
                                             const QString &loaderError)
{
    if (!metaData)
        return PluginProblem(PluginProblem::LoadFailed, name, loaderError);
    if (metaData->isValid())
        return PluginProblem();
    if (metaData->error() == PluginMetaData::OpenError)
        return PluginProblem(PluginProblem::NoMetaFile, name, metaData->filepath());
    return PluginProblem(PluginProblem::InvalidMetaFile, name, metaData->filepath());
}

QString PluginResolver::libraryName(const QFileInfo &file, const PluginMetaData *metaData)
{
    if (metaData && metaData->isValid())
        return metaData->symbolic();
    // The whole name up to the suffix, as the metadata resource path takes it:
    // "meta.empty" rather than "meta", which many files could share.
    return file.completeBaseName();
}

QList<PluginProblem> PluginResolver::libraryProblems(const QFileInfo &file, const PluginMetaData *metaData,
                                                     const QString &loaderError, const PluginProblem &refusal)
{
    QList<PluginProblem> problems;
    const PluginProblem own = libraryProblem(libraryName(file, metaData), metaData, loaderError);
    if (own.isProblem())
        problems << own;
    if (refusal.isProblem())
        problems << refusal;
    return problems;
}

void PluginResolver::install(const QString &name, PluginMetaData *metaData, const QString &loaderError)
{
    if (d->installed.contains(name))
        return;
    d->names << name;
    d->installed.insert(name, metaData);
    if (!metaData)
        d->loaderErrors.insert(name, loaderError);
    d->queue.add(name);
}

void PluginResolver::refuse(const QString &name, const PluginProblem &reason)
{
    if (!d->refused.contains(name))
        d->refused.insert(name, reason);
}

QStringList PluginResolver::queue() const
{
    return d->queue.queue();
}

bool PluginResolver::isInstalled(const QString &name) const
{
    return d->installed.contains(name);
}

QList<PluginProblem> PluginResolver::problems(const QString &name) const
{
    if (!d->installed.contains(name)) {
        const PluginProblem refusal = d->refused.value(name, PluginProblem(PluginProblem::UnknownPlugin, name));
        return {refusal};
    }
    const PluginProblem problem = libraryProblem(name, d->installed.value(name), d->loaderErrors.value(name));
    if (problem.isProblem())
        return {problem};
    return d->queue.problems(name);
}

} // namespace ExtensionSystem
