// SPDX-License-Identifier: BSD-3-Clause
#ifndef BENCHPEERFACTORY_H
#define BENCHPEERFACTORY_H

#include <KPluginFactory>
#include <KPluginMetaData>

// The peer's plug-in object: what KPluginFactory::instantiatePlugin makes.
// Like the framework's plug-ins, half of them make a service object.
class BenchPeerPlugin : public QObject
{
    Q_OBJECT
public:
    BenchPeerPlugin(QObject *parent, const KPluginMetaData &metaData, const QVariantList &args);

private:
    QObject *m_service = nullptr;
};

// The factory of every peer plug-in, compiled once. Each module adds only its
// metadata block and the two entry points Qt looks for (generated); that is
// what moc writes for Q_PLUGIN_METADATA, without compiling the factory again.
class BenchPeerFactory : public KPluginFactory
{
    Q_OBJECT
    Q_INTERFACES(KPluginFactory)
public:
    BenchPeerFactory();
};

#endif
