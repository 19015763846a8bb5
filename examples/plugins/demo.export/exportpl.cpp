// SPDX-License-Identifier: BSD-3-Clause
#include "../common/demo.h"

#include <ExtensionSystem/CustomizedEvent>
#include <ExtensionSystem/ICustomizedListener>
#include <ExtensionSystem/ExtensionHandler>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

using namespace ExtensionSystem;

namespace {

class SaveHandler : public ExtensionHandler
{
public:
    SaveHandler(const QString &plugin)
        : ExtensionHandler(QStringLiteral("export.save"), plugin, QStringLiteral("demo.commands"),
                           QStringLiteral("demo.shell"))
    { }
    int active(QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        const QString text = a0.data() ? *static_cast<const QString *>(a0.data()) : QString();
        tell(QStringLiteral("demo.export"), QStringLiteral("saved \"%1\"").arg(text));
        return 1;
    }
    void dataChanged(const QString &key, const QVariant &value) override
    {
        tell(QStringLiteral("demo.export"), QStringLiteral("item attribute %1 is now %2").arg(key, value.toString()));
    }
};

class ToolsListener : public ICustomizedListener
{
public:
    ToolsListener()
        : ICustomizedListener(1001)
    { }
    void customizedChanged(const CustomizedEvent &) override
    {
        tell(QStringLiteral("demo.export"), QStringLiteral("customised event 1001: a tool ran"));
    }
};

} // namespace

class ExportActivator : public QObject, public IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(PluginContext *context) override
    {
        tell(QStringLiteral("demo.export"), QStringLiteral("starting: handler for export.save registered"));
        handler = new SaveHandler(context->symbolic());
        context->registerExtensionHandler(handler);
        context->registerCustomizedListener(&listener);
    }
    void stop(PluginContext *context) override
    {
        context->unregisterlistener(&listener);
        context->unregisterExtensionHandler(QStringLiteral("export.save"));
        delete handler;
        handler = nullptr;
        tell(QStringLiteral("demo.export"), QStringLiteral("stopped"));
    }

private:
    SaveHandler *handler = nullptr;
    ToolsListener listener;
};

#include "exportpl.moc"
