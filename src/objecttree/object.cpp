// SPDX-License-Identifier: BSD-3-Clause
#include "object.h"
#include "object_p.h"

#include "iobjectnotifier.h"

#include <utility>

namespace ExtensionSystem {

using namespace Internal;

namespace {

// Runs call on every notifier of a copy of the list, so that a notifier that attaches
// or detaches during the pass does not disturb it.
template<typename Call> void notifyAll(const QList<IObjectNotifier *> notifiers, Call call)
{
    for (IObjectNotifier *notifier : notifiers) {
        if (notifier)
            call(notifier);
    }
}

} // namespace

namespace Internal {

ObjectPrivate::ObjectPrivate()
    : q(nullptr)
    , parent(nullptr)
    , wasDeleted(false)
    , q_ptr(q)
{ }

ObjectPrivate::~ObjectPrivate()
{
    // Each child leaves the list before it is deleted, so a child listed twice is
    // deleted once, and a child that deletes a sibling is not followed afterwards.
    while (!children.isEmpty()) {
        Object *child = children.takeFirst();
        children.removeAll(child);
        if (!child)
            continue;
        // This node is no longer a full object: the child must not call back into it.
        if (child->d_func()->parent == q)
            child->d_func()->parent = nullptr;
        delete child;
    }
}

void ObjectPrivate::removePendingEvents(Object *source)
{
    for (int i = pendingEvents.size() - 1; i >= 0; --i) {
        if (pendingEvents.at(i).source == source)
            pendingEvents.removeAt(i);
    }
}

void ObjectPrivate::removeChildEntry(int index, Object *child)
{
    // A notification may have changed the list since index was valid.
    if (index < children.size() && children.at(index) == child)
        children.removeAt(index);
    else
        children.removeOne(child);
}

} // namespace Internal

Object::Object(Object *parent)
    : Object(*new ObjectPrivate, parent)
{ }

Object::Object(ObjectPrivate &dd, Object *parent)
    : d_ptr(&dd)
{
    dd.q = this;
    if (parent)
        parent->addChild(this);
}

Object::~Object()
{
    Q_D(Object);
    d->wasDeleted = true;

    notifyAll(d->notifiers, [this](IObjectNotifier *notifier) {
        notifier->aboutDestory(this);
        unsetObjectNotifier(notifier);
    });

    // Only the base version is reachable here; subclasses act in their own destructors.
    aboutDestory(this);

    if (d->parent)
        d->parent->removeChild(this);

    // d_ptr goes next, and with it the children.
}

void Object::attributeChanged(const QString &key, const QVariant &value)
{
    Q_UNUSED(key)
    Q_UNUSED(value)
}

void Object::aboutDestory(Object *object)
{
    Q_UNUSED(object)
}

void Object::childAdded(Object *child)
{
    Q_UNUSED(child)
}

void Object::aboutRemoveChild(Object *child)
{
    Q_UNUSED(child)
}

bool Object::handleEvent(const QHash<QString, QVariant> &event, Object *source)
{
    Q_D(Object);
    notifyAll(d->notifiers, [&event](IObjectNotifier *notifier) { notifier->event(event); });

    if (d->parent) {
        d->parent->handleEvent(event, source);
        return true;
    }
    d->pendingEvents.append(ObjectPrivate::PendingEvent{source, event});
    return false;
}

Object *Object::parent() const
{
    Q_D(const Object);
    return d->parent;
}

int Object::childCount() const
{
    Q_D(const Object);
    return d->children.size();
}

Object *Object::childAt(int index) const
{
    Q_D(const Object);
    return d->children.value(index, nullptr);
}

QList<Object *> Object::children() const
{
    Q_D(const Object);
    return d->children;
}

QList<Object *> &Object::childList()
{
    Q_D(Object);
    return d->children;
}

int Object::childIndexOf(Object *child)
{
    Q_D(Object);
    return d->children.indexOf(child);
}

bool Object::addChild(Object *child)
{
    Q_D(Object);
    if (!child || child == this || d->children.contains(child))
        return false;

    child->setParent(this);
    d->children.append(child);

    childAdded(child);
    notifyAll(d->notifiers, [child](IObjectNotifier *notifier) { notifier->childAdded(child); });
    return true;
}

bool Object::insertChild(int index, Object *child)
{
    Q_D(Object);
    // Unlike addChild, a child already listed here is listed a second time.
    if (!child || child == this)
        return false;

    child->setParent(this);
    d->children.insert(qBound(0, index, d->children.size()), child);

    childAdded(child);
    notifyAll(d->notifiers, [child](IObjectNotifier *notifier) { notifier->childAdded(child); });
    return true;
}

bool Object::removeChild(int index)
{
    Q_D(Object);
    if (index < 0 || index >= d->children.size())
        return false;

    Object *child = d->children.at(index);
    // The node's own aboutRemoveChild is not called on this path.
    notifyAll(d->notifiers, [child](IObjectNotifier *notifier) { notifier->aboutRemoveChild(child); });

    d->removeChildEntry(index, child);
    if (!child)
        return false;

    // Every waiting event of the child goes, so none is handed on later with a source
    // that no longer exists.
    d->removePendingEvents(child);
    if (child->d_func()->wasDeleted)
        return false;
    delete child;
    // A child listed twice here takes its other entries along only when its parent
    // field names this node; after a direct setParent it does not, and the entries
    // left would point at freed memory. Only the pointer values are compared.
    d->children.removeAll(child);
    return true;
}

bool Object::removeChild(Object *child)
{
    Q_D(Object);
    if (!child || child == this || !d->children.contains(child))
        return false;

    notifyAll(d->notifiers, [child](IObjectNotifier *notifier) { notifier->aboutRemoveChild(child); });
    aboutRemoveChild(child);

    // For a child whose parent is this node, this takes it out of the list (told a
    // second time through takeChild): it stays alive and detached, and the call ends.
    child->setParent(nullptr);

    if (!d->children.contains(child))
        return false;

    d->children.removeAll(child);
    d->removePendingEvents(child);
    // A child that is being destroyed asks its parent to let it go; it must not be
    // deleted again from here.
    if (child->d_func()->wasDeleted)
        return false;
    delete child;
    return true;
}

Object *Object::takeChild(int index)
{
    Q_D(Object);
    if (index < 0 || index >= d->children.size())
        return nullptr;

    Object *child = d->children.at(index);
    notifyAll(d->notifiers, [child](IObjectNotifier *notifier) { notifier->aboutRemoveChild(child); });
    aboutRemoveChild(child);

    d->removeChildEntry(index, child);
    d->removePendingEvents(child);

    // The child's parent field is left as it is: setParent, the usual caller, sets it.
    return child;
}

void Object::setParent(Object *parent)
{
    Q_D(Object);
    if (parent == this || parent == d->parent)
        return;

    if (Object *oldParent = d->parent)
        oldParent->takeChild(oldParent->childIndexOf(this));

    d->parent = parent;

    // The old parent is no longer known here: both arguments carry the new one.
    notifyAll(d->notifiers, [parent](IObjectNotifier *notifier) { notifier->parentChanged(parent, parent); });

    if (parent && !d->pendingEvents.isEmpty()) {
        // Taken out first, so that a re-entrant setParent cannot hand them on twice.
        const QList<ObjectPrivate::PendingEvent> pending = std::exchange(d->pendingEvents, {});
        for (const ObjectPrivate::PendingEvent &entry : pending)
            parent->handleEvent(entry.event, entry.source);
    }
}

QVariant Object::attribute(const QString &key) const
{
    Q_D(const Object);
    return d->attributes.value(key);
}

bool Object::attributeContains(const QString &key) const
{
    Q_D(const Object);
    return d->attributes.contains(key);
}

QStringList Object::attributes() const
{
    Q_D(const Object);
    return d->attributes.keys();
}

QHash<QString, QVariant> Object::attributeData() const
{
    Q_D(const Object);
    return d->attributes;
}

bool Object::setAttribute(const QString &key, const QVariant &value)
{
    Q_D(Object);
    const auto it = d->attributes.constFind(key);
    if (it != d->attributes.constEnd() && it.value() == value)
        return false;

    d->attributes.insert(key, value);

    attributeChanged(key, value);
    notifyAll(d->notifiers, [this, &key, &value](IObjectNotifier *notifier) {
        notifier->attributeChanged(key, value);
        const int role = attributeRole(key);
        if (role >= 0)
            notifier->dataChanged(role, value);
    });
    return true;
}

bool Object::setAttributeData(const QHash<QString, QVariant> &data)
{
    Q_D(Object);
    d->attributes = data;
    return true;
}

QVariant Object::data(int role) const
{
    const QString key = roleName(role);
    if (key.isEmpty())
        return QVariant();
    return attribute(key);
}

bool Object::setData(int role, const QVariant &value)
{
    const QString key = roleName(role);
    if (key.isEmpty())
        return false;
    return setAttribute(key, value);
}

QMap<int, QString> Object::dataRoles() const
{
    Q_D(const Object);
    return d->roles;
}

bool Object::setDataRoles(const QMap<int, QString> &roles, bool replace)
{
    Q_D(Object);
    if (replace) {
        d->roles = roles;
    } else {
        for (auto it = roles.constBegin(); it != roles.constEnd(); ++it)
            d->roles.insert(it.key(), it.value());
    }
    return !roles.isEmpty();
}

QString Object::roleName(int role) const
{
    Q_D(const Object);
    return d->roles.value(role);
}

int Object::attributeRole(const QString &key) const
{
    Q_D(const Object);
    const QMap<int, QString> &roles = d->roles;
    for (auto it = roles.constBegin(); it != roles.constEnd(); ++it) {
        if (it.value() == key)
            return it.key();
    }
    return -1;
}

Object *Object::find(const QString &key, const QVariant &value)
{
    Q_D(Object);
    const auto it = d->attributes.constFind(key);
    if (it != d->attributes.constEnd() && it.value() == value)
        return this;

    const QList<Object *> children = d->children;
    for (Object *child : children) {
        if (!child)
            continue;
        if (Object *found = child->find(key, value))
            return found;
    }
    return nullptr;
}

Object *Object::find(int role, const QVariant &value)
{
    const QString key = roleName(role);
    if (key.isEmpty())
        return nullptr;
    return find(key, value);
}

bool Object::cloneData(Object *other)
{
    Q_D(Object);
    if (!other || other == this)
        return false;
    d->attributes = other->d_func()->attributes;
    d->roles = other->d_func()->roles;
    return true;
}

void Object::setObjectNotifier(IObjectNotifier *notifier)
{
    Q_D(Object);
    if (!notifier || d->notifiers.contains(notifier))
        return;

    d->notifiers.append(notifier);

    if (notifier->object == this)
        return;
    // A notifier watches one node at a time: it leaves the one it had.
    if (notifier->object)
        notifier->object->unsetObjectNotifier(notifier);
    notifier->object = this;
}

void Object::unsetObjectNotifier(IObjectNotifier *notifier)
{
    Q_D(Object);
    if (!notifier || !d->notifiers.contains(notifier))
        return;

    d->notifiers.removeAll(notifier);

    if (Object *watched = notifier->object) {
        watched->unsetObjectNotifier(notifier);
        notifier->object = nullptr;
    }
}

} // namespace ExtensionSystem
