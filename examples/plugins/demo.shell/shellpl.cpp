// SPDX-License-Identifier: BSD-3-Clause
#include "../common/demo.h"

#include <ExtensionSystem/IPluginListener>
#include <ExtensionSystem/PluginEvent>
#include <ExtensionSystem/ExtensionData>
#include <ExtensionSystem/ExtensionHandler>
#include <ExtensionSystem/ExtensionPoint>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/ServiceReference>
#include <ExtensionSystem/ServiceRegistration>

#include <QtXml/QDomDocument>

using namespace ExtensionSystem;

namespace {

// Items come from <Command id="..." title="..."/> elements inside each ExtData.
// A text may arrive more than once (from the store and from a dispatch).
class CommandPoint : public ExtensionPoint
{
public:
    CommandPoint(const QString &plugin)
        : ExtensionPoint(QStringLiteral("demo.commands"), plugin)
    { }

    QList<ExtensionData *> parseExtensionText(const QStringList &texts) override
    {
        QList<ExtensionData *> items;
        QStringList ids;
        for (const QString &text : texts) {
            QDomDocument document;
            if (!document.setContent(text))
                continue;
            const QDomElement extData = document.documentElement();
            for (QDomElement command = extData.firstChildElement(QStringLiteral("Command")); !command.isNull();
                 command = command.nextSiblingElement(QStringLiteral("Command"))) {
                const QString id = command.attribute(QStringLiteral("id"));
                if (id.isEmpty() || ids.contains(id) || extensionData(id))
                    continue;
                ids << id;
                auto *item = new ExtensionData;
                item->setData(ExtensionData::IdRole, id);
                item->setData(ExtensionData::PluginRole, extData.attribute(QStringLiteral("plugin")));
                item->setData(ExtensionData::ExtPluginRole, extData.attribute(QStringLiteral("extPlugin")));
                item->setData(ExtensionData::PointIdRole, this->id());
                item->setAttribute(QStringLiteral("title"), command.attribute(QStringLiteral("title")));
                items << item;
            }
        }
        return items;
    }
};

class Shell : public QObject, public IShell
{
    Q_OBJECT
    Q_INTERFACES(IShell)
public:
    explicit Shell(CommandPoint *point)
        : point(point)
    { }
    QStringList commands() const override
    {
        QStringList list;
        for (int i = 0; i < point->childCount(); ++i) {
            auto *item = dynamic_cast<ExtensionData *>(point->childAt(i));
            if (!item)
                continue;
            list << QStringLiteral("%1|%2|%3|%4")
                            .arg(item->id(), item->attribute(QStringLiteral("title")).toString(), item->plugin(),
                                 item->extensionHandler() ? QStringLiteral("handler attached")
                                                          : QStringLiteral("no handler yet"));
        }
        return list;
    }
    int run(const QString &id, const QString &argument) override
    {
        ExtensionData *item = point->extensionData(id);
        if (!item)
            return -1;
        // The argument must outlive a deferred call: it is kept until the handler comes.
        pendingArgument = argument;
        return item->active(Q_ARG(QString, pendingArgument));
    }
    CommandPoint *point;
    QString pendingArgument;
};

class StartWatcher : public IPluginListener
{
public:
    void pluginChanged(const PluginEvent &event) override
    {
        if (event.action() == PluginEvent::Active)
            tell(QStringLiteral("demo.shell"), QStringLiteral("plug-in listener: %1 is active").arg(event.symbolic()));
    }
};

} // namespace

class ShellActivator : public QObject, public IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(PluginContext *context) override
    {
        point = new CommandPoint(context->symbolic());
        context->registerExtensionPoint(point);
        shell = new Shell(point);
        registrations.append(context->registerService(shell, {QStringLiteral("demo.IShell")}));
        context->registerPluginListener(&watcher);

        // Consume the greeter: the factory behind it makes one for this plug-in.
        greeters = context->findServiceReferences(QStringLiteral("demo.IGreeter"));
        if (!greeters.isEmpty()) {
            greeter = context->getService(greeters.first());
            if (auto *greeting = qobject_cast<IGreeter *>(greeter))
                tell(QStringLiteral("demo.shell"), greeting->greet(QStringLiteral("demo.shell")));
        }
        tell(QStringLiteral("demo.shell"), QStringLiteral("started: extension point demo.commands is open"));
    }
    void stop(PluginContext *context) override
    {
        context->unregisterlistener(&watcher);
        if (greeter)
            context->ungetService(greeters.first(), greeter);
        greeter = nullptr;
        greeters.clear();
        for (ServiceRegistration &registration : registrations)
            registration.unregister();
        registrations.clear();
        context->unregisterExtensionPoint(QStringLiteral("demo.commands"));
        delete shell;
        delete point;
        shell = nullptr;
        point = nullptr;
        tell(QStringLiteral("demo.shell"), QStringLiteral("stopped"));
    }

private:
    CommandPoint *point = nullptr;
    Shell *shell = nullptr;
    StartWatcher watcher;
    // Handles are held in lists and copied in: assigning one handle over another
    // would never release the record the target held.
    QList<ServiceRegistration> registrations;
    QList<ServiceReference> greeters;
    QObject *greeter = nullptr;
};

#include "shellpl.moc"
