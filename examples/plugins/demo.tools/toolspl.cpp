// SPDX-License-Identifier: BSD-3-Clause
#include "../common/demo.h"

#include <ExtensionSystem/CustomizedEvent>
#include <ExtensionSystem/ServiceEvent>
#include <ExtensionSystem/ExtensionHandlerAdmin>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

using namespace ExtensionSystem;

namespace {

// One object serves both commands, told apart by id.
class ToolsAdmin : public ExtensionHandlerAdmin
{
public:
    ToolsAdmin()
        : ExtensionHandlerAdmin(nullptr)
    { }

    int callbackActived(const QString &id, QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument) override
    {
        const QString text = a0.data() ? *static_cast<const QString *>(a0.data()) : QString();
        if (id == QLatin1String("tools.upper"))
            tell(QStringLiteral("demo.tools"), QStringLiteral("%1 -> %2").arg(text, text.toUpper()));
        else
            tell(QStringLiteral("demo.tools"), QStringLiteral("%1 has %2 letters").arg(text).arg(text.size()));
        if (context)
            context->publishCustomizedEvent(CustomizedEvent(1001));
        return 1;
    }

    PluginContext *context = nullptr;
};

} // namespace

class ToolsActivator : public QObject, public IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(PluginContext *context) override
    {
        tell(QStringLiteral("demo.tools"), QStringLiteral("starting: two commands served by one handler admin"));
        admin = new ToolsAdmin;
        admin->context = context;
        admin->setPluginContext(context);
        // Mind the order: the extended plug-in comes before the point.
        admin->makeExtensionHandler(QStringLiteral("tools.upper"), context->symbolic(), QStringLiteral("demo.shell"),
                                    QStringLiteral("demo.commands"));
        admin->makeExtensionHandler(QStringLiteral("tools.count"), context->symbolic(), QStringLiteral("demo.shell"),
                                    QStringLiteral("demo.commands"));
        context->trackServiceEvent(this, SLOT(serviceChanged(ServiceEvent)));
    }
    void stop(PluginContext *context) override
    {
        context->untrackEvent(this, nullptr);
        context->unregisterExtensionHandler(QStringLiteral("tools.upper"));
        context->unregisterExtensionHandler(QStringLiteral("tools.count"));
        delete admin;
        admin = nullptr;
        tell(QStringLiteral("demo.tools"), QStringLiteral("stopped"));
    }

public slots:
    void serviceChanged(ServiceEvent event)
    {
        tell(QStringLiteral("demo.tools"),
             QStringLiteral("tracked service event: %1 %2 by %3")
                     .arg(event.action() == ServiceEvent::Registered ? QStringLiteral("registered")
                                                                     : QStringLiteral("unregistering"),
                          event.classList().join(QLatin1Char(',')), event.plugin()));
    }

private:
    ToolsAdmin *admin = nullptr;
};

#include "toolspl.moc"
