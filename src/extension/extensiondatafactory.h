// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H
#define EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H

#include "extensionsystem_global.h"

#include <extension/extensiondata.h>

namespace ExtensionSystem {

namespace Internal {
class ExtensionDataFactoryPrivate;
}

// The data side of an extension with many live instances, one of them current.
// Each child handler of the attached ExtensionHandlerFactory gets an item of its own
// under this factory, and the watched data items carry a separate set of attributes
// for each item: switching the current item stores one set and puts back another.
class EXTENSIONSYSTEM_EXPORT ExtensionDataFactory : public ExtensionData
{
    ES_DECLARE_PRIVATE(ExtensionDataFactory)
public:
    enum DataRole { CurrentItemRole = 8 };

    explicit ExtensionDataFactory(Object *parent = nullptr);
    ~ExtensionDataFactory() override;

    void aboutRemoveChild(Object *child) override;
    void onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous) override;

    ExtensionData *create(ExtensionHandler *handler);
    void setCurrentItem(const QString &id);
    void attach(ExtensionData *data);
    void detach(ExtensionData *data);
    void handlerAttached(ExtensionHandler *handler);
    void handlerDetached(ExtensionHandler *handler);

protected:
    ExtensionDataFactory(Internal::ExtensionDataFactoryPrivate &dd, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_H
