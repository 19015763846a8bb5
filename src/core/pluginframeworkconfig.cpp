// SPDX-License-Identifier: BSD-3-Clause
#include "pluginframeworkconfig.h"
#include "pluginframeworkconfig_p.h"

#include "pluginframeworkconstance.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSettings>
#include <QtCore/QVariant>

namespace ExtensionSystem {

using namespace Internal;

namespace {

const QString PLUGIN_GROUP = QStringLiteral("Plugin");
const QString PLUGIN_POLICY_KEY = QStringLiteral("Plugin/%1");
const QString LOAD_ENABLED_ONLY_KEY = QStringLiteral("PluginManager/loadEnabledPluginOnly");
const QString WATCH_PLUGINS_DIR_KEY = QStringLiteral("PluginManager/watchPluginsDirectory");
// Keys beyond the original four are only read: the framework never writes them.
const QString QUARANTINE_KEY = QStringLiteral("PluginManager/quarantineCrashedPlugins");
const QString HANG_WATCHDOG_KEY = QStringLiteral("PluginManager/hangWatchdogSeconds");

QDir appSubDir(const QString &name)
{
    return QDir(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name);
}

// The words of config.ini for the startup policies.
QMap<int, QString> policyTable()
{
    return {{PluginFrameworkConfig::PolicyDisable, QStringLiteral("disable")},
            {PluginFrameworkConfig::PolicyUndefine, QStringLiteral("undefine")},
            {PluginFrameworkConfig::PolicyEnable, QStringLiteral("enable")}};
}

} // namespace

PluginFrameworkConfigPrivate::PluginFrameworkConfigPrivate()
    : settings(new QSettings(PluginFrameworkConfig::configDir().path() + QStringLiteral("/config.ini"),
                             QSettings::IniFormat))
{
    const QDir dir = PluginFrameworkConfig::configDir();
    if (!dir.exists())
        dir.mkpath(dir.path());

    policyNames = policyTable();

    // Reaches the disk with the next flush of QSettings; no sync() on purpose.
    if (!settings->contains(LOAD_ENABLED_ONLY_KEY))
        settings->setValue(LOAD_ENABLED_ONLY_KEY, false);
}

PluginFrameworkConfigPrivate::~PluginFrameworkConfigPrivate()
{
    delete settings; // flushes pending changes
}

PluginFrameworkConfig::PluginFrameworkConfig(QObject *parent)
    : QObject(*new PluginFrameworkConfigPrivate, parent)
{ }

PluginFrameworkConfig::PluginFrameworkConfig(PluginFrameworkConfigPrivate &dd, QObject *parent)
    : QObject(dd, parent)
{ }

PluginFrameworkConfig::~PluginFrameworkConfig() = default;

QDir PluginFrameworkConfig::pluginsDir()
{
    return appSubDir(PluginFrameworkConstance::PLUGIN_DIR);
}

QDir PluginFrameworkConfig::languageDir()
{
    return appSubDir(PluginFrameworkConstance::LANGUAGE_DIR);
}

QDir PluginFrameworkConfig::configDir()
{
    // Everything before the first dot of the file name, so "a.b.exe" keeps "a".
    const QString program =
            QCoreApplication::applicationFilePath().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, 0);
    return appSubDir(PluginFrameworkConstance::CONFIG_DIR + QLatin1Char('/') + program);
}

bool PluginFrameworkConfig::loadEnabledPluginOnly() const
{
    Q_D(const PluginFrameworkConfig);
    return d->settings->value(LOAD_ENABLED_ONLY_KEY, false).toBool();
}

void PluginFrameworkConfig::setLoadEnabledPluginOnly(bool on)
{
    Q_D(PluginFrameworkConfig);
    d->settings->setValue(LOAD_ENABLED_ONLY_KEY, on);
    d->settings->sync();
}

bool PluginFrameworkConfig::watchPluginsDirectory() const
{
    Q_D(const PluginFrameworkConfig);
    return d->settings->value(WATCH_PLUGINS_DIR_KEY, true).toBool();
}

void PluginFrameworkConfig::setWatchPluginsDirectory(bool on)
{
    Q_D(PluginFrameworkConfig);
    d->settings->setValue(WATCH_PLUGINS_DIR_KEY, on);
    d->settings->sync();
}

bool PluginFrameworkConfig::quarantineCrashedPlugins() const
{
    Q_D(const PluginFrameworkConfig);
    return d->settings->value(QUARANTINE_KEY, true).toBool();
}

int PluginFrameworkConfig::hangWatchdogMsecs() const
{
    Q_D(const PluginFrameworkConfig);
    bool ok = false;
    const double seconds = d->settings->value(HANG_WATCHDOG_KEY).toString().trimmed().toDouble(&ok);
    return ok && seconds > 0 ? int(qMin(seconds * 1000, 2147483647.0)) : 0;
}

PluginFrameworkConfig::StartupPolicy PluginFrameworkConfig::pluginStartupPolicy(const QString &symbolic) const
{
    return policyOf(pluginStartupPolicyText(symbolic));
}

QString PluginFrameworkConfig::pluginStartupPolicyText(const QString &symbolic) const
{
    Q_D(const PluginFrameworkConfig);
    return d->settings->value(PLUGIN_POLICY_KEY.arg(symbolic)).toString();
}

QString PluginFrameworkConfig::policyName(StartupPolicy policy)
{
    const QMap<int, QString> names = policyTable();
    return names.value(policy, names.value(PolicyUndefine));
}

PluginFrameworkConfig::StartupPolicy PluginFrameworkConfig::policyOf(const QString &text)
{
    return static_cast<StartupPolicy>(policyTable().key(text.trimmed().toLower(), PolicyUndefine));
}

void PluginFrameworkConfig::setPluginStartupPolicy(const QString &symbolic, StartupPolicy policy)
{
    Q_D(PluginFrameworkConfig);
    const QString key = PLUGIN_POLICY_KEY.arg(symbolic);
    if (policy == PolicyUndefine) {
        // Left to the next flush of QSettings: callers rely on no sync() here.
        d->settings->remove(key);
        return;
    }
    d->settings->setValue(key, d->policyNames.value(policy, d->policyNames.value(PolicyUndefine)));
    d->settings->sync();
}

QStringList PluginFrameworkConfig::pluginList(StartupPolicy policy) const
{
    Q_D(const PluginFrameworkConfig);
    const QString undefine = d->policyNames.value(PolicyUndefine);
    QStringList result;
    d->settings->beginGroup(PLUGIN_GROUP);
    const QStringList keys = d->settings->allKeys();
    for (const QString &key : keys) {
        // Exact text only: unlike pluginStartupPolicy(), no trimming or case folding.
        const QString text = d->settings->value(key, undefine).toString();
        if (d->policyNames.key(text, PolicyUndefine) == policy)
            result.append(key);
    }
    d->settings->endGroup();
    return result;
}

} // namespace ExtensionSystem
