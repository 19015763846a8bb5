// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H
#define EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H

#include "../extensionsystem_global.h"

#include "extensiondata.h"

namespace ExtensionSystem {

namespace Internal {
class ExtensionDataFactoryPrivate;
}

/*!
    The data side of an extension with many live instances, one of them current.
    Each child handler of the attached ExtensionHandlerFactory gets an item of its
    own under this factory, and the watched data items carry a separate set of
    attributes for each item: switching the current item stores one set and puts
    back another.

    A point's parseExtensionText() makes an ExtensionDataFactory instead of a plain
    ExtensionData for such an extension; the supplying plug-in registers an
    ExtensionHandlerFactory with the same id, and the two are joined like any item
    and handler. From then on every handler added as a child of the handler factory
    gets an item from create() and is activated at once, and the data of the
    handlers the handler factory watches becomes the watched data here.
    setCurrentItem() switches between the items.

    Ownership: the factory belongs to its parent in the Object tree, normally its
    point. The items made by create() are its children and are destroyed with it.
    Watched data and the attached handler factory are not owned; a watched item
    that is destroyed is forgotten.

    All calls happen on the framework's (main) thread; nothing is locked, and a
    handler that calls setCurrentItem() again from ExtensionHandler::dataChanged()
    re-enters the switch unguarded.

    \sa ExtensionHandlerFactory, ExtensionData
*/
class EXTENSIONSYSTEM_EXPORT ExtensionDataFactory : public ExtensionData
{
    ES_DECLARE_PRIVATE(ExtensionDataFactory)
public:
    /*!
        The data role the factory adds to those of ExtensionData::DataRole.
    */
    enum DataRole {
        /*!
            Role 8, the attribute "currentitem". The role is installed, but the
            factory never reads or writes the attribute; setCurrentItem() does not
            touch it.
        */
        CurrentItemRole = 8
    };

    /*!
        Creates a factory with the data roles of ExtensionData plus
        CurrentItemRole, no attributes, no items and nothing watched. If \a parent
        is not \c nullptr, the factory becomes its Object child and is owned by it.
    */
    explicit ExtensionDataFactory(Object *parent = nullptr);
    /*!
        Destroys the factory and the items it made. It stops watching the nodes it
        watched (the attached handler factory, its items, the watched data), which
        live on.
    */
    ~ExtensionDataFactory() override;

    /*!
        Reimplements Object::aboutRemoveChild(): when \a child, an item made by
        create(), leaves the factory, it is forgotten, so that a later create() for
        its id makes a new item.

        The state kept for its id stays, and the current item is not changed even
        if it is \a child: choose another current item first.
    */
    void aboutRemoveChild(Object *child) override;
    /*!
        Reimplements ExtensionData::onExtensionHandlerChanged() to join the factory
        to the handler factory \a current and part it from \a previous. The base
        version is not called, so the attribute "ExtensionHandler" is not set back
        to "start" on a factory.

        If \a previous is an ExtensionHandlerFactory, the data of its watched
        handlers is detached and its new children no longer get items. If
        \a previous is any other handler, the function returns at once, also when
        \a current is a factory, which is then not joined. If \a current is an
        ExtensionHandlerFactory, the data of its watched handlers
        (ExtensionHandler::extensionData()) is attached, and from then on each
        handler added as its child gets an item from create(), followed by
        active() with no arguments on that item.
    */
    void onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous) override;

    /*!
        Returns the item for \a handler: the one made earlier for its id, or a new
        one.

        A new item is a plain ExtensionData that copies the factory's attributes
        and data roles, takes the id, plugin, point id and extended plug-in of
        \a handler, is added as the factory's child, and is linked to \a handler.
        The factory owns it; \a handler stays with its owner. When the item is made
        for a child of the joined handler factory, its attribute changes are also
        copied onto the factory itself, so the factory shows the last value
        written to any such item.

        \return The item, owned by the factory, or \c nullptr if \a handler is
        \c nullptr or has an empty id.
    */
    ExtensionData *create(ExtensionHandler *handler);
    /*!
        Makes the item with the id \a id, one made by create(), the current item.

        Writes a debug line starting with "setcurrentItem", \a id and the ids of
        the items. An unknown \a id changes nothing more. Otherwise the attributes
        of all watched data are stored under the item being left, and those stored
        under \a id are put back on the watched data; on the first visit of an item
        the watched data gets back the attributes it had when it was attached
        (this includes data detached since, while it exists). Each changed value
        reaches the data's handler through ExtensionHandler::dataChanged().
        Attributes are only set, never removed. Selecting the current item again
        stores and restores, which changes nothing.
    */
    void setCurrentItem(const QString &id);
    /*!
        Starts watching \a data: from now on its attributes are stored and put
        back per item by setCurrentItem(). A copy of its current attributes is
        kept as the values for items not visited yet, replacing an earlier copy
        for the same id.

        Ignored if \a data is \c nullptr, has an empty id, or an item with its id
        is already watched. The factory does not take ownership; a watched item
        that is destroyed is forgotten.
    */
    void attach(ExtensionData *data);
    /*!
        Stops watching \a data; it is not destroyed. The copy of its attributes
        taken by attach() is kept and still used for items visited for the first
        time, until a new attach() replaces it. Ignored if \a data is not
        watched.
    */
    void detach(ExtensionData *data);
    /*!
        Called by ExtensionHandlerFactory::attach(): looks for the item with the
        id of \a handler in this factory and its subtree (the factory included)
        and attaches it. Data outside the factory's subtree is not found here.
        Ignored if \a handler is \c nullptr or has an empty id.
    */
    void handlerAttached(ExtensionHandler *handler);
    /*!
        Does nothing. ExtensionHandlerFactory::detach() does not call it either:
        the data of a detached handler stays watched until detach() is called with
        it.
    */
    void handlerDetached(ExtensionHandler *handler);

protected:
    /*!
        Creates a factory on the private data \a dd, which it owns, for subclasses
        inside the library that extend it. \a parent as for the public
        constructor.
    */
    ExtensionDataFactory(Internal::ExtensionDataFactoryPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H
