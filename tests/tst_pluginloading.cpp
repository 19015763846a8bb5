// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <framework/pluginframework.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>
#include <plugin/pluginmetadata.h>
#include <plugin/pluginproblem.h>

#include <QtCore/QLocale>
#include <QtTest>

using namespace ExtensionSystem;
using namespace TestSupport;

class tst_PluginLoading : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void unresolvablePlugins();
    void brokenLibraries();
    void unloadableAndNamelessLibrariesNeverStart();
    void lastLibraryOfADirectoryDecidesItsExtensionFile();
    void problemsNameTheReasonAndWhatItConcerns();
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
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/empty/extension.xml"), "<Plugin id=\"none\"/>"));

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

    // Silent as it is, the framework can say why when asked.
    QVERIFY(manager->problems(QStringLiteral("chain.a")).isEmpty());
    const QList<PluginProblem> cycle = manager->problems(QStringLiteral("cycle.x"));
    QCOMPARE(cycle.size(), 1);
    QCOMPARE(cycle.first().reason(), PluginProblem::DependencyCycle);
    QCOMPARE(cycle.first().cycle(), QStringList({"cycle.x", "cycle.y", "cycle.x"}));
    QCOMPARE(cycle.first().text(), QStringLiteral("dependency cycle: cycle.x -> cycle.y -> cycle.x"));
    const QList<PluginProblem> version = manager->problems(QStringLiteral("wrong.version"));
    QCOMPARE(version.size(), 1);
    QCOMPARE(version.first().reason(), PluginProblem::IncompatibleVersion);
    QCOMPARE(version.first().dependency(), QStringLiteral("chain.a"));
    QCOMPARE(version.first().requiredVersion(), QStringLiteral("2.0.0"));
    QCOMPARE(version.first().providedVersion(), QStringLiteral("1.0.0"));
    QCOMPARE(version.first().providedCompatVersion(), QStringLiteral("1.0.0"));
    QCOMPARE(version.first().text(),
             QStringLiteral(
                     "incompatible version: needs chain.a 2.0.0 but chain.a is 1.0.0 (compatible back to 1.0.0)"));
    QCOMPARE(manager->problems(QStringLiteral("no.dependency")).value(0).reason(), PluginProblem::NoDependencyLine);
}

