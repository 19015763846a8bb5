// SPDX-License-Identifier: BSD-3-Clause
#include "pluginlog.h"

#include <ExtensionSystem/ExtensionHandlerAdmin>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace {

// One object behind both extensions of this plug-in, telling them apart by id.
class AdminHandlers : public ExtensionSystem::ExtensionHandlerAdmin
{
public:
    int callbackActived(const QString &id, QGenericArgument a0, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument) override
    {
        const bool isString = a0.data() && qstrcmp(a0.name(), "QString") == 0;
        const QString argument = isString ? *static_cast<const QString *>(a0.data()) : QString();
        log(QStringLiteral("actived:%1:%2").arg(id, argument));
        return id == QLatin1String("admin.first") ? 11 : 22;
    }
    void callbackDataChanged(const QString &id, const QString &key, const QVariant &value) override
    {
        log(QStringLiteral("changed:%1:%2=%3").arg(id, key, value.toString()));
    }
};

} // namespace

class ExtAdminActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override
    {
        log(QStringLiteral("start:") + context->symbolic());
        admin = new AdminHandlers;
        admin->setPluginContext(context);
        for (const QString &id : {QStringLiteral("admin.first"), QStringLiteral("admin.second")})
            admin->makeExtensionHandler(id, context->symbolic(), QStringLiteral("ext.host"),
                                        QStringLiteral("test.point"));
    }
    void stop(ExtensionSystem::PluginContext *context) override
    {
        context->unregisterExtensionHandler(QStringLiteral("admin.first"));
        context->unregisterExtensionHandler(QStringLiteral("admin.second"));
        delete admin;
        admin = nullptr;
    }

private:
    AdminHandlers *admin = nullptr;
};

#include "extadmin.moc"
