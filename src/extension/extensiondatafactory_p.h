// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_P_H
#define EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_P_H

#include "extensiondatafactory.h"

#include <extension/extensiondata_p.h>
#include <objecttree/iobjectnotifier.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionDataFactoryPrivate : public ExtensionDataPrivate
{
    ES_DECLARE_PUBLIC(ExtensionDataFactory)
public:
    // A watched item and its attributes when it was attached.
    struct WatchedData
    {
        WatchedData()
            : data(nullptr)
        { }
        WatchedData(ExtensionData *data, const QHash<QString, QVariant> &attributes)
            : data(data)
            , attributes(attributes)
        { }

        ExtensionData *data;
        QHash<QString, QVariant> attributes;
    };

    // The attributes of the watched data that belong to one item, stored when the item
    // stops being current. A default-made state has no factory and does nothing.
    class EXTENSIONSYSTEM_AUTOTEST_EXPORT State
    {
    public:
        State();
        State(const QString &id, ExtensionDataFactoryPrivate *factory);

        void saveCurrent();
        void restore() const;
        void restoreInitial() const;

        QString id;
        ExtensionDataFactoryPrivate *factory;
        QMap<QString, QHash<QString, QVariant>> savedAttributes;

    private:
        void applyAll(bool initial) const;
    };

    // On the attached handler factory: its new children get items.
    class HandlerNotifier : public IObjectNotifier
    {
    public:
        explicit HandlerNotifier(ExtensionDataFactoryPrivate *factory)
            : factory(factory)
        { }
        void attributeChanged(const QString &key, const QVariant &value) override;
        void childAdded(Object *child) override;

        ExtensionDataFactoryPrivate *factory;
    };

    // On each item made for a child handler: the factory shows the last value written to any item.
    class ChlidHandlerNotifier : public IObjectNotifier
    {
    public:
        explicit ChlidHandlerNotifier(ExtensionDataFactoryPrivate *factory)
            : factory(factory)
        { }
        void attributeChanged(const QString &key, const QVariant &value) override;

        ExtensionDataFactoryPrivate *factory;
    };

    // On each watched item: a destroyed item is no longer watched.
    class WatchedExtDataNotifier : public IObjectNotifier
    {
    public:
        WatchedExtDataNotifier(ExtensionDataFactoryPrivate *factory, ExtensionData *data)
            : factory(factory)
            , data(data)
        { }
        void aboutDestory(Object *object) override;

        ExtensionDataFactoryPrivate *factory;
        ExtensionData *data;
    };

    // On every item that a table points at: its address is forgotten when it dies,
    // also where a detached item's snapshot outlives its watch.
    class ItemGuard : public IObjectNotifier
    {
    public:
        explicit ItemGuard(ExtensionDataFactoryPrivate *factory)
            : factory(factory)
        { }
        void aboutDestory(Object *object) override;

        ExtensionDataFactoryPrivate *factory;
    };

    ExtensionDataFactoryPrivate();
    ~ExtensionDataFactoryPrivate() override;

    void handlerChildAdded(Object *child);
    void guard(ExtensionData *item);
    // Both take a dying node: only its address is used.
    void forgetItem(Object *item);
    void forgetWatched(WatchedExtDataNotifier *notifier);
    void releaseNotifiers();

    QMap<QString, WatchedData> watchedData;
    QMap<QString, WatchedData> initialData;
    QMap<ExtensionData *, WatchedExtDataNotifier *> watchedNotifiers;
    QMap<QString, State> states;
    QMap<QString, ExtensionData *> items;
    ExtensionData *currentItem;
    HandlerNotifier *handlerNotifier;
    QList<ChlidHandlerNotifier *> childNotifiers;
    QHash<Object *, ItemGuard *> itemGuards;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONDATAFACTORY_P_H
