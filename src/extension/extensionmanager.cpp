// SPDX-License-Identifier: BSD-3-Clause
#include "extensionmanager.h"
#include "extensionmanager_p.h"

#include <event/eventmanager.h>
#include <extension/extensionfileparser.h>
#include <extension/extensionpointadmin.h>
#include <extension/extensionstorage.h>
#include <extension/exttype.h>
#include <framework/debugoutput_p.h>
#include <framework/pluginframeworkconfig.h>
#include <framework/pluginframeworkcontext.h>

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

    // The store writes a plug-in's rows before the admin hands the same data to
    // the points, so that a point registered during the dispatch finds them.
    QObject::connect(extensionFileParser, &ExtensionFileParser::extensionFound, extensionStorage,
                     &ExtensionStorage::writeExtensionPlugin);
    QObject::connect(extensionFileParser, &ExtensionFileParser::extensionFound, extensionPointAdmin,
                     QOverload<ExtType::Plugin>::of(&ExtensionPointAdmin::dispatchExtensionData));
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
    // false: nothing to parse (missing or unchanged), so the store's rows are handed out.
    if (!d->extensionFileParser->parse(filepath))
        d->extensionPointAdmin->dispatchExtensionData(filepath);
}

void ExtensionManager::loadingQueueChanged(QStringList loadingQueue)
{
    Q_D(ExtensionManager);
    d->extensionStorage->setActivePlugins(loadingQueue);
}

} // namespace Internal
} // namespace ExtensionSystem
