// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <event/eventmanager.h>
#include <event/iservicelistener.h>
#include <framework/pluginframework.h>
#include <plugin/plugin.h>
#include <plugin/pluginconstance.h>
#include <plugin/plugincontext.h>
#include <plugin/pluginmanager.h>
#include <service/iservicefactory.h>
#include <service/servicemanager.h>
#include <service/servicemanager_p.h>
#include <service/serviceproperty.h>
#include <service/servicereference.h>
#include <service/servicereference_p.h>
#include <service/serviceregistration.h>
#include <service/serviceregistration_p.h>

#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

using Properties = QHash<QString, QVariant>;

// Notes each service event and, for an unregistering one, how many services the
// registry still finds under the first class at that moment.
struct ServiceEventRecorder : IServiceListener
{
    void serviceChanged(const ServiceEvent &event) override
    {
        const QStringList classes = event.classList();
        QString entry = QStringLiteral("%1 %2 %3").arg(event.action()).arg(event.plugin(), classes.join(','));
        if (event.action() == ServiceEvent::Unregistering)
            entry += QStringLiteral(" filed:%1").arg(manager->findServiceReferences(classes.value(0), {}).size());
        events << entry;
    }
    ServiceManager *manager = nullptr;
    QStringList events;
};

// A framework running the given test plug-ins, with the registry's internals at hand.
struct Registry
{
    explicit Registry(const QStringList &plugins)
    {
        for (const QString &plugin : plugins)
            deployPlugin(plugin);
        framework.findChild<EventManager *>()->registerListener(QStringLiteral("tst_services"), &recorder);
        manager = framework.findChild<ServiceManager *>();
        recorder.manager = manager;
        pluginManager = framework.findChild<PluginManager *>();
    }
    void start()
    {
        framework.init();
        framework.start();
    }
    Plugin *plugin(const QString &symbolic) const { return pluginManager->find(symbolic); }
    PluginContext *context(const QString &symbolic) const { return plugin(symbolic)->pluginContext(); }
    QList<ServiceReference> find(const QString &clazz, const Properties &filter = Properties()) const
    {
        return manager->findServiceReferences(clazz, filter);
    }
    ServiceManagerPrivate *tables() const { return static_cast<ServiceManagerPrivate *>(QObjectPrivate::get(manager)); }

    ServiceEventRecorder recorder; // outlives the framework, which publishes while it stops
    PluginFramework framework;
    ServiceManager *manager = nullptr;
    PluginManager *pluginManager = nullptr;
};

QStringList names(const QList<ServiceReference> &references)
{
    QStringList result;
    for (const ServiceReference &reference : references)
        result << reference.property(QStringLiteral("test.name")).toString();
    return result;
}

ServiceRegistrationPrivate *recordOf(const ServiceReference &reference)
{
    return ServiceReferencePrivate::get(reference)->registration;
}

QVariantList error(int code, const QString &text)
{
    return {code, text};
}

const QString invalidParameters = QStringLiteral("Cannot register service with invalid parmaters");

// Implements the factory interface but names it qualified among its bases, so
// that registration does not file it as a factory while getService uses it as one.
class QualifiedFactory : public QObject, public ExtensionSystem::IServiceFactory
{
    Q_OBJECT
    Q_INTERFACES(ExtensionSystem::IServiceFactory)
public:
    QObject *createService(PluginContext *) override { return &made; }
    QObject made;
};

} // namespace

class tst_Services : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void handlesShareOneRecord();
    void assignmentKeepsThePreviousRecord();
    void idsOrderAndFilters();
    void unregisterTakesEveryServiceOfItsClasses();
    void factoriesMakeObjectsPerConsumer();
    void unregisterClearsEveryHandle();
    void badInputIsRefused();
};

