#ifndef EXTENSIONSYSTEM_PLUGINMANAGER_P_H
#define EXTENSIONSYSTEM_PLUGINMANAGER_P_H

#include "pluginmanager.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/private/qobject_p.h>

QT_BEGIN_NAMESPACE
class QFileSystemWatcher;
QT_END_NAMESPACE

namespace ExtensionSystem {
namespace Internal {

class PluginLoadQueue;

class PluginManagerPrivate : public QObjectPrivate
{
    ES_DECLARE_PUBLIC(PluginManager)
public:
    explicit PluginManagerPrivate(PluginFrameworkContext *context);
    ~PluginManagerPrivate() override;

    void handleError(int error, const QString &errorString);
    void installDirectory(const QDir &pluginDir);
    bool installFile(const QFileInfo &fileinfo);
    void pluginStateChanaged(const QString &symbolic, int from, int to);
    void start(const QString &symbolic);
    void stop(const QString &symbolic);
    void startStep(Plugin *plugin);
    void stopStep(Plugin *plugin);

    PluginFrameworkContext *context;
    bool scanDone;
    int error;
    QString errorString;
    PluginLoadQueue *loadQueue;
    QHash<QString, Plugin *> plugins;
    QHash<QString, Plugin *> pluginFiles;
    QMap<QString, PluginInfo> pluginInfos;
    int pluginCount;
    QFileSystemWatcher *watcher;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMANAGER_P_H
