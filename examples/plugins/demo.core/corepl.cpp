// SPDX-License-Identifier: BSD-3-Clause
#include "../common/demo.h"

#include <ExtensionSystem/FrameworkEvent>
#include <ExtensionSystem/IFrameworkListener>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginConstance>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/IServiceFactory>
#include <ExtensionSystem/ServiceProperty>
#include <ExtensionSystem/ServiceRegistration>

using namespace ExtensionSystem;

namespace {

class Greeter : public QObject, public IGreeter
{
    Q_OBJECT
    Q_INTERFACES(IGreeter)
public:
    explicit Greeter(const QString &consumer)
        : consumer(consumer)
    { }
    QString greet(const QString &who) const override
    {
        return QStringLiteral("Hello %1, from the greeter made for %2").arg(who, consumer);
    }
    QString consumer;
};

// The registered service object: it makes one greeter per consumer plug-in.
class GreeterFactory : public QObject, public IServiceFactory
{
    Q_OBJECT
    Q_INTERFACES(ExtensionSystem::IServiceFactory)
public:
    QObject *createService(PluginContext *context) override
    {
        tell(QStringLiteral("demo.core"),
             QStringLiteral("greeter factory makes a greeter for %1").arg(context->symbolic()));
        auto *greeter = new Greeter(context->symbolic());
        made << greeter;
        return greeter;
    }
    ~GreeterFactory() override { qDeleteAll(made); }
    QList<QObject *> made;
};

class StateWatcher : public IFrameworkListener
{
public:
    void frameworkChanged(const FrameworkEvent &event) override
    {
        static const QHash<int, QString> names = {{0, "uninitialized"}, {1, "initializing"}, {2, "initialized"},
                                                  {4, "stopping"},      {8, "starting"},     {16, "started"}};
        tell(QStringLiteral("demo.core"), QStringLiteral("framework listener: %1 -> %2")
                                                  .arg(names.value(event.prevAction()), names.value(event.action())));
    }
};

} // namespace

class CoreActivator : public QObject, public IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(PluginContext *context) override
    {
        context->registerFrameworkListener(&watcher);
        QHash<QString, QVariant> properties;
        properties.insert(PluginConstance::SERVICE_RANKING, 10);
        properties.insert(PluginConstance::SERVICE_DESCRIPTION, QStringLiteral("greets whoever asks"));
        registrations.append(context->registerService(&factory, {QStringLiteral("demo.IGreeter")}, properties));
        tell(QStringLiteral("demo.core"), QStringLiteral("started: greeter factory registered as service %1")
                                                  .arg(registrations.last().property().serviceId()));
    }
    void stop(PluginContext *context) override
    {
        for (ServiceRegistration &registration : registrations)
            registration.unregister();
        registrations.clear();
        context->unregisterlistener(&watcher);
        tell(QStringLiteral("demo.core"), QStringLiteral("stopped"));
    }

private:
    GreeterFactory factory;
    StateWatcher watcher;
    // Copied in, never assigned over a default-made handle, whose record would leak.
    QList<ServiceRegistration> registrations;
};

#include "corepl.moc"