void tst_Services::handlesShareOneRecord()
{
    ServiceRegistration failed;
    QVERIFY(bool(failed));
    QVERIFY(!failed.plugin());
    QCOMPARE(failed.property().serviceId(), -1);
    QCOMPARE(ServiceRegistrationPrivate::get(failed)->ref.loadRelaxed(), 0);

    QObject object;
    const ServiceProperty property(QStringLiteral("owner"), {QStringLiteral("QObject")}, 7, QStringLiteral("7"), false,
                                   {{PluginConstance::SERVICE_RANKING, 2}});
    ServiceRegistration registration(nullptr, &object, property);
    ServiceRegistrationPrivate *record = ServiceRegistrationPrivate::get(registration);
    QCOMPARE(record->ref.loadRelaxed(), 1);
    {
        const ServiceRegistration copy(registration);
        const ServiceRegistration fromRecord(record);
        QCOMPARE(record->ref.loadRelaxed(), 3);
        QVERIFY(!(copy < fromRecord) && !(fromRecord < copy));
    }
    QCOMPARE(record->ref.loadRelaxed(), 1);
    QCOMPARE(registration.serviceObject(), &object);
    QCOMPARE(registration.classList(), QStringList{QStringLiteral("QObject")});
    QVERIFY(registration.match({{PluginConstance::SERVICE_ID, 7}}));

    ServiceReference first = registration.reference();
    const ServiceReference second = registration.reference();
    QVERIFY(first == second);
    QVERIFY(!(first < second) && !(second < first));
    QCOMPARE(ServiceReferencePrivate::get(first)->ref.loadRelaxed(), 3); // the record's own and these two
    QObject otherObject;
    const ServiceRegistration other(nullptr, &otherObject, property);
    const ServiceReference third = other.reference();
    QVERIFY(!(first == third));
    QVERIFY((first < third) != (third < first));

    // The keys the manager sets are refused whatever their case; others take effect for every handle.
    const QStringList keys = second.propertyKeys();
    for (const char *key : {"Service.Id", "SERVICE.OBJECTCLASS", "service.Plugin", "service.isFactory", "SERVICE.pid"})
        first.setProperty(QString::fromLatin1(key), 99);
    QCOMPARE(second.propertyKeys(), keys);
    QCOMPARE(second.property(PluginConstance::SERVICE_ID), QVariant(7));
    QCOMPARE(second.serviceProperty().classList(), QStringList{QStringLiteral("QObject")});
    QCOMPARE(second.property(PluginConstance::SERVICE_PID), QVariant(QStringLiteral("7")));
    first.setProperty(PluginConstance::SERVICE_RANKING, 5);
    first.setProperty(QStringLiteral("My.Key"), QStringLiteral("mine"));
    QCOMPARE(registration.property().ranking(), 5);
    QVERIFY(second.propertyKeys().contains(QStringLiteral("My.Key")));
    QVERIFY(!second.property(QStringLiteral("my.key")).isValid());
    QVERIFY(second.match({{QStringLiteral("My.Key"), QStringLiteral("mine")}}));
    ServiceProperty copied = registration.property();
    copied.rankingUp();
    QCOMPARE(registration.property().ranking(), 5);

    // A reference keeps its own small record alive, never the registration's.
    auto *shortLived = new ServiceRegistration(nullptr, &object, property);
    const ServiceReference orphan(shortLived->reference());
    delete shortLived;
    QCOMPARE(ServiceReferencePrivate::get(orphan)->ref.loadRelaxed(), 1);

    const ServiceReference none;
    QVERIFY(!none);
    QVERIFY(none.propertyKeys().isEmpty());
}

// The records held before an assignment are never freed: the leak is wanted and
// is suppressed for this function by name in lsan.supp.
void tst_Services::assignmentKeepsThePreviousRecord()
{
    QObject a, b;
    const ServiceRegistration first(nullptr, &a, ServiceProperty());
    const ServiceRegistration second(nullptr, &b, ServiceProperty());
    ServiceRegistrationPrivate *firstRecord = ServiceRegistrationPrivate::get(first);
    ServiceRegistrationPrivate *secondRecord = ServiceRegistrationPrivate::get(second);
    {
        ServiceRegistration handle(first);
        handle = handle;
        QCOMPARE(firstRecord->ref.loadRelaxed(), 2);
        handle = second;
        QCOMPARE(handle.serviceObject(), &b);
        QCOMPARE(firstRecord->ref.loadRelaxed(), 2);
        QCOMPARE(secondRecord->ref.loadRelaxed(), 2);
    }
    QCOMPARE(secondRecord->ref.loadRelaxed(), 1);
    QCOMPARE(firstRecord->ref.loadRelaxed(), 2);

    ServiceReference lone;
    ServiceReferencePrivate *loneRecord = ServiceReferencePrivate::get(lone);
    ServiceReference target = second.reference();
    lone = target;
    QVERIFY(lone == target);
    QCOMPARE(loneRecord->ref.loadRelaxed(), 1);
    QCOMPARE(ServiceReferencePrivate::get(target)->ref.loadRelaxed(), 3);
}

