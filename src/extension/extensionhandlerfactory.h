// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H

#include "../extensionsystem_global.h"

#include "extensionhandler.h"

#include <QtCore/QList>

namespace ExtensionSystem {

class ExtensionDataFactory;

namespace Internal {
class ExtensionHandlerFactoryPrivate;
}

/*!
    The handler side of an extension with many live instances. Each handler added
    as a child gets an item from the attached ExtensionDataFactory and is activated
    at once; the watched handlers name the data whose attributes follow the current
    item. Children must be added after they are constructed, not through their
    constructor.

    A plug-in subclasses ExtensionHandlerFactory (active() and dataChanged() remain
    to be implemented), creates it with the id of an ExtensionDataFactory item and
    registers it like any handler. It then calls attach() for the handlers whose
    data should follow the current item, and adds one child handler per live
    instance with Object::addChild(); each child gets an item from the data factory
    and that item's active() is called with no arguments. A child passed as the
    parent to its own constructor is added while it is still only an Object and
    gets no item. The host switches instances with
    ExtensionDataFactory::setCurrentItem(), passing a child handler's id.

    Ownership: the child handlers are owned by the factory and destroyed with it.
    Watched handlers are not owned. The attached data factory is not owned either;
    it belongs to its point.

    All calls happen on the framework's (main) thread.

    \sa ExtensionDataFactory, ExtensionHandler
*/
class EXTENSIONSYSTEM_EXPORT ExtensionHandlerFactory : public ExtensionHandler
{
    ES_DECLARE_PRIVATE(ExtensionHandlerFactory)
public:
    /*!
        Creates a factory with no attributes. Takes no parent: the argument
        \a parent is ignored, and the new object has no Object parent; its creator
        owns it.
    */
    explicit ExtensionHandlerFactory(Object *parent);
    /*!
        Creates a factory for the item \a id supplied by \a plugin, for the point
        \a extPoint of the plug-in \a extPlugin, in the argument order of
        ExtensionHandler's constructor. If \a parent is not \c nullptr, the factory
        becomes its Object child and is owned by it.
    */
    ExtensionHandlerFactory(const QString &id, const QString &plugin, const QString &extPoint, const QString &extPlugin,
                            Object *parent = nullptr);
    /*!
        Destroys the factory and its child handlers, whose items stay under the
        data factory and read "stop" in their attribute "ExtensionHandler". It
        stops watching the handlers it watched; those that are not its children live
        on.
    */
    ~ExtensionHandlerFactory() override;

    /*!
        Returns the item this factory is attached to, if it is an
        ExtensionDataFactory; \c nullptr if it is a plain ExtensionData or there is
        none. The data factory is not owned by this object.
    */
    ExtensionDataFactory *dataFactory() const;
    /*!
        Returns the watched handlers, ordered by id. The handlers are not owned by
        the factory.
    */
    QList<ExtensionHandler *> watchedExtHandler() const;
    /*!
        Watches \a handler: its item is to follow the current item of the data
        factory. The factory does not take ownership.

        If a data factory is attached, it looks for the item with the handler's id
        within its own subtree and watches it. Otherwise the handler is only
        recorded, and the data factory watches ExtensionHandler::extensionData() of
        each recorded handler when the two are joined. Ignored if \a handler is
        \c nullptr, has an empty id, or a handler with its id is already watched
        (the first one stays).

        A watched child of this factory is forgotten when it is destroyed. Detach a
        watched handler with another parent before destroying it; otherwise its id
        stays taken and a later attach() with that id is ignored.
    */
    void attach(ExtensionHandler *handler);
    /*!
        Stops watching the handler with the id of \a handler. Only this factory
        forgets it: the data factory goes on watching the handler's item until
        ExtensionDataFactory::detach() is called with it.
    */
    void detach(ExtensionHandler *handler);
    /*!
        Has no effect: the table of item handlers it consults is never filled, so
        it returns at once for any \a id. Call
        ExtensionDataFactory::setCurrentItem() to switch the current item.
    */
    void setCurrentItem(const QString &id);

protected:
    /*!
        Creates a factory on the private data \a dd, which it owns, with the
        attributes \a id, \a plugin, \a extPoint and \a extPlugin, for subclasses
        inside the library that extend it. \a parent as for the public
        constructor.
    */
    ExtensionHandlerFactory(Internal::ExtensionHandlerFactoryPrivate &dd, const QString &id, const QString &plugin,
                            const QString &extPoint, const QString &extPlugin, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H
