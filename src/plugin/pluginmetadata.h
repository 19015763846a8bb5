// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINMETADATA_H
#define EXTENSIONSYSTEM_PLUGINMETADATA_H

#include "../extensionsystem_global.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

class PluginDependency;

namespace Internal {
class PluginMetaDataPrivate;
}

/*!
    \class ExtensionSystem::PluginMetaData
    \brief The metadata file of one plug-in (META.INF), read once at construction.

    META.INF is a Qt resource compiled into the plug-in library, at
    PluginConstance::PLUGIN_METAFILE, so it can be read only once the library is
    loaded. It is UTF-8 text, one "key: value" entry a line: the key is the text
    before the first colon, the value everything after it, both trimmed. Keys are
    matched ignoring case with the names in PluginConstance; values keep their
    case; there are no sections, comments or continuation lines, and the last of
    two equal keys wins. An example:

    \code
    symbolic: core.db
    version: 2.1.0
    compatVersion: 2.0.0
    activation: eager
    describe: database access
    dependency: core.log,1.2.0
    \endcode

    Only \c symbolic is required. A plug-in without dependencies must still have
    an empty \c dependency: line, or it never resolves. The framework makes one
    object per installed plug-in and owns it; plug-ins get it read-only through
    PluginContext::metaData(). Not copyable; no lock is taken.
*/
class EXTENSIONSYSTEM_EXPORT PluginMetaData
{
    ES_DECLARE_PRIVATE(PluginMetaData)

public:
    /*!
        The numbers of error(). The texts are translated.
    */
    enum Error {
        NoError = 0, ///< Read and valid; the text is "No Error".
        /*! The file cannot be opened, as for a library without META.INF: "Cannot
            open the meta file: %1" with the path; also written to debug output with
            the prefix "[ERROR] > Cannot open the meta file:". */
        OpenError = 1,
        FormatError = 2 ///< The file names no symbolic: "The meta file format invalid: %1" with the path.
    };

    /*!
        Reads the metadata file at \a filepath, usually a resource path such as
        ":/core.db/META-DATA/META.INF". Never fails outright: on failure the object
        is invalid and error() and errorString() say why; what was read stays
        readable. A malformed line is not an error.
    */
    explicit PluginMetaData(const QString &filepath);
    /*!
        Destroys the metadata with its dependency entries.
    */
    ~PluginMetaData();

    /*!
        Returns whether the file was read and names a non-empty symbolic.
    */
    bool isValid() const;
    /*!
        Returns the path given to the constructor.
    */
    QString filepath() const;
    /*!
        Returns a value of Error: NoError, OpenError or FormatError.
    */
    int error() const;
    /*!
        Returns the translated text of error(), "No Error" when there is none.
    */
    QString errorString() const;

    /*!
        Returns the value of the \c symbolic key: the plug-in's unique,
        case-sensitive name, empty for an invalid file.
    */
    QString symbolic() const;
    /*!
        Returns the value of the \c version key as written, "major.minor.patch";
        null when absent.
    */
    QString version() const;
    /*!
        Returns the value of the \c compatVersion key as written: the oldest
        version this one can stand in for; null when absent.
    */
    QString compatVersion() const;
    /*!
        Returns the value of the \c category key, free text; null when absent.
    */
    QString category() const;
    /*!
        Returns the value of the \c company key, free text; null when absent.
    */
    QString company() const;
    /*!
        Returns the value of the \c copyright key, free text; null when absent.
    */
    QString copyright() const;
    /*!
        Returns the value of the \c license key, descriptive text; null when
        absent.
    */
    QString license() const;
    /*!
        Returns the value of the \c website key, free text; null when absent.
    */
    QString website() const;
    /*!
        Returns the value of the \c describe key, the plug-in's description;
        null when absent.
    */
    QString describe() const;
    /*!
        Returns whether the \c activation key says "eager", in any case; false
        for any other value or none. The framework starts eager and lazy
        plug-ins alike.
    */
    bool isEager() const;

    /*!
        Returns whether every dependency is met, as the load queue has marked
        them. A file with an empty \c dependency line starts with true; a file
        without any \c dependency line keeps false, so such a plug-in never
        resolves.
    */
    bool dependencyResolved() const;

    /*!
        Returns the value of the line whose key is exactly \a key, as written
        in the file (case-sensitive, unlike the reader's own matching), or a null
        string. Every line is kept, unknown keys included.
    */
    QString getProperty(const QString &key) const;
    /*!
        Sets the property \a key to \a value, replacing any value read from the
        file. The parsed fields do not change: setProperty("symbolic", x) leaves
        symbolic() as it is.
    */
    void setProperty(const QString &key, const QString &value);

    /*!
        Returns a copy of the dependency on \a symbolic, or an invalid
        PluginDependency. Dependencies are filed under their name in lower case
        and \a symbolic is not lower-cased here, so pass the lower-case name.
    */
    PluginDependency dependency(const QString &symbolic) const;
    /*!
        Returns copies of all dependencies, sorted by their lower-case name, not
        in file order. Entries whose names differ only in case were merged when
        the file was read, the later one winning.
    */
    QList<PluginDependency> dependencies() const;
    /*!
        Marks the dependency filed under \a symbolic, which must be the
        lower-case name, as met or not met, and updates dependencyResolved(). An
        unknown name or an unchanged flag does nothing. Called by the load queue.
    */
    void setDependencyResolved(const QString &symbolic, bool resolved);

private:
    Q_DISABLE_COPY(PluginMetaData)

    QScopedPointer<Internal::PluginMetaDataPrivate> d_ptr;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMETADATA_H
