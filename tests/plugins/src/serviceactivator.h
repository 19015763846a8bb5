// SPDX-License-Identifier: BSD-3-Clause
#ifndef SERVICEACTIVATOR_H
#define SERVICEACTIVATOR_H

#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/IServiceFactory>
#include <ExtensionSystem/ServiceRegistration>

#include <QtCore/QHash>
#include <QtCore/QList>

// The classes that the test services answer to.
class IAlpha
{
public:
    virtual ~IAlpha() = default;
};
class IBeta
{
public:
    virtual ~IBeta() = default;
};
Q_DECLARE_INTERFACE(IAlpha, "test.Alpha")
Q_DECLARE_INTERFACE(IBeta, "test.Beta")

class PlainService : public QObject, public IAlpha, public IBeta
{
    Q_OBJECT
    Q_INTERFACES(IAlpha IBeta)
};

using ExtensionSystem::IServiceFactory;

// Named unqualified among the bases: that is how the registry tells a factory.
// Its objects are called <name>-<n>, n counting what this factory made.
class CountingFactory : public QObject, public IServiceFactory
{
    Q_OBJECT
    Q_INTERFACES(ExtensionSystem::IServiceFactory)
public:
    explicit CountingFactory(bool shared)
        : m_shared(shared)
    { }
    bool sharedPerPlugin() override { return m_shared; }
    QObject *createService(ExtensionSystem::PluginContext *context) override;

private:
    bool m_shared;
    int m_made = 0;
};

// Registers services from the entries of "test.register" in its META.INF at
// start and unregisters them at stop; consumes services by the steps of
// "test.consume". What it does goes to the test log.
class ServiceActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override;
    void stop(ExtensionSystem::PluginContext *context) override;

private:
    void registerServices(ExtensionSystem::PluginContext *context);
    void consumeServices(ExtensionSystem::PluginContext *context);

    QList<ExtensionSystem::ServiceRegistration> m_registrations;
    QList<QObject *> m_services;
};

#endif
