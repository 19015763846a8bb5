// SPDX-License-Identifier: BSD-3-Clause
#include "iobjectnotifier.h"

#include "object.h"

namespace ExtensionSystem {

IObjectNotifier::IObjectNotifier()
    : object(nullptr)
{ }

IObjectNotifier::~IObjectNotifier()
{
    // The node must not keep a pointer to a notifier that is gone.
    if (object)
        object->unsetObjectNotifier(this);
}

void IObjectNotifier::parentChanged(Object *oldParent, Object *newParent)
{
    Q_UNUSED(oldParent)
    Q_UNUSED(newParent)
}

void IObjectNotifier::attributeChanged(const QString &key, const QVariant &value)
{
    Q_UNUSED(key)
    Q_UNUSED(value)
}

void IObjectNotifier::dataChanged(int role, const QVariant &value)
{
    Q_UNUSED(role)
    Q_UNUSED(value)
}

void IObjectNotifier::childAdded(Object *child)
{
    Q_UNUSED(child)
}

void IObjectNotifier::aboutRemoveChild(Object *child)
{
    Q_UNUSED(child)
}

void IObjectNotifier::aboutDestory(Object *object)
{
    Q_UNUSED(object)
}

bool IObjectNotifier::event(const QHash<QString, QVariant> &event)
{
    Q_UNUSED(event)
    return false;
}

Object *IObjectNotifier::watchedObject() const
{
    return object;
}

} // namespace ExtensionSystem
