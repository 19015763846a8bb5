// SPDX-License-Identifier: BSD-3-Clause
#include "pluginmanager.h"
#include "pluginmanager_p.h"

#include <event/eventmanager.h>
#include <event/pluginevent.h>
#include <core/debugoutput_p.h>
#include <core/pluginframeworkcontext.h>
#include <core/startjournal.h>
#include <core/timelinerecorder.h>
#include <plugin/plugin.h>
#include <plugin/pluginloadqueue.h>
#include <plugin/pluginmetadata.h>
#include <plugin/pluginresolver.h>
#include <core/qtcompat_p.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileSystemWatcher>

#include <algorithm>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

namespace {

// A QDir's own listing, in its own order. Its default name filter "*" admits
// every name yet costs a regular expression for each listing and a match for
// each entry, for every plug-in directory: a QDir that has only that lists
// without it.
QFileInfoList listEntries(const QDir &dir, QDir::Filters filters)
{
    if (dir.nameFilters() == QStringList(QStringLiteral("*")))
        return dir.entryInfoList(QStringList(), filters);
    return dir.entryInfoList(filters);
}

} // namespace

PluginManagerPrivate::PluginManagerPrivate(PluginFrameworkContext *context)
    : context(context)
    , scanDone(false)
    , error(0)
    , errorString(QObject::tr("No Error"))
    , loadQueue(new PluginLoadQueue)
    , pluginCount(0)
    , watcher(new QFileSystemWatcher)
    , guarded(false)
    , quarantine(QCoreApplication::applicationDirPath(), PluginFrameworkConfig::configDir().dirName())
{
    loadQueue->setMembers(this);
    if (context->config->watchPluginsDirectory())
        watcher->addPath(PluginFrameworkConfig::pluginsDir().path());
}

PluginManagerPrivate::~PluginManagerPrivate()
{
    plugins.clear();
    pluginFiles.clear();
    delete watcher;
    pluginInfos.clear();
    delete loadQueue;
}

void PluginManagerPrivate::handleError(int error, const QString &errorString)
{
    Q_Q(PluginManager);
    this->error = error;
    this->errorString = errorString;
    ES_DEBUG_IF_SHOWN() << "PluginManager::Error >" << errorString;
    emit q->errorOccured(error, errorString);
}

