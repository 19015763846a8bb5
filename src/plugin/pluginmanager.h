// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINMANAGER_H
#define EXTENSIONSYSTEM_PLUGINMANAGER_H

#include "extensionsystem_global.h"

#include <framework/pluginframeworkconfig.h>
#include <plugin/plugininfo.h>
#include <plugin/pluginproblem.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class Plugin;

namespace Internal {
class PluginFrameworkContext;
class PluginManagerPrivate;
} // namespace Internal

// The registry of the plug-ins of one framework: installs them from the
// plug-ins directory, resolves them through the load queue, starts and stops them.
class EXTENSIONSYSTEM_EXPORT PluginManager : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginManager)
public:
    // The numbers of error() and errorOccured(); 2 is not used.
    enum Error {
        NoError = 0,
        PluginsDirMissingError = 1,
        InvalidPluginError = 3,
        AlreadyInstalledError = 4,
        SymbolicTakenError = 5,
        NotInstalledError = 6,
        NotResolvedError = 7,
        NotActiveError = 8,
        BlacklistedError = 9,
        NotWhitelistedError = 10
    };

    PluginManager(Internal::PluginFrameworkContext *context, QObject *parent);
    ~PluginManager() override;

    int error() const;
    QString errorString() const;
    Plugin *find(const QString &symbolic) const;
    Plugin *findByFile(const QString &filePath) const;
    PluginInfo pluginInfo(const QString &symbolic) const;
    QList<PluginInfo> pluginInfos() const;
    QStringList loadQueue() const;
    // Why the plug-in of that symbolic name, or the library of that base name, is
    // not running: empty while it runs, otherwise the reasons, the first one first.
    QList<PluginProblem> problems(const QString &name) const;

    // The platform's file name suffix of a plug-in library (".so" on Linux), and
    // the files of a plug-in directory that the scan installs, in its order.
    static QString librarySuffix();
    static QFileInfoList libraryFiles(const QDir &dir);

signals:
    void errorOccured(int error, QString errorString);
    void parsingExtensionFile(QString extfile);
    void loadingQueueChanged(QStringList loadingQueue);
    void installed(QString symbolic);
    void uninstalled(QString symbolic);

public slots:
    void install(QDir pluginDir);
    void install(QFileInfo fileinfo);
    void uninstall(QString symbolic);
    void start();
    void stop();
    void start(QString symbolic);
    void stop(QString symbolic);
    void setPluginStartupPolicy(QString symbolic, PluginFrameworkConfig::StartupPolicy startupPolicy);
    void setWatchingPluginDirEnable(bool on);

private slots:
    void pluginStateChanaged(const QString &symbolic, int from, int to);
    void pluginDirectoryChanged(QString dir);

private:
    Q_DISABLE_COPY(PluginManager)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMANAGER_H
