// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGIN_P_H
#define EXTENSIONSYSTEM_PLUGIN_P_H

#include "plugin.h"

#include <objecttree/iobjectnotifier.h>

#include <QtCore/QPluginLoader>
#include <QtCore/QTranslator>
#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {

class IPluginActivator;

namespace Internal {

class TimelineRecorder;

class PluginPrivate : public QObjectPrivate, public IObjectNotifier
{
    ES_DECLARE_PUBLIC(Plugin)
public:
    PluginPrivate(const QFileInfo &file, PluginFrameworkContext *context);
    ~PluginPrivate() override;

    void handleError(int error, const QString &errorString);
    void clearError();
    // Where the plug-in's phases are recorded; null without a framework.
    TimelineRecorder *timeline() const;

    QPluginLoader loader;
    QFileInfo fileInfo;
    bool valid;
    int state;
    int error;
    QString errorString;
    PluginFrameworkContext *context;
    IPluginActivator *activator;
    PluginContext *pluginContext;
    PluginMetaData *metaData;
    QTranslator translator;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGIN_P_H