void tst_Services::idsOrderAndFilters()
{
    Registry registry({QStringLiteral("service.provider")});
    QSignalSpy errors(registry.manager, &ServiceManager::errorOccured);
    registry.start();

    QCOMPARE(pluginLog(), QStringList({"registered X 0 0", "registered Y 1 1", "registered Z 1 1", "registered S 1 1",
                                       "registered U 1 1"}));
    QCOMPARE(registry.recorder.events,
             QStringList({"1 service.provider test.Alpha", "1 service.provider test.Alpha,test.Beta",
                          "1 service.provider test.Alpha,QObject", "1 service.provider test.Shared",
                          "1 service.provider test.Unshared"}));

    // Newest first, although the rankings are 2, 3, 1.
    const QList<ServiceReference> alpha = registry.find(QStringLiteral("test.Alpha"));
    QCOMPARE(names(alpha), QStringList({"Z", "Y", "X"}));
    QCOMPARE(alpha.at(0).serviceProperty().ranking(), 2);
    QCOMPARE(alpha.at(1).serviceProperty().ranking(), 3);
    QCOMPARE(alpha.at(2).property(PluginConstance::SERVICE_ID), QVariant(0));
    QCOMPARE(alpha.at(2).property(PluginConstance::SERVICE_PID), QVariant(QStringLiteral("0")));
    QCOMPARE(alpha.at(0).property(PluginConstance::SERVICE_PID), QVariant(QStringLiteral("1")));
    QCOMPARE(alpha.at(0).plugin(), QStringLiteral("service.provider"));
    QCOMPARE(alpha.at(0).property(PluginConstance::SERVICE_ISFACTORY), QVariant(false));
    // A factory is filed under a class that it does not implement.
    QCOMPARE(registry.find(QStringLiteral("test.Shared")).value(0).property(PluginConstance::SERVICE_ISFACTORY),
             QVariant(true));

    const QString vender = PluginConstance::SERVICE_VENDER;
    QCOMPARE(names(registry.find(QStringLiteral("test.Alpha"), {{vender, QStringLiteral("acme")}})), QStringList{"Y"});
    QCOMPARE(names(registry.find(QStringLiteral("test.Alpha"), {{PluginConstance::SERVICE_RANKING, 1}})),
             QStringList{"X"});
    QCOMPARE(names(registry.find(QStringLiteral("test.Alpha"),
                                 {{PluginConstance::SERVICE_ID, 1},
                                  {PluginConstance::SERVICE_PLUGIN, QStringLiteral("service.provider")}})),
             QStringList({"Z", "Y"}));
    QCOMPARE(names(registry.find(QStringLiteral("QObject"))), QStringList{"Z"});
    QVERIFY(registry.find(QString()).isEmpty());
    QVERIFY(registry.find(QStringLiteral("test.Unknown")).isEmpty());
    QCOMPARE(errors.count(), 0);

    // The same through the provider's own context.
    QCOMPARE(names(registry.context(QStringLiteral("service.provider"))
                           ->findServiceReferences(QStringLiteral("test.Beta"))),
             QStringList{"Y"});
}

void tst_Services::unregisterTakesEveryServiceOfItsClasses()
{
    Registry registry({QStringLiteral("service.provider")});
    registry.start();
    PluginContext *provider = registry.context(QStringLiteral("service.provider"));
    const QList<ServiceReference> alpha = registry.find(QStringLiteral("test.Alpha"));
    QCOMPARE(alpha.size(), 3);
    const ServiceRegistration x(recordOf(alpha.at(2)));
    QObject *yObject = recordOf(alpha.at(1))->service;
    QCOMPARE(yObject->objectName(), QStringLiteral("Y"));

    registry.recorder.events.clear();
    provider->unregisterService(x);
    QCOMPARE(registry.recorder.events, QStringList{"2 service.provider test.Alpha filed:3"});
    QVERIFY(registry.find(QStringLiteral("test.Alpha")).isEmpty());
    // Y and Z stay under their other classes; the plug-in's table lost all of them.
    QCOMPARE(names(registry.find(QStringLiteral("test.Beta"))), QStringList{"Y"});
    QCOMPARE(names(registry.find(QStringLiteral("QObject"))), QStringList{"Z"});
    QCOMPARE(names(registry.find(QStringLiteral("test.Shared"))), QStringList{"S"});
    QVERIFY(registry.tables()->pluginRegistrations.isEmpty());
    QCOMPARE(registry.tables()->objectRegistrations.size(), 4);
    QVERIFY(x.plugin()); // only unregister() clears the handle

    QSignalSpy errors(registry.manager, &ServiceManager::errorOccured);
    const ServiceRegistration again = provider->registerService(yObject, {QStringLiteral("test.Alpha")});
    QVERIFY(!again.plugin());
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0), error(4, QStringLiteral("The service object has been registered")));
    QVERIFY(registry.find(QStringLiteral("test.Alpha")).isEmpty());

    // With the id table emptied the sequence starts again at 0.
    QObject fresh;
    ServiceRegistration registration = provider->registerService(&fresh, {QStringLiteral("QObject")});
    QCOMPARE(registration.property().serviceId(), 0);
    QCOMPARE(names(registry.find(QStringLiteral("QObject"))), QStringList({QString(), "Z"}));
    registration.unregister();
}

