// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H

#include "../extensionsystem_global.h"

#include <QtCore/QDir>
#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace ExtensionSystem {

namespace Internal {
class PluginFrameworkConfigPrivate;
}

/*!
    \class ExtensionSystem::PluginFrameworkConfig
    \brief Where the system's directories lie, and the settings of config.ini.

    It holds no copy of the settings: every read asks the QSettings object of the
    file, every change is written through. The file is
    configDir()/config.ini in INI format, with these keys:

    \li \c PluginManager/loadEnabledPluginOnly: bool, false when absent; added
        with false when the object is made.
    \li \c PluginManager/watchPluginsDirectory: bool, true when absent.
    \li \c PluginManager/quarantineCrashedPlugins: bool, true when absent;
        see quarantineCrashedPlugins(). Only read.
    \li \c PluginManager/hangWatchdogSeconds: a number of seconds, off when
        absent; see hangWatchdogMsecs(). Only read.
    \li \c Plugin/\<symbolic\>: a plug-in's startup policy, one of the words
        "disable", "undefine" and "enable"; PolicyUndefine when absent.

    The framework makes one object, a QObject child of the PluginFramework, and
    reads it at each installation, so a changed setting counts from the next
    installation on, without notification. Nothing is reported: an unreadable
    file behaves as an empty one. Use it on the framework's thread. The directory
    functions read the application's path, so a QCoreApplication must exist.
*/
class EXTENSIONSYSTEM_EXPORT PluginFrameworkConfig : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginFrameworkConfig)

public:
    /*!
        A plug-in's startup policy, written in config.ini under
        "Plugin/\<symbolic\>". It decides at installation whether the plug-in is
        accepted; it does not start or stop anything.
    */
    enum StartupPolicy {
        PolicyDisable = -1, ///< "disable": blacklisted, refused at installation.
        PolicyUndefine = 0, ///< "undefine": no decision; also the meaning of a missing or unknown entry.
        PolicyEnable = 1 ///< "enable": whitelisted, accepted even when loadEnabledPluginOnly() is on.
    };
    Q_ENUM(StartupPolicy)

    /*!
        Creates the configuration with \a parent. Opens configDir()/config.ini
        (the file need not exist), creates configDir() with its parents if it is
        missing, and adds "PluginManager/loadEnabledPluginOnly" with false if the
        key is absent; that reaches the disk with the next flush of the settings.
    */
    explicit PluginFrameworkConfig(QObject *parent = nullptr);
    /*!
        Destroys the object and flushes pending changes to config.ini.
    */
    ~PluginFrameworkConfig() override;

    /*!
        Returns the plug-ins directory, "plugins" below the application's
        directory (QCoreApplication::applicationDirPath()). Each plug-in lies in a
        sub-directory of its own. Whether it exists is not checked here.
    */
    static QDir pluginsDir();
    /*!
        Returns "languages" below the application's directory. Only written to the
        start-up debug output: translations are looked for beside each plug-in,
        in its own "languages" directory.
    */
    static QDir languageDir();
    /*!
        Returns the directory of config.ini: "config/\<program\>" below the
        application's directory, where \c program is the name of the executable
        up to its first dot ("a.b.exe" gives "a"). Two programs in one directory
        thus keep separate configurations.
    */
    static QDir configDir();
    /*!
        Returns the word config.ini holds for \a policy: "disable", "undefine" or
        "enable"; "undefine" for a value outside the enumeration.
    */
    static QString policyName(StartupPolicy policy);
    /*!
        Returns the policy that \a text means when a plug-in is installed: the
        text is trimmed and compared in any case with the three words, and
        anything else means PolicyUndefine.
    */
    static StartupPolicy policyOf(const QString &text);

    /*!
        Returns "PluginManager/loadEnabledPluginOnly", false when absent. When
        true, only plug-ins whose policy is PolicyEnable are installed.
    */
    bool loadEnabledPluginOnly() const;
    /*!
        Writes \a on as "PluginManager/loadEnabledPluginOnly" and syncs the file.
    */
    void setLoadEnabledPluginOnly(bool on);

    /*!
        Returns "PluginManager/watchPluginsDirectory", true when absent: whether
        the plug-in manager watches pluginsDir() for new plug-ins.
    */
    bool watchPluginsDirectory() const;
    /*!
        Writes \a on as "PluginManager/watchPluginsDirectory" and syncs the file.
        Only the setting changes; PluginManager::setWatchingPluginDirEnable() also
        starts or stops the watching.
    */
    void setWatchPluginsDirectory(bool on);

    /*!
        Returns "PluginManager/quarantineCrashedPlugins", true when absent:
        whether a plug-in in whose loading or start() the previous process died
        is kept from loading at the next init() (see PluginManager::quarantinedPlugins()).
        False turns quarantine off; the start journal and
        PluginManager::previousCrash() stay. Read only: the framework never
        writes this key.

        \since 1.1
    */
    bool quarantineCrashedPlugins() const;
    /*!
        Returns "PluginManager/hangWatchdogSeconds" in milliseconds, 0 when
        absent, not a number or not above 0: after how long the hang watchdog
        reports a plug-in's code that has not returned (see
        PluginFramework::setHangWatchdog()). Fractions are allowed ("0.5").
        Read only: the framework never writes this key.

        \since 1.1
    */
    int hangWatchdogMsecs() const;
    /*!
        Returns the policy written for \a symbolic, read as policyOf() does:
        trimmed and in any case, PolicyUndefine when the entry is missing or
        unknown.
    */
    StartupPolicy pluginStartupPolicy(const QString &symbolic) const;
    /*!
        Returns the text written for \a symbolic under "Plugin/\<symbolic\>"
        exactly as it stands, neither trimmed nor case-folded, or an empty string
        when there is no entry. Reports quote it, so that a user finds the line.

        \since 1.1
    */
    QString pluginStartupPolicyText(const QString &symbolic) const;
    /*!
        Writes \a policy for \a symbolic as its word and syncs the file.
        PolicyUndefine removes the entry instead, without a sync: the removal
        reaches the disk with the next flush.
    */
    void setPluginStartupPolicy(const QString &symbolic, StartupPolicy policy);
    /*!
        Returns the symbolic names whose entry in config.ini means \a policy, in
        the order of the file's keys. Unlike pluginStartupPolicy(), the value is
        compared exactly as written, neither trimmed nor case-folded: "Enable" is
        listed under PolicyUndefine, as is any unknown word. Plug-ins without an
        entry are in no list.
    */
    QStringList pluginList(StartupPolicy policy) const;

protected:
    /*!
        Creates the configuration with the private data \a dd, which it takes
        over, and \a parent; for subclasses that enlarge the private class. The
        private data's constructor does the setup of the public constructor.
    */
    PluginFrameworkConfig(Internal::PluginFrameworkConfigPrivate &dd, QObject *parent);

private:
    Q_DISABLE_COPY(PluginFrameworkConfig)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_H
