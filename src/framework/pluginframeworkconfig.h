// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H

#include "extensionsystem_global.h"

#include <QtCore/QDir>
#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace ExtensionSystem {

namespace Internal {
class PluginFrameworkConfigPrivate;
}

// Where the system's directories lie, and the settings of config.ini. Holds no copy
// of the settings: every read asks the file, every change is written through.
class EXTENSIONSYSTEM_EXPORT PluginFrameworkConfig : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginFrameworkConfig)

public:
    enum StartupPolicy { PolicyDisable = -1, PolicyUndefine = 0, PolicyEnable = 1 };
    Q_ENUM(StartupPolicy)

    explicit PluginFrameworkConfig(QObject *parent = nullptr);
    ~PluginFrameworkConfig() override;

    static QDir pluginsDir();
    static QDir languageDir();
    static QDir configDir();
    // The word config.ini holds for a policy ("disable", "undefine", "enable"), and
    // the policy a value written there means when a plug-in is installed: trimmed,
    // in any case, anything else undefine.
    static QString policyName(StartupPolicy policy);
    static StartupPolicy policyOf(const QString &text);

    bool loadEnabledPluginOnly() const;
    void setLoadEnabledPluginOnly(bool on);

    bool watchPluginsDirectory() const;
    void setWatchPluginsDirectory(bool on);

    StartupPolicy pluginStartupPolicy(const QString &symbolic) const;
    void setPluginStartupPolicy(const QString &symbolic, StartupPolicy policy);
    QStringList pluginList(StartupPolicy policy) const;

protected:
    PluginFrameworkConfig(Internal::PluginFrameworkConfigPrivate &dd, QObject *parent);

private:
    Q_DISABLE_COPY(PluginFrameworkConfig)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H
