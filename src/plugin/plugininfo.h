// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGININFO_H
#define EXTENSIONSYSTEM_PLUGININFO_H

#include "extensionsystem_global.h"

#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QPair>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

class PluginMetaData;

namespace Internal {
class PluginInfoPrivate;
}

// A snapshot of an installed plug-in: its metadata and what the framework knows about
// it at run time. Implicitly shared; only the state is kept current by the manager.
class EXTENSIONSYSTEM_EXPORT PluginInfo
{
public:
    // Single bits in start-up order; "startable" is tested as state > 3.
    enum State { Uninstalled = 1, Installed = 2, Resolved = 4, Starting = 8, Stopping = 16, Active = 32 };

    PluginInfo();
    PluginInfo(const PluginMetaData *metaData, int state, bool valid, const QString &location, const QString &filepath,
               int startupPolicy);
    PluginInfo(const PluginInfo &other);
    PluginInfo &operator=(const PluginInfo &other);
    ~PluginInfo();

    QString symbolic() const;
    QString version() const;
    QString compatVersion() const;
    QString location() const;
    QString filepath() const;
    QString category() const;
    QString company() const;
    QString website() const;
    QString copyright() const;
    QString license() const;
    QString description() const;

    PluginInfo::State currentState() const;
    bool isValid() const;
    bool isEager() const;
    int startupPolicy() const;

    void setCurrentState(PluginInfo::State state);
    void setValid(bool valid);
    void setStartupPolicy(int policy);

    QMap<QString, QPair<QString, bool>> dependency() const;

private:
    QSharedDataPointer<Internal::PluginInfoPrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginInfo)

#endif // EXTENSIONSYSTEM_PLUGININFO_H
