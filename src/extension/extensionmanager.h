// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONMANAGER_H
#define EXTENSIONSYSTEM_EXTENSIONMANAGER_H

#include "extensionsystem_global.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class ExtensionHandler;
class ExtensionPoint;

namespace Internal {

class ExtensionManagerPrivate;
class ExtensionPointAdmin;
class ExtensionStorage;
class PluginFrameworkContext;

// Owner of the extension subsystem: decides whether an extension file is parsed
// or taken from the store, keeps the store's list of active plug-ins, and passes
// start requests of pending extensions on to the plug-in manager.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionManager : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ExtensionManager)
public:
    ExtensionManager(PluginFrameworkContext *context, QObject *parent);
    ~ExtensionManager() override;

    void registerExtensionPoint(ExtensionPoint *point);
    void unregisterExtensionPoint(const QString &id);
    void registerExtensionHandler(ExtensionHandler *handler);
    void unregisterExtensionHandler(const QString &id);

    ExtensionPointAdmin *pointAdmin() const;
    ExtensionStorage *storage() const;

signals:
    void requestStartingPlugin(QString symbolic);
    // Connected to PluginManager::stop(QString) as the framework was designed;
    // nothing emits it.
    void requestStoppingPlugin(QString symbolic);
    void errorOccured(int error, QString errorString);
    // Once per scan, when every file it announced is parsed or read from the store and dispatched.
    void extensionFilesReady(QStringList parsedFiles, QStringList storedFiles, QStringList failedFiles);

public slots:
    void parseExtensionFile(QString filepath);
    void loadingQueueChanged(QStringList loadingQueue);
    // Closes the files announced since the last scan into one scan. Connected
    // queued to the end of a scan, so it comes after that scan's announcements.
    void scanFinished();

private:
    Q_DISABLE_COPY(ExtensionManager)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONMANAGER_H
