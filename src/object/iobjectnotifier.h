// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IOBJECTNOTIFIER_H
#define EXTENSIONSYSTEM_IOBJECTNOTIFIER_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class Object;

// Observer of one Object at a time. Every slot does nothing by default, so a
// subclass overrides only what it wants. It detaches itself when destroyed.
class EXTENSIONSYSTEM_EXPORT IObjectNotifier
{
public:
    IObjectNotifier();
    virtual ~IObjectNotifier();

    virtual void parentChanged(Object *oldParent, Object *newParent);
    virtual void attributeChanged(const QString &key, const QVariant &value);
    virtual void dataChanged(int role, const QVariant &value);
    virtual void childAdded(Object *child);
    virtual void aboutRemoveChild(Object *child);
    virtual void aboutDestory(Object *object);
    virtual bool event(const QHash<QString, QVariant> &event);

    // The node being watched, null when free.
    Object *watchedObject() const;

protected:
    // Kept by Object::setObjectNotifier and Object::unsetObjectNotifier.
    Object *object;

private:
    Q_DISABLE_COPY(IObjectNotifier)
    friend class Object;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_IOBJECTNOTIFIER_H
