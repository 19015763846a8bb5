// SPDX-License-Identifier: BSD-3-Clause
#include <QtTest>

#include <event/customizedevent.h>
#include <event/extensionevent.h>
#include <event/frameworkevent.h>
#include <event/pluginevent.h>
#include <event/serviceevent.h>
#include <plugin/pluginconstance.h>
#include <core/qtcompat_p.h>
#include <service/serviceproperty.h>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;

using Properties = QHash<QString, QVariant>;

class tst_values : public QObject
{
    Q_OBJECT
private slots:
    void metaTypesKnownAfterConstruction();
    void propertyConstruction();
    void propertyAssignmentMerges();
    void propertyMatch();
    void propertyMatchAcrossTypes_data();
    void propertyMatchAcrossTypes();
    void propertyClassesAndRanking();
    void pluginEventRoles();
    void serviceAndExtensionEvents();
    void setDataDetaches();
    void foreignRecords();
};

void tst_values::metaTypesKnownAfterConstruction()
{
    PluginEvent plugin(PluginEvent::Installed);
    FrameworkEvent framework(FrameworkEvent::FrameworkStarted);
    ServiceEvent service(ServiceEvent::Registered);
    ExtensionEvent extension(ExtensionEvent::PointRegistered);

    // Looked up by name before the test itself touches any of these types.
    const int pluginAction = QtCompat::metaTypeIdByName("ExtensionSystem::PluginEvent::Action");
    const int frameworkAction = QtCompat::metaTypeIdByName("ExtensionSystem::FrameworkEvent::Action");
    const int serviceAction = QtCompat::metaTypeIdByName("ExtensionSystem::ServiceEvent::Action");
    const int extensionAction = QtCompat::metaTypeIdByName("ExtensionSystem::ExtensionEvent::Action");
    const int property = QtCompat::metaTypeIdByName("ExtensionSystem::ServiceProperty");
    QCOMPARE(pluginAction, qMetaTypeId<PluginEvent::Action>());
    QCOMPARE(frameworkAction, qMetaTypeId<FrameworkEvent::Action>());
    QCOMPARE(serviceAction, qMetaTypeId<ServiceEvent::Action>());
    QCOMPARE(extensionAction, qMetaTypeId<ExtensionEvent::Action>());
    QCOMPARE(property, qMetaTypeId<ServiceProperty>());

    // The action travels as the enumeration and is read back as a plain int.
    QCOMPARE(plugin.data(PluginEvent::RoleAction).userType(), qMetaTypeId<PluginEvent::Action>());
    QCOMPARE(framework.data(FrameworkEvent::RoleAction).userType(), qMetaTypeId<FrameworkEvent::Action>());
    QCOMPARE(service.data(ServiceEvent::RoleAction).userType(), qMetaTypeId<ServiceEvent::Action>());
    QCOMPARE(extension.data(ExtensionEvent::RoleAction).userType(), qMetaTypeId<ExtensionEvent::Action>());
    QCOMPARE(plugin.action(), 2);
    QCOMPARE(framework.action(), 16);
    QCOMPARE(service.action(), 1);
    QCOMPARE(extension.action(), 1);
}

void tst_values::propertyConstruction()
{
    QCOMPARE(ServiceProperty().serviceId(), -1);
    const ServiceProperty fromHash{Properties()};
    QCOMPARE(fromHash.serviceId(), 0);
    QCOMPARE(fromHash.ranking(), 0);
    QVERIFY(fromHash.classList().isEmpty());
    QVERIFY(!fromHash.isFactory());
    QVERIFY(fromHash.plugin().isNull());
    QVERIFY(!fromHash.match({{PluginConstance::SERVICE_ID, -1}}));

    // The registrant may set the ranking but not the manager's keys.
    const Properties own{{PluginConstance::SERVICE_ID, 99},
                         {PluginConstance::SERVICE_PLUGIN, QStringLiteral("forged")},
                         {PluginConstance::SERVICE_ISFACTORY, true},
                         {PluginConstance::SERVICE_RANKING, 5},
                         {QStringLiteral("color"), QStringLiteral("red")}};
    const ServiceProperty p(QStringLiteral("org.example.a"), {QStringLiteral("IFoo")}, 7, QStringLiteral("7"), false,
                            own);
    QCOMPARE(p.serviceId(), 7);
    QCOMPARE(p.plugin(), QStringLiteral("org.example.a"));
    QVERIFY(!p.isFactory());
    QCOMPARE(p.ranking(), 5);
    QCOMPARE(p.classList(), QStringList{QStringLiteral("IFoo")});
    QVERIFY(p.match(
            {{PluginConstance::SERVICE_PID, QStringLiteral("7")}, {QStringLiteral("color"), QStringLiteral("red")}}));
}

