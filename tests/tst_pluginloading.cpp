#include "testsupport.h"

#include <framework/pluginframework.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>
#include <plugin/pluginmetadata.h>

#include <QtCore/QLocale>
#include <QtTest>

using namespace ExtensionSystem;
using namespace TestSupport;

class tst_PluginLoading : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<PluginEvent>("PluginEvent"); }
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void unresolvablePlugins();
    void brokenLibraries();
    void pluginStateMachine();
    void translationLoadedBesideThePlugin();
    void startFromInsideStart();
};

void tst_PluginLoading::unresolvablePlugins()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("a"));
    deployPlugin(QStringLiteral("cycle.x"), QStringLiteral("x"));
    deployPlugin(QStringLiteral("cycle.y"), QStringLiteral("y"));
    deployPlugin(QStringLiteral("wrong.version"), QStringLiteral("w"));
    deployPlugin(QStringLiteral("no.dependency"), QStringLiteral("n"));
    QDir().mkpath(pluginsDir() + QStringLiteral("/empty"));
    // Holds an extension file but no library: nothing is announced for it.
    writeFile(pluginsDir() + QStringLiteral("/empty/extension.xml"), "<Plugin id=\"none\"/>");

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    QSignalSpy announced(manager, &PluginManager::parsingExtensionFile);
    framework.init();
    framework.start();

    // A cycle, an incompatible version and a missing dependency line keep a
    // plug-in out of the queue without a word; the independent one runs.
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a"}));
    for (const char *name : {"cycle.x", "cycle.y", "wrong.version", "no.dependency"})
        QCOMPARE(manager->find(QString::fromLatin1(name))->state(), int(PluginInfo::Installed));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a"}));
    QCOMPARE(errors.count(), 0);
    QCOMPARE(announced.count(), 0);

    // Starting one of them does nothing at all.
    manager->start(QStringLiteral("cycle.x"));
    manager->start(QStringLiteral("wrong.version"));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a"}));
    QCOMPARE(errors.count(), 0);
    const PluginInfo info = manager->pluginInfo(QStringLiteral("wrong.version"));
    QCOMPARE(info.dependency().value(QStringLiteral("chain.a")), qMakePair(QStringLiteral("2.0.0"), false));
}

void tst_PluginLoading::brokenLibraries()
{
    writeFile(pluginsDir() + QStringLiteral("/1_garbage/garbage.so"), QByteArray(4096, '\x7f'));
    deployPlugin(QStringLiteral("unresolved.symbol"), QStringLiteral("2_unresolved"));
    deployPlugin(QStringLiteral("not.qtplugin"), QStringLiteral("3_notqt"));
    deployPlugin(QStringLiteral("no.metadata"), QStringLiteral("4_nometa"));
    deployPlugin(QStringLiteral("not.activator"), QStringLiteral("5_notactivator"));
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("6_a"));
    deployPlugin(QStringLiteral("chain.a.copy"), QStringLiteral("7_duplicate"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy errors(manager, &PluginManager::errorOccured);
    framework.init();

    // Libraries that cannot be loaded go by their file's base name and keep their error.
    for (const char *name : {"garbage", "unresolved", "not"}) {
        Plugin *plugin = manager->find(QString::fromLatin1(name));
        QVERIFY2(plugin, name);
        QCOMPARE(plugin->state(), int(PluginInfo::Installed));
        QCOMPARE(plugin->error(), 7);
        QVERIFY(plugin->errorString().startsWith(QStringLiteral("Cannot instance plugin library: ")));
        QVERIFY(!plugin->metaData());
        QVERIFY(manager->pluginInfo(QString::fromLatin1(name)).symbolic().isEmpty());
    }
    // A Qt plug-in without the metadata resource: an empty name and the reader's error.
    Plugin *noMeta = manager->find(QString());
    QVERIFY(noMeta);
    QCOMPARE(noMeta->error(), 1);
    QCOMPARE(noMeta->errorString(),
             QStringLiteral("Cannot open the meta file: :/no.metadata/META-DATA/META.INF"));
    QCOMPARE(noMeta->state(), int(PluginInfo::Installed));

    // A second file with a known name is refused and the first one stays.
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), 5);
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Exists the same symbolic, symbolic: chain.a"));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->version(), QStringLiteral("1.0.0"));

    // The root object is no activator: the start fails on that plug-in only.
    QCOMPARE(manager->loadQueue(), QStringList({"not.activator", "chain.a"}));
    framework.start();
    Plugin *notActivator = manager->find(QStringLiteral("not.activator"));
    QCOMPARE(notActivator->state(), int(PluginInfo::Resolved));
    QCOMPARE(notActivator->error(), 8);
    QVERIFY(notActivator->errorString().contains(QStringLiteral("extensionsystem.ipluginactivator/1.0")));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Active));
    // The error it holds refuses its uninstall.
    manager->uninstall(QStringLiteral("not.activator"));
    QVERIFY(manager->find(QStringLiteral("not.activator")));
    QCOMPARE(errors.last().at(0).toInt(), 8);
}

