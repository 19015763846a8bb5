// SPDX-License-Identifier: BSD-3-Clause
#include <extension/extensiondata.h>
#include <extension/extensiondatafactory.h>
#include <extension/extensionhandler.h>
#include <extension/extensionhandlerfactory.h>
#include <extension/extensionpoint.h>

#include <QtTest>

using namespace ExtensionSystem;

namespace {

// "factory:<id>" makes a data factory, "item:<id>" a plain item.
class Point : public ExtensionPoint
{
public:
    using ExtensionPoint::ExtensionPoint;
    QList<ExtensionData *> parseExtensionText(const QStringList &texts) override
    {
        QList<ExtensionData *> made;
        for (const QString &text : texts) {
            const QString id = text.section(QLatin1Char(':'), 1);
            ExtensionData *data =
                    text.startsWith(QLatin1String("factory:")) ? new ExtensionDataFactory : new ExtensionData;
            data->setData(ExtensionData::IdRole, id);
            made << data;
        }
        return made;
    }
};

class Handler : public ExtensionHandler
{
public:
    explicit Handler(const QString &id)
        : ExtensionHandler(id, QStringLiteral("editor"), QStringLiteral("editor.point"), QStringLiteral("host"))
    { }
    int active(QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        calls << QStringLiteral("active:%1").arg(a0.name() || a0.data() ? "args" : "none");
        return 1;
    }
    void dataChanged(const QString &key, const QVariant &value) override
    {
        calls << QStringLiteral("%1=%2").arg(key, value.toString());
    }
    QStringList calls;
};

class Documents : public ExtensionHandlerFactory
{
public:
    using ExtensionHandlerFactory::ExtensionHandlerFactory;
    explicit Documents(const QString &id)
        : ExtensionHandlerFactory(id, QStringLiteral("editor"), QStringLiteral("editor.point"), QStringLiteral("host"))
    { }
    int active(QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        return 0;
    }
    void dataChanged(const QString &, const QVariant &) override { }
};

ExtensionData *makeData(const QString &id, const QString &text, Object *parent = nullptr)
{
    auto *data = new ExtensionData(parent);
    data->setData(ExtensionData::IdRole, id);
    data->setAttribute(QStringLiteral("text"), text);
    return data;
}

QString textOf(const ExtensionData *data)
{
    return data->attribute(QStringLiteral("text")).toString();
}

} // namespace

class tst_ExtensionFactory : public QObject
{
    Q_OBJECT
private slots:
    void instancesKeepTheirWatchedData();
    void snapshotOutlivesDetach();
    void joiningTheHalves();
    void goneObjectsAreNotFollowed();
};

