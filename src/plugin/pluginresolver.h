// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINRESOLVER_H
#define EXTENSIONSYSTEM_PLUGINRESOLVER_H

#include "../extensionsystem_global.h"

#include "pluginproblem.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class PluginMetaData;

namespace Internal {
class PluginResolverPrivate;
}

/*!
    \class ExtensionSystem::PluginResolver
    \brief The framework's load queue for tools: orders plug-ins by the same rule,
    and says why one stays out, without running anything.

    Offer the plug-ins with install() in the order the framework would install
    them (plug-in directories by name, ignoring case, and the libraries within
    each, see PluginManager::libraryFiles()); a plug-in enters queue() once each
    of its dependencies is in it with a compatible version. Nothing is loaded,
    started or reported by the resolver itself: the caller loads the libraries
    and reads their metadata. Not copyable; no lock is taken.

    \sa PluginManager::problems(), PluginProblem
*/
class EXTENSIONSYSTEM_EXPORT PluginResolver
{
public:
    /*!
        Creates an empty resolver: nothing installed, an empty queue.
    */
    PluginResolver();
    /*!
        Destroys the resolver. The metadata objects given to install() are not
        deleted: they stay the caller's.
    */
    ~PluginResolver();

    /*!
        Returns how the framework loads every plug-in library:
        QLibrary::ResolveAllSymbolsHint, so that a missing symbol fails the load
        instead of killing the process later, and QLibrary::PreventUnloadHint,
        since libraries stay loaded.
    */
    static QLibrary::LoadHints libraryLoadHints();

    /*!
        Says what is wrong with a library file itself, before any dependency is
        looked at, for the library known as \a name: PluginProblem::LoadFailed
        with \a loaderError when \a metaData is null (the library did not load),
        PluginProblem::NoMetaFile when META.INF could not be opened,
        PluginProblem::InvalidMetaFile when it names no symbolic, and a value
        with PluginProblem::NoProblem for a readable plug-in.
    */
    static PluginProblem libraryProblem(const QString &name, const PluginMetaData *metaData,
                                        const QString &loaderError);

    /*!
        Returns the name a library is reported under: its symbolic name, or,
        when it has none that can be used (the library did not load, or its
        META.INF is missing or names no one), the name of \a file without its
        suffix (QFileInfo::completeBaseName()). \a metaData is null when the
        library did not load.

        \since 1.1
    */
    static QString libraryName(const QFileInfo &file, const PluginMetaData *metaData);

    /*!
        Says why the library \a file is not running as far as the file itself
        and its installation tell: first what is wrong with the library (see
        libraryProblem(), with \a metaData and \a loaderError), then \a refusal,
        the reason installation refused it, when it was refused (a duplicate
        name, the black or white list). Empty for a readable library that was not
        refused. The order of the directory scan changes the refusal, never the
        first reason. Both PluginManager::problems() and es-inspect give these.

        \since 1.1
    */
    static QList<PluginProblem> libraryProblems(const QFileInfo &file, const PluginMetaData *metaData,
                                                const QString &loaderError,
                                                const PluginProblem &refusal = PluginProblem());

    /*!
        Installs a plug-in under \a name, its symbolic name, or under its
        library's base name with a null \a metaData and the loader's message
        \a loaderError when the library did not load. The plug-in enters the
        queue if its dependencies are there, and plug-ins waiting for it may
        follow. A name installed before is ignored.

        \a metaData is not owned: the resolver keeps the pointer and marks the
        resolution flags of the dependencies on it, so it must outlive the
        resolver.
    */
    void install(const QString &name, PluginMetaData *metaData, const QString &loaderError = QString());
    /*!
        Records that the plug-in \a name was refused at installation for
        \a reason (duplicate name, black or white list). problems() reports it,
        and so do the problems of plug-ins that depend on it. The first reason
        recorded for a name stays.
    */
    void refuse(const QString &name, const PluginProblem &reason);

    /*!
        Returns the names of the plug-ins in the queue, in start order.
    */
    QStringList queue() const;
    /*!
        Returns whether \a name was given to install().
    */
    bool isInstalled(const QString &name) const;
    /*!
        Says why the installed plug-in \a name is not in the queue, or why the
        name was refused (PluginProblem::UnknownPlugin for a name never offered);
        an empty list for a plug-in in the queue. A problem of the library itself
        comes alone, as libraryProblem() gives it.
    */
    QList<PluginProblem> problems(const QString &name) const;

private:
    Q_DISABLE_COPY(PluginResolver)
    QScopedPointer<Internal::PluginResolverPrivate> d;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINRESOLVER_H
