// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINQUARANTINE_P_H
#define EXTENSIONSYSTEM_PLUGINQUARANTINE_P_H

#include "pluginquarantine.h"

#include <core/fileidentity.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace ExtensionSystem {
namespace Internal {

// The quarantine list in memory, read once and written through. The framework
// keeps one for its run; PluginQuarantine reads one for a tool.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginQuarantinePrivate
{
public:
    PluginQuarantinePrivate(const QString &applicationDir, const QString &program);

    struct Record
    {
        PluginCrash crash;
        QString file; // below plugins/
        FileIdentity identity; // of the library when it was quarantined
        QByteArray digest; // SHA-256 of its bytes then
    };

    void load();
    bool save(QString *errorString = nullptr);
    int indexOf(const QString &name) const;
    bool release(const QString &name, QString *errorString);

    // Enters a plug-in that died in a phase that quarantines, or counts one more
    // death of a released one. Returns the record as it now stands.
    PluginCrash quarantine(const PluginCrash &crash);
    // The index of the record that keeps this library from loading, or -1;
    // changed says that one exists but the library's bytes are no longer those
    // that died, which releases it. Reads the file at most; writes nothing.
    int blocking(const QFileInfo &library, bool *changed) const;
    // The record that keeps this library from loading, or a null value; a
    // quarantined library whose bytes changed since is released here, and
    // releasedNow says so.
    PluginCrash check(const QFileInfo &library, bool *releasedNow);
    // A released plug-in got through the phase it died in: its record goes.
    void passed(const QString &library, PluginCrash::Phase phase);
    bool hasReleased() const;
    QList<PluginCrash> crashes() const;

    QDir configDir;
    QDir pluginsDir;
    QList<Record> records;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINQUARANTINE_P_H
