// SPDX-License-Identifier: BSD-3-Clause
#include <core/pluginframeworkconfig.h>

#include <QtCore/QMetaEnum>
#include <QtTest>

using ExtensionSystem::PluginFrameworkConfig;

class tst_PluginFrameworkConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void directoriesAndDefaults();
    void settingsAreWrittenThrough();
    void startupPolicyOnDisk();
    void handWrittenPolicies();

private:
    QString iniPath() const { return PluginFrameworkConfig::configDir().filePath("config.ini"); }
    // The file as it lies on disk: QSettings objects of one process share a cache,
    // so a second QSettings would also see changes that were never synced.
    QStringList linesOnDisk() const
    {
        QFile file(iniPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }
    bool writeIni(const QByteArray &text)
    {
        QDir().mkpath(PluginFrameworkConfig::configDir().path());
        QFile file(iniPath());
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text) == text.size();
    }
};

void tst_PluginFrameworkConfig::init()
{
    QDir(QCoreApplication::applicationDirPath() + "/config").removeRecursively();
}

void tst_PluginFrameworkConfig::directoriesAndDefaults()
{
    const QString app = QCoreApplication::applicationDirPath();
    QCOMPARE(PluginFrameworkConfig::pluginsDir().path(), app + "/plugins");
    QCOMPARE(PluginFrameworkConfig::languageDir().path(), app + "/languages");
    QCOMPARE(PluginFrameworkConfig::configDir().path(), app + "/config/tst_pluginframeworkconfig");

    {
        PluginFrameworkConfig config(nullptr);
        QVERIFY(PluginFrameworkConfig::configDir().exists());
        QVERIFY(!config.loadEnabledPluginOnly());
        QVERIFY(config.watchPluginsDirectory());
        QVERIFY(config.pluginList(PluginFrameworkConfig::PolicyUndefine).isEmpty());
        // The default is not synced at construction; it reaches the disk with the flush.
        QVERIFY(!QFile::exists(iniPath()));
    }
    const QStringList lines = linesOnDisk();
    QCOMPARE(lines, QStringList({"[PluginManager]", "loadEnabledPluginOnly=false"}));

    // An existing value is kept, not reset to the default.
    QVERIFY(writeIni("[PluginManager]\nloadEnabledPluginOnly=true\n"));
    PluginFrameworkConfig config(nullptr);
    QVERIFY(config.loadEnabledPluginOnly());
}

void tst_PluginFrameworkConfig::settingsAreWrittenThrough()
{
    PluginFrameworkConfig config(nullptr);
    config.setLoadEnabledPluginOnly(true);
    config.setWatchPluginsDirectory(false);
    QVERIFY(config.loadEnabledPluginOnly());
    QVERIFY(!config.watchPluginsDirectory());
    QVERIFY(linesOnDisk().contains("loadEnabledPluginOnly=true"));
    QVERIFY(linesOnDisk().contains("watchPluginsDirectory=false"));
}

void tst_PluginFrameworkConfig::startupPolicyOnDisk()
{
    {
        PluginFrameworkConfig config(nullptr);
        config.setPluginStartupPolicy("core.log", PluginFrameworkConfig::PolicyEnable);
        config.setPluginStartupPolicy("core.db", PluginFrameworkConfig::PolicyDisable);
        config.setPluginStartupPolicy("odd", static_cast<PluginFrameworkConfig::StartupPolicy>(5));
        QStringList lines = linesOnDisk();
        QVERIFY(lines.contains("core.log=enable"));
        QVERIFY(lines.contains("core.db=disable"));
        QVERIFY(lines.contains("odd=undefine"));
        QCOMPARE(config.pluginStartupPolicy("core.log"), PluginFrameworkConfig::PolicyEnable);
        QCOMPARE(config.pluginList(PluginFrameworkConfig::PolicyDisable), QStringList{"core.db"});
        QCOMPARE(config.pluginList(PluginFrameworkConfig::PolicyUndefine), QStringList{"odd"});

        // Undefine removes the line rather than writing "undefine", and does not sync.
        config.setPluginStartupPolicy("core.log", PluginFrameworkConfig::PolicyUndefine);
        QCOMPARE(config.pluginStartupPolicy("core.log"), PluginFrameworkConfig::PolicyUndefine);
        QVERIFY(config.pluginList(PluginFrameworkConfig::PolicyEnable).isEmpty());
        QVERIFY(config.pluginList(PluginFrameworkConfig::PolicyUndefine).contains("odd"));
        QVERIFY(!config.pluginList(PluginFrameworkConfig::PolicyUndefine).contains("core.log"));
        QVERIFY(linesOnDisk().contains("core.log=enable"));
    }
    const QStringList lines = linesOnDisk();
    QVERIFY(!lines.contains("core.log=enable"));
    QVERIFY(!lines.join('\n').contains("core.log"));
    QVERIFY(lines.contains("core.db=disable"));
}

void tst_PluginFrameworkConfig::handWrittenPolicies()
{
    QVERIFY(writeIni("[Plugin]\n"
                     "capital=Enable\n"
                     "spaced=\"  enable  \"\n"
                     "lower=enable\n"
                     "off=DISABLE\n"
                     "undef=undefine\n"
                     "bogus=maybe\n"));
    PluginFrameworkConfig config(nullptr);
    using P = PluginFrameworkConfig;

    // Reading one plug-in trims and folds case ...
    QCOMPARE(config.pluginStartupPolicy("capital"), P::PolicyEnable);
    QCOMPARE(config.pluginStartupPolicy("spaced"), P::PolicyEnable);
    QCOMPARE(config.pluginStartupPolicy("off"), P::PolicyDisable);
    QCOMPARE(config.pluginStartupPolicy("undef"), P::PolicyUndefine);
    QCOMPARE(config.pluginStartupPolicy("bogus"), P::PolicyUndefine);
    QCOMPARE(config.pluginStartupPolicy("missing"), P::PolicyUndefine);
    QCOMPARE(config.pluginStartupPolicy("Lower"), P::PolicyUndefine);

    // ... the lists take the text exactly, and list only plug-ins that have a line.
    auto sorted = [](QStringList list) {
        list.sort();
        return list;
    };
    QCOMPARE(sorted(config.pluginList(P::PolicyEnable)), QStringList({"lower"}));
    QVERIFY(config.pluginList(P::PolicyDisable).isEmpty());
    QCOMPARE(sorted(config.pluginList(P::PolicyUndefine)), QStringList({"bogus", "capital", "off", "spaced", "undef"}));
}

QTEST_GUILESS_MAIN(tst_PluginFrameworkConfig)
#include "tst_pluginframeworkconfig.moc"
