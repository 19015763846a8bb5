// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H
#define EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H

#include "extensionmanager.h"

#include <event/ipluginlistener.h>
#include <extension/exttype.h>

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParser;
class TimelineRecorder;

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionManagerPrivate : public QObjectPrivate, public IPluginListener
{
    Q_DECLARE_PUBLIC(ExtensionManager)
public:
    explicit ExtensionManagerPrivate(PluginFrameworkContext *context);
    ~ExtensionManagerPrivate() override;

    void initialize();
    // Keeps the store's list of active plug-ins as plug-ins change state.
    void pluginChanged(const PluginEvent &event) override;

    // The extension files of one directory scan and what became of them.
    struct Scan
    {
        QStringList parsed;
        QStringList stored;
        QStringList failed;
        int pending = 0;
        bool closed = false;
    };
    // The scan that announcements join now; a closed one is followed by a new one.
    quint64 openScan();
    TimelineRecorder *timeline() const;
    void storeAndDispatch(const QString &filepath, const ExtType::Plugin &plugin);
    // A file handed to a parse task is done; parsed tells how it went.
    void fileDone(const QString &filepath, bool parsed);
    void emitIfComplete(quint64 scan);

    QMap<quint64, Scan> scans;
    quint64 lastScan = 0;
    // Files waiting for their parse task, each with the scans that announced it, oldest first.
    QHash<QString, QList<quint64>> pendingFiles;

    PluginFrameworkContext *frameworkContext;
    ExtensionPointAdmin *extensionPointAdmin;
    ExtensionFileParser *extensionFileParser;
    ExtensionStorage *extensionStorage;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONMANAGER_P_H