void PluginManagerPrivate::installDirectory(const QDir &pluginDir)
{
    Q_Q(PluginManager);
    if (!pluginDir.exists()) {
        const QString text = QObject::tr("The 'plugins' directory not exists!");
        handleError(PluginManager::PluginsDirMissingError, text);
        ES_DEBUG_IF_SHOWN() << "[PluginManager] > installPlugins:" << text;
        return;
    }
    ES_DEBUG_IF_SHOWN() << "[PluginManager] > installPlugins:";

    const QFileInfoList directories = listEntries(pluginDir, QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    pluginCount = directories.size();
    for (const QFileInfo &directory : directories) {
        const QDir dir(directory.absoluteFilePath());
        ES_DEBUG_IF_SHOWN() << " |->" << dir.dirName();
        bool installed = false;
        const QFileInfoList libraries = PluginManager::libraryFiles(dir);
        for (const QFileInfo &library : libraries)
            installed = installFile(library);
        // Only the last library of a directory decides whether its extension file is announced.
        const QString extensionFile = dir.absoluteFilePath(QStringLiteral("extension.xml"));
        if (installed && QFile::exists(extensionFile))
            emit q->parsingExtensionFile(extensionFile);
    }
    scanDone = true;
    emit q->loadingQueueChanged(loadQueue->queue());
    emit q->directoryScanned(pluginDir.path());
}

void PluginManagerPrivate::guardStart()
{
    if (guarded)
        return;
    guarded = true;
    const QDir configDir = PluginFrameworkConfig::configDir();
    // Read before this process's own journal exists, so that it is never one of them.
    const QList<PluginCrash> ended = StartJournal::finishedRuns(configDir, true);
    quarantine.load();
    const bool quarantining = context->config->quarantineCrashedPlugins();
    for (const PluginCrash &crash : ended) {
        previousCrash = crash; // the newest comes last
        ES_DEBUG_IF_SHOWN() << "[PluginManager] > the previous run ended in a plug-in's code:" << crash.text();
        if (quarantining && crash.quarantines() && !crash.file().isEmpty())
            quarantine.quarantine(crash);
    }
    if (context->keepJournal)
        context->journal = StartJournal::acquire(configDir);
    if (context->journal)
        context->journal->setWatchdog(context->hangWatchdog());
}

bool PluginManagerPrivate::quarantined(const QFileInfo &fileinfo)
{
    if (quarantine.records.isEmpty() || !context->config->quarantineCrashedPlugins())
        return false;
    bool released = false;
    const PluginCrash crash = quarantine.check(fileinfo, &released);
    if (released) {
        ES_DEBUG_IF_SHOWN() << "[PluginManager] > released from quarantine, its library changed:"
                            << fileinfo.absoluteFilePath();
    }
    if (crash.isNull())
        return false;
    ES_DEBUG_IF_SHOWN() << "[PluginManager] > quarantined, not loaded:" << crash.text();
    PluginProblem reason(PluginProblem::Quarantined, crash.plugin(), fileinfo.absoluteFilePath());
    reason.setCrash(crash);
    refuse({crash.plugin(), fileinfo.completeBaseName(), fileinfo.baseName()}, {reason});
    return true;
}

bool PluginManagerPrivate::installFile(const QFileInfo &fileinfo)
{
    Q_Q(PluginManager);
    if (pluginFiles.value(fileinfo.filePath())) {
        handleError(PluginManager::AlreadyInstalledError,
                    QObject::tr("The specified plugin has been installed, file: %1").arg(fileinfo.filePath()));
        return false;
    }
    guardStart();
    // Not loaded at all: a crash in a static initialiser must not repeat.
    if (quarantined(fileinfo))
        return false;
    ES_DEBUG_IF_SHOWN() << "   |->" << fileinfo.absoluteFilePath();

    auto *plugin = new Plugin(fileinfo, context, q);
    if (quarantine.hasReleased())
        quarantine.passed(fileinfo.absoluteFilePath(), PluginCrash::RootObject);
    const QString symbolic = plugin->symbolic();
    if (plugins.value(symbolic)) {
        handleError(PluginManager::SymbolicTakenError,
                    QObject::tr("Exists the same symbolic, symbolic: %1").arg(symbolic));
        refuse(plugin,
               PluginProblem(PluginProblem::DuplicateName, symbolic, plugins.value(symbolic)->fileInfo().filePath()));
        plugin->deleteLater();
        return false;
    }

    const int policy = context->config->pluginStartupPolicy(symbolic);
    ES_DEBUG_IF_SHOWN() << "     |->" << symbolic << ":" << policy;
    // Recorded before the lists are applied: a refused plug-in stays visible with its policy.
    if (plugin->metaData()) {
        pluginInfos.insert(symbolic, PluginInfo(plugin->metaData(), plugin->state(), true, fileinfo.absolutePath(),
                                                fileinfo.filePath(), policy));
    }
    if (policy == PluginFrameworkConfig::PolicyDisable) {
        handleError(PluginManager::BlacklistedError,
                    QObject::tr("Plugin: '%1' in the blacklist, cannot install it!").arg(symbolic));
        refuse(plugin,
               PluginProblem(PluginProblem::Blacklisted, symbolic, context->config->pluginStartupPolicyText(symbolic)));
        plugin->deleteLater();
        return false;
    }
    if (policy == PluginFrameworkConfig::PolicyUndefine && context->config->loadEnabledPluginOnly()) {
        handleError(PluginManager::NotWhitelistedError,
                    QObject::tr("Plugin: '%1' not in the whitelist, and loadEnabledPluginOnly is ON, "
                                "cannot install it!")
                            .arg(symbolic));
        refuse(plugin, PluginProblem(PluginProblem::NotWhitelisted, symbolic));
        plugin->deleteLater();
        return false;
    }

    QObject::connect(plugin, &Plugin::stateChanged, q, &PluginManager::pluginStateChanaged);
    pluginFiles.insert(fileinfo.filePath(), plugin);
    plugins.insert(symbolic, plugin);
    refusals.remove(symbolic);
    {
        const TimelineRecorder::Span span(context->timeline.data(), Timeline::LoadQueue, plugin->reportName(),
                                          fileinfo.absoluteFilePath());
        loadQueue->add(symbolic);
    }
    emit q->installed(symbolic);
    // The change to Installed happened before the connection above existed.
    pluginStateChanaged(symbolic, PluginInfo::Uninstalled, PluginInfo::Installed);
    if (scanDone)
        emit q->loadingQueueChanged(loadQueue->queue());
    return true;
}

void PluginManagerPrivate::refuse(Plugin *plugin, const PluginProblem &reason)
{
    const QList<PluginProblem> reasons = PluginResolver::libraryProblems(plugin->fileInfo(), plugin->metaData(),
                                                                         plugin->loaderErrorString(), reason);
    // A duplicate's name belongs to the plug-in that holds it; the file is known by its base name.
    QStringList keys{plugin->fileInfo().completeBaseName(), plugin->fileInfo().baseName()};
    if (reason.reason() != PluginProblem::DuplicateName)
        keys.prepend(plugin->symbolic());
    refuse(keys, reasons);
}

void PluginManagerPrivate::refuse(const QStringList &names, const QList<PluginProblem> &reasons)
{
    for (const QString &name : names) {
        if (!name.isEmpty() && !refusals.contains(name))
            refusals.insert(name, reasons);
    }
}

// A library without a usable symbolic name, asked for by its file's base name.
// Not through pluginFiles: it keeps the entries of uninstalled plug-ins.
Plugin *PluginManagerPrivate::findByBaseName(const QString &name) const
{
    Plugin *found = nullptr;
    for (Plugin *plugin : plugins) {
        if (!plugin)
            continue;
        if (plugin->fileInfo().completeBaseName() == name)
            return plugin;
        if (!found && plugin->fileInfo().baseName() == name)
            found = plugin;
    }
    return found;
}

PluginMetaData *PluginManagerPrivate::memberMetaData(const QString &symbolic) const
{
    Plugin *plugin = plugins.value(symbolic);
    return plugin ? plugin->metaData() : nullptr;
}

void PluginManagerPrivate::memberResolved(const QString &symbolic)
{
    if (Plugin *plugin = plugins.value(symbolic))
        plugin->setState(PluginInfo::Resolved);
}

QStringList PluginManagerPrivate::memberNames() const
{
    return plugins.keys();
}

PluginProblem PluginManagerPrivate::memberRefusal(const QString &symbolic) const
{
    // The refusal itself: it comes after whatever was wrong with the file.
    const QList<PluginProblem> reasons = refusals.value(symbolic);
    return reasons.isEmpty() ? PluginProblem() : reasons.last();
}

void PluginManagerPrivate::pluginStateChanaged(const QString &symbolic, int from, int to)
{
    Plugin *plugin = plugins.value(symbolic);
    ES_DEBUG_IF_SHOWN()
            << "void ExtensionSystem::Internal::PluginManagerPrivate::pluginStateChanaged(const QString&, int, int)"
            << ">" << symbolic << plugin << "- state:" << from << "->" << to;
    if (!plugin)
        return;
    auto info = pluginInfos.find(symbolic);
    if (info != pluginInfos.end())
        info->setCurrentState(PluginInfo::State(to));
    // A released plug-in that started got through whatever it died in.
    if (to == PluginInfo::Active && quarantine.hasReleased())
        quarantine.passed(plugin->fileInfo().absoluteFilePath(), PluginCrash::ActivatorStart);

    int index = plugins.size();
    int total = pluginCount;
    if (scanDone) {
        index = loadQueue->indexOf(symbolic);
        total = loadQueue->size();
    }
    // The path of location(), from the file's own cached absolute path rather
    // than through a QDir made for each event.
    const QFileInfo &file = plugin->fileInfo();
    const PluginEvent event(PluginEvent::Action(to), PluginEvent::Action(from), symbolic, file.absolutePath(),
                            file.filePath(), plugin->version(), index, total);
    context->eventManager->publish(event);
}

void PluginManagerPrivate::startStep(Plugin *plugin)
{
    if (!plugin) {
        handleError(PluginManager::InvalidPluginError, QObject::tr("Cannot start plugin, that is invalid"));
        return;
    }
    ES_DEBUG_IF_SHOWN() << "PluginManager::Start >" << plugin->symbolic() << ":" << plugin->state();
    if (plugin->state() == PluginInfo::Active)
        return;
    if (plugin->state() >= PluginInfo::Resolved) { // Resolved, or inside a start or stop
        plugin->start();
        return;
    }
    handleError(PluginManager::NotResolvedError,
                QObject::tr("Cannot start plugin: %1, that is not resolved").arg(plugin->symbolic()));
}

void PluginManagerPrivate::stopStep(Plugin *plugin)
{
    if (!plugin) {
        handleError(PluginManager::InvalidPluginError, QObject::tr("Cannot stop plugin, that is invalid"));
        return;
    }
    if (plugin->state() == PluginInfo::Active) {
        plugin->stop();
        return;
    }
    handleError(PluginManager::NotActiveError,
                QObject::tr("Cannot stop plugin: %1, that is not actived").arg(plugin->symbolic()));
}

void PluginManagerPrivate::start(const QString &symbolic)
{
    ES_DEBUG_IF_SHOWN() << "void ExtensionSystem::Internal::PluginManagerPrivate::start(const QString&)" << symbolic;
    if (!plugins.value(symbolic)) {
        handleError(PluginManager::NotInstalledError,
                    QObject::tr("Cannot start plugin: %1, that is not installed").arg(symbolic));
        return;
    }
    const QStringList list = loadQueue->startList(symbolic);
    ES_DEBUG_IF_SHOWN() << "PluginManager::start >" << symbolic << QtCompat::DebugList{list};
    for (const QString &name : list)
        startStep(plugins.value(name));
}

void PluginManagerPrivate::stop(const QString &symbolic)
{
    if (!plugins.value(symbolic)) {
        handleError(PluginManager::NotInstalledError, QObject::tr("The plugin: %1 is not installed").arg(symbolic));
        return;
    }
    const QStringList list = loadQueue->stopList(symbolic);
    ES_DEBUG_IF_SHOWN() << "void ExtensionSystem::Internal::PluginManagerPrivate::stop(const QString&)"
                        << ">" << QtCompat::DebugList{list};
    for (const QString &name : list)
        stopStep(plugins.value(name));
}

} // namespace Internal

