// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_OBJECT_P_H
#define EXTENSIONSYSTEM_OBJECT_P_H

#include "object.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class IObjectNotifier;

namespace Internal {

// Data of an Object. Derived classes enlarge it; its destructor deletes the children.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ObjectPrivate
{
public:
    // An event that reached a node without a parent, kept for the parent it gets later.
    struct PendingEvent
    {
        Object *source;
        QHash<QString, QVariant> event;
    };

    ObjectPrivate();
    virtual ~ObjectPrivate();

    void removePendingEvents(Object *source);
    void removeChildEntry(int index, Object *child);

    Object *q;
    Object *parent;
    QList<Object *> children;
    QHash<QString, QVariant> attributes;
    QMap<int, QString> roles;
    QList<IObjectNotifier *> notifiers;
    QList<PendingEvent> pendingEvents;

    // Set when the node's destructor starts, so that it is never deleted a second time
    // through a duplicate entry in its parent's children.
    bool wasDeleted;

    // The name Q_Q and ES_DECLARE_PUBLIC expect in the privates of derived classes.
    Object *&q_ptr;

private:
    Q_DISABLE_COPY(ObjectPrivate)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_OBJECT_P_H
