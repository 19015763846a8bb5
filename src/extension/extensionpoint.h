// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONPOINT_H
#define EXTENSIONSYSTEM_EXTENSIONPOINT_H

#include "../extensionsystem_global.h"

#include "../objecttree/object.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class ExtensionData;
class ExtensionHandler;

namespace Internal {
class ExtensionPointPrivate;
}

/*!
    Where one plug-in lets others extend it. A subclass turns each extension text
    into data items; handlers and items meet here by id, whichever comes first.

    The plug-in that owns the point subclasses ExtensionPoint, implements
    parseExtensionText(), creates an instance with the point's id and its own
    symbolic name, and registers it with PluginContext::registerExtensionPoint().
    The framework then delivers, through updateExtensionText(), the text of every
    \c ExtData element addressed to this point: at registration from the extension
    store, and again whenever an extension file naming the point is read. The
    subclass makes ExtensionData items from the texts, and the point adopts them as
    children. Handlers registered by supplying plug-ins are attached to the item
    with their id; a handler that comes before its item waits here.

    Ownership: while registered, the point is an Object child of the framework's
    extension registry, which destroys it at shutdown if it is still registered.
    PluginContext::unregisterExtensionPoint() detaches the point without destroying
    it; from then on the plug-in owns it again and must destroy it. The point owns
    its items (and their children). It does not own handlers: it keeps plain
    pointers to waiting handlers and forgets a handler that is destroyed.

    All calls happen on the framework's (main) thread. Nothing reports errors: bad
    input (null pointers, empty or unknown ids) is ignored silently.

    \sa ExtensionData, ExtensionHandler, PluginContext::registerExtensionPoint()
*/
class EXTENSIONSYSTEM_EXPORT ExtensionPoint : public Object
{
    ES_DECLARE_PRIVATE(ExtensionPoint)
public:
    /*!
        Creates a point with no attributes. Its id() is empty, so it cannot be
        registered until the attribute "id" is set.

        If \a parent is not \c nullptr, the point becomes its Object child and is
        owned by it until it is registered.
    */
    explicit ExtensionPoint(Object *parent = nullptr);
    /*!
        Creates the point \a id owned by the plug-in with the symbolic name
        \a plugin, stored as the attributes "id" and "plugin". \a parent as for the
        other constructor.
    */
    ExtensionPoint(const QString &id, const QString &plugin, Object *parent = nullptr);
    /*!
        Destroys the point with its items. Waiting handlers are not destroyed;
        attached handlers are unlinked from their items as these go. A point that
        is still registered leaves the registry.
    */
    ~ExtensionPoint() override;

    /*!
        Reimplements Object::handleEvent().

        An event of type "ext.event.type.childAdded" whose \a source is an
        ExtensionData (raised when an item gets a child) stops here: a handler
        waiting under the source's id is attached to it. Any other event, such as
        the start request of an item's active(), is offered to the notifiers and
        passed on to the parent as Object::handleEvent() does.

        \return \c true if the event was consumed here or passed to a parent;
        \c false if it was kept because the point has no parent.
    */
    bool handleEvent(const QHash<QString, QVariant> &event, Object *source) override;

    /*!
        Returns the point's id, the attribute "id". Handlers name it in
        ExtensionHandler::extPoint(), and \c ExtData elements in their "id"
        attribute. A point with an empty id is ignored when registered.
    */
    virtual QString id() const;
    /*!
        Returns the symbolic name of the plug-in that owns the point, the attribute
        "plugin". At registration only stored extension texts whose "extPlugin"
        equals this name, and whose supplying plug-in the framework counts as
        active, are delivered.
    */
    virtual QString plugin() const;
    /*!
        Makes new items from \a text; implemented by every subclass.

        Each string of \a text is one whole \c ExtData element as XML text, as it
        appeared in an \c extension.xml; its contents are the subclass's to
        interpret. Return newly allocated items without a parent; the point adopts
        every non-null item and owns it from then on. Set each item's "id" (and
        usually "plugin", "extPlugin" and "pointId") so that handlers can find it.

        The same text can arrive more than once: at each registration and at each
        reading of an extension file, and a file read from the store can repeat all
        its texts for this point once per text. A subclass that must not create
        duplicates has to recognise texts it has already turned into items.
    */
    virtual QList<ExtensionData *> parseExtensionText(const QStringList &text) = 0;

    /*!
        Returns the first object in this point's subtree (the point itself, then
        its children depth first) whose attribute "id" equals \a id, if it is an
        ExtensionData; otherwise \c nullptr. The point keeps ownership.

        \note The point's own id is stored under the same attribute key, so an
        \a id equal to the point's id finds the point and returns \c nullptr.
    */
    ExtensionData *extensionData(const QString &id);
    /*!
        Attaches \a handler to the item with its id, or keeps it waiting until
        such an item arrives. The framework calls this when a handler registered
        through PluginContext::registerExtensionHandler() reaches this point.

        If the item exists, it takes \a handler (replacing and unlinking any
        handler it had) and a call waiting in its ExtensionData::active() is
        replayed. Otherwise the handler waits; a second handler for an id that
        already waits is ignored. A null handler or one with an empty id is
        ignored. The point does not take ownership; a waiting handler that is
        destroyed is forgotten.
    */
    void registerExtensionHandler(ExtensionHandler *handler);
    /*!
        Detaches the handler with the id \a id from its item (the item's attribute
        "ExtensionHandler" becomes "stop") and drops a handler waiting under that
        id. Neither the handler nor the item is destroyed. An empty id is ignored.
    */
    void unregisterExtensionHandler(const QString &id);
    /*!
        Delivers extension texts to the point; the framework calls this.

        Writes a debug line starting with "ExtensionPointPrivate::updateExtensionText >"
        and the point's id. An empty \a text ends there. Otherwise
        parseExtensionText() is called with \a text, each non-null item returned is
        added as a child of the point, which takes ownership, and waiting handlers
        are attached to the new items and their descendants with matching ids.
        Items the point already has are kept.
    */
    void updateExtensionText(const QStringList &text);

protected:
    /*!
        Creates a point with no attributes on the private data \a dd, which it
        owns, for subclasses inside the library that extend it. \a parent as for
        the public constructors.
    */
    ExtensionPoint(Internal::ExtensionPointPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONPOINT_H
