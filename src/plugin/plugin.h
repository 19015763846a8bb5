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
}

// One plug-in library: loaded at construction, started and stopped through the
// activator that its root object implements.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT Plugin : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(Plugin)
public:
    Plugin(const QFileInfo &file, Internal::PluginFrameworkContext *context, QObject *parent);
    ~Plugin() override;

    int state() const;
    int error() const;
    QString errorString() const;
    QString symbolic() const;
    QString version() const;
    QDir location() const;
    QFileInfo fileInfo() const;
    const PluginMetaData *metaData() const;
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
