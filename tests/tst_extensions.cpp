// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <event/eventmanager.h>
#include <event/extensionevent.h>
#include <event/iextensionlistener.h>
#include <extension/extensiondata.h>
#include <extension/extensionfileparser.h>
#include <extension/extensionhandler.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <extension/extensionstorage.h>
#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>

#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

ExtensionPointAdmin *adminOf(PluginFramework *framework)
{
    return frameworkContext(framework)->extensionManager->pointAdmin();
}

struct PointEvents : IExtensionListener
{
    void extensionChanged(const ExtensionEvent &event) override
    {
        events << QStringLiteral("%1:%2:%3").arg(event.action()).arg(event.plugin(), event.pointId());
    }
    QStringList events;
};

class Point : public ExtensionPoint
{
public:
    using ExtensionPoint::ExtensionPoint;
    QList<ExtensionData *> parseExtensionText(const QStringList &texts) override
    {
        QList<ExtensionData *> items;
        for (const QString &text : texts) {
            if (text.startsWith(QLatin1String("item:")))
                items << item(text.mid(5));
            // "tree:<id>:<child id>,<child id>...": an item with nested items, put
            // together below a scratch node, which keeps the events of the children
            // being added: only the point's walk over the tree can link them.
            if (text.startsWith(QLatin1String("tree:"))) {
                ExtensionData *root = item(text.section(QLatin1Char(':'), 1, 1));
                scratch.addChild(root);
                const QStringList children = text.section(QLatin1Char(':'), 2).split(QLatin1Char(','));
                for (const QString &child : children)
                    root->addChild(item(child));
                items << root;
            }
        }
        return items;
    }

private:
    Object scratch;

    static ExtensionData *item(const QString &id)
    {
        auto *data = new ExtensionData;
        data->setData(ExtensionData::IdRole, id);
        data->setData(ExtensionData::PluginRole, QStringLiteral("nobody"));
        return data;
    }
};

class Handler : public ExtensionHandler
{
public:
    using ExtensionHandler::ExtensionHandler;
    int active(QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        arguments << (a0.data() ? *static_cast<const int *>(a0.data()) : -1);
        return ++calls;
    }
    void dataChanged(const QString &key, const QVariant &value) override { changes << key + '=' + value.toString(); }
    int calls = 0;
    QList<int> arguments;
    QStringList changes;
};

class Item : public ExtensionData
{
public:
    void onExtensionHandlerChanged(ExtensionHandler *current, ExtensionHandler *previous) override
    {
        changes << qMakePair(current, previous);
        ExtensionData::onExtensionHandlerChanged(current, previous);
    }
    bool handleEvent(const QHash<QString, QVariant> &event, Object *source) override
    {
        events << event.value(QStringLiteral("ext.event.type")).toString();
        return ExtensionData::handleEvent(event, source);
    }
    QList<QPair<ExtensionHandler *, ExtensionHandler *>> changes;
    QStringList events;
};

} // namespace

class tst_Extensions : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void dataAndHandlerLink();
    void startOnDemandAcrossTwoRuns();
    void pointsAndHandlersMeetInEitherOrder();
    void badInput();
};

