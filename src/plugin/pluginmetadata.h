// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINMETADATA_H
#define EXTENSIONSYSTEM_PLUGINMETADATA_H

#include "extensionsystem_global.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

class PluginDependency;

namespace Internal {
class PluginMetaDataPrivate;
}

// The metadata file of one plug-in (META.INF), read once at construction.
class EXTENSIONSYSTEM_EXPORT PluginMetaData
{
    ES_DECLARE_PRIVATE(PluginMetaData)

public:
    // The numbers of error().
    enum Error {
        NoError = 0,
        OpenError = 1, // the file cannot be opened (a library without META.INF)
        FormatError = 2 // the file names no symbolic
    };

    explicit PluginMetaData(const QString &filepath);
    ~PluginMetaData();

    bool isValid() const;
    QString filepath() const;
    int error() const;
    QString errorString() const;

    QString symbolic() const;
    QString version() const;
    QString compatVersion() const;
    QString category() const;
    QString company() const;
    QString copyright() const;
    QString license() const;
    QString website() const;
    QString describe() const;
    bool isEager() const;

    bool dependencyResolved() const;

    QString getProperty(const QString &key) const;
    void setProperty(const QString &key, const QString &value);

    PluginDependency dependency(const QString &symbolic) const;
    QList<PluginDependency> dependencies() const;
    void setDependencyResolved(const QString &symbolic, bool resolved);

private:
    Q_DISABLE_COPY(PluginMetaData)

    QScopedPointer<Internal::PluginMetaDataPrivate> d_ptr;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMETADATA_H
