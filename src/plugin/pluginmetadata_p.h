// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINMETADATA_P_H
#define EXTENSIONSYSTEM_PLUGINMETADATA_P_H

#include "pluginmetadata.h"
#include "plugindependency.h"

#include <QtCore/QHash>
#include <QtCore/QMap>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginMetaDataPrivate
{
public:
    explicit PluginMetaDataPrivate(const QString &filepath);

    void read();
    void readLine(const QString &line);
    void addDependencies(const QString &value);
    void setError(int code, const QString &text);
    void clearError();

    static const PluginMetaDataPrivate *get(const PluginMetaData *metaData) { return metaData->d_ptr.data(); }

    QString filepath;
    bool valid;
    bool dependencyResolved;
    int error;
    QString errorString;
    QString symbolic;
    QString version;
    QString compatVersion;
    bool eager;
    QString category;
    QString company;
    QString copyright;
    QString license;
    QString website;
    QString describe;
    QMap<QString, PluginDependency> dependencies; // key: symbolic name in lower case
    QHash<QString, QString> properties; // every line, key as written
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMETADATA_P_H