PluginManager::PluginManager(PluginFrameworkContext *context, QObject *parent)
    : QObject(*new PluginManagerPrivate(context), parent)
{
    Q_D(PluginManager);
    connect(d->watcher, &QFileSystemWatcher::directoryChanged, this, &PluginManager::pluginDirectoryChanged,
            Qt::QueuedConnection);
}

PluginManager::~PluginManager() = default;

int PluginManager::error() const
{
    Q_D(const PluginManager);
    return d->error;
}

QString PluginManager::errorString() const
{
    Q_D(const PluginManager);
    return d->errorString;
}

Plugin *PluginManager::find(const QString &symbolic) const
{
    Q_D(const PluginManager);
    return d->plugins.value(symbolic);
}

Plugin *PluginManager::findByFile(const QString &filePath) const
{
    Q_D(const PluginManager);
    return d->pluginFiles.value(filePath);
}

PluginInfo PluginManager::pluginInfo(const QString &symbolic) const
{
    Q_D(const PluginManager);
    return d->pluginInfos.value(symbolic);
}

QList<PluginInfo> PluginManager::pluginInfos() const
{
    Q_D(const PluginManager);
    return d->pluginInfos.values();
}

QStringList PluginManager::loadQueue() const
{
    Q_D(const PluginManager);
    return d->loadQueue->queue();
}