void tst_ExtensionFactory::instancesKeepTheirWatchedData()
{
    Point point(QStringLiteral("editor.point"), QStringLiteral("host"));
    point.updateExtensionText({QStringLiteral("factory:doc"), QStringLiteral("item:cmd.save")});
    auto *docs = dynamic_cast<ExtensionDataFactory *>(point.extensionData(QStringLiteral("doc")));
    QVERIFY(docs);
    docs->setAttribute(QStringLiteral("icon"), QStringLiteral("doc.png"));
    ExtensionData *save = point.extensionData(QStringLiteral("cmd.save"));
    save->setAttribute(QStringLiteral("enabled"), true);
    save->setAttribute(QStringLiteral("text"), QStringLiteral("Save"));

    // The watched handler is recorded before the factories meet and taken up when they do.
    Documents factory(QStringLiteral("doc"));
    Handler saveHandler(QStringLiteral("cmd.save"));
    factory.attach(&saveHandler);
    QVERIFY(!factory.dataFactory());
    point.registerExtensionHandler(&saveHandler);
    point.registerExtensionHandler(&factory);
    QCOMPARE(factory.dataFactory(), docs);

    // Each child handler gets an item of its own under the data factory, activated once without arguments.
    auto *one = new Handler(QStringLiteral("doc.1"));
    auto *two = new Handler(QStringLiteral("doc.2"));
    factory.addChild(one);
    factory.addChild(two);
    QCOMPARE(docs->childCount(), 2);
    QCOMPARE(one->calls, QStringList({"active:none"}));
    QCOMPARE(two->calls, QStringList({"active:none"}));
    ExtensionData *item = one->extensionData();
    QVERIFY(item && item != two->extensionData());
    QCOMPARE(item->parent(), static_cast<Object *>(docs));
    QCOMPARE(item->id(), QStringLiteral("doc.1"));
    QCOMPARE(item->pointId(), QStringLiteral("editor.point"));
    QCOMPARE(item->extendPlugin(), QStringLiteral("host"));
    QCOMPARE(item->attribute(QStringLiteral("icon")).toString(), QStringLiteral("doc.png"));
    QCOMPARE(item->roleName(ExtensionDataFactory::CurrentItemRole), QStringLiteral("currentitem"));
    QCOMPARE(docs->create(one), item);

    // Values written while one instance is current come back with it, and only with it.
    save->setAttribute(QStringLiteral("enabled"), false); // before any item is current
    QTest::ignoreMessage(QtDebugMsg, "ExtensionDataFactoryPrivate::State::restoreInitial()");
    docs->setCurrentItem(QStringLiteral("doc.1"));
    QCOMPARE(save->attribute(QStringLiteral("enabled")).toBool(), true);
    save->setAttribute(QStringLiteral("enabled"), false);
    save->setAttribute(QStringLiteral("text"), QStringLiteral("Save 1"));
    docs->setCurrentItem(QStringLiteral("doc.2"));
    QCOMPARE(save->attribute(QStringLiteral("enabled")).toBool(), true);
    QCOMPARE(textOf(save), QStringLiteral("Save"));
    save->setAttribute(QStringLiteral("text"), QStringLiteral("Save 2"));
    saveHandler.calls.clear();
    docs->setCurrentItem(QStringLiteral("doc.1"));
    QCOMPARE(save->attribute(QStringLiteral("enabled")).toBool(), false);
    QCOMPARE(textOf(save), QStringLiteral("Save 1"));
    QCOMPARE(saveHandler.calls.size(), 2); // the handler hears what changed
    docs->setCurrentItem(QStringLiteral("doc.2"));
    QCOMPARE(save->attribute(QStringLiteral("enabled")).toBool(), true);
    QCOMPARE(textOf(save), QStringLiteral("Save 2"));

    // Choosing the current item again or an unknown one changes nothing.
    saveHandler.calls.clear();
    docs->setCurrentItem(QStringLiteral("doc.2"));
    QTest::ignoreMessage(QtDebugMsg, "setcurrentItem \"doc.9\" (\"doc.1\", \"doc.2\")");
    docs->setCurrentItem(QStringLiteral("doc.9"));
    QCOMPARE(textOf(save), QStringLiteral("Save 2"));
    QVERIFY(saveHandler.calls.isEmpty());

    // Whatever an instance writes to its item shows on the data factory.
    two->setData(QStringLiteral("title"), QStringLiteral("b.txt"));
    QCOMPARE(docs->attribute(QStringLiteral("title")).toString(), QStringLiteral("b.txt"));
    one->extensionData()->setAttribute(QStringLiteral("title"), QStringLiteral("a.txt"));
    QCOMPARE(docs->attribute(QStringLiteral("title")).toString(), QStringLiteral("a.txt"));

    // A child handler that is destroyed takes nothing else with it.
    delete two;
    QCOMPARE(docs->childCount(), 2);
    QCOMPARE(docs->attribute(QStringLiteral("ExtensionHandler")).toString(), QStringLiteral("stop"));
    docs->setCurrentItem(QStringLiteral("doc.1"));
    QCOMPARE(textOf(save), QStringLiteral("Save 1"));
}

