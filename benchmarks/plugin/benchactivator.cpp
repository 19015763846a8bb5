// SPDX-License-Identifier: BSD-3-Clause
#include "benchactivator.h"

#include <ExtensionSystem/ExtensionData>
#include <ExtensionSystem/ExtensionPoint>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/PluginMetaData>

#include <QtCore/QCoreApplication>
#include <QtCore/QXmlStreamReader>

using namespace ExtensionSystem;

namespace {

// The harness waits until the points hold as many items as the set declares.
void countItem()
{
    qApp->setProperty("es.bench.items", qApp->property("es.bench.items").toInt() + 1);
}

// Reads the <Item id="..."/> children of each ExtData text. The same text comes
// more than once (from the store at registration and from each dispatch of a
// file), so ids already held are skipped.
class BenchPoint : public ExtensionPoint
{
public:
    BenchPoint(const QString &id, const QString &plugin)
        : ExtensionPoint(id, plugin)
    { }

    QList<ExtensionData *> parseExtensionText(const QStringList &texts) override
    {
        QList<ExtensionData *> items;
        QStringList made;
        for (const QString &text : texts) {
            QXmlStreamReader reader(text);
            QString plugin;
            QString extPlugin;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("ExtData")) {
                    plugin = reader.attributes().value(QLatin1String("plugin")).toString();
                    extPlugin = reader.attributes().value(QLatin1String("extPlugin")).toString();
                    continue; // into its children
                }
                if (reader.name() == QLatin1String("Item")) {
                    const QString itemId = reader.attributes().value(QLatin1String("id")).toString();
                    if (!itemId.isEmpty() && !made.contains(itemId) && !extensionData(itemId)) {
                        auto *data = new ExtensionData;
                        data->setData(ExtensionData::IdRole, itemId);
                        data->setData(ExtensionData::PluginRole, plugin);
                        data->setData(ExtensionData::ExtPluginRole, extPlugin);
                        data->setData(ExtensionData::PointIdRole, id());
                        made << itemId;
                        items << data;
                        countItem();
                    }
                }
                reader.skipCurrentElement();
            }
        }
        return items;
    }
};

} // namespace

void BenchActivator::start(PluginContext *context)
{
    const PluginMetaData *metaData = context->metaData();
    if (metaData->getProperty(QStringLiteral("bench.service")) == QLatin1String("yes")) {
        m_service = new BenchService;
        m_registration = context->registerService(m_service, QStringList(QStringLiteral("BenchService")));
    }
    // The host decides whether plug-ins open their points, so that one build
    // serves the lifecycle cases (without) and the extension cases (with).
    if (!qApp->property("es.bench.points").toBool())
        return;
    const QStringList points =
            metaData->getProperty(QStringLiteral("bench.points")).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &id : points) {
        auto *point = new BenchPoint(id, context->symbolic());
        m_points << point;
        context->registerExtensionPoint(point);
    }
}

void BenchActivator::stop(PluginContext *context)
{
    for (ExtensionPoint *point : qAsConst(m_points)) {
        context->unregisterExtensionPoint(point->id());
        delete point;
    }
    m_points.clear();
    if (m_service) {
        m_registration.unregister();
        delete m_service;
        m_service = nullptr;
    }
}
