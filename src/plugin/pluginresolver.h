// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINRESOLVER_H
#define EXTENSIONSYSTEM_PLUGINRESOLVER_H

#include "extensionsystem_global.h"

#include <plugin/pluginproblem.h>

#include <QtCore/QLibrary>
#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class PluginMetaData;

namespace Internal {
class PluginResolverPrivate;
}

// The framework's load queue for tools: orders plug-ins by the same rule, and
// says why one stays out, without running anything. Offer the plug-ins in the
// order the framework would install them.
class EXTENSIONSYSTEM_EXPORT PluginResolver
{
public:
    PluginResolver();
    ~PluginResolver();

    // How the framework loads every plug-in library: all symbols bound at load,
    // so that a missing one fails the load instead of killing the process later.
    static QLibrary::LoadHints libraryLoadHints();

    // What is wrong with a library file itself, before any dependency is looked
    // at: it did not load (no metadata), or its metadata is missing or names no
    // one. NoProblem for a readable plug-in.
    static PluginProblem libraryProblem(const QString &name, const PluginMetaData *metaData,
                                        const QString &loaderError);

    // An installed plug-in, under its symbolic name, or under its library's base
    // name with null metadata and the loader's message when the library did not
    // load. The resolver keeps the resolution flags of the dependencies on
    // metaData, which must outlive it.
    void install(const QString &name, PluginMetaData *metaData, const QString &loaderError = QString());
    // A plug-in refused at installation (duplicate name, black or white list).
    void refuse(const QString &name, const PluginProblem &reason);

    QStringList queue() const;
    bool isInstalled(const QString &name) const;
    // Why an installed plug-in is not in the queue, or why a name was refused;
    // empty for a plug-in in the queue.
    QList<PluginProblem> problems(const QString &name) const;

private:
    Q_DISABLE_COPY(PluginResolver)
    QScopedPointer<Internal::PluginResolverPrivate> d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINRESOLVER_H
