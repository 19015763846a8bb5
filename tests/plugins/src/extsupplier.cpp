// SPDX-License-Identifier: BSD-3-Clause
#include "pluginlog.h"

#include <ExtensionSystem/ExtensionHandler>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace {

class TestHandler : public ExtensionSystem::ExtensionHandler
{
public:
    using ExtensionHandler::ExtensionHandler;

    int active(QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        // The one argument the tests pass is a QString.
        const QString argument = a0.data() ? *static_cast<const QString *>(a0.data()) : QString();
        log(QStringLiteral("active:%1:%2").arg(id(), argument));
        return 7;
    }
    void dataChanged(const QString &key, const QVariant &value) override
    {
        log(QStringLiteral("changed:%1=%2").arg(key, value.toString()));
    }
};

} // namespace

class ExtSupplierActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override
    {
        log(QStringLiteral("start:") + context->symbolic());
        handler = new TestHandler(QStringLiteral("supplier.action"), context->symbolic(), QStringLiteral("test.point"),
                                  QStringLiteral("ext.host"));
        context->registerExtensionHandler(handler);
    }
    void stop(ExtensionSystem::PluginContext *context) override
    {
        context->unregisterExtensionHandler(QStringLiteral("supplier.action"));
        delete handler;
        handler = nullptr;
    }

private:
    TestHandler *handler = nullptr;
};

#include "extsupplier.moc"
