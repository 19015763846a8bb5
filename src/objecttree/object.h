// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_OBJECT_H
#define EXTENSIONSYSTEM_OBJECT_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class IObjectNotifier;

namespace Internal {
class ObjectPrivate;
}

/*!
    \class ExtensionSystem::Object
    \brief A node of the extension tree, the base of the extension classes.

    ExtensionPoint, ExtensionData, ExtensionHandler and their relatives derive from
    Object. A node has:
    - a parent, or none for a root;
    - ordered children, which it owns: destroying a node deletes its children, and
      destroying a child takes it out of its parent's list;
    - attributes, QVariant values stored under string keys;
    - data roles, integers that name some of the attribute keys, so that data(role)
      reads the attribute roleName(role);
    - notifiers (IObjectNotifier), told of what happens to the node. The node does not
      own them.

    Events are attribute hashes that climb from a node to its parent through
    handleEvent(); a root keeps them and hands them on when it gets a parent.

    Object is not a QObject and has no signals: changes are reported through its own
    virtual hooks (attributeChanged(), childAdded(), aboutRemoveChild()) and through the
    attached notifiers, synchronously. Nothing in it is thread-safe; use a tree from one
    thread at a time. Failures are not logged: refused operations return \c false,
    \c nullptr or nothing. Copying is disabled.
*/
class EXTENSIONSYSTEM_EXPORT Object
{
public:
    /*!
        Constructs a node with no attributes, roles or children. If \a parent is not null,
        the node is added to it with \a parent->addChild(this), and \a parent owns it.

        \note The parent's childAdded() and its notifiers run inside this constructor,
        before any derived part of the new node exists. A derived class whose parent needs
        the full object should be constructed without a parent and added afterwards.
    */
    explicit Object(Object *parent = nullptr);

    /*!
        Destroys the node and all its children. In this order:
        each attached notifier receives IObjectNotifier::aboutDestory() and is detached
        (not deleted); Object::aboutDestory() is called; if the node has a parent, the
        parent's removeChild(Object *) takes it out of the parent's list, so the parent
        and its notifiers hear aboutRemoveChild(); finally the children are deleted in
        list order, and waiting events are dropped.
    */
    virtual ~Object();

    /*!
        Hook called by setAttribute() (and so setData()) after a new or changed \a value
        was stored under \a key, before the notifiers are told. The default does nothing.

        Not called by setAttributeData() or cloneData().
    */
    virtual void attributeChanged(const QString &key, const QVariant &value);

    /*!
        Hook called from the destructor with \a object set to this node. The default does
        nothing.

        \note Because the call is made from Object's own destructor, only this base
        version is ever reached there: an override in a subclass is not called. A subclass
        that must act on destruction does so in its own destructor.
    */
    virtual void aboutDestory(Object *object);

    /*!
        Hook called by addChild() and insertChild() after \a child was listed and its
        parent set, before the notifiers' IObjectNotifier::childAdded(). The default does
        nothing.

        \note When \a child is being constructed with this node as parent, only its Object
        part exists yet.
    */
    virtual void childAdded(Object *child);

    /*!
        Hook called before \a child leaves this node's children through takeChild() or
        removeChild(Object *), after the notifiers' IObjectNotifier::aboutRemoveChild().
        The default does nothing.

        Not called by removeChild(int). Called twice for removeChild(Object *) on a child
        whose parent() is this node, which includes a child that is being destroyed; in
        that case only the Object part of \a child still exists.
    */
    virtual void aboutRemoveChild(Object *child);

    /*!
        Passes \a event, raised by \a source, up the tree.

        The default calls IObjectNotifier::event() on each notifier (their results are
        ignored). Then, if the node has a parent, it calls the parent's handleEvent() with
        the same arguments and returns \c true, whatever the parent returns. A node without
        a parent keeps a copy of the event with \a source and returns \c false; setParent()
        hands the kept events to the new parent, oldest first, with their original source.
        Kept events whose source is a direct child are dropped when that child is taken or
        removed.

        Subclasses override this to consume or stop events. \a source is not owned; it is
        usually the node that raised the event.
    */
    virtual bool handleEvent(const QHash<QString, QVariant> &event, Object *source);

    /*!
        Returns the parent node, or \c nullptr for a root.

        \note takeChild() leaves this value unchanged: a taken child still names its old
        parent here until setParent() is called on it.
    */
    Object *parent() const;

    /*!
        Returns the number of entries in the list of children. A child listed twice (see
        insertChild()) counts twice.
    */
    int childCount() const;