QString PluginManager::librarySuffix()
{
    // Chosen by the build, with the suffix the plug-in helper gives the modules it builds.
    return QStringLiteral(ES_PLUGIN_SUFFIX);
}

QFileInfoList PluginManager::libraryFiles(const QDir &dir)
{
    // By suffix, in any case, as the name filter "*" + suffix would select them,
    // without the regular expression a name filter compiles for each directory.
    const QString suffix = librarySuffix();
    QFileInfoList files = listEntries(dir, QDir::Files);
    const auto notLibrary = [&suffix](const QFileInfo &file) {
        return !file.fileName().endsWith(suffix, Qt::CaseInsensitive);
    };
    files.erase(std::remove_if(files.begin(), files.end(), notLibrary), files.end());
    return files;
}

QList<PluginProblem> PluginManager::problems(const QString &name) const
{
    Q_D(const PluginManager);
    Plugin *plugin = d->plugins.value(name);
    if (!plugin)
        plugin = d->findByBaseName(name);
    if (!plugin)
        return d->refusals.value(name, {PluginProblem(PluginProblem::UnknownPlugin, name)});

    const QList<PluginProblem> fileProblems =
            PluginResolver::libraryProblems(plugin->fileInfo(), plugin->metaData(), plugin->loaderErrorString());
    if (!fileProblems.isEmpty())
        return fileProblems;
    switch (plugin->state()) {
    case PluginInfo::Installed: {
        const QList<PluginProblem> found = d->loadQueue->problems(plugin->symbolic());
        return found.isEmpty() ? QList<PluginProblem>{PluginProblem(PluginProblem::NotResolved, name)} : found;
    }
    case PluginInfo::Resolved:
        if (plugin->error() == Plugin::NoActivatorError)
            return {PluginProblem(PluginProblem::NoActivator, name)};
        return {PluginProblem(PluginProblem::NotStarted, name)};
    default: // starting, running or stopping
        return {};
    }
}