void tst_ExtensionFactory::snapshotOutlivesDetach()
{
    ExtensionDataFactory docs;
    QScopedPointer<ExtensionData> panel(makeData(QStringLiteral("panel"), QStringLiteral("initial")));
    Handler h1(QStringLiteral("doc.1")), h2(QStringLiteral("doc.2")), h3(QStringLiteral("doc.3"));
    docs.attach(panel.data());
    docs.create(&h1);
    docs.create(&h2);
    docs.create(&h3);

    docs.setCurrentItem(QStringLiteral("doc.1"));
    panel->setAttribute(QStringLiteral("text"), QStringLiteral("changed"));
    // Detached, the item keeps its snapshot: a first visit still puts it back.
    docs.detach(panel.data());
    docs.setCurrentItem(QStringLiteral("doc.2"));
    QCOMPARE(textOf(panel.data()), QStringLiteral("initial"));
    // Not watched, it is neither stored nor restored on a later visit.
    panel->setAttribute(QStringLiteral("text"), QStringLiteral("unwatched"));
    docs.setCurrentItem(QStringLiteral("doc.1"));
    QCOMPARE(textOf(panel.data()), QStringLiteral("unwatched"));

    // Attached anew, the attributes of that moment replace the snapshot.
    docs.attach(panel.data());
    docs.attach(panel.data());
    docs.setCurrentItem(QStringLiteral("doc.2")); // stores "unwatched" for doc.1
    panel->setAttribute(QStringLiteral("text"), QStringLiteral("elsewhere"));
    docs.setCurrentItem(QStringLiteral("doc.3"));
    QCOMPARE(textOf(panel.data()), QStringLiteral("unwatched"));
    docs.setCurrentItem(QStringLiteral("doc.2"));
    QCOMPARE(textOf(panel.data()), QStringLiteral("elsewhere"));
}

void tst_ExtensionFactory::joiningTheHalves()
{
    ExtensionDataFactory docs;
    docs.setData(ExtensionData::IdRole, QStringLiteral("doc"));
    Documents factory(QStringLiteral("doc"));
    Handler plain(QStringLiteral("doc"));

    // A plain handler before the factory stops the join: the factory's children get no
    // items. Called directly: setExtensionHandler reaches it with no previous handler
    // on the way, as unlinking the old handler re-enters it.
    docs.onExtensionHandlerChanged(&factory, &plain);
    auto *early = new Handler(QStringLiteral("doc.1"));
    factory.addChild(early);
    QCOMPARE(docs.childCount(), 0);
    QVERIFY(early->calls.isEmpty());

    // Joined afresh: a watched handler attached after the join has its data found in the
    // data factory's subtree; the same id twice keeps the first handler.
    docs.setExtensionHandler(&factory);
    QCOMPARE(factory.dataFactory(), &docs);
    ExtensionData *panel = makeData(QStringLiteral("panel"), QStringLiteral("initial"), &docs);
    Handler panelHandler(QStringLiteral("panel")), sameId(QStringLiteral("panel"));
    panel->setExtensionHandler(&panelHandler);
    factory.attach(&panelHandler);
    factory.attach(&sameId);
    QCOMPARE(factory.watchedExtHandler(), QList<ExtensionHandler *>({&panelHandler}));
    auto *child = new Handler(QStringLiteral("doc.2"));
    factory.addChild(child);
    QCOMPARE(child->calls, QStringList({"active:none"}));
    docs.setCurrentItem(QStringLiteral("doc.2"));
    panel->setAttribute(QStringLiteral("text"), QStringLiteral("two"));

    // Detaching on the handler side leaves the data watched.
    factory.detach(&panelHandler);
    QVERIFY(factory.watchedExtHandler().isEmpty());
    auto *third = new Handler(QStringLiteral("doc.3"));
    factory.addChild(third);
    docs.setCurrentItem(QStringLiteral("doc.3"));
    QCOMPARE(textOf(panel), QStringLiteral("initial"));
    docs.setCurrentItem(QStringLiteral("doc.2"));
    QCOMPARE(textOf(panel), QStringLiteral("two"));

    // A watched child handler that dies leaves the watch list; the switch call of the
    // handler side changes nothing.
    auto *watchedChild = new Handler(QStringLiteral("doc.4"));
    factory.addChild(watchedChild);
    factory.attach(watchedChild);
    QCOMPARE(factory.watchedExtHandler().size(), 1);
    delete watchedChild;
    QVERIFY(factory.watchedExtHandler().isEmpty());
    factory.setCurrentItem(QStringLiteral("doc.3"));
    QCOMPARE(textOf(panel), QStringLiteral("two"));

    // A plain item's handler factory has no data factory.
    ExtensionData plainData;
    Documents other(QStringLiteral("other"));
    plainData.setExtensionHandler(&other);
    QVERIFY(!other.dataFactory());
}