void tst_PluginLoading::pluginStateMachine()
{
    deployPlugin(QStringLiteral("chain.a"));
    deployPlugin(QStringLiteral("no.dependency"));
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    Plugin *plugin = manager->find(QStringLiteral("chain.a"));
    QSignalSpy errors(plugin, &Plugin::errorOccured);
    QSignalSpy states(plugin, &Plugin::stateChanged);

    plugin->stop(); // Resolved: not active
    QCOMPARE(plugin->error(), 3);
    QCOMPARE(plugin->errorString(), QStringLiteral("The Plugin: %1 is not actived"));
    QCOMPARE(states.count(), 0);

    plugin->start();
    QCOMPARE(plugin->state(), int(PluginInfo::Active));
    QCOMPARE(plugin->error(), 0);
    QCOMPARE(states.count(), 2);
    plugin->start(); // silent while active
    QCOMPARE(states.count(), 2);
    plugin->stop();
    plugin->start(); // the same library instance runs again
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "stop:chain.a", "start:chain.a"}));

    Plugin *installed = manager->find(QStringLiteral("no.dependency"));
    installed->start();
    QCOMPARE(installed->error(), 4);
    QVERIFY(installed->errorString().startsWith(QStringLiteral("The Plugin: /")));
    QVERIFY(installed->errorString().endsWith(QStringLiteral("/no.dependency.so is not resolved, dependency: ")));
    QCOMPARE(errors.count(), 1);
    framework.stop();
}

void tst_PluginLoading::translationLoadedBesideThePlugin()
{
    const QString file = deployPlugin(QStringLiteral("translated"));
    writeFile(QFileInfo(file).absolutePath() + QStringLiteral("/languages/") + QLocale::system().name()
                  + QStringLiteral(".qm"),
              makeTranslation("TestActivator", "hello", QStringLiteral("hallo")));
    deployPlugin(QStringLiteral("chain.a")); // has no translation: starts normally

    PluginFramework framework;
    framework.init();
    framework.start();
    QVERIFY(pluginLog().contains(QStringLiteral("translated:hallo")));
    QVERIFY(pluginLog().contains(QStringLiteral("start:chain.a")));
    QCOMPARE(QCoreApplication::translate("TestActivator", "hello"), QStringLiteral("hallo"));
    framework.stop();
    // Stopping removes the translator again.
    QCOMPARE(QCoreApplication::translate("TestActivator", "hello"), QStringLiteral("hello"));
}

void tst_PluginLoading::startFromInsideStart()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("starter"), QStringLiteral("2_starter"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("3_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("4_c"));
    PluginFramework framework;
    framework.init();
    framework.start();
    // The starter starts chain.c with its dependencies from inside its own start;
    // the walk of start() then finds them active and passes over them.
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:starter", "start:chain.b", "start:chain.c"}));
    framework.stop();
}

QTEST_MAIN(tst_PluginLoading)
#include "tst_pluginloading.moc"
