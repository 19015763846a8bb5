// SPDX-License-Identifier: BSD-3-Clause
#include "benchpeerfactory.h"

#include <QtCore/QJsonObject>
#include <QtCore/QPointer>

BenchPeerPlugin::BenchPeerPlugin(QObject *parent, const KPluginMetaData &metaData, const QVariantList &)
    : QObject(parent)
{
    if (metaData.rawData().value(QStringLiteral("X-Bench-Service")).toBool())
        m_service = new QObject(this);
}

BenchPeerFactory::BenchPeerFactory()
{
    registerPlugin<BenchPeerPlugin>();
}

// What Q_PLUGIN_INSTANCE does: one root object per library.
QObject *benchPeerFactoryInstance()
{
    static QPointer<QObject> instance;
    if (!instance)
        instance = new BenchPeerFactory;
    return instance;
}
