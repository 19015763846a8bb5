// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H

#include "../extensionsystem_global.h"

#include "../objecttree/object.h"

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionHandler;
class PluginContext;

namespace Internal {
class ExtensionHandlerAdminPrivate;
}

/*!
    One object that serves any number of extensions: a plug-in subclasses it,
    overrides callbackActived() and callbackDataChanged(), and asks it for a handler
    per extension id.

    makeExtensionHandler() creates an ExtensionCallback for an id and registers it
    through the PluginContext set with setPluginContext(); the callback turns
    ExtensionHandler::active() and ExtensionHandler::dataChanged() into calls of
    callbackActived() and callbackDataChanged() here, with its id in front. Handlers
    of the plug-in's own making can be added with addExtensionHandler().

    Ownership: the handlers are the admin's Object children; it owns them and
    destroys them with itself or in removeExtensionHandler(). The plug-in owns the
    admin. The PluginContext is not owned.

    Failures set error() and errorString() and call the virtual errorOccured():

    - 0 "No Error": after clearError() or a successful makeExtensionHandler() or
      addExtensionHandler();
    - -1 "The callback is not exists": removeExtensionHandler(), data() or setData()
      found no handler with the id;
    - -2 "The callback is not exists": addExtensionHandler() found a handler with
      the id already there (the same text as -1);
    - -3 "The callback is invalid": addExtensionHandler() got a null handler or one
      with an empty id;
    - -4 "The PluginContext is NULL, cannot generate callback":
      makeExtensionHandler() or addExtensionHandler() without a context.

    The texts are translated with QObject::tr(). The error stays until the next
    success of makeExtensionHandler() or addExtensionHandler(), or clearError(). A
    failed call changes nothing else. All calls happen on the framework's (main)
    thread.

    \sa ExtensionCallback, ExtensionHandler
*/
class EXTENSIONSYSTEM_EXPORT ExtensionHandlerAdmin : public Object
{
    ES_DECLARE_PRIVATE(ExtensionHandlerAdmin)
public:
    /*!
        The numbers of error() and errorOccured(); the texts are translated.

        \since 1.1
    */
    enum Error {
        NoError = 0, ///< No error; the text is "No Error".
        CallbackNotExists = -1, ///< "The callback is not exists": no callback for the id.
        CallbackExists = -2, ///< "The callback is not exists" too: a callback for the id exists already.
        CallbackInvalid = -3, ///< "The callback is invalid": a null callback was given.
        NoPluginContext = -4 ///< "The PluginContext is NULL, cannot generate callback": no context set.
    };

    /*!
        Creates an admin with no context, no handlers and error 0 ("No Error"). If
        \a parent is not \c nullptr, the admin becomes its Object child and is
        owned by it.
    */
    explicit ExtensionHandlerAdmin(Object *parent = nullptr);
    /*!
        Destroys the admin and the handlers it owns; their items are unlinked and
        read "stop" in their attribute "ExtensionHandler".
    */
    ~ExtensionHandlerAdmin() override;

    /*!
        Carries out the extension \a id; called by the ExtensionCallback child with
        that id when its ExtensionHandler::active() is called.

        \a a0 to \a a9 are the arguments of ExtensionData::active(), passed
        through; they point to values the original caller owns, valid for this call
        only. The base version does nothing and returns 0.

        \return The value returned by the callback's active(), and so to the caller
        of ExtensionData::active() when the handler was attached at that time.
    */
    virtual int callbackActived(const QString &id, QGenericArgument a0 = QGenericArgument(nullptr),
                                QGenericArgument a1 = QGenericArgument(), QGenericArgument a2 = QGenericArgument(),
                                QGenericArgument a3 = QGenericArgument(), QGenericArgument a4 = QGenericArgument(),
                                QGenericArgument a5 = QGenericArgument(), QGenericArgument a6 = QGenericArgument(),
                                QGenericArgument a7 = QGenericArgument(), QGenericArgument a8 = QGenericArgument(),
                                QGenericArgument a9 = QGenericArgument());
    /*!
        Called by the ExtensionCallback child with the id \a id when the attribute
        \a key of its item changed to \a value (see ExtensionHandler::dataChanged()).
        The base version does nothing.
    */
    virtual void callbackDataChanged(const QString &id, const QString &key, const QVariant &value);
    /*!
        Called by setError() for every non-zero \a error, after error() and
        errorString() hold \a error and \a errorString. This is a virtual function,
        not a signal.

        The base version writes a debug line: "[ERROR] plugin:", the symbolic name of
        the context's plug-in (empty without a context), "- ExtensionHandlerAdmin:",
        the code, "-" and the text.
    */
    virtual void errorOccured(int error, const QString &errorString);

