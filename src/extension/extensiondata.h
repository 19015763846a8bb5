// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONDATA_H
#define EXTENSIONSYSTEM_EXTENSIONDATA_H

#include "extensionsystem_global.h"

#include <object/object.h>

#include <QtCore/QGenericArgument>

namespace ExtensionSystem {

class ExtensionHandler;

namespace Internal {
class ExtensionDataPrivate;
}

// One extension as the extended plug-in sees it: an item under its point, usable
// before the supplying plug-in runs. active() on an item without a handler keeps
// the call, asks for the plug-in to be started and replays it when the handler comes.
class EXTENSIONSYSTEM_EXPORT ExtensionData : public Object
{
    ES_DECLARE_PRIVATE(ExtensionData)
public:
    enum DataRole { IdRole = 1, PluginRole = 3, ExtPluginRole = 4, PointIdRole = 5, LocationRole = 6, UserRole = 7 };

    explicit ExtensionData(Object *parent = nullptr);
    ~ExtensionData() override;

    QString id() const;
    QString plugin() const;
    QString extendPlugin() const;
    QString pointId() const;
    QString pluginLocation() const;

    ExtensionHandler *extensionHandler() const;
    void setExtensionHandler(ExtensionHandler *handler);

    void attributeChanged(const QString &key, const QVariant &value) override;
    void childAdded(Object *child) override;

    virtual int active(QGenericArgument a0 = QGenericArgument(nullptr), QGenericArgument a1 = QGenericArgument(),
                       QGenericArgument a2 = QGenericArgument(), QGenericArgument a3 = QGenericArgument(),
                       QGenericArgument a4 = QGenericArgument(), QGenericArgument a5 = QGenericArgument(),
                       QGenericArgument a6 = QGenericArgument(), QGenericArgument a7 = QGenericArgument(),
                       QGenericArgument a8 = QGenericArgument(), QGenericArgument a9 = QGenericArgument());
    virtual void onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous);
    virtual void test();

protected:
    ExtensionData(Internal::ExtensionDataPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATA_H