    /*!
        Returns the child at position \a index, or \c nullptr when \a index is out of
        range. The child stays owned by this node.
    */
    Object *childAt(int index) const;

    /*!
        Returns a copy of the list of children, in order. The children stay owned by this
        node.
        \sa childList()
    */
    QList<Object *> children() const;

    /*!
        Returns the position of the first entry for \a child in the list of children, or
        -1 when it is not listed here.
    */
    int childIndexOf(Object *child);

    /*!
        Appends \a child to the children of this node, which takes ownership of it.

        Returns \c false and does nothing if \a child is null, is this node, or is already
        listed here. Otherwise it runs \a child->setParent(this), which takes the child
        out of its old parent's list and hands the child's waiting events to this node,
        appends it, calls childAdded() and then IObjectNotifier::childAdded() on each
        notifier, and returns \c true.

        \warning There is no check for cycles: adding an ancestor of this node makes
        find() and handleEvent() recurse without end.
        \sa insertChild(), setParent()
    */
    bool addChild(Object *child);

    /*!
        Inserts \a child at position \a index among the children of this node, which takes
        ownership of it; \a index is clamped to the range 0 to childCount().

        Works like addChild() with one difference: it does not look for \a child in the
        list, so a child that is already listed here is listed a second time. Returns
        \c false only if \a child is null or is this node, \c true otherwise.
    */
    bool insertChild(int index, Object *child);

    /*!
        Removes the child at position \a index and deletes it.

        The notifiers receive IObjectNotifier::aboutRemoveChild() first; this node's own
        aboutRemoveChild() is not called on this path. The entry is removed, the events
        from that child waiting at this node are dropped, the child is deleted, and any
        other entry for it in the list is removed as well.

        Returns \c true when the child was deleted, and \c false when \a index is out of
        range, when the entry was null, or when the child is already being destroyed.
    */
    bool removeChild(int index);

    /*!
        Takes \a child out of this node's children; for an ordinary child it does \b not
        delete it.

        Returns \c false and does nothing if \a child is null, is this node, or is not
        listed here. Otherwise the notifiers and then this node hear aboutRemoveChild(),
        and \a child->setParent(nullptr) runs. For a child whose parent() is this node,
        that takes it out of the list through takeChild() (so aboutRemoveChild() is heard
        a second time); the child stays alive and detached, its parent() is null, the
        caller owns it, and the function returns \c false.

        Only a child still listed here after that step (one whose parent() named another
        node) is removed completely with its waiting events and deleted, and \c true is
        returned; if it is already being destroyed it is only removed, and the result is
        \c false.

        \note Use removeChild(int) or \c delete to destroy a child.
    */
    bool removeChild(Object *child);

    /*!
        Takes the child at position \a index out of the list and returns it; ownership
        passes to the caller. Returns \c nullptr when \a index is out of range.

        The notifiers and then this node hear aboutRemoveChild(), and the events from
        that child waiting at this node are dropped. Other entries for the same child, if
        it was listed twice, stay.

        \warning The child's parent() is left pointing at this node. Give it a new parent
        or call setParent(nullptr) before this node is destroyed: otherwise the child's
        setParent() and destructor reach the destroyed node.
    */
    Object *takeChild(int index);

    /*!
        Sets the parent of this node to \a parent, without listing it among \a parent's
        children.

        Does nothing if \a parent is this node or already the parent. Otherwise the node
        is taken out of the old parent's list with takeChild(), the new parent is stored,
        and each notifier receives IObjectNotifier::parentChanged() with \a parent as
        both arguments. If \a parent is not null, the events waiting at this node are
        handed to \a parent->handleEvent(), oldest first, and forgotten here.

        Called directly, the new parent neither lists nor owns this node (its childCount()
        is unchanged), but events still climb into it; use \a parent->addChild(this) to
        hand over ownership. With \a parent null the node becomes a root owned by the
        caller.
    */
    void setParent(Object *parent);

    /*!
        Returns the value stored under \a key, or an invalid QVariant when there is none.
        \sa data(), attributeContains()
    */
    QVariant attribute(const QString &key) const;

    /*!
        Returns \c true if an attribute is stored under \a key, even when its value is an
        invalid QVariant.
    */
    bool attributeContains(const QString &key) const;

    /*!
        Returns the keys of all attributes, in QHash order (not sorted, not in order of
        insertion).
    */
    QStringList attributes() const;

    /*!
        Returns a copy of all attributes, key to value.
    */
    QHash<QString, QVariant> attributeData() const;

