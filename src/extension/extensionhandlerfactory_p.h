// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_P_H
#define EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_P_H

#include "extensionhandlerfactory.h"

#include <extension/extensiondatafactory_p.h>
#include <extension/extensionhandler_p.h>
#include <objecttree/iobjectnotifier.h>

#include <QtCore/QHash>
#include <QtCore/QMap>

namespace ExtensionSystem {
namespace Internal {

// As a notifier it handles the destruction of a watched handler. A notifier watches
// one node at a time, so each watched handler carries a relay of its own that passes
// the destruction on to it.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionHandlerFactoryPrivate : public ExtensionHandlerPrivate,
                                                                       public IObjectNotifier
{
    ES_DECLARE_PUBLIC(ExtensionHandlerFactory)
public:
    class WatchedHandlerNotifier : public IObjectNotifier
    {
    public:
        WatchedHandlerNotifier(ExtensionHandlerFactoryPrivate *factory, ExtensionHandler *handler)
            : factory(factory)
            , handler(handler)
        { }
        void aboutDestory(Object *object) override;

        ExtensionHandlerFactoryPrivate *factory;
        ExtensionHandler *handler;
    };

    ExtensionHandlerFactoryPrivate();
    ~ExtensionHandlerFactoryPrivate() override;

    void aboutDestory(Object *object) override;
    void watch(ExtensionHandler *handler);
    void releaseNotifiers();

    QMap<QString, ExtensionHandler *> watchedHandlers;
    QMap<QString, ExtensionDataFactoryPrivate::State> handlerStates;
    QMap<QString, ExtensionHandler *> itemHandlers;
    ExtensionHandler *currentHandler;
    QHash<ExtensionHandler *, WatchedHandlerNotifier *> handlerNotifiers;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONHANDLERFACTORY_P_H