void tst_values::propertyAssignmentMerges()
{
    ServiceProperty a(Properties{{QStringLiteral("onlyA"), 1}, {PluginConstance::SERVICE_RANKING, 3}});
    const ServiceProperty b(Properties{{QStringLiteral("onlyB"), 2}, {PluginConstance::SERVICE_RANKING, 8}});
    a = b;
    QVERIFY(a.match({{QStringLiteral("onlyA"), 1}, {QStringLiteral("onlyB"), 2}}));
    QCOMPARE(a.ranking(), 8);
    QVERIFY(!b.match({{QStringLiteral("onlyA"), 1}}));

    // Assigning a default property leaves its id -1 behind, but no other key goes.
    a = ServiceProperty();
    QCOMPARE(a.serviceId(), -1);
    QVERIFY(a.match({{QStringLiteral("onlyA"), 1}}));

    const ServiceProperty &self = a;
    a = self;
    QCOMPARE(a.ranking(), 8);

    ServiceProperty copy(a);
    copy.rankingUp();
    QCOMPARE(copy.ranking(), 9);
    QCOMPARE(a.ranking(), 8);
}

void tst_values::propertyMatch()
{
    QVERIFY(ServiceProperty(Properties()).match(Properties()));

    const ServiceProperty p(Properties{{QStringLiteral("count"), 1},
                                       {QStringLiteral("scale"), 1.0},
                                       {QStringLiteral("label"), QStringLiteral("1.0")}});
    QVERIFY(p.match(Properties()));
    QVERIFY(!p.match({{QStringLiteral("missing"), QVariant()}}));
    QVERIFY(!p.match({{QStringLiteral("count"), QVariant()}}));
    QVERIFY(!p.match({{QStringLiteral("count"), 2}}));
    QVERIFY(!p.match({{QStringLiteral("count"), 1}, {QStringLiteral("missing"), 1}}));
    QVERIFY(p.match({{QStringLiteral("count"), 1}, {QStringLiteral("scale"), 1.0}}));

    // QVariant's equality converts the right side to the type of the left one,
    // so the stored value decides: "1.0" becomes the double 1.0, but 1.0 becomes "1".
    QVERIFY(p.match({{QStringLiteral("count"), QStringLiteral("1")}}));
    QVERIFY(p.match({{QStringLiteral("scale"), QStringLiteral("1.0")}}));
    QVERIFY(!p.match({{QStringLiteral("label"), 1.0}}));
}

void tst_values::propertyMatchAcrossTypes_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QVariant>("filter");
    QTest::addColumn<bool>("matches");

    // clang-format off
    // Numbers compare as numbers, without conversion.
    QTest::newRow("int, double")          << QVariant(1) << QVariant(1.0) << true;
    QTest::newRow("int, 1.5")             << QVariant(2) << QVariant(1.5) << false;
    QTest::newRow("int, bool")            << QVariant(1) << QVariant(true) << true;
    QTest::newRow("bool, int 2")          << QVariant(true) << QVariant(2) << false;
    QTest::newRow("uint, long long")      << QVariant(1u) << QVariant(qlonglong(1)) << true;
    // Otherwise the filter's value becomes the stored value's type.
    QTest::newRow("int, \"01\"")          << QVariant(1) << QVariant(QStringLiteral("01")) << true;
    QTest::newRow("\"01\", int")          << QVariant(QStringLiteral("01")) << QVariant(1) << false;
    QTest::newRow("\"1\", int")           << QVariant(QStringLiteral("1")) << QVariant(1) << true;
    QTest::newRow("\"1\", true")          << QVariant(QStringLiteral("1")) << QVariant(true) << false;
    QTest::newRow("\"true\", true")       << QVariant(QStringLiteral("true")) << QVariant(true) << true;
    QTest::newRow("bool, \"abc\"")        << QVariant(true) << QVariant(QStringLiteral("abc")) << true;
    QTest::newRow("bool, \"\"")           << QVariant(false) << QVariant(QString()) << true;
    QTest::newRow("string, bytes")        << QVariant(QStringLiteral("1")) << QVariant(QByteArray("1")) << true;
    QTest::newRow("string, list")         << QVariant(QStringLiteral("1")) << QVariant(QStringList{QStringLiteral("1")}) << true;
    QTest::newRow("date, its text")       << QVariant(QDate(2020, 1, 2)) << QVariant(QStringLiteral("2020-01-02")) << true;
    // Where the filter's value cannot become the stored type, the stored value
    // becomes the filter's type.
    QTest::newRow("list, string")         << QVariant(QVariantList{1}) << QVariant(QStringList{QStringLiteral("1")}) << true;
    QTest::newRow("int, date")            << QVariant(1) << QVariant(QDate(2020, 1, 2)) << false;
    QTest::newRow("invalid, string")      << QVariant() << QVariant(QString()) << false;
    // clang-format on
}