QList<PluginCrash> PluginManager::quarantinedPlugins() const
{
    auto *d = const_cast<PluginManagerPrivate *>(d_func());
    d->guardStart();
    QList<PluginCrash> quarantined;
    const QList<PluginCrash> records = d->quarantine.crashes();
    for (const PluginCrash &crash : records) {
        if (!crash.isReleased())
            quarantined << crash;
    }
    return quarantined;
}

bool PluginManager::releasePlugin(const QString &name)
{
    Q_D(PluginManager);
    d->guardStart();
    const int index = d->quarantine.indexOf(name);
    if (index < 0)
        return false;
    const PluginCrash crash = d->quarantine.records.at(index).crash;
    if (!d->quarantine.release(name, nullptr))
        return false;
    ES_DEBUG_IF_SHOWN() << "[PluginManager] > released from quarantine:" << crash.plugin();
    const QFileInfo library(crash.file());
    for (const QString &key : {crash.plugin(), library.completeBaseName(), library.baseName()})
        d->refusals.remove(key);
    // Once the directory has been scanned the library is installed at once, as
    // a new one the watcher finds would be; before that, the scan takes it.
    if (d->scanDone && library.exists())
        d->installFile(library);
    return true;
}

PluginCrash PluginManager::previousCrash() const
{
    auto *d = const_cast<PluginManagerPrivate *>(d_func());
    d->guardStart();
    return d->previousCrash;
}

void PluginManager::install(QDir pluginDir)
{
    Q_D(PluginManager);
    d->installDirectory(pluginDir);
}

void PluginManager::install(QFileInfo fileinfo)
{
    Q_D(PluginManager);
    d->installFile(fileinfo);
}

void PluginManager::uninstall(QString symbolic)
{
    Q_D(PluginManager);
    Plugin *plugin = d->plugins.value(symbolic);
    if (!plugin) {
        d->handleError(PluginManager::NotInstalledError, tr("The plugin: %1 is not installed").arg(symbolic));
        return;
    }
    d->stop(symbolic);
    if (plugin->error() != 0) {
        d->handleError(plugin->error(), plugin->errorString());
        return;
    }
    plugin->deleteLater();
    d->plugins.remove(symbolic);
    // Keyed by file path, so this removes nothing: the file cannot be installed
    // again in this run and findByFile still names the old object.
    d->pluginFiles.remove(symbolic);
    d->pluginInfos.remove(symbolic);
    emit uninstalled(symbolic);
}

void PluginManager::start()
{
    Q_D(PluginManager);
    const QStringList queue = d->loadQueue->queue();
    ES_DEBUG_IF_SHOWN() << "START:" << QtCompat::DebugList{queue};
    for (const QString &name : queue) {
        Plugin *plugin = d->plugins.value(name);
        if (plugin && plugin->state() == PluginInfo::Resolved)
            plugin->start();
    }
}

void PluginManager::stop()
{
    Q_D(PluginManager);
    const QStringList reversed = d->loadQueue->reversed();
    for (const QString &name : reversed)
        d->stopStep(d->plugins.value(name));
}

void PluginManager::start(QString symbolic)
{
    Q_D(PluginManager);
    d->start(symbolic);
}

void PluginManager::stop(QString symbolic)
{
    Q_D(PluginManager);
    d->stop(symbolic);
}

void PluginManager::setPluginStartupPolicy(QString symbolic, PluginFrameworkConfig::StartupPolicy startupPolicy)
{
    Q_D(PluginManager);
    d->context->config->setPluginStartupPolicy(symbolic, startupPolicy);
    auto info = d->pluginInfos.find(symbolic);
    if (info != d->pluginInfos.end())
        info->setStartupPolicy(startupPolicy);
}

void PluginManager::setWatchingPluginDirEnable(bool on)
{
    Q_D(PluginManager);
    d->context->config->setWatchPluginsDirectory(on);
    const QString path = PluginFrameworkConfig::pluginsDir().path();
    if (on)
        d->watcher->addPath(path);
    else
        d->watcher->removePath(path);
}

void PluginManager::pluginStateChanaged(const QString &symbolic, int from, int to)
{
    Q_D(PluginManager);
    d->pluginStateChanaged(symbolic, from, to);
}

void PluginManager::pluginDirectoryChanged(QString dir)
{
    Q_D(PluginManager);
    d->installDirectory(QDir(dir));
}

} // namespace ExtensionSystem
