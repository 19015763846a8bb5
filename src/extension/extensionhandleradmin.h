// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H

#include "extensionsystem_global.h"

#include <object/object.h>

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionHandler;
class PluginContext;

namespace Internal {
class ExtensionHandlerAdminPrivate;
}

// One object that serves any number of extensions: a plug-in subclasses it, overrides
// callbackActived and callbackDataChanged, and asks it for a handler per extension id.
// The handlers are its children; it owns them.
class EXTENSIONSYSTEM_EXPORT ExtensionHandlerAdmin : public Object
{
    ES_DECLARE_PRIVATE(ExtensionHandlerAdmin)
public:
    explicit ExtensionHandlerAdmin(Object *parent = nullptr);
    ~ExtensionHandlerAdmin() override;

    virtual int callbackActived(const QString &id, QGenericArgument a0 = QGenericArgument(nullptr),
                                QGenericArgument a1 = QGenericArgument(), QGenericArgument a2 = QGenericArgument(),
                                QGenericArgument a3 = QGenericArgument(), QGenericArgument a4 = QGenericArgument(),
                                QGenericArgument a5 = QGenericArgument(), QGenericArgument a6 = QGenericArgument(),
                                QGenericArgument a7 = QGenericArgument(), QGenericArgument a8 = QGenericArgument(),
                                QGenericArgument a9 = QGenericArgument());
    virtual void callbackDataChanged(const QString &id, const QString &key, const QVariant &value);
    virtual void errorOccured(int error, const QString &errorString);

    using Object::data;
    using Object::setData;

    void setPluginContext(PluginContext *context);
    ExtensionHandler *findExtensionHandler(const QString &id) const;
    ExtensionHandler *makeExtensionHandler(const QString &id, const QString &plugin, const QString &extenedPlugin,
                                           const QString &extenedPointId);
    void addExtensionHandler(ExtensionHandler *handler);
    void removeExtensionHandler(const QString &id);
    QVariant data(const QString &id, const QString &key);
    void setData(const QString &id, const QString &key, const QVariant &value);

    int error() const;
    QString errorString() const;
    void setError(int error, const QString &errorString);
    void clearError();

protected:
    ExtensionHandlerAdmin(Internal::ExtensionHandlerAdminPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERADMIN_H
