// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGIN_H
#define EXTENSIONSYSTEM_PLUGIN_H

#include "extensionsystem_global.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QObject>

namespace ExtensionSystem {

class PluginContext;
class PluginMetaData;

namespace Internal {
class PluginFrameworkContext;
class PluginPrivate;
} // namespace Internal

// One plug-in library: loaded at construction, started and stopped through the
// activator that its root object implements.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT Plugin : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(Plugin)
public:
    // The numbers of error(); after a metadata failure error() holds the metadata's own.
    enum Error {
        NoError = 0,
        InStartingError = 1,
        InStoppingError = 2,
        NotActiveError = 3,
        NotResolvedError = 4,
        NotInstalledError = 5,
        LoadError = 6,
        InstanceError = 7,
        NoActivatorError = 8
    };

    Plugin(const QFileInfo &file, Internal::PluginFrameworkContext *context, QObject *parent);
    ~Plugin() override;

    int state() const;
    int error() const;
    QString errorString() const;
    QString symbolic() const;
    QString version() const;
    // The name reports use: symbolic(), or the file's base name when the
    // library has no usable symbolic name.
    QString reportName() const;
    // What the library loader said about this library; meaningful when it did not load.
    QString loaderErrorString() const;
    QDir location() const;
    QFileInfo fileInfo() const;
    const PluginMetaData *metaData() const;
    // The load queue keeps the resolution flags of the dependencies on it.
    PluginMetaData *metaData();
    PluginContext *pluginContext() const;
    void setState(int state);

signals:
    void errorOccured(int error, QString errorString);
    void stateChanged(QString symbolic, int from, int to);

public slots:
    void start();
    void stop();

private:
    Q_DISABLE_COPY(Plugin)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGIN_H