// The same answers whichever Qt the library is built with.
void tst_values::propertyMatchAcrossTypes()
{
    QFETCH(QVariant, stored);
    QFETCH(QVariant, filter);
    QFETCH(bool, matches);

    const ServiceProperty property(Properties{{QStringLiteral("key"), stored}});
    QCOMPARE(property.match({{QStringLiteral("key"), filter}}), matches);
}

void tst_values::propertyClassesAndRanking()
{
    const ServiceProperty p(QStringLiteral("org.example.a"), {QStringLiteral("IFoo"), QString()}, 1,
                            QStringLiteral("1"), true, Properties());
    QVERIFY(p.containsClass(QStringLiteral("IFoo")));
    QVERIFY(!p.containsClass(QStringLiteral("ifoo")));
    QVERIFY(!p.containsClass(QString()));
    QVERIFY(!p.containsClass(QStringLiteral("")));
    QVERIFY(p.isFactory());

    ServiceProperty down;
    QCOMPARE(down.ranking(), 0);
    down.rankingDown();
    QCOMPARE(down.ranking(), -1);
    QVERIFY(down.match({{PluginConstance::SERVICE_RANKING, -1}}));

    ServiceProperty up;
    up.rankingUp();
    up.rankingUp();
    QCOMPARE(up.ranking(), 2);
}

void tst_values::pluginEventRoles()
{
    PluginEvent single(PluginEvent::Resolved);
    QCOMPARE(single.sharedData()->type, 2);
    QCOMPARE(single.action(), 4);
    QCOMPARE(single.prevAction(), 0);
    QVERIFY(single.symbolic().isEmpty());
    QCOMPARE(single.initIndex(), 0);
    QCOMPARE(single.pluginSize(), 0);
    QVERIFY(!single.data(PluginEvent::RoleSymbolic).isValid());
    QVERIFY(!single.setData(PluginEvent::RolePrevAction, QVariant::fromValue(PluginEvent::Installed)));
    QCOMPARE(single.prevAction(), 0);
    QVERIFY(single.setData(PluginEvent::RoleSymbolic, QStringLiteral("org.example.a")));
    QCOMPARE(single.symbolic(), QStringLiteral("org.example.a"));

    const PluginEvent full(PluginEvent::Active, PluginEvent::Starting, QStringLiteral("org.example.a"),
                           QStringLiteral("/p/a"), QStringLiteral("/p/a/a.so"), QStringLiteral("1.2.0"), 3, 5);
    QCOMPARE(full.data(PluginEvent::RolePrevAction).userType(), qMetaTypeId<PluginEvent::Action>());
    // A listener that reads the record by key finds each value under its own key.
    const QHash<QString, QVariant> values = full.sharedData()->data;
    QCOMPARE(values.size(), 8);
    QCOMPARE(values.value(QStringLiteral("event.plugin.action")).toInt(), int(PluginEvent::Active));
    QCOMPARE(values.value(QStringLiteral("event.plugin.prevAction")).toInt(), int(PluginEvent::Starting));
    QCOMPARE(values.value(QStringLiteral("event.plugin.symbolic")).toString(), QStringLiteral("org.example.a"));
    QCOMPARE(values.value(QStringLiteral("event.plugin.locationDir")).toString(), QStringLiteral("/p/a"));
    QCOMPARE(values.value(QStringLiteral("event.plugin.filepath")).toString(), QStringLiteral("/p/a/a.so"));
    QCOMPARE(values.value(QStringLiteral("event.plugin.version")).toString(), QStringLiteral("1.2.0"));
    QCOMPARE(values.value(QStringLiteral("event.plugin.initIndex")).toInt(), 3);
    QCOMPARE(values.value(QStringLiteral("event.plugin.pluginSize")).toInt(), 5);

    FrameworkEvent framework(FrameworkEvent::FrameworkInitializing);
    QCOMPARE(framework.sharedData()->type, 1);
    QCOMPARE(framework.prevAction(), 0);
    QVERIFY(framework.setData(FrameworkEvent::RolePrevAction,
                              QVariant::fromValue(FrameworkEvent::FrameworkUninitialized)));
    QVERIFY(framework.data(FrameworkEvent::RolePrevAction).isValid());
    QCOMPARE(FrameworkEvent(FrameworkEvent::FrameworkStopping, FrameworkEvent::FrameworkStarted).prevAction(), 16);
}

