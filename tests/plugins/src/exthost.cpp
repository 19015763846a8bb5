// SPDX-License-Identifier: BSD-3-Clause
#include <ExtensionSystem/ExtensionData>
#include <ExtensionSystem/ExtensionPoint>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

#include <QtCore/QCoreApplication>
#include <QtXml/QDomDocument>

namespace {

// Reads <Item id="..." title="..."/> children of each ExtData text. The same text
// may arrive more than once (from the store and from a dispatch): known ids are skipped.
class TestPoint : public ExtensionSystem::ExtensionPoint
{
public:
    TestPoint(const QString &id, const QString &plugin)
        : ExtensionPoint(id, plugin)
    { }

    QList<ExtensionSystem::ExtensionData *> parseExtensionText(const QStringList &texts) override
    {
        QList<ExtensionSystem::ExtensionData *> items;
        for (const QString &text : texts) {
            QDomDocument document;
            if (!document.setContent(text))
                continue;
            const QDomElement extData = document.documentElement();
            for (QDomElement item = extData.firstChildElement(QStringLiteral("Item")); !item.isNull();
                 item = item.nextSiblingElement(QStringLiteral("Item"))) {
                const QString id = item.attribute(QStringLiteral("id"));
                if (id.isEmpty() || extensionData(id))
                    continue;
                bool duplicate = false;
                for (ExtensionSystem::ExtensionData *made : qAsConst(items))
                    duplicate = duplicate || made->id() == id;
                if (duplicate)
                    continue;
                auto *data = new ExtensionSystem::ExtensionData;
                data->setData(ExtensionSystem::ExtensionData::IdRole, id);
                data->setData(ExtensionSystem::ExtensionData::PluginRole, extData.attribute(QStringLiteral("plugin")));
                data->setData(ExtensionSystem::ExtensionData::ExtPluginRole,
                              extData.attribute(QStringLiteral("extPlugin")));
                data->setData(ExtensionSystem::ExtensionData::PointIdRole, this->id());
                data->setAttribute(QStringLiteral("title"), item.attribute(QStringLiteral("title")));
                items << data;
            }
        }
        return items;
    }
};

} // namespace

class ExtHostActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    void start(ExtensionSystem::PluginContext *context) override
    {
        point = new TestPoint(QStringLiteral("test.point"), context->symbolic());
        context->registerExtensionPoint(point);
    }
    void stop(ExtensionSystem::PluginContext *context) override
    {
        context->unregisterExtensionPoint(QStringLiteral("test.point"));
        delete point;
        point = nullptr;
    }

private:
    TestPoint *point = nullptr;
};

#include "exthost.moc"
