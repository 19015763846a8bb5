// SPDX-License-Identifier: BSD-3-Clause
// The peer case: the same plug-ins built for KCoreAddons, found with
// KPluginMetaData::findPlugins and made with KPluginFactory::instantiatePlugin.
//     kf-bench <plug-in directory> <expected count>

#include "benchcommon.h"

#include <KPluginFactory>
#include <KPluginMetaData>

#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    bench::check(args.size() == 3, QStringLiteral("usage: kf-bench <directory> <count>"));
    const QString directory = args.at(1);
    const int expected = args.at(2).toInt();
    const long rssBefore = bench::peakRssKiB();

    QElapsedTimer timer;
    timer.start();
    const QVector<KPluginMetaData> found = KPluginMetaData::findPlugins(directory);
    const double findMs = bench::millisecondsSince(timer);
    QList<QObject *> plugins;
    for (const KPluginMetaData &metaData : found) {
        const KPluginFactory::Result<QObject> result = KPluginFactory::instantiatePlugin<QObject>(metaData);
        plugins << result.plugin;
    }
    const double totalMs = bench::millisecondsSince(timer);

    bench::check(found.size() == expected,
                 QStringLiteral("found %1 peer plug-ins, expected %2").arg(found.size()).arg(expected));
    bench::check(!plugins.contains(nullptr), QStringLiteral("a peer plug-in could not be instantiated"));
    bench::figure("find_ms", findMs);
    bench::figure("load_ms", totalMs);
    bench::figure("rss_kib", double(bench::peakRssKiB() - rssBefore));
    return 0;
}
