// SPDX-License-Identifier: BSD-3-Clause
// Loads a plug-in as the framework does and reads its metadata at the resource
// path derived from the library's file name.
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginConstance>
#include <ExtensionSystem/PluginManager>
#include <ExtensionSystem/PluginMetaData>
#include <ExtensionSystem/PluginProblem>
#include <ExtensionSystem/PluginResolver>
// Headers that moved keep compiling at their earlier installed paths.
#include <ExtensionSystem/framework/pluginframeworkconfig.h>
#include <ExtensionSystem/framework/pluginframeworkconstance.h>
#include <ExtensionSystem/framework/timeline.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>
#include <QtCore/QTextStream>

using namespace ExtensionSystem;

static int fail(const QString &why)
{
    QTextStream(stderr) << "FAIL: " << why << '\n';
    return 1;
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return fail(QStringLiteral("usage: check_plugin <plugin file>"));

    QPluginLoader loader(QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath());
    loader.setLoadHints(PluginResolver::libraryLoadHints());
    if (!loader.load())
        return fail(loader.errorString());
    QObject *root = loader.instance();
    if (!root)
        return fail(loader.errorString());
    if (!qobject_cast<IPluginActivator *>(root))
        return fail(QStringLiteral("root object is not an activator"));

    const QString base = loader.fileName().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, -2);
    const QString path = PluginConstance::PLUGIN_METAFILE.arg(base);
    PluginMetaData meta(path);
    if (!meta.isValid())
        return fail(meta.errorString());
    if (meta.symbolic() != QLatin1String("outside.plugin") || meta.version() != QLatin1String("1.2.3")
        || !meta.isEager() || !meta.dependencyResolved())
        return fail(QStringLiteral("unexpected metadata from %1").arg(path));
    if (!QFileInfo::exists(QFileInfo(loader.fileName()).absolutePath() + QStringLiteral("/extension.xml")))
        return fail(QStringLiteral("extension.xml was not copied beside the library"));

    // Why a plug-in does not run, from the installed headers alone.
    QList<PluginProblem> (PluginManager::*problems)(const QString &) const = &PluginManager::problems;
    Q_UNUSED(problems)
    PluginResolver resolver;
    resolver.install(meta.symbolic(), &meta);
    if (resolver.queue() != QStringList{meta.symbolic()} || !resolver.problems(meta.symbolic()).isEmpty())
        return fail(QStringLiteral("the resolver does not queue %1").arg(meta.symbolic()));
    const QList<PluginProblem> unknown = resolver.problems(QStringLiteral("nobody"));
    if (unknown.size() != 1 || unknown.first().reason() != PluginProblem::UnknownPlugin
        || !unknown.first().text().contains(QLatin1String("nobody")))
        return fail(QStringLiteral("no reason given for an unknown plug-in"));

    // The Qt that runs is the one the package named: the plug-in was linked against it.
    QTextStream(stdout) << "loaded " << meta.symbolic() << ' ' << meta.version() << " from " << path << " on Qt "
                        << qVersion() << '\n';
    return 0;
}
