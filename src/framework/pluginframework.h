// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORK_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORK_H

#include "extensionsystem_global.h"

#include <event/pluginevent.h>

#include <QtCore/QObject>

namespace ExtensionSystem {

namespace Internal {
class PluginFrameworkPrivate;
}

// The one object a host creates: init() installs the plug-ins below plugins/,
// start() starts them in dependency order, stop() stops them in reverse.
class EXTENSIONSYSTEM_EXPORT PluginFramework : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginFramework)
public:
    enum State {
        FrameworkUninitialized = 0,
        FrameworkInitializing = 1,
        FrameworkInitialized = 2,
        FrameworkStopping = 4,
        FrameworkStarting = 8,
        FrameworkStarted = 16
    };
    Q_ENUM(State)

    // The numbers of error() and errorOccured().
    enum Error { NoError = 0, PluginsDirMissingError = 1 };

    explicit PluginFramework(QObject *parent = nullptr);
    ~PluginFramework() override;

    int state() const;
    int error() const;
    QString errorString() const;
    bool loadEnabledPluginOnly() const;
    bool watchingPluginDirEnabled() const;
    void handleError(int error, const QString &errorString);

public slots:
    void init();
    void start();
    void stop();
    void exit();
    void installPlugin(QString libpath);
    void setLoadEnabledPluginOnly(bool on);
    void setWatchingPluginDirEnable(bool on);

signals:
    void errorOccured(int error, QString errorString);
    void stateChanged(int state);
    void initialized();
    void started();
    void stopped();
    void pluginChanged(PluginEvent event);

private:
    Q_DISABLE_COPY(PluginFramework)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORK_H