void tst_Extensions::dataAndHandlerLink()
{
    const QString handlerState = QStringLiteral("ExtensionHandler");
    Item item;
    Handler first(QStringLiteral("x"), QStringLiteral("p"), QStringLiteral("point"), QStringLiteral("host"));
    Handler second(QStringLiteral("x"), QStringLiteral("p"), QStringLiteral("point"), QStringLiteral("host"));

    // Without a handler a call waits, one slot only, and asks for the plug-in each time.
    int one = 1, two = 2;
    QCOMPARE(item.active(Q_ARG(int, one)), 0);
    QCOMPARE(item.active(Q_ARG(int, two)), 0);
    QCOMPARE(item.events, QStringList({"ext.event.type.startPlugin", "ext.event.type.startPlugin"}));
    item.setExtensionHandler(&first);
    QCOMPARE(first.arguments, QList<int>({2}));
    QCOMPARE(first.extensionData(), &item);
    QVERIFY(!item.attributeContains(handlerState)); // a first attach leaves it absent
    QCOMPARE(item.active(Q_ARG(int, one)), 2); // attached: the handler's own result

    // Replacing the handler tells the item once, with the old one, and frees the old one.
    item.changes.clear();
    item.setExtensionHandler(&second);
    QCOMPARE(item.changes.size(), 1);
    QCOMPARE(item.changes.at(0),
             qMakePair(static_cast<ExtensionHandler *>(&second), static_cast<ExtensionHandler *>(&first)));
    QVERIFY(!first.extensionData());
    QCOMPARE(second.extensionData(), &item);
    QVERIFY(!item.attributeContains(handlerState));
    QCOMPARE(second.arguments, QList<int>()); // nothing waited: nothing replayed

    // A handler that moves to another item frees the first, which reads "stop".
    Item other;
    second.setExtensionData(&other);
    QVERIFY(!item.extensionHandler());
    QCOMPARE(other.extensionHandler(), &second);
    QCOMPARE(item.attribute(handlerState).toString(), QStringLiteral("stop"));
    item.setExtensionHandler(&first);
    QCOMPARE(item.attribute(handlerState).toString(), QStringLiteral("start"));

    // Attributes cross the link: the item's changes reach the handler (its
    // "start" came after the attach), the handler's own writes do not come back to it.
    QCOMPARE(first.changes, QStringList({"ExtensionHandler=start"}));
    first.changes.clear();
    item.setAttribute(QStringLiteral("title"), QStringLiteral("Open"));
    QCOMPARE(first.changes, QStringList({"title=Open"}));
    QVERIFY(first.setData(QStringLiteral("title"), QStringLiteral("Close")));
    QCOMPARE(item.attribute(QStringLiteral("title")).toString(), QStringLiteral("Close"));
    QCOMPARE(first.changes, QStringList({"title=Open"}));
    QVERIFY(!Handler(QStringLiteral("free"), {}, {}, {}).setData(QStringLiteral("title"), 1));

    // A destroyed handler leaves its item free.
    {
        Handler shortLived(QStringLiteral("x"), QStringLiteral("p"), QStringLiteral("point"), QStringLiteral("host"));
        other.setExtensionHandler(&shortLived);
        QVERIFY(!second.extensionData());
    }
    QVERIFY(!other.extensionHandler());
    QCOMPARE(other.attribute(handlerState).toString(), QStringLiteral("stop"));
}

void tst_Extensions::startOnDemandAcrossTwoRuns()
{
    deployPlugin(QStringLiteral("ext.host"));
    const QString supplier = deployPlugin(QStringLiteral("ext.supplier"));
    QFile::copy(QFileInfo(builtPlugin(QStringLiteral("ext.supplier"))).absolutePath()
                        + QStringLiteral("/extension.xml"),
                QFileInfo(supplier).absolutePath() + QStringLiteral("/extension.xml"));
    for (int run = 1; run <= 2; ++run) {
        clearPluginLog();
        PluginFramework framework;
        auto *manager = framework.findChild<PluginManager *>();
        QSignalSpy parsed(framework.findChild<ExtensionFileParser *>(), &ExtensionFileParser::extensionFound);
        framework.init();
        manager->start(QStringLiteral("ext.host")); // the host only
        ExtensionPoint *point = adminOf(&framework)->findExtensionPoint(QStringLiteral("test.point"));
        QVERIFY(point);
        QTRY_COMPARE(point->childCount(), 1);
        // Nothing more arrives: the item is made once, however often its text comes.
        QVERIFY(settle());
        QCOMPARE(point->childCount(), 1);
        // The unchanged file of the second run is not read again: its items come from the store.
        QCOMPARE(parsed.count(), run == 1 ? 1 : 0);

        ExtensionData *data = point->extensionData(QStringLiteral("supplier.action"));
        QVERIFY(data);
        QCOMPARE(data->attribute(QStringLiteral("title")).toString(), QStringLiteral("Größe ändern"));
        QCOMPARE(data->plugin(), QStringLiteral("ext.supplier"));
        QCOMPARE(manager->find(QStringLiteral("ext.supplier"))->state(), int(PluginInfo::Resolved));
        QVERIFY(!data->extensionHandler());

        // The call starts the supplier, whose handler receives it.
        const QString argument = QStringLiteral("run%1").arg(run);
        QCOMPARE(data->active(Q_ARG(QString, argument)), 0);
        QCOMPARE(manager->find(QStringLiteral("ext.supplier"))->state(), int(PluginInfo::Active));
        QCOMPARE(pluginLog(), QStringList({"start:ext.supplier", "active:supplier.action:" + argument}));
        QVERIFY(data->extensionHandler());
        // Attached now: the handler's own result comes back.
        QCOMPARE(data->active(Q_ARG(QString, argument)), 7);

        // The host unregisters and destroys its point when it stops.
        framework.stop();
        QVERIFY(!adminOf(&framework)->findExtensionPoint(QStringLiteral("test.point")));
    }
}

