// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONPOINTADMIN_H
#define EXTENSIONSYSTEM_EXTENSIONPOINTADMIN_H

#include "extensionsystem_global.h"

#include <extension/exttype.h>
#include <objecttree/object.h>

#include <QtCore/QHash>
#include <QtCore/QObject>

namespace ExtensionSystem {

class ExtensionHandler;
class ExtensionPoint;

namespace Internal {

class ExtensionStorage;
class PluginFrameworkContext;
class TableWatcher;

// The registry of extension points and the root of their tree: extension text
// goes from here to its point, handlers wait here for points that are not there
// yet, and start requests rising from data items end here.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionPointAdmin : public QObject, public Object
{
    Q_OBJECT
public:
    ExtensionPointAdmin(PluginFrameworkContext *context, ExtensionStorage *storage, QObject *parent);
    ~ExtensionPointAdmin() override;

    void registerExtensionPoint(ExtensionPoint *point);
    void unregisterExtensionPoint(const QString &id);
    void registerExtensionHandler(ExtensionHandler *handler);
    void unregisterExtensionHandler(const QString &id);
    ExtensionPoint *findExtensionPoint(const QString &id);

    bool handleEvent(const QHash<QString, QVariant> &event, Object *source) override;
    void aboutRemoveChild(Object *child) override;

signals:
    void requestStartingPlugin(QString symbolic);

public slots:
    void dispatchExtensionData(ExtType::Plugin plugin);
    void dispatchExtensionData(QString filepath);

private:
    friend class TableWatcher;
    void watch(Object *object);
    void forget(Object *object);
    void releaseIfUnused(Object *object);
    void publish(int action, ExtensionPoint *point);

    PluginFrameworkContext *frameworkContext;
    ExtensionStorage *extensionStorage;
    QHash<QString, ExtensionPoint *> pointTable;
    QMultiHash<QString, ExtensionHandler *> waitingHandlers;
    QHash<QString, ExtensionPoint *> handlerPoints;
    // Watches every point and handler the tables name, so that none is followed after it died.
    QHash<Object *, TableWatcher *> watchers;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONPOINTADMIN_H
