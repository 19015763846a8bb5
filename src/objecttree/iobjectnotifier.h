// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IOBJECTNOTIFIER_H
#define EXTENSIONSYSTEM_IOBJECTNOTIFIER_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class Object;

/*!
    \class ExtensionSystem::IObjectNotifier
    \brief Observer of one Object at a time.

    Attach a notifier with Object::setObjectNotifier(); the node then calls the virtual
    functions below when its parent, attributes or children change, when an event passes
    it, and when it is destroyed. Every function does nothing by default, so a subclass
    overrides only what it wants.

    A notifier watches one node at a time: attaching it to a second node detaches it from
    the first. The node never owns or deletes its notifiers; whoever creates a notifier
    owns it, and it detaches itself from its node when destroyed. When the watched node is
    destroyed, the notifier receives aboutDestory() and is detached, and stays alive.

    All calls are made synchronously on the thread that changes the node; nothing here is
    thread-safe.

    \sa Object::setObjectNotifier(), Object::unsetObjectNotifier()
*/
class EXTENSIONSYSTEM_EXPORT IObjectNotifier
{
public:
    /*!
        Constructs a free notifier that watches no node.
    */
    IObjectNotifier();

    /*!
        Destroys the notifier. If it still watches a node, it first detaches itself with
        Object::unsetObjectNotifier(), so the node keeps no pointer to it.
    */
    virtual ~IObjectNotifier();

    /*!
        Called after the watched node's parent was set with Object::setParent() (also
        through Object::addChild(), Object::insertChild() and Object::removeChild()).
        The default does nothing.

        \note The old parent is no longer known when this is called: both \a oldParent
        and \a newParent carry the new parent, which is null when the node was detached.
    */
    virtual void parentChanged(Object *oldParent, Object *newParent);
    /*!
        Called after Object::setAttribute() (or Object::setData()) stored a new or changed
        \a value under \a key on the watched node. The default does nothing.

        Not called by Object::setAttributeData() or Object::cloneData().
        \sa dataChanged()
    */
    virtual void attributeChanged(const QString &key, const QVariant &value);
    /*!
        Called right after attributeChanged() when the changed attribute has a data role:
        \a role is the lowest role that names the attribute's key, \a value the new value.
        The default does nothing.
        \sa Object::attributeRole()
    */
    virtual void dataChanged(int role, const QVariant &value);
    /*!
        Called after \a child was appended or inserted into the watched node's children by
        Object::addChild() or Object::insertChild(). The default does nothing.

        \note When the child is constructed with the watched node as its parent, this runs
        inside the child's constructor, before any derived part of \a child exists.
    */
    virtual void childAdded(Object *child);
    /*!
        Called before \a child leaves the watched node's children, through
        Object::takeChild(), Object::removeChild() or Object::setParent() on the child.
        The default does nothing.

        \note Object::removeChild(Object *) on a child whose parent is the watched node,
        and the destruction of such a child, call this twice. When the child is being
        destroyed, only its Object part still exists.
    */
    virtual void aboutRemoveChild(Object *child);
    /*!
        Called when the watched node \a object is being destroyed, from Object's destructor;
        the notifier is detached right after this returns. The default does nothing.

        \warning Any derived part of \a object has already been destroyed at this point;
        use it only as an Object, or just as a key.
    */
    virtual void aboutDestory(Object *object);
    /*!
        Called when an \a event (an attribute hash) passes the watched node in
        Object::handleEvent(), before it goes on to the node's parent or is kept for a
        later parent. The default returns false.

        \return ignored by Object::handleEvent(): a notifier cannot stop an event.
    */
    virtual bool event(const QHash<QString, QVariant> &event);

    /*!
        Returns the node this notifier is attached to, or \c nullptr when it watches
        none. The node is not owned by the notifier.
    */
    Object *watchedObject() const;

protected:
    /*!
        The watched node, or \c nullptr; the same value as watchedObject(). Set by
        Object::setObjectNotifier() and cleared by Object::unsetObjectNotifier(); a
        subclass should only read it. Not owned.
    */
    Object *object;

private:
    Q_DISABLE_COPY(IObjectNotifier)
    friend class Object;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_IOBJECTNOTIFIER_H