void tst_ExtensionFactory::goneObjectsAreNotFollowed()
{
    auto *docs = new ExtensionDataFactory;
    Handler h1(QStringLiteral("doc.1")), h2(QStringLiteral("doc.2")), h3(QStringLiteral("doc.3"));
    QVERIFY(!docs->create(nullptr));
    Handler nameless{QString()};
    QVERIFY(!docs->create(&nameless));
    docs->attach(nullptr);
    docs->detach(nullptr);
    docs->handlerAttached(nullptr);

    // Watched items destroyed while watched, and after a detach, with their snapshots kept.
    ExtensionData *watched = makeData(QStringLiteral("watched"), QStringLiteral("w"));
    ExtensionData *detached = makeData(QStringLiteral("detached"), QStringLiteral("d"));
    docs->attach(watched);
    docs->attach(detached);
    docs->create(&h1);
    docs->setCurrentItem(QStringLiteral("doc.1"));
    docs->detach(detached);
    delete watched;
    delete detached;
    docs->create(&h2);
    docs->setCurrentItem(QStringLiteral("doc.2"));
    // The current item destroyed, then another made current.
    delete h2.extensionData();
    QVERIFY(!h2.extensionData());
    docs->create(&h3);
    docs->setCurrentItem(QStringLiteral("doc.3"));
    // An item deleted without its parent's virtual hearing of it.
    QVERIFY(docs->removeChild(docs->childIndexOf(h3.extensionData())));
    docs->setCurrentItem(QStringLiteral("doc.3"));
    docs->setCurrentItem(QStringLiteral("doc.1"));
    QVERIFY(docs->create(&h3));

    // A handler factory from the one-argument constructor works, and adopts no parent.
    Object owner;
    Documents loose(&owner);
    QVERIFY(!loose.parent());
    Handler watchedHandler(QStringLiteral("w"));
    loose.attach(&watchedHandler);
    QCOMPARE(loose.watchedExtHandler().size(), 1);
    loose.setCurrentItem(QStringLiteral("w"));
    loose.detach(&watchedHandler);
    loose.detach(nullptr);
    loose.attach(nullptr);

    // A watched handler that is not a child dies without being detached: never followed.
    Documents factory(QStringLiteral("doc"));
    auto *outsider = new Handler(QStringLiteral("outsider"));
    factory.attach(outsider);
    delete outsider;
    QVERIFY(factory.watchedExtHandler().isEmpty());
    docs->setExtensionHandler(&factory);
    docs->setExtensionHandler(&loose); // detaches what the previous factory watched
    QCOMPARE(loose.dataFactory(), docs);

    // The data factory dies first; its handler factory lives on and grows children.
    delete docs;
    QVERIFY(!loose.extensionData());
    loose.addChild(new Handler(QStringLiteral("doc.5")));
    QCOMPARE(loose.childCount(), 1);
}

QTEST_MAIN(tst_ExtensionFactory)
#include "tst_extensionfactory.moc"
