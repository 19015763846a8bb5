// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLER_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLER_H

#include "extensionsystem_global.h"

#include <object/object.h>

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionData;

namespace Internal {
class ExtensionHandlerPrivate;
}

// The implementing side of one extension: registered by the plug-in that
// supplies it and matched by id to the data item under the point it names.
class EXTENSIONSYSTEM_EXPORT ExtensionHandler : public Object
{
    ES_DECLARE_PRIVATE(ExtensionHandler)
public:
    explicit ExtensionHandler(Object *parent = nullptr);
    ExtensionHandler(const QString &id, const QString &plugin, const QString &extPoint, const QString &extPlugin,
                     Object *parent = nullptr);
    ~ExtensionHandler() override;

    virtual QString id() const;
    virtual QString plugin() const;
    virtual QString extPoint() const;
    virtual QString extPlugin() const;
    virtual int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
                       QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
                       QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
                       QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
                       QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument()) = 0;
    virtual void dataChanged(const QString &key, const QVariant &value) = 0;

    using Object::data;
    using Object::setData;

    ExtensionData *extensionData() const;
    void setExtensionData(ExtensionData *data);
    QVariant data(const QString &key) const;
    bool setData(const QString &key, const QVariant &value);
    void extDataAttributeChanged(const QString &key, const QVariant &value);

protected:
    ExtensionHandler(Internal::ExtensionHandlerPrivate &dd, Object *parent);
    ExtensionHandler(Internal::ExtensionHandlerPrivate &dd, const QString &id, const QString &plugin,
                     const QString &extPoint, const QString &extPlugin, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLER_H
