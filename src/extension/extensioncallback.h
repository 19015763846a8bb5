// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONCALLBACK_H
#define EXTENSIONSYSTEM_EXTENSIONCALLBACK_H

#include "../extensionsystem_global.h"

#include "extensionhandler.h"

namespace ExtensionSystem {

namespace Internal {
class ExtensionCallbackPrivate;
}

/*!
    A ready-made handler for ExtensionHandlerAdmin: active() and dataChanged()
    become calls on the admin above it, with this handler's id in front. Mind the
    order of the constructor: the extended plug-in comes before the extended point.

    Callbacks are normally made by ExtensionHandlerAdmin::makeExtensionHandler(),
    which creates them as the admin's children; the admin owns them. A callback
    whose Object parent is not an ExtensionHandlerAdmin does nothing: active()
    returns -1 and dataChanged() is ignored.

    The constructor keeps trimmed copies of its four strings and also sets the
    handler attributes from the strings as given. id(), plugin(), extenedPlugin()
    and extenedPointId() return the trimmed values, while the inherited extPoint()
    and extPlugin() read the attributes and return them untrimmed.

    \sa ExtensionHandlerAdmin, ExtensionHandler
*/
class EXTENSIONSYSTEM_EXPORT ExtensionCallback : public ExtensionHandler
{
    ES_DECLARE_PRIVATE(ExtensionCallback)
public:
    /*!
        Creates a callback for the extension \a id supplied by the plug-in
        \a plugin, extending the point \a extenedPointId of the plug-in
        \a extenedPlugin. Note the order: the extended plug-in before the point,
        the reverse of ExtensionHandler's constructor.

        If \a parent is not \c nullptr, the callback becomes its Object child and
        is owned by it; it only works under an ExtensionHandlerAdmin.
    */
    ExtensionCallback(const QString &id, const QString &plugin, const QString &extenedPlugin,
                      const QString &extenedPointId, Object *parent = nullptr);
    /*!
        Destroys the callback; as for any handler, its item is unlinked and it
        leaves its admin.
    */
    ~ExtensionCallback() override;

    /*!
        Returns the extension id given to the constructor, with surrounding blanks
        removed. The framework matches the callback to its item by this value.
    */
    QString id() const override;
    /*!
        Returns the symbolic name of the supplying plug-in given to the
        constructor, with surrounding blanks removed.
    */
    QString plugin() const override;
    /*!
        Calls ExtensionHandlerAdmin::callbackActived() on the parent admin with
        id() and \a a0 to \a a9, and returns its result. The arguments are passed
        through untouched; the callback does not own or keep them.

        \return The admin's result, or -1 if the parent is not an
        ExtensionHandlerAdmin.
    */
    int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
               QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
               QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
               QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
               QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument()) override;
    /*!
        Calls ExtensionHandlerAdmin::callbackDataChanged() on the parent admin with
        id(), \a key and \a value. Does nothing if the parent is not an
        ExtensionHandlerAdmin.
    */
    void dataChanged(const QString &key, const QVariant &value) override;

    /*!
        Returns the symbolic name of the extended plug-in given to the constructor,
        with surrounding blanks removed. extPlugin() returns the same value
        untrimmed.
    */
    QString extenedPlugin() const;
    /*!
        Returns the id of the extended point given to the constructor, with
        surrounding blanks removed. extPoint(), which the framework uses to find
        the point, returns the same value untrimmed.
    */
    QString extenedPointId() const;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONCALLBACK_H