void tst_PluginLoading::lastLibraryOfADirectoryDecidesItsExtensionFile()
{
    // Two libraries a directory, each pair with an extension file; the later one of
    // the first pair is refused, the earlier one of the second pair.
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_last_refused"));
    deployPlugin(QStringLiteral("wrong.version"), QStringLiteral("1_last_refused"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_first_refused"));
    deployPlugin(QStringLiteral("cycle.x"), QStringLiteral("2_first_refused"));
    for (const char *dir : {"1_last_refused", "2_first_refused"})
        QVERIFY(writeFile(pluginsDir() + QLatin1Char('/') + QLatin1String(dir) + QStringLiteral("/extension.xml"),
                          "<Plugin id=\"x\"/>"));
    QVERIFY(writeFile(configFile(), "[Plugin]\nwrong.version=disable\nchain.b=disable\n"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    QSignalSpy announced(manager, &PluginManager::parsingExtensionFile);
    framework.init();

    QVERIFY(manager->find(QStringLiteral("chain.a")));
    QVERIFY(manager->find(QStringLiteral("cycle.x")));
    QCOMPARE(announced.count(), 1);
    QCOMPARE(announced.at(0).at(0).toString(), pluginsDir() + QStringLiteral("/2_first_refused/extension.xml"));
}

void tst_PluginLoading::unloadableAndNamelessLibrariesNeverStart()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    // Both need chain.a, so they would resolve and start behind it.
    deployPlugin(QStringLiteral("unresolved.function"), QStringLiteral("2_function"));
    deployPlugin(QStringLiteral("unresolved.data"), QStringLiteral("3_data"));
    // No symbolic name, but a blank dependency line.
    deployPlugin(QStringLiteral("meta.nosymbolic"), QStringLiteral("4_nameless"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("5_b"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    framework.start();

    // Every symbol is bound when the library loads: the load fails with the
    // loader's message, and the walk goes on with the next file.
    QCOMPARE(manager->loadQueue(), QStringList({"chain.a", "chain.b"}));
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "start:chain.b"}));
    Plugin *function = manager->find(QStringLiteral("unresolved"));
    QVERIFY(function);
    QVERIFY(!function->metaData());
    QCOMPARE(function->state(), int(PluginInfo::Installed));
    QVERIFY2(function->errorString().contains(QStringLiteral("es_function_that_no_library_defines")),
             qPrintable(function->errorString()));
    Plugin *nameless = manager->find(QString());
    QVERIFY(nameless);
    QCOMPARE(nameless->state(), int(PluginInfo::Installed));
    QCOMPARE(nameless->metaData()->error(), int(PluginMetaData::FormatError));

    // Asked by the file's base name, each says what is wrong with it, also the
    // second library that the first one's base name pushed out.
    const QList<PluginProblem> unloadable = manager->problems(QStringLiteral("unresolved.function"));
    QCOMPARE(unloadable.size(), 1);
    QCOMPARE(unloadable.first().reason(), PluginProblem::LoadFailed);
    QVERIFY(unloadable.first().detail().contains(QStringLiteral("es_function_that_no_library_defines")));
    // Its own defect first; that the first one's base name pushed it out comes second.
    const QList<PluginProblem> data = manager->problems(QStringLiteral("unresolved.data"));
    QCOMPARE(data.size(), 2);
    QCOMPARE(data.first().reason(), PluginProblem::LoadFailed);
    QCOMPARE(data.first().plugin(), QStringLiteral("unresolved.data"));
    QVERIFY(data.first().text().startsWith(QStringLiteral("library fails to load: ")));
    QVERIFY(data.first().detail().contains(QStringLiteral("es_data_that_no_library_defines")));
    QCOMPARE(data.last().reason(), PluginProblem::DuplicateName);
    QCOMPARE(data.last().detail(),
             pluginsDir() + QStringLiteral("/2_function/unresolved.function" ES_TEST_LIBRARY_SUFFIX));
    const QList<PluginProblem> invalid = manager->problems(QStringLiteral("meta.nosymbolic"));
    QCOMPARE(invalid.size(), 1);
    QCOMPARE(invalid.first().reason(), PluginProblem::InvalidMetaFile);
    QCOMPARE(invalid.first().text(),
             QStringLiteral("META.INF at :/meta.nosymbolic/META-DATA/META.INF names no symbolic"));
}

void tst_PluginLoading::problemsNameTheReasonAndWhatItConcerns()
{
    deployPlugin(QStringLiteral("chain.a"), QStringLiteral("1_a"));
    deployPlugin(QStringLiteral("chain.b"), QStringLiteral("2_b"));
    deployPlugin(QStringLiteral("chain.c"), QStringLiteral("3_c"));
    deployPlugin(QStringLiteral("wrong.version"), QStringLiteral("4_w"));
    deployPlugin(QStringLiteral("self.dependency"), QStringLiteral("5_self"));
    deployPlugin(QStringLiteral("translated"), QStringLiteral("6_t"));
    QVERIFY(writeFile(configFile(), "[PluginManager]\nloadEnabledPluginOnly=true\n[Plugin]\nchain.a=\" Disable \"\n"
                                    "chain.b=enable\nchain.c=enable\nself.dependency=enable\ntranslated=enable\n"));

    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();

    const auto first = [manager](const char *name) {
        const QList<PluginProblem> problems = manager->problems(QString::fromLatin1(name));
        return problems.size() == 1 ? problems.first() : PluginProblem();
    };
    QCOMPARE(first("chain.a").reason(), PluginProblem::Blacklisted);
    // The value as written, so that the user finds the line.
    QCOMPARE(first("chain.a").detail(), QStringLiteral(" Disable "));
    QCOMPARE(first("chain.a").text(), QStringLiteral("blacklisted: config.ini sets Plugin/chain.a to \" Disable \""));
    QCOMPARE(first("wrong.version").reason(), PluginProblem::NotWhitelisted);

    const PluginProblem missing = first("chain.b");
    QCOMPARE(missing.reason(), PluginProblem::MissingDependency);
    QCOMPARE(missing.dependency(), QStringLiteral("chain.a"));
    QCOMPARE(missing.requiredVersion(), QStringLiteral("1.0.0"));
    QVERIFY2(missing.text().startsWith(QStringLiteral("missing dependency: needs chain.a 1.0.0, which is not "
                                                      "installed (chain.a is refused: blacklisted")),
             qPrintable(missing.text()));
    const PluginProblem waiting = first("chain.c");
    QCOMPARE(waiting.reason(), PluginProblem::UnresolvedDependency);
    QCOMPARE(waiting.dependency(), QStringLiteral("chain.b"));
    QCOMPARE(waiting.requiredVersion(), QStringLiteral("1.0"));
    const PluginProblem self = first("self.dependency");
    QCOMPARE(self.reason(), PluginProblem::SelfDependency);
    QCOMPARE(self.dependency(), QStringLiteral("self.dependency"));
    QCOMPARE(first("nobody").reason(), PluginProblem::UnknownPlugin);

    // A resolved plug-in is not running until it is started, and again once stopped.
    QCOMPARE(first("translated").reason(), PluginProblem::NotStarted);
    framework.start();
    QVERIFY(manager->problems(QStringLiteral("translated")).isEmpty());
    manager->stop(QStringLiteral("translated"));
    QCOMPARE(first("translated").reason(), PluginProblem::NotStarted);
    // Once uninstalled and deleted, it is unknown; its file is no longer looked at.
    manager->uninstall(QStringLiteral("translated"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(first("translated").reason(), PluginProblem::UnknownPlugin);
}

void tst_PluginLoading::brokenLibraries()
{
    QVERIFY(writeFile(pluginsDir() + QStringLiteral("/1_garbage/garbage" ES_TEST_LIBRARY_SUFFIX),
                      QByteArray(4096, '\x7f')));
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
        QCOMPARE(plugin->error(), int(Plugin::InstanceError));
        QVERIFY(plugin->errorString().startsWith(QStringLiteral("Cannot instance plugin library: ")));
        QVERIFY(!plugin->metaData());
        QVERIFY(manager->pluginInfo(QString::fromLatin1(name)).symbolic().isEmpty());
    }
    // A Qt plug-in without the metadata resource: an empty name and the reader's error.
    Plugin *noMeta = manager->find(QString());
    QVERIFY(noMeta);
    QCOMPARE(noMeta->error(), int(PluginMetaData::OpenError));
    QCOMPARE(noMeta->errorString(), QStringLiteral("Cannot open the meta file: :/no.metadata/META-DATA/META.INF"));
    QCOMPARE(noMeta->state(), int(PluginInfo::Installed));

    // A second file with a known name is refused and the first one stays.
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::SymbolicTakenError));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("Exists the same symbolic, symbolic: chain.a"));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->version(), QStringLiteral("1.0.0"));

    // The root object is no activator: the start fails on that plug-in only.
    QCOMPARE(manager->loadQueue(), QStringList({"not.activator", "chain.a"}));
    framework.start();
    Plugin *notActivator = manager->find(QStringLiteral("not.activator"));
    QCOMPARE(notActivator->state(), int(PluginInfo::Resolved));
    QCOMPARE(notActivator->error(), int(Plugin::NoActivatorError));
    QVERIFY(notActivator->errorString().contains(QStringLiteral("extensionsystem.ipluginactivator/1.0")));
    QCOMPARE(manager->find(QStringLiteral("chain.a"))->state(), int(PluginInfo::Active));
    // The error it holds refuses its uninstall.
    manager->uninstall(QStringLiteral("not.activator"));
    QVERIFY(manager->find(QStringLiteral("not.activator")));
    QCOMPARE(errors.last().at(0).toInt(), int(Plugin::NoActivatorError));
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
    QCOMPARE(plugin->error(), int(Plugin::NotActiveError));
    QCOMPARE(plugin->errorString(), QStringLiteral("The Plugin: %1 is not actived"));
    QCOMPARE(states.count(), 0);

    plugin->start();
    QCOMPARE(plugin->state(), int(PluginInfo::Active));
    QCOMPARE(plugin->error(), int(Plugin::NoError));
    QCOMPARE(states.count(), 2);
    plugin->start(); // silent while active
    QCOMPARE(states.count(), 2);
    plugin->stop();
    plugin->start(); // the same library instance runs again
    QCOMPARE(pluginLog(), QStringList({"start:chain.a", "stop:chain.a", "start:chain.a"}));

    Plugin *installed = manager->find(QStringLiteral("no.dependency"));
    installed->start();
    QCOMPARE(installed->error(), int(Plugin::NotResolvedError));
    QVERIFY(installed->errorString().startsWith(QStringLiteral("The Plugin: /")));
    QVERIFY(installed->errorString().endsWith(
            QStringLiteral("/no.dependency" ES_TEST_LIBRARY_SUFFIX " is not resolved, dependency: ")));
    QCOMPARE(errors.count(), 1);
    framework.stop();
}

void tst_PluginLoading::translationLoadedBesideThePlugin()
{
    const QString file = deployPlugin(QStringLiteral("translated"));
    QVERIFY(writeFile(QFileInfo(file).absolutePath() + QStringLiteral("/languages/") + QLocale::system().name()
                              + QStringLiteral(".qm"),
                      makeTranslation("TestActivator", "hello", QStringLiteral("hallo"))));
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