    /*!
        Stores \a value under \a key, inserting or overwriting.

        Returns \c false and does nothing when \a key already holds a value equal to
        \a value (QVariant \c operator==). Otherwise, after storing, it calls
        attributeChanged(), then on each notifier IObjectNotifier::attributeChanged()
        and, if a data role names \a key, IObjectNotifier::dataChanged() with that role;
        it returns \c true. A new key with an invalid QVariant is stored like any value.
    */
    bool setAttribute(const QString &key, const QVariant &value);

    /*!
        Replaces all attributes with \a data. Nobody is notified: neither
        attributeChanged() nor the notifiers are called. The data roles are kept.
        Always returns \c true.
    */
    bool setAttributeData(const QHash<QString, QVariant> &data);

    /*!
        Returns the attribute that \a role names, that is attribute(roleName(role)).
        Returns an invalid QVariant when the role has no key or the attribute is absent.
    */
    QVariant data(int role) const;

    /*!
        Stores \a value in the attribute that \a role names, through setAttribute(), with
        the same notifications. Returns \c false, storing nothing, when the role has no key
        (or an empty one); otherwise the result of setAttribute(), which is \c false for an
        unchanged value.
    */
    bool setData(int role, const QVariant &value);

    /*!
        Returns a copy of the data role table: each role mapped to the attribute key it
        names, in ascending role order.
    */
    QMap<int, QString> dataRoles() const;

    /*!
        Installs data roles: each entry of \a roles maps a role to an attribute key.

        With \a replace \c true the table becomes a copy of \a roles (an empty map clears
        it). With \a replace \c false each entry is inserted, overwriting the same role,
        and other roles stay. Nobody is notified.

        \return \c true if \a roles has at least one entry, whether or not anything
        changed; \c false for an empty map, even when it cleared the table.
    */
    bool setDataRoles(const QMap<int, QString> &roles, bool replace);

    /*!
        Returns the attribute key that \a role names, or an empty string when the role is
        not in the table.
    */
    QString roleName(int role) const;

    /*!
        Returns the lowest role that names the attribute \a key, or -1 when no role
        does.
    */
    int attributeRole(const QString &key) const;

    /*!
        Searches this node and its descendants for the first node whose attribute \a key
        equals \a value, and returns it, or \c nullptr when none matches.

        The search is depth-first in pre-order: this node first, then each child in list
        order with its whole subtree before the next sibling. The node returned is not
        owned by the caller.
    */
    Object *find(const QString &key, const QVariant &value);

    /*!
        Same as find(const QString &, const QVariant &) with the key that \a role names in
        this node's role table; that key is used for the whole subtree. Returns
        \c nullptr when the role has no key.
    */
    Object *find(int role, const QVariant &value);

    /*!
        Copies the attributes and the data role table of \a other over this node's,
        replacing them. Children, parent and notifiers stay, and nobody is notified;
        \a other is not modified and stays owned by its owner.

        Returns \c false when \a other is null or this node, \c true otherwise.
    */
    bool cloneData(Object *other);

    /*!
        Attaches \a notifier to this node; it is called after those attached before it.
        The node does not take ownership: the notifier belongs to whoever created it, is
        never deleted by the node, and detaches itself when destroyed.

        Does nothing if \a notifier is null or already attached here. A notifier watches
        one node at a time: if it was attached to another node, it is detached from that
        node first. Afterwards IObjectNotifier::watchedObject() returns this node.
    */
    void setObjectNotifier(IObjectNotifier *notifier);

    /*!
        Detaches \a notifier from this node and clears its watched node; the notifier is
        not deleted. Does nothing if \a notifier is null or not attached here.
    */
    void unsetObjectNotifier(IObjectNotifier *notifier);

protected:
    /*!
        Constructor for derived classes that enlarge the private data: the node takes
        ownership of \a dd, which must be allocated with \c new and is deleted with the
        node. If \a parent is not null, the node is added to it with addChild(), as in
        Object(Object *).
    */
    Object(Internal::ObjectPrivate &dd, Object *parent);

    /*!
        Returns the list of children itself, for derived classes. Changes made through it
        bypass everything: no hook or notifier is called, parent() of the children is not
        updated, and waiting events are not dropped. Entries in the list are still deleted
        with this node.
        \sa children()
    */
    QList<Object *> &childList();

    /*!
        The private data of the node, owned by it and deleted after the destructor has run
        (which deletes the children). Derived classes reach it through their d_func().
    */
    QScopedPointer<Internal::ObjectPrivate> d_ptr;

private:
    Q_DISABLE_COPY(Object)
    ES_DECLARE_PRIVATE(Object)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_OBJECT_H
