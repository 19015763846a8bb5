// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINMANAGER_P_H
#define EXTENSIONSYSTEM_PLUGINMANAGER_P_H

#include "pluginmanager.h"

#include <core/plugincrash.h>
#include <plugin/pluginloadqueue.h>
#include <plugin/pluginproblem.h>
#include <plugin/pluginquarantine_p.h>

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/private/qobject_p.h>

QT_BEGIN_NAMESPACE
class QFileSystemWatcher;
QT_END_NAMESPACE

namespace ExtensionSystem {
namespace Internal {

class PluginManagerPrivate : public QObjectPrivate, public PluginLoadQueue::Members
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
    void refuse(Plugin *plugin, const PluginProblem &reason);
    void refuse(const QStringList &names, const QList<PluginProblem> &reasons);
    // Before the first library is loaded: reads what the journals of ended
    // processes say, quarantines, and begins this process's journal.
    void guardStart();
    bool quarantined(const QFileInfo &fileinfo);
    Plugin *findByBaseName(const QString &name) const;

    // The load queue's view of the installed plug-ins.
    PluginMetaData *memberMetaData(const QString &symbolic) const override;
    void memberResolved(const QString &symbolic) override;
    QStringList memberNames() const override;
    PluginProblem memberRefusal(const QString &symbolic) const override;

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
    // Why a library was refused at installation, what was wrong with the file
    // first: by symbolic name, and by its file's base name when the name itself
    // says nothing.
    QHash<QString, QList<PluginProblem>> refusals;
    bool guarded;
    PluginQuarantinePrivate quarantine;
    PluginCrash previousCrash;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMANAGER_P_H