void tst_Services::factoriesMakeObjectsPerConsumer()
{
    Registry registry({QStringLiteral("service.provider"), QStringLiteral("service.consumer.a"),
                       QStringLiteral("service.consumer.b")});
    registry.start();
    QCOMPARE(pluginLog().mid(5),
             QStringList({"create S for service.consumer.a", "service.consumer.a get S-1", "service.consumer.a get S-1",
                          "create U for service.consumer.a", "service.consumer.a get U-1",
                          "create U for service.consumer.a", "service.consumer.a get U-2", "service.consumer.a get Y",
                          "service.consumer.a unget S-1", "create S for service.consumer.a",
                          "service.consumer.a get S-2", "create S for service.consumer.b", "service.consumer.b get S-3",
                          "service.consumer.b get S-3", "create U for service.consumer.b", "service.consumer.b get U-3",
                          "service.consumer.b get Y"}));

    Plugin *a = registry.plugin(QStringLiteral("service.consumer.a"));
    Plugin *b = registry.plugin(QStringLiteral("service.consumer.b"));
    const ServiceReference yReference = registry.find(QStringLiteral("test.Beta")).value(0);
    QVERIFY(yReference);
    const ServiceRegistrationPrivate *plain = recordOf(yReference);
    QCOMPARE(plain->useCounts.value(a), 1);
    QCOMPARE(plain->useCounts.value(b), 1);
    QVERIFY(plain->factoryInstances.isEmpty());
    const ServiceRegistrationPrivate *shared = recordOf(registry.find(QStringLiteral("test.Shared")).value(0));
    QVERIFY(shared);
    QCOMPARE(shared->useCounts.value(a), 1);
    QCOMPARE(shared->useCounts.value(b), 2);
    QCOMPARE(shared->factoryInstances.values(a).size(), 1);

    // Giving back unshared objects one by one: the last one takes the consumer off the tables.
    const ServiceReference uReference = registry.find(QStringLiteral("test.Unshared")).value(0);
    const ServiceRegistrationPrivate *unshared = recordOf(uReference);
    QVERIFY(unshared);
    const QList<QObject *> made = unshared->factoryInstances.values(a);
    QCOMPARE(made.size(), 2);
    QCOMPARE(made.at(0)->objectName(), QStringLiteral("U-2"));
    PluginContext *consumer = a->pluginContext();
    consumer->ungetService(uReference, made.at(1));
    QCOMPARE(unshared->factoryInstances.values(a), QList<QObject *>{made.at(0)});
    QCOMPARE(unshared->useCounts.value(a), 1);
    consumer->ungetService(uReference, made.at(0));
    QVERIFY(!unshared->useCounts.contains(a));
    QVERIFY(!unshared->factoryInstances.contains(a));
    QCOMPARE(unshared->factoryInstances.values(b).size(), 1);

    // Giving back a plain service never got leaves a count of 0.
    Plugin *provider = registry.plugin(QStringLiteral("service.provider"));
    provider->pluginContext()->ungetService(yReference, nullptr);
    QVERIFY(plain->useCounts.contains(provider));
    QCOMPARE(plain->useCounts.value(provider), 0);

    // Registration asks for the bare interface name, getService for the identifier.
    QualifiedFactory qualified;
    QSignalSpy errors(registry.manager, &ServiceManager::errorOccured);
    const ServiceRegistration refused = consumer->registerService(&qualified, {QStringLiteral("test.Shared")});
    QVERIFY(!refused.plugin());
    QCOMPARE(errors.value(0),
             error(2, QStringLiteral("The service object is not inherits from the class: test.Shared")));
    ServiceRegistration accepted = consumer->registerService(&qualified, {QStringLiteral("QObject")});
    QCOMPARE(accepted.property().isFactory(), false);
    QCOMPARE(consumer->getService(accepted.reference()), &qualified.made);
    accepted.unregister();
}

