// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONPOINT_P_H
#define EXTENSIONSYSTEM_EXTENSIONPOINT_P_H

#include "extensionpoint.h"

#include <objecttree/iobjectnotifier.h>
#include <objecttree/object_p.h>

#include <QtCore/QHash>

namespace ExtensionSystem {
namespace Internal {

class ExtensionPointPrivate;

// Watches one waiting handler. A notifier watches one node at a time, so each
// waiting handler gets its own: a destroyed one is forgotten whatever waits beside it.
class WaitingHandlerNotifier : public IObjectNotifier
{
public:
    WaitingHandlerNotifier(ExtensionPointPrivate *point, const QString &id)
        : point(point)
        , id(id)
    { }
    void aboutDestory(Object *object) override;

    ExtensionPointPrivate *point;
    QString id;
};

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionPointPrivate : public ObjectPrivate
{
public:
    ExtensionPointPrivate();
    ~ExtensionPointPrivate() override;

    void addPendingHandler(ExtensionHandler *handler);
    ExtensionHandler *takePendingHandler(const QString &id);
    void attachPendingHandler(ExtensionData *data);
    bool handleChildAdded(const QHash<QString, QVariant> &event, Object *source);

    QHash<QString, ExtensionHandler *> pendingHandlers;
    QHash<QString, WaitingHandlerNotifier *> pendingNotifiers;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONPOINT_P_H