void tst_Extensions::pointsAndHandlersMeetInEitherOrder()
{
    QDir().mkpath(pluginsDir());
    PluginFramework framework;
    framework.init();
    ExtensionPointAdmin *admin = adminOf(&framework);
    PointEvents events;
    frameworkContext(&framework)->eventManager->registerListener(QStringLiteral("test"), &events);

    // Handler first: it waits in the admin, then in the point, then meets its item.
    Handler early(QStringLiteral("one"), QStringLiteral("p"), QStringLiteral("Point.A"), QStringLiteral("host"));
    admin->registerExtensionHandler(&early);
    Point a(QStringLiteral("point.a"), QStringLiteral("host"));
    admin->registerExtensionPoint(&a);
    QCOMPARE(events.events, QStringList({"1:host:point.a"}));
    // The case differs and the handler came first: it waits for good.
    a.updateExtensionText({QStringLiteral("item:one")});
    QVERIFY(!a.extensionData(QStringLiteral("one"))->extensionHandler());

    // Point first: a handler whose point id differs in case finds it.
    Handler late(QStringLiteral("one"), QStringLiteral("p"), QStringLiteral("POINT.A"), QStringLiteral("host"));
    admin->registerExtensionHandler(&late);
    QCOMPARE(a.extensionData(QStringLiteral("one"))->extensionHandler(), &late);

    // Item first, then handler with the exact id.
    Point b(QStringLiteral("point.b"), QStringLiteral("host"));
    admin->registerExtensionPoint(&b);
    b.updateExtensionText({QStringLiteral("item:two"), QStringLiteral("item:two")});
    QCOMPARE(b.childCount(), 2);
    QCOMPARE(b.extensionData(QStringLiteral("two")), static_cast<ExtensionData *>(b.childAt(0)));
    Handler two(QStringLiteral("two"), QStringLiteral("p"), QStringLiteral("point.b"), QStringLiteral("host"));
    b.extensionData(QStringLiteral("two"))->active();
    admin->registerExtensionHandler(&two);
    QCOMPARE(two.calls, 1); // the stored call was replayed
    admin->unregisterExtensionHandler(QStringLiteral("two"));
    QVERIFY(!b.extensionData(QStringLiteral("two"))->extensionHandler());
    QCOMPARE(b.extensionData(QStringLiteral("two"))->attribute(QStringLiteral("ExtensionHandler")).toString(),
             QStringLiteral("stop"));

    // Handlers that wait in the point meet nested items too, the first child included.
    Point d(QStringLiteral("point.d"), QStringLiteral("host"));
    Handler nestedFirst(QStringLiteral("n.1"), QStringLiteral("p"), QStringLiteral("point.d"), QStringLiteral("host"));
    Handler nestedLast(QStringLiteral("n.2"), QStringLiteral("p"), QStringLiteral("point.d"), QStringLiteral("host"));
    d.registerExtensionHandler(&nestedFirst);
    d.registerExtensionHandler(&nestedLast);
    d.updateExtensionText({QStringLiteral("tree:n:n.1,n.2")});
    ExtensionData *nested = d.extensionData(QStringLiteral("n"));
    QVERIFY(nested);
    QCOMPARE(nested->childCount(), 2);
    QCOMPARE(static_cast<ExtensionData *>(nested->childAt(0))->extensionHandler(), &nestedFirst);
    QCOMPARE(static_cast<ExtensionData *>(nested->childAt(1))->extensionHandler(), &nestedLast);

    // Unregistering a point tells it twice and leaves it alive without a parent;
    // a handler for it then waits again.
    events.events.clear();
    admin->unregisterExtensionPoint(QStringLiteral("point.b"));
    QCOMPARE(events.events, QStringList({"2:host:point.b", "2:host:point.b"}));
    QVERIFY(!b.parent());
    QCOMPARE(b.childCount(), 2);
    Handler again(QStringLiteral("three"), QStringLiteral("p"), QStringLiteral("point.b"), QStringLiteral("host"));
    admin->registerExtensionHandler(&again);
    QVERIFY(!again.extensionData());
    admin->registerExtensionPoint(&b);
    b.updateExtensionText({QStringLiteral("item:three")});
    QCOMPARE(again.extensionData(), b.extensionData(QStringLiteral("three")));

    // A start request from an item climbs to the admin.
    QSignalSpy requests(admin, &ExtensionPointAdmin::requestStartingPlugin);
    Point c(QStringLiteral("point.c"), QStringLiteral("host"));
    admin->registerExtensionPoint(&c);
    c.updateExtensionText({QStringLiteral("item:four")});
    c.extensionData(QStringLiteral("four"))->active();
    QCOMPARE(requests.count(), 1);
    QCOMPARE(requests.at(0).at(0).toString(), QStringLiteral("nobody"));

    frameworkContext(&framework)->eventManager->unregisterListener(&events);
    admin->unregisterExtensionPoint(QStringLiteral("point.a"));
    admin->unregisterExtensionPoint(QStringLiteral("point.b"));
    admin->unregisterExtensionPoint(QStringLiteral("point.c"));
}

