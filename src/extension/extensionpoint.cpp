// SPDX-License-Identifier: BSD-3-Clause
#include "extensionpoint.h"
#include "extensionpoint_p.h"

#include <extension/extensionconstance.h>
#include <extension/extensiondata.h>
#include <extension/extensionhandler.h>
#include <core/debugoutput_p.h>
#include <core/qtcompat_p.h>

#include <QtCore/QDebug>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

void WaitingHandlerNotifier::aboutDestory(Object *)
{
    // Deletes this notifier, which detaches it from the dying handler.
    point->takePendingHandler(id);
}

ExtensionPointPrivate::ExtensionPointPrivate() { }

ExtensionPointPrivate::~ExtensionPointPrivate()
{
    qDeleteAll(pendingNotifiers);
}

void ExtensionPointPrivate::addPendingHandler(ExtensionHandler *handler)
{
    const QString id = handler->id();
    auto *notifier = new WaitingHandlerNotifier(this, id);
    pendingHandlers.insert(id, handler);
    pendingNotifiers.insert(id, notifier);
    handler->setObjectNotifier(notifier);
}

ExtensionHandler *ExtensionPointPrivate::takePendingHandler(const QString &id)
{
    // Notifier off and entry out before anything else runs: the caller may
    // attach the handler, which can replay a call that re-enters the point.
    delete pendingNotifiers.take(id);
    return pendingHandlers.take(id);
}

void ExtensionPointPrivate::attachPendingHandler(ExtensionData *data)
{
    if (!data)
        return;
    if (pendingHandlers.value(data->id())) {
        ExtensionHandler *handler = takePendingHandler(data->id());
        data->setExtensionHandler(handler);
    }
    for (int i = 0; i < data->childCount(); ++i)
        attachPendingHandler(dynamic_cast<ExtensionData *>(data->childAt(i)));
}

bool ExtensionPointPrivate::handleChildAdded(const QHash<QString, QVariant> &event, Object *source)
{
    if (event.value(ExtensionConstance::EXT_EVENT_TYPE).toString() != ExtensionConstance::EXT_EVENT_TYPE_CHILD_ADDED
        || !source)
        return false;
    auto *child = dynamic_cast<ExtensionData *>(source);
    if (!child)
        return false;
    if (pendingHandlers.value(child->id())) {
        ExtensionHandler *handler = takePendingHandler(child->id());
        child->setExtensionHandler(handler);
    }
    return true;
}

} // namespace Internal

ExtensionPoint::ExtensionPoint(Object *parent)
    : Object(*new ExtensionPointPrivate, parent)
{ }

ExtensionPoint::ExtensionPoint(const QString &id, const QString &plugin, Object *parent)
    : Object(*new ExtensionPointPrivate, parent)
{
    setAttribute(ExtensionConstance::POINT_ID, id);
    setAttribute(ExtensionConstance::POINT_PLUGIN, plugin);
}

ExtensionPoint::ExtensionPoint(ExtensionPointPrivate &dd, Object *parent)
    : Object(dd, parent)
{ }

ExtensionPoint::~ExtensionPoint() = default;

QString ExtensionPoint::id() const
{
    return attribute(ExtensionConstance::POINT_ID).toString();
}

QString ExtensionPoint::plugin() const
{
    return attribute(ExtensionConstance::POINT_PLUGIN).toString();
}

ExtensionData *ExtensionPoint::extensionData(const QString &id)
{
    return dynamic_cast<ExtensionData *>(find(ExtensionConstance::DATA_ID, id));
}

void ExtensionPoint::registerExtensionHandler(ExtensionHandler *handler)
{
    Q_D(ExtensionPoint);
    if (!handler || handler->id().isEmpty())
        return;
    if (ExtensionData *data = extensionData(handler->id())) {
        data->setExtensionHandler(handler);
        return;
    }
    // A second handler for an id that already waits is refused; the first one stays.
    if (!d->pendingHandlers.contains(handler->id()))
        d->addPendingHandler(handler);
}

void ExtensionPoint::unregisterExtensionHandler(const QString &id)
{
    Q_D(ExtensionPoint);
    if (id.isEmpty())
        return;
    if (ExtensionData *data = extensionData(id))
        data->setExtensionHandler(nullptr);
    if (d->pendingHandlers.isEmpty())
        return;
    d->takePendingHandler(id);
}

void ExtensionPoint::updateExtensionText(const QStringList &text)
{
    Q_D(ExtensionPoint);
    ES_DEBUG_IF_SHOWN() << "ExtensionPointPrivate::updateExtensionText >" << id() << "\n\t>"
                        << QtCompat::DebugList{text};
    if (text.isEmpty())
        return;
    const QList<ExtensionData *> items = parseExtensionText(text);
    for (int i = 0; i < items.size(); ++i) {
        ExtensionData *item = items.at(i);
        if (!item)
            continue;
        addChild(item);
        d->attachPendingHandler(item);
    }
}

bool ExtensionPoint::handleEvent(const QHash<QString, QVariant> &event, Object *source)
{
    Q_D(ExtensionPoint);
    if (d->handleChildAdded(event, source))
        return true;
    return Object::handleEvent(event, source);
}

} // namespace ExtensionSystem
