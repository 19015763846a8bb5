// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLER_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLER_H

#include "../extensionsystem_global.h"

#include "../objecttree/object.h"

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionData;

namespace Internal {
class ExtensionHandlerPrivate;
}

/*!
    The implementing side of one extension: registered by the plug-in that
    supplies it and matched by id to the data item under the point it names.

    A plug-in subclasses ExtensionHandler, implements active() and dataChanged(),
    creates an instance with the id of the ExtensionData item it implements and the
    id of the point that holds the item (extPoint()), and registers it with
    PluginContext::registerExtensionHandler(). The handler and the item meet by id
    whichever comes first: a handler registered before its point or its item waits
    until they appear. From then on ExtensionData::active() on the item calls
    active() here, and attribute changes on the item reach dataChanged().

    Ownership: registering does not transfer ownership. The framework and the item
    keep plain pointers only; the plug-in (or the handler's Object parent) owns the
    handler and destroys it. Destroying a handler is safe at any time outside its
    own calls: a waiting handler is forgotten, and an attached item is unlinked and
    its attribute "ExtensionHandler" reads "stop". The handler does not own its
    item either.

    All calls happen on the framework's (main) thread, synchronously.

    \note PluginContext::unregisterExtensionHandler() reaches only a handler that
    was registered while its point was already registered. A handler that waited
    for its point stays attached until it is destroyed or until
    ExtensionPoint::unregisterExtensionHandler() is called on its point.

    \sa ExtensionData, ExtensionPoint, ExtensionHandlerAdmin, ExtensionCallback
*/
class EXTENSIONSYSTEM_EXPORT ExtensionHandler : public Object
{
    ES_DECLARE_PRIVATE(ExtensionHandler)
public:
    /*!
        Creates a handler with no attributes set; id() and the other accessors
        return empty strings until the attributes are set.

        If \a parent is not \c nullptr, the handler becomes its Object child and is
        owned by it.
    */
    explicit ExtensionHandler(Object *parent = nullptr);
    /*!
        Creates a handler for the item \a id, supplied by the plug-in \a plugin,
        for the point \a extPoint declared by the plug-in \a extPlugin.

        The four values are stored as the attributes "id", "plugin", "pointId" and
        "extPlugin". If \a parent is not \c nullptr, the handler becomes its Object
        child and is owned by it.
    */
    ExtensionHandler(const QString &id, const QString &plugin, const QString &extPoint, const QString &extPlugin,
                     Object *parent = nullptr);
    /*!
        Destroys the handler. An attached item is unlinked first: it keeps no
        pointer to this handler and its attribute "ExtensionHandler" becomes "stop".
        Watchers of the handler (a point it waits in, a factory that watches it) are
        told, and the handler leaves its Object parent.
    */
    ~ExtensionHandler() override;

    /*!
        Returns the extension id, the attribute "id": the id of the ExtensionData
        item this handler implements. Handlers with an empty id are ignored when
        registered.
    */
    virtual QString id() const;
    /*!
        Returns the symbolic name of the plug-in that supplies this handler, the
        attribute "plugin".
    */
    virtual QString plugin() const;
    /*!
        Returns the id of the extension point this handler extends, the attribute
        "pointId". The framework hands the handler to the registered point of this id,
        compared ignoring case; a handler registered before its point waits for a
        point whose id matches exactly. Handlers with an empty point id are ignored
        when registered.
    */
    virtual QString extPoint() const;
    /*!
        Returns the symbolic name of the extended plug-in, the one that declares the
        point: the attribute "extPlugin". It is descriptive; matching uses id() and
        extPoint() only.
    */
    virtual QString extPlugin() const;
    /*!
        Carries out the extension; called by ExtensionData::active() on the attached
        item with the caller's arguments, synchronously on the caller's thread.

        The arguments have the shape of those of QMetaObject::invokeMethod(): each
        holds a type name and a pointer to a value that the caller owns. The handler
        does not own them and must not keep them beyond the call. Unused arguments
        have a null name and pointer.

        If the item had a call waiting when this handler was attached, that call is
        replayed here with the arguments stored at the time; the values behind them
        belong to the original caller and may no longer exist unless that caller
        kept them alive.

        \return A value whose meaning the subclass defines. It reaches the caller of
        ExtensionData::active() only when the handler was attached at the time of
        the call; the result of a replayed call is dropped.
    */
    virtual int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
                       QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
                       QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
                       QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
                       QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument()) = 0;
    /*!
        Called when the attribute \a key of the attached item changes to \a value
        and differs from the handler's own copy, after the copy has been updated.

        Writes made through this handler's setData() do not come back here.
    */
    virtual void dataChanged(const QString &key, const QVariant &value) = 0;

    /*!
        Object::data(int): returns the handler's own attribute named by the data
        role \a role, never the item's. A handler has no data roles unless a
        subclass sets them, so this returns an invalid QVariant by default. Kept
        visible beside data(const QString &).
    */
    using Object::data;
    /*!
        Object::setData(int, const QVariant &): sets the handler's own attribute
        named by the data role \a role; the attached item is not touched. Without
        data roles (the default for a handler) it returns \c false. Kept visible
        beside setData(const QString &, const QVariant &).
    */
    using Object::setData;

    /*!
        Returns the ExtensionData item this handler is attached to, or \c nullptr
        while it is free. The item is not owned by the handler; it belongs to its
        point's Object tree.
    */
    ExtensionData *extensionData() const;
    /*!
        Attaches this handler to \a data, or frees it if \a data is \c nullptr.

        The link is kept symmetrical with ExtensionData::setExtensionHandler(): a
        previous item that still points here is unlinked (its attribute
        "ExtensionHandler" becomes "stop"), and \a data is linked back to this
        handler, which replays a call waiting on \a data. Setting the current item
        again does nothing. No ownership changes hands. The framework makes these
        links itself; plug-ins rarely call this.
    */
    void setExtensionData(ExtensionData *data);
    /*!
        Returns the value of the attribute \a key of the attached item, or, while
        the handler is free, of the handler itself.
    */
    QVariant data(const QString &key) const;
    /*!
        Sets the attribute \a key to \a value on the handler and on the attached
        item, whose handler and notifiers see the change.

        dataChanged() is not called for this write.

        \return \c false if no item is attached (nothing is stored, not even on the
        handler) or if the item already had an equal value; otherwise \c true.
    */
    bool setData(const QString &key, const QVariant &value);
    /*!
        Takes the change of the attribute \a key to \a value on the attached item:
        if the handler's own copy differs, stores \a value and calls dataChanged().
        Called by ExtensionData::attributeChanged(); plug-ins do not normally call it.
    */
    void extDataAttributeChanged(const QString &key, const QVariant &value);

protected:
    /*!
        Creates a handler with no attributes on the private data \a dd, for
        subclasses inside the library that extend it. The new object owns \a dd.
        \a parent as for the public constructors.
    */
    ExtensionHandler(Internal::ExtensionHandlerPrivate &dd, Object *parent);
    /*!
        Creates a handler on the private data \a dd, which it owns, and sets the
        attributes from \a id, \a plugin, \a extPoint and \a extPlugin as the
        public constructor does. \a parent as for the public constructors.
    */
    ExtensionHandler(Internal::ExtensionHandlerPrivate &dd, const QString &id, const QString &plugin,
                     const QString &extPoint, const QString &extPlugin, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLER_H