void tst_Extensions::badInput()
{
    QDir().mkpath(pluginsDir());
    PluginFramework framework;
    auto *manager = framework.findChild<PluginManager *>();
    framework.init();
    ExtensionPointAdmin *admin = adminOf(&framework);
    QSignalSpy errors(manager, &PluginManager::errorOccured);

    // Empty ids, null pointers and unknown ids are ignored.
    Point nameless{QString(), QStringLiteral("host")};
    admin->registerExtensionPoint(&nameless);
    admin->registerExtensionPoint(nullptr);
    QCOMPARE(admin->childCount(), 0);
    admin->registerExtensionHandler(nullptr);
    Handler noId(QString(), QStringLiteral("p"), QStringLiteral("point.x"), QStringLiteral("host"));
    admin->registerExtensionHandler(&noId);
    admin->unregisterExtensionHandler(QStringLiteral("unknown"));
    admin->unregisterExtensionPoint(QStringLiteral("unknown"));

    // Texts a point cannot read make no items.
    Point point(QStringLiteral("point.x"), QStringLiteral("host"));
    admin->registerExtensionPoint(&point);
    point.updateExtensionText({QStringLiteral("<not xml"), QString()});
    QCOMPARE(point.childCount(), 0);

    // Handlers destroyed while waiting, in the admin and in the point, are forgotten.
    {
        Handler waitingInAdmin(QStringLiteral("w1"), QStringLiteral("p"), QStringLiteral("point.later"),
                               QStringLiteral("host"));
        admin->registerExtensionHandler(&waitingInAdmin);
        Handler waitingInPoint(QStringLiteral("w2"), QStringLiteral("p"), QStringLiteral("point.x"),
                               QStringLiteral("host"));
        Handler alsoWaiting(QStringLiteral("w3"), QStringLiteral("p"), QStringLiteral("point.x"),
                            QStringLiteral("host"));
        admin->registerExtensionHandler(&waitingInPoint);
        admin->registerExtensionHandler(&alsoWaiting);
    }
    Point later(QStringLiteral("point.later"), QStringLiteral("host"));
    admin->registerExtensionPoint(&later);
    point.updateExtensionText({QStringLiteral("item:w2"), QStringLiteral("item:w3")});
    QVERIFY(!point.extensionData(QStringLiteral("w2"))->extensionHandler());
    QVERIFY(!point.extensionData(QStringLiteral("w3"))->extensionHandler());

    // A point destroyed while registered leaves nothing behind to follow.
    auto *doomed = new Point(QStringLiteral("point.doomed"), QStringLiteral("host"));
    admin->registerExtensionPoint(doomed);
    Handler onDoomed(QStringLiteral("d"), QStringLiteral("p"), QStringLiteral("point.doomed"), QStringLiteral("host"));
    admin->registerExtensionHandler(&onDoomed);
    delete doomed;
    admin->unregisterExtensionHandler(QStringLiteral("d"));
    admin->unregisterExtensionPoint(QStringLiteral("point.doomed"));
    QVERIFY(!admin->findExtensionPoint(QStringLiteral("point.doomed")));

    // A start request for a plug-in nobody installed is reported by the plug-in manager.
    point.updateExtensionText({QStringLiteral("item:orphan")});
    QCOMPARE(point.extensionData(QStringLiteral("orphan"))->active(), 0);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toInt(), int(PluginManager::NotInstalledError));

    admin->unregisterExtensionPoint(QStringLiteral("point.x"));
    admin->unregisterExtensionPoint(QStringLiteral("point.later"));
}

QTEST_MAIN(tst_Extensions)
#include "tst_extensions.moc"
