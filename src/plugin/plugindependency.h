// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINDEPENDENCY_H
#define EXTENSIONSYSTEM_PLUGINDEPENDENCY_H

#include "../extensionsystem_global.h"

#include <QtCore/QScopedPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

namespace Internal {
class PluginDependencyPrivate;
}

/*!
    \class ExtensionSystem::PluginDependency
    \brief One entry of a plug-in's dependency list, and the version rule that
    decides whether a candidate provider meets it.

    An entry names the plug-in that is needed, the version that is needed, and
    whether the need is met at present. Entries come from the \c dependency lines
    of META.INF (see PluginMetaData::dependencies()). A deep-copying value: every
    copy has data of its own.

    Versions are "major.minor.patch". For comparison each part is read as a
    decimal number, 0 when it is missing, empty or not a number, and only its low
    byte counts: parts compare numerically modulo 256 (1.10 is above 1.9, but
    1.256 equals 1.0), and parts after the third are ignored. An empty version
    compares as 0.0.0.
*/
class EXTENSIONSYSTEM_EXPORT PluginDependency
{
    ES_DECLARE_PRIVATE(PluginDependency)

public:
    /*!
        Creates an empty, invalid entry: null name and version, not resolved.
    */
    PluginDependency();
    /*!
        Creates an unresolved entry for the plug-in \a symbolic in the version
        \a version, both kept as written.
    */
    PluginDependency(const QString &symbolic, const QString &version);
    /*!
        Creates a copy of \a other, with its name, version and resolved flag.
    */
    PluginDependency(const PluginDependency &other);
    /*!
        Copies the name, version and resolved flag of \a other into this entry and
        returns it.
    */
    PluginDependency &operator=(const PluginDependency &other);
    /*!
        Destroys the entry.
    */
    ~PluginDependency();

    /*!
        Returns the symbolic name of the needed plug-in, as written in META.INF.
    */
    QString symbolic() const;
    /*!
        Returns the needed version, as written; empty when the entry gives none.
    */
    QString version() const;

    /*!
        Returns whether the need is met at present, as the load queue has marked
        it; false for a new entry.
    */
    bool isResolved() const;
    /*!
        Sets the resolved flag to \a resolved, and nothing else.
    */
    void setResolved(bool resolved);

    /*!
        Returns true when the entry names a plug-in (symbolic() is not empty),
        whatever its version.
    */
    bool isValid() const;

    /*!
        Returns true when \a other has the same name and the same version text,
        both compared case-sensitively. The resolved flag does not count, and
        versions are compared as text: "1.0" and "1.0.0" differ here.
    */
    bool operator==(const PluginDependency &other) const;

    /*!
        Returns whether a provider named \a symbolic, in version \a version and
        compatible back to \a compatVersion, meets this entry: the names must be
        equal, compared case-sensitively, and \a compatVersion <= version() <=
        \a version must hold, both bounds inclusive, with the version comparison
        described above.

        So a provider 1.2.0 with compatVersion 1.0.0 meets a need for 1.2, and a
        provider 2.0 with compatVersion 1.5 does not meet a need for 1.0. An entry
        without a version is met only by a provider whose compatVersion is empty
        or 0.
    */
    bool checkCompatible(const QString &symbolic, const QString &version, const QString &compatVersion) const;

private:
    QScopedPointer<Internal::PluginDependencyPrivate> d_ptr;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINDEPENDENCY_H
