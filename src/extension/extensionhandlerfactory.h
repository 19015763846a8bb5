// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H

#include "extensionsystem_global.h"

#include <extension/extensionhandler.h>

#include <QtCore/QList>

namespace ExtensionSystem {

class ExtensionDataFactory;

namespace Internal {
class ExtensionHandlerFactoryPrivate;
}

// The handler side of an extension with many live instances. Each handler added as a
// child gets an item from the attached ExtensionDataFactory and is activated at once;
// the watched handlers name the data whose attributes follow the current item.
// Children must be added after they are constructed, not through their constructor.
class EXTENSIONSYSTEM_EXPORT ExtensionHandlerFactory : public ExtensionHandler
{
    ES_DECLARE_PRIVATE(ExtensionHandlerFactory)
public:
    // Takes no parent: the argument is not passed on.
    explicit ExtensionHandlerFactory(Object *parent);
    ExtensionHandlerFactory(const QString &id, const QString &plugin, const QString &extPoint, const QString &extPlugin,
                            Object *parent = nullptr);
    ~ExtensionHandlerFactory() override;

    ExtensionDataFactory *dataFactory() const;
    QList<ExtensionHandler *> watchedExtHandler() const;
    void attach(ExtensionHandler *handler);
    void detach(ExtensionHandler *handler);
    void setCurrentItem(const QString &id);

protected:
    ExtensionHandlerFactory(Internal::ExtensionHandlerFactoryPrivate &dd, const QString &id, const QString &plugin,
                            const QString &extPoint, const QString &extPlugin, Object *parent);
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_H