    /*!
        Object::data(int): returns the admin's own attribute named by the data role
        \a role. Kept visible beside data(const QString &, const QString &).
    */
    using Object::data;
    /*!
        Object::setData(int, const QVariant &): sets the admin's own attribute named
        by the data role \a role. Kept visible beside setData(const QString &, const
        QString &, const QVariant &).
    */
    using Object::setData;

    /*!
        Sets the context through which handlers are registered, normally the one
        given to the plug-in's activator. Must be called before
        makeExtensionHandler() or addExtensionHandler().

        The admin does not own \a context and holds it through a guarded pointer: if
        the context is destroyed first, the admin behaves as if none was set.
    */
    void setPluginContext(PluginContext *context);
    /*!
        Returns the child handler whose ExtensionHandler::id() equals \a id with
        surrounding blanks removed (compared case-sensitively), or \c nullptr. The
        admin keeps ownership. Does not change error().
    */
    ExtensionHandler *findExtensionHandler(const QString &id) const;
    /*!
        Returns a handler for the extension \a id, creating and registering an
        ExtensionCallback if the admin has none for that id yet.

        \a plugin is the supplying plug-in, \a extenedPlugin the extended plug-in
        and \a extenedPointId the point; mind that the extended plug-in comes
        before the point, unlike in ExtensionHandler's constructor. A new callback
        is created as the admin's child, so the admin owns it, then registered with
        PluginContext::registerExtensionHandler(), and the error is cleared.

        An existing handler with the id is returned as it is: nothing is registered
        and error() is left unchanged.

        \return The handler, owned by the admin; \c nullptr with error -4 if no
        context is set.
    */
    ExtensionHandler *makeExtensionHandler(const QString &id, const QString &plugin, const QString &extenedPlugin,
                                           const QString &extenedPointId);
    /*!
        Adds a handler of the plug-in's own making: on success \a handler becomes
        the admin's child, the admin takes ownership, it is registered with
        PluginContext::registerExtensionHandler() and the error is cleared.

        Fails with -3 if \a handler is \c nullptr or has an empty id, with -2 if a
        handler with its id is already there, and with -4 if no context is set; the
        caller then keeps ownership. The admin's callbacks are not involved: the
        framework calls \a handler's own active() and dataChanged().
    */
    void addExtensionHandler(ExtensionHandler *handler);
    /*!
        Destroys the handler with the id \a id; its item is unlinked (it reads
        "stop" in its attribute "ExtensionHandler"), and a point in which it waited
        forgets it. Fails with -1 if there is none.

        The handler is not unregistered through the context, and error() is not
        cleared on success.
    */
    void removeExtensionHandler(const QString &id);
    /*!
        Returns ExtensionHandler::data() of the handler with the id \a id for
        \a key: the attribute of its item, or the handler's own while it has none.
        Fails with -1 and returns an invalid QVariant if there is no such handler;
        error() is not cleared on success.
    */
    QVariant data(const QString &id, const QString &key);
    /*!
        Calls ExtensionHandler::setData() with \a key and \a value on the handler
        with the id \a id, which writes to its item; nothing is written while the
        handler has no item, and the result is not reported. Fails with -1 if there
        is no such handler; error() is not cleared on success.
    */
    void setData(const QString &id, const QString &key, const QVariant &value);

    /*!
        Returns the code of the last failure, or 0 after a success that clears it.
        See the class description for the codes.
    */
    int error() const;
    /*!
        Returns the translated text that goes with error(), "No Error" for 0.
    */
    QString errorString() const;
    /*!
        Stores \a error and \a errorString as the current error and, if \a error is
        not 0, calls errorOccured() with them.
    */
    void setError(int error, const QString &errorString);
    /*!
        Resets the error to 0 and its text to "No Error" (translated), without
        calling errorOccured().
    */
    void clearError();

protected:
    /*!
        Creates an admin on the private data \a dd, which it owns, for subclasses
        inside the library that extend it. \a parent as for the public constructor.
    */
    ExtensionHandlerAdmin(Internal::ExtensionHandlerAdminPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H
