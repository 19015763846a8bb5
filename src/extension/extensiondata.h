// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONDATA_H
#define EXTENSIONSYSTEM_EXTENSIONDATA_H

#include "../extensionsystem_global.h"

#include "../objecttree/object.h"

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionHandler;

namespace Internal {
class ExtensionDataPrivate;
}

/*!
    One extension as the extended plug-in sees it: an item under its point, usable
    before the supplying plug-in runs. active() on an item without a handler keeps
    the call, asks for the plug-in to be started and replays it when the handler
    comes.

    Items are made by an ExtensionPoint subclass in
    ExtensionPoint::parseExtensionText() from the text of one \c ExtData element,
    usually as subclasses of this class, and carry their declared values as Object
    attributes ("id", "plugin", "extPlugin", "pointId", "location", and any others
    the subclass sets). The owner of the point reads these attributes and calls
    active() to use the extension.

    Behind an item may stand one ExtensionHandler, registered by the supplying
    plug-in with the same id(); the link is one to one and symmetrical. Attribute
    changes on the item reach the handler's ExtensionHandler::dataChanged(). The
    attribute "ExtensionHandler" tells watchers about the link: it is absent until a
    handler is first taken away, then reads "stop", and reads "start" again once a
    handler comes back.

    Ownership: an item is owned by its parent in the Object tree, normally the
    ExtensionPoint that adopted it or an ExtensionDataFactory, and is destroyed
    with it. The item does not own its handler.

    All calls happen on the framework's (main) thread; nothing is locked.

    \sa ExtensionHandler, ExtensionPoint, ExtensionDataFactory
*/
class EXTENSIONSYSTEM_EXPORT ExtensionData : public Object
{
    ES_DECLARE_PRIVATE(ExtensionData)
public:
    /*!
        The data roles of an item, for Object::data(int) and Object::setData(int,
        const QVariant &). Each names one attribute; role 2 is not used, and the
        attribute "title" has no role. Subclasses add their own roles above
        UserRole (ExtensionDataFactory uses 8).
    */
    enum DataRole {
        IdRole = 1, ///< The attribute "id", see id().
        PluginRole = 3, ///< The attribute "plugin", see plugin().
        ExtPluginRole = 4, ///< The attribute "extPlugin", see extendPlugin().
        PointIdRole = 5, ///< The attribute "pointId", see pointId().
        LocationRole = 6, ///< The attribute "location", see pluginLocation().
        UserRole = 7 ///< The attribute named "UserRole", free for a subclass's own use.
    };

    /*!
        Creates an item with the data roles of DataRole installed and no attributes
        set; the maker of the item sets them.

        If \a parent is not \c nullptr, the item becomes its Object child and is
        owned by it.
    */
    explicit ExtensionData(Object *parent = nullptr);
    /*!
        Destroys the item and its Object children. An attached handler is unlinked
        first (its ExtensionHandler::extensionData() becomes \c nullptr), and a call
        waiting in active() is dropped.
    */
    ~ExtensionData() override;

    /*!
        Returns the extension id, the attribute "id". A handler is attached to this
        item when its ExtensionHandler::id() equals this value.
    */
    QString id() const;
    /*!
        Returns the symbolic name of the plug-in that supplies the extension, the
        attribute "plugin". This is the plug-in that active() asks to start while
        no handler is attached.
    */
    QString plugin() const;
    /*!
        Returns the symbolic name of the extended plug-in, the one that declares the
        point: the attribute "extPlugin".
    */
    QString extendPlugin() const;
    /*!
        Returns the id of the extension point this item belongs to, the attribute
        "pointId".
    */
    QString pointId() const;
    /*!
        Returns the attribute "location". The framework never sets it; it is there
        for point implementations that record where the supplying plug-in lives.
    */
    QString pluginLocation() const;

    /*!
        Returns the attached handler, or \c nullptr if none is attached. The
        handler is not owned by the item.
    */
    ExtensionHandler *extensionHandler() const;
    /*!
        Attaches \a handler to this item, or detaches the current one if \a handler
        is \c nullptr; the framework calls this when a handler and an item meet.

        A previous handler that still points here is unlinked, and \a handler is
        linked back to this item (leaving any item it had before). Then
        onExtensionHandlerChanged() is called with the new and the previous
        handler, and a call waiting in active() is replayed on \a handler with its
        stored arguments; the result of that call is dropped. Detaching sets the
        attribute "ExtensionHandler" to "stop" and does not call
        onExtensionHandlerChanged(). Setting the current handler again does
        nothing. No ownership changes hands.
    */
    void setExtensionHandler(ExtensionHandler *handler);

    /*!
        Reimplements Object::attributeChanged(): passes the change of \a key to
        \a value on to the attached handler through
        ExtensionHandler::extDataAttributeChanged(). Called by Object::setAttribute().
    */
    void attributeChanged(const QString &key, const QVariant &value) override;
    /*!
        Reimplements Object::childAdded(): raises the event
        "ext.event.type.childAdded" with \a child as source, so that the nearest
        ExtensionPoint above gives a waiting handler with the child's id to it.
    */
    void childAdded(Object *child) override;

    /*!
        Uses the extension: calls the attached handler's ExtensionHandler::active()
        with \a a0 to \a a9 and returns its result.

        The arguments have the shape of those of QMetaObject::invokeMethod() (for
        example Q_ARG(QString, text)); unused ones stay empty.

        Without a handler the call is kept (one slot: a later call replaces a
        waiting one), the event "ext.event.type.startPlugin" rises through the
        Object tree so that the framework asks the plug-in manager to start the
        plug-in named by plugin(), a debug line with "Request Start Plugin:" and that
        name is written, and 0 is returned. When the handler arrives, the kept call
        is replayed on it and its result is dropped. If the plug-in starts and
        registers its handler during this call, the replay happens before this
        function returns, and the caller still gets 0. An item not yet in a tree
        holds the request until it is added to one.

        \warning The arguments are not copied. Each QGenericArgument holds a pointer
        to a value that the caller owns; a kept call stores only these pointers. The
        values must stay alive until the replay, which may come much later or never;
        the framework does not protect them. Callers that may defer should pass no
        arguments or arguments of long life (for example members of an object that
        outlives the item).
    */
    virtual int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
                       QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
                       QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
                       QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
                       QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument());
    /*!
        Called by setExtensionHandler() after the handler \a current has been
        attached, with \a previous the handler it replaced or \c nullptr. Not
        called when a handler is taken away.

        The base version sets the attribute "ExtensionHandler" from "stop" to
        "start" when \a previous is \c nullptr. A reimplementation that wants to
        keep this behaviour calls the base version.
    */
    virtual void onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous);
    /*!
        Does nothing. A spare virtual that subclasses may reimplement for their own
        purposes; the framework never calls it.
    */
    virtual void test();

protected:
    /*!
        Creates an item on the private data \a dd, which it owns, for subclasses
        inside the library that extend it. Installs the data roles as the public
        constructor does; \a parent as there.
    */
    ExtensionData(Internal::ExtensionDataPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATA_H
