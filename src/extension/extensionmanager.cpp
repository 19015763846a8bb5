// SPDX-License-Identifier: BSD-3-Clause
#include "extensionmanager.h"
#include "extensionmanager_p.h"

#include <event/eventmanager.h>
#include <extension/extensionfileparser.h>
#include <extension/extensionpointadmin.h>
#include <extension/extensionstorage.h>
#include <extension/exttype.h>
#include <core/debugoutput_p.h>
#include <core/pluginframeworkconfig.h>
#include <core/pluginframeworkcontext.h>
#include <core/timelinerecorder.h>

#include <QtCore/QDebug>

namespace ExtensionSystem {
namespace Internal {

ExtensionManagerPrivate::ExtensionManagerPrivate(PluginFrameworkContext *context)
    : frameworkContext(context)
    , extensionPointAdmin(nullptr)
    , extensionFileParser(nullptr)
    , extensionStorage(nullptr)
{ }

ExtensionManagerPrivate::~ExtensionManagerPrivate() = default;

void ExtensionManagerPrivate::initialize()
{
    Q_Q(ExtensionManager);
    extensionStorage = new ExtensionStorage(PluginFrameworkConfig::configDir(), q);
    extensionFileParser = new ExtensionFileParser(extensionStorage, q);
    extensionPointAdmin = new ExtensionPointAdmin(frameworkContext, extensionStorage, q);
    if (frameworkContext && frameworkContext->eventManager)
        frameworkContext->eventManager->registerListener(QStringLiteral("pluginframework.extensionmanager"), this);

    if (frameworkContext)
        extensionFileParser->setTimeline(frameworkContext->timeline);
    QObject::connect(extensionFileParser, &ExtensionFileParser::fileParsed, q,
                     [this](const QString &filepath, const ExtType::Plugin &plugin) {
                         storeAndDispatch(filepath, plugin);
                         fileDone(filepath, true);
                     });
    QObject::connect(extensionFileParser, &ExtensionFileParser::fileFailed, q,
                     [this](const QString &filepath) { fileDone(filepath, false); });
    QObject::connect(extensionPointAdmin, &ExtensionPointAdmin::requestStartingPlugin, q,
                     &ExtensionManager::requestStartingPlugin);
}

void ExtensionManagerPrivate::pluginChanged(const PluginEvent &event)
{
    const int action = event.action();
    const QString symbolic = event.symbolic();
    ES_DEBUG_IF_SHOWN() << "PluginChanged:" << symbolic << " - state:" << event.prevAction() << "->" << action;
    if (symbolic.isEmpty())
        return;
    // Resolved and every later state count as present.
    extensionStorage->updateActivePlugin(symbolic, action > 3);
}

TimelineRecorder *ExtensionManagerPrivate::timeline() const
{
    return frameworkContext ? frameworkContext->timeline.data() : nullptr;
}

quint64 ExtensionManagerPrivate::openScan()
{
    if (scans.isEmpty() || scans.last().closed)
        scans.insert(++lastScan, Scan());
    return scans.lastKey();
}

void ExtensionManagerPrivate::storeAndDispatch(const QString &filepath, const ExtType::Plugin &plugin)
{
    // The store writes a plug-in's rows before the admin hands the same data to
    // the points, so that a point registered during the dispatch finds them.
    {
        const TimelineRecorder::Span span(timeline(), Timeline::StoreWrite, filepath, filepath);
        extensionStorage->writeExtensionPlugin(plugin);
    }
    const TimelineRecorder::Span span(timeline(), Timeline::Dispatch, filepath, filepath);
    extensionPointAdmin->dispatchExtensionData(plugin);
}

void ExtensionManagerPrivate::fileDone(const QString &filepath, bool parsed)
{
    auto waiting = pendingFiles.find(filepath);
    if (waiting == pendingFiles.end())
        return; // parsed outside a scan
    const quint64 id = waiting->takeFirst();
    if (waiting->isEmpty())
        pendingFiles.erase(waiting);
    auto scan = scans.find(id);
    if (scan == scans.end())
        return;
    (parsed ? scan->parsed : scan->failed) << filepath;
    --scan->pending;
    emitIfComplete(id);
}

void ExtensionManagerPrivate::emitIfComplete(quint64 id)
{
    Q_Q(ExtensionManager);
    auto scan = scans.find(id);
    if (scan == scans.end() || !scan->closed || scan->pending > 0)
        return;
    const Scan done = scans.take(id);
    emit q->extensionFilesReady(done.parsed, done.stored, done.failed);
}

ExtensionManager::ExtensionManager(PluginFrameworkContext *context, QObject *parent)
    : QObject(*new ExtensionManagerPrivate(context), parent)
{
    Q_D(ExtensionManager);
    d->initialize();
}

ExtensionManager::~ExtensionManager() = default;

void ExtensionManager::registerExtensionPoint(ExtensionPoint *point)
{
    Q_D(ExtensionManager);
    d->extensionPointAdmin->registerExtensionPoint(point);
}

void ExtensionManager::unregisterExtensionPoint(const QString &id)
{
    Q_D(ExtensionManager);
    d->extensionPointAdmin->unregisterExtensionPoint(id);
}

void ExtensionManager::registerExtensionHandler(ExtensionHandler *handler)
{
    Q_D(ExtensionManager);
    d->extensionPointAdmin->registerExtensionHandler(handler);
}

void ExtensionManager::unregisterExtensionHandler(const QString &id)
{
    Q_D(ExtensionManager);
    d->extensionPointAdmin->unregisterExtensionHandler(id);
}

ExtensionPointAdmin *ExtensionManager::pointAdmin() const
{
    Q_D(const ExtensionManager);
    return d->extensionPointAdmin;
}

ExtensionStorage *ExtensionManager::storage() const
{
    Q_D(const ExtensionManager);
    return d->extensionStorage;
}

void ExtensionManager::parseExtensionFile(QString filepath)
{
    Q_D(ExtensionManager);
    const quint64 scan = d->openScan();
    // false: nothing to parse (missing or unchanged), so the store's rows are handed out.
    if (!d->extensionFileParser->parse(filepath)) {
        {
            const TimelineRecorder::Span span(d->timeline(), Timeline::StoreRead, filepath, filepath);
            d->extensionPointAdmin->dispatchExtensionData(filepath);
        }
        // Looked up again: a point may have run anything during the dispatch.
        auto open = d->scans.find(scan);
        if (open != d->scans.end())
            open->stored << filepath;
        return;
    }
    d->scans[scan].pending += 1;
    d->pendingFiles[filepath] << scan;
}

void ExtensionManager::scanFinished()
{
    Q_D(ExtensionManager);
    const quint64 scan = d->openScan();
    d->scans[scan].closed = true;
    d->emitIfComplete(scan);
}

void ExtensionManager::loadingQueueChanged(QStringList loadingQueue)
{
    Q_D(ExtensionManager);
    d->extensionStorage->setActivePlugins(loadingQueue);
}

} // namespace Internal
} // namespace ExtensionSystem
