// SPDX-License-Identifier: BSD-3-Clause
#include "extensionpointadmin.h"

#include <event/eventmanager.h>
#include <event/extensionevent.h>
#include <extension/extensionconstance.h>
#include <extension/extensionhandler.h>
#include <extension/extensionpoint.h>
#include <extension/extensionstorage.h>
#include <core/pluginframeworkcontext.h>
#include <objecttree/iobjectnotifier.h>

namespace ExtensionSystem {
namespace Internal {

class TableWatcher : public IObjectNotifier
{
public:
    explicit TableWatcher(ExtensionPointAdmin *admin)
        : admin(admin)
    { }
    void aboutDestory(Object *object) override { admin->forget(object); }

    ExtensionPointAdmin *admin;
};

ExtensionPointAdmin::ExtensionPointAdmin(PluginFrameworkContext *context, ExtensionStorage *storage, QObject *parent)
    : QObject(parent)
    , Object(nullptr)
    , frameworkContext(context)
    , extensionStorage(storage)
{ }

ExtensionPointAdmin::~ExtensionPointAdmin()
{
    // The points still registered go with the Object base, after this object's
    // own members: nothing may call back into the tables then.
    qDeleteAll(watchers);
    watchers.clear();
}

void ExtensionPointAdmin::watch(Object *object)
{
    if (!object || watchers.contains(object))
        return;
    auto *watcher = new TableWatcher(this);
    watchers.insert(object, watcher);
    object->setObjectNotifier(watcher);
}

void ExtensionPointAdmin::releaseIfUnused(Object *object)
{
    for (ExtensionPoint *point : qAsConst(pointTable)) {
        if (point == object)
            return;
    }
    for (ExtensionPoint *point : qAsConst(handlerPoints)) {
        if (point == object)
            return;
    }
    for (ExtensionHandler *handler : qAsConst(waitingHandlers)) {
        if (handler == object)
            return;
    }
    delete watchers.take(object); // detaches from the object
}

void ExtensionPointAdmin::forget(Object *object)
{
    // Compared as addresses only: the object is being destroyed.
    auto dropFrom = [object](auto &table) {
        for (auto it = table.begin(); it != table.end();) {
            if (static_cast<Object *>(it.value()) == object)
                it = table.erase(it);
            else
                ++it;
        }
    };
    dropFrom(pointTable);
    dropFrom(handlerPoints);
    dropFrom(waitingHandlers);
    delete watchers.take(object);
}

void ExtensionPointAdmin::publish(int action, ExtensionPoint *point)
{
    if (frameworkContext && frameworkContext->eventManager) {
        frameworkContext->eventManager->publish(
                ExtensionEvent(ExtensionEvent::Action(action), point->plugin(), point->id()));
    }
}

void ExtensionPointAdmin::registerExtensionPoint(ExtensionPoint *point)
{
    if (!point || point->id().isEmpty())
        return;
    Object::addChild(point);
    const QString id = point->id();
    if (ExtensionPoint *previous = pointTable.value(id)) {
        pointTable.remove(id);
        releaseIfUnused(previous);
    }
    pointTable.insert(id, point);
    watch(point);
    publish(ExtensionEvent::PointRegistered, point);

    // Waiting handlers go into the point before its items appear, so that the items pick them up.
    if (waitingHandlers.contains(id)) {
        const QList<ExtensionHandler *> handlers = waitingHandlers.values(id);
        waitingHandlers.remove(id);
        for (ExtensionHandler *handler : handlers) {
            releaseIfUnused(handler);
            point->registerExtensionHandler(handler);
        }
    }
    const QStringList texts =
            extensionStorage ? extensionStorage->extensionTexts(point->plugin(), point->id()) : QStringList();
    point->updateExtensionText(texts);
}

void ExtensionPointAdmin::unregisterExtensionPoint(const QString &id)
{
    if (id.isEmpty() || pointTable.isEmpty())
        return;
    ExtensionPoint *point = pointTable.value(id);
    if (!point)
        return;
    // Detaches the point without destroying it; aboutRemoveChild runs twice on the way.
    Object::removeChild(point);
    const QList<ExtensionHandler *> dropped = waitingHandlers.values(point->id());
    waitingHandlers.remove(point->id());
    for (ExtensionHandler *handler : dropped)
        releaseIfUnused(handler);
    releaseIfUnused(point);
}

void ExtensionPointAdmin::registerExtensionHandler(ExtensionHandler *handler)
{
    if (!handler || handler->extPoint().isEmpty() || handler->id().isEmpty())
        return;
    ExtensionPoint *point = findExtensionPoint(handler->extPoint());
    if (!point) {
        waitingHandlers.insert(handler->extPoint(), handler);
        watch(handler);
        return;
    }
    if (ExtensionPoint *previous = handlerPoints.value(handler->id())) {
        handlerPoints.remove(handler->id());
        releaseIfUnused(previous);
    }
    handlerPoints.insert(handler->id(), point);
    watch(point);
    point->registerExtensionHandler(handler);
}

void ExtensionPointAdmin::unregisterExtensionHandler(const QString &id)
{
    if (handlerPoints.isEmpty())
        return;
    ExtensionPoint *point = handlerPoints.value(id);
    if (!point)
        return;
    point->unregisterExtensionHandler(id);
    handlerPoints.remove(id);
    releaseIfUnused(point);
}

ExtensionPoint *ExtensionPointAdmin::findExtensionPoint(const QString &id)
{
    for (int i = 0; i < childCount(); ++i) {
        auto *point = dynamic_cast<ExtensionPoint *>(childAt(i));
        if (point && point->id().compare(id, Qt::CaseInsensitive) == 0)
            return point;
    }
    return nullptr;
}

bool ExtensionPointAdmin::handleEvent(const QHash<QString, QVariant> &event, Object *)
{
    if (event.value(ExtensionConstance::EXT_EVENT_TYPE).toString() == ExtensionConstance::EXT_EVENT_TYPE_START_PLUGIN)
        emit requestStartingPlugin(event.value(ExtensionConstance::EXT_EVENT_PLUGIN).toString());
    return true;
}

void ExtensionPointAdmin::aboutRemoveChild(Object *child)
{
    auto *point = dynamic_cast<ExtensionPoint *>(child);
    if (!point)
        return;
    publish(ExtensionEvent::PointUnregistered, point);
    pointTable.remove(point->id());
}

void ExtensionPointAdmin::dispatchExtensionData(ExtType::Plugin plugin)
{
    if (plugin.data.isEmpty())
        return;
    for (const ExtType::Data &item : qAsConst(plugin.data)) {
        if (ExtensionPoint *point = pointTable.value(item.point))
            point->updateExtensionText(QStringList(item.data));
    }
}

void ExtensionPointAdmin::dispatchExtensionData(QString filepath)
{
    const QString relative = ExtType::storedPath(filepath.trimmed());
    if (relative.isEmpty() || !extensionStorage)
        return;
    const QMultiHash<QString, QString> texts = extensionStorage->extensionTextsOfFile(relative);
    // One call per row, each with all the texts of that point: points must cope with repeats.
    const QList<QString> keys = texts.keys();
    for (const QString &key : keys) {
        if (ExtensionPoint *point = pointTable.value(key))
            point->updateExtensionText(texts.values(key));
    }
}

} // namespace Internal
} // namespace ExtensionSystem
