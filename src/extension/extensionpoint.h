// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONPOINT_H
#define EXTENSIONSYSTEM_EXTENSIONPOINT_H

#include "extensionsystem_global.h"

#include <object/object.h>

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class ExtensionData;
class ExtensionHandler;

namespace Internal {
class ExtensionPointPrivate;
}

// Where one plug-in lets others extend it. A subclass turns each extension text
// into data items; handlers and items meet here by id, whichever comes first.
class EXTENSIONSYSTEM_EXPORT ExtensionPoint : public Object
{
    ES_DECLARE_PRIVATE(ExtensionPoint)
public:
    explicit ExtensionPoint(Object *parent = nullptr);
    ExtensionPoint(const QString &id, const QString &plugin, Object *parent = nullptr);
    ~ExtensionPoint() override;

    bool handleEvent(const QHash<QString, QVariant> &event, Object *source) override;

    virtual QString id() const;
    virtual QString plugin() const;
    // Makes new items from the texts of ExtData elements; the point adopts them.
    virtual QList<ExtensionData *> parseExtensionText(const QStringList &text) = 0;

    ExtensionData *extensionData(const QString &id);
    void registerExtensionHandler(ExtensionHandler *handler);
    void unregisterExtensionHandler(const QString &id);
    void updateExtensionText(const QStringList &text);

protected:
    ExtensionPoint(Internal::ExtensionPointPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONPOINT_H