void tst_values::serviceAndExtensionEvents()
{
    ServiceEvent bare(ServiceEvent::Unregistering);
    QCOMPARE(bare.sharedData()->type, 3);
    QVERIFY(!bare.data(ServiceEvent::RoleProperty).isValid());
    QCOMPARE(bare.property().serviceId(), -1);
    QVERIFY(bare.setData(ServiceEvent::RolePlugin, QStringLiteral("org.example.b")));
    QCOMPARE(bare.plugin(), QStringLiteral("org.example.b"));

    const ServiceProperty property(QStringLiteral("org.example.a"), {QStringLiteral("IFoo")}, 4, QStringLiteral("4"),
                                   false, {{PluginConstance::SERVICE_RANKING, 2}});
    const ServiceEvent full(ServiceEvent::Registered, QStringLiteral("org.example.a"),
                            {QStringLiteral("IFoo"), QStringLiteral("IBar")}, property);
    QCOMPARE(full.action(), 1);
    QCOMPARE(full.plugin(), QStringLiteral("org.example.a"));
    QCOMPARE(full.classList(), (QStringList{QStringLiteral("IFoo"), QStringLiteral("IBar")}));
    QCOMPARE(full.data(ServiceEvent::RoleProperty).userType(), qMetaTypeId<ServiceProperty>());
    QCOMPARE(full.property().serviceId(), 4);
    QCOMPARE(full.property().ranking(), 2);

    ExtensionEvent extension(ExtensionEvent::PointUnregistered, QStringLiteral("org.example.a"),
                             QStringLiteral("org.example.point"));
    QCOMPARE(extension.sharedData()->type, 4);
    QCOMPARE(extension.action(), 2);
    QCOMPARE(extension.plugin(), QStringLiteral("org.example.a"));
    QCOMPARE(extension.pointId(), QStringLiteral("org.example.point"));
    ExtensionEvent single(ExtensionEvent::PointRegistered);
    QVERIFY(single.setData(ExtensionEvent::RolePointId, QStringLiteral("p")));
    QCOMPARE(single.pointId(), QStringLiteral("p"));
}

void tst_values::setDataDetaches()
{
    const PluginEvent original(PluginEvent::Installed, PluginEvent::Uninstalled, QStringLiteral("a"), QString(),
                               QString(), QString(), 1, 2);
    PluginEvent copy(original);
    PluginEvent assigned(PluginEvent::Active);
    assigned = original;
    QCOMPARE(copy.sharedData().constData(), original.sharedData().constData());
    QCOMPARE(assigned.sharedData().constData(), original.sharedData().constData());

    QVERIFY(copy.setData(PluginEvent::RoleSymbolic, QStringLiteral("b")));
    QCOMPARE(copy.symbolic(), QStringLiteral("b"));
    QCOMPARE(original.symbolic(), QStringLiteral("a"));
    QCOMPARE(assigned.symbolic(), QStringLiteral("a"));
    QVERIFY(copy.sharedData().constData() != original.sharedData().constData());
    QCOMPARE(copy.prevAction(), 1);
    QCOMPARE(copy.sharedData()->type, 2);

    // A listener writing to the record it was handed leaves the publisher's alone.
    ServiceEvent published(ServiceEvent::Registered, QStringLiteral("a"), {}, ServiceProperty());
    ServiceEvent received(published.sharedData());
    QVERIFY(received.setData(ServiceEvent::RolePlugin, QStringLiteral("b")));
    QCOMPARE(published.plugin(), QStringLiteral("a"));
}

void tst_values::foreignRecords()
{
    const CustomizedEvent customized(2);
    QCOMPARE(customized.sharedData()->type, 2);
    QVERIFY(customized.sharedData()->data.isEmpty());
    QVERIFY(customized.sharedData()->roles.isEmpty());

    PluginEvent asPlugin(customized.sharedData());
    QCOMPARE(asPlugin.sharedData().constData(), customized.sharedData().constData());
    QCOMPARE(asPlugin.action(), 0);
    QVERIFY(asPlugin.symbolic().isEmpty());
    QVERIFY(!asPlugin.data(PluginEvent::RoleAction).isValid());
    QVERIFY(!asPlugin.setData(PluginEvent::RoleSymbolic, QStringLiteral("a")));

    // The record decides what the roles mean, not the class that reads it.
    const PluginEvent plugin(PluginEvent::Active, PluginEvent::Starting, QStringLiteral("a"), QString(), QString(),
                             QString(), 0, 0);
    const ExtensionEvent asExtension(plugin.sharedData());
    QCOMPARE(asExtension.sharedData().constData(), plugin.sharedData().constData());
    QCOMPARE(asExtension.sharedData()->type, 2);
    QCOMPARE(asExtension.action(), 32);
    QCOMPARE(asExtension.pointId(), QStringLiteral("a"));

    const CustomizedEvent back(asExtension.sharedData());
    QCOMPARE(back.sharedData()->type, 2);
    QCOMPARE(PluginEvent(back.sharedData()).symbolic(), QStringLiteral("a"));
}

QTEST_MAIN(tst_values)
#include "tst_values.moc"