void tst_Services::unregisterClearsEveryHandle()
{
    Registry registry({QStringLiteral("service.provider"), QStringLiteral("service.consumer.a")});
    registry.start();
    const ServiceReference reference = registry.find(QStringLiteral("test.Beta")).value(0);
    QVERIFY(reference);
    ServiceRegistration y(recordOf(reference));
    const ServiceRegistration copy(y);
    Plugin *consumer = registry.plugin(QStringLiteral("service.consumer.a"));
    const ServiceRegistrationPrivate *record = ServiceRegistrationPrivate::get(y);
    QCOMPARE(record->useCounts.value(consumer), 1);

    registry.recorder.events.clear();
    y.unregister();
    QCOMPARE(registry.recorder.events, QStringList{"2 service.provider test.Alpha,test.Beta filed:3"});
    const ServiceRegistration fromRecord(recordOf(reference));
    for (const ServiceRegistration *handle : {static_cast<const ServiceRegistration *>(&y), &copy, &fromRecord}) {
        QVERIFY(!handle->serviceObject());
        QVERIFY(!handle->plugin());
    }
    QVERIFY(registry.find(QStringLiteral("test.Beta")).isEmpty());
    QVERIFY(!consumer->pluginContext()->getService(reference));
    QCOMPARE(record->useCounts.value(consumer), 2);

    // Once cleared, unregister() no longer reaches the manager.
    QSignalSpy errors(registry.manager, &ServiceManager::errorOccured);
    y.unregister();
    QCOMPARE(registry.recorder.events.size(), 1);
    QCOMPARE(errors.count(), 0);
}

void tst_Services::badInputIsRefused()
{
    Registry registry({QStringLiteral("service.rejected")});
    QSignalSpy errors(registry.manager, &ServiceManager::errorOccured);
    registry.start();

    QCOMPARE(pluginLog(), QStringList({"failed N", "failed E", "failed G", "registered O 0 0", "failed O"}));
    QCOMPARE(errors.count(), 4);
    QCOMPARE(errors.at(0), error(1, invalidParameters));
    QCOMPARE(errors.at(1), error(1, invalidParameters));
    QCOMPARE(errors.at(2), error(2, QStringLiteral("The service object is not inherits from the class: test.Gamma")));
    QCOMPARE(errors.at(3), error(4, QStringLiteral("The service object has been registered")));
    QCOMPARE(registry.recorder.events, QStringList{"1 service.rejected test.Alpha"});
    QCOMPARE(names(registry.find(QStringLiteral("test.Alpha"))), QStringList{"O"});
    QVERIFY(registry.find(QStringLiteral("test.Beta")).isEmpty());
    QVERIFY(registry.find(QStringLiteral("test.Gamma")).isEmpty());
    const ServiceManagerPrivate *tables = registry.tables();
    QCOMPARE(tables->classRegistrations.size(), 1);
    QCOMPARE(tables->registrationClasses.size(), 1);
    QCOMPARE(tables->objectRegistrations.size(), 1);
    QCOMPARE(tables->pluginRegistrations.size(), 1);

    QObject loose;
    const ServiceRegistration failed =
            registry.manager->registerService(nullptr, &loose, {QStringLiteral("QObject")}, Properties());
    QVERIFY(bool(failed));
    QVERIFY(!failed.plugin());
    QVERIFY(!failed.serviceObject());
    QCOMPARE(failed.property().serviceId(), -1);
    QCOMPARE(errors.last(), error(1, invalidParameters));
    QVERIFY(registry.find(QStringLiteral("QObject")).isEmpty());

    // A handle without its plug-in is refused rather than unregistered.
    registry.manager->unregisterService(failed);
    QCOMPARE(errors.last(), error(5, QStringLiteral("The ServiceRegistration is invalid")));
    QCOMPARE(registry.recorder.events.size(), 1);
    QCOMPARE(tables->objectRegistrations.size(), 1);
}

QTEST_MAIN(tst_Services)
#include "tst_services.moc"
