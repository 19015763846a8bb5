// SPDX-License-Identifier: BSD-3-Clause
#ifndef ESINSPECT_INSPECTOR_H
#define ESINSPECT_INSPECTOR_H

#include <ExtensionSystem/PluginCrash>
#include <ExtensionSystem/PluginProblem>
#include <ExtensionSystem/PluginResolver>

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <vector>

namespace ExtensionSystem {
class PluginMetaData;
}

// One library file below plugins/, as the framework would see it.
struct PluginRecord
{
    enum Refusal { NotRefused, Duplicate, Blacklisted, NotWhitelisted, Quarantined };

    QString filePath; // absolute
    QString relativePath; // below the application directory
    QString loadError; // the loader's message when the library did not load
    QString resourcePath; // where the metadata was looked for
    QStringList foreignResources; // metadata resources the library brought under another name
    bool activator = false;
    std::shared_ptr<ExtensionSystem::PluginMetaData> metaData; // null when the library did not load
    QString symbolic; // the name the framework files the plug-in under
    QString name; // the name reports use: symbolic, or the file's base name without a usable one
    int policy = 0;
    Refusal refusal = NotRefused;
    QString duplicateOf; // relative path of the file that kept the name
    bool quarantinedNext = false; // the last run died in it: the next start quarantines it
    ExtensionSystem::PluginProblem refusalReason;
    int queuePosition = -1; // -1 when it does not resolve
    // the first thing that keeps it out of the queue
    ExtensionSystem::PluginProblem::Reason problem = ExtensionSystem::PluginProblem::NoProblem;
    QStringList reasons; // why it does not resolve, in plain words

    bool resolves() const { return queuePosition >= 0; }
    // The library itself is at fault, whatever the scan met before it.
    bool unusable() const
    {
        return problem == ExtensionSystem::PluginProblem::LoadFailed
               || problem == ExtensionSystem::PluginProblem::NoMetaFile
               || problem == ExtensionSystem::PluginProblem::InvalidMetaFile;
    }
};

// Scans an application directory the way the framework does, computes the load
// queue with the framework's rules and says why each plug-in outside it is there.
// Libraries are loaded and their root objects made, since the metadata is a
// resource inside them; no activator is called and no file is written.
class Inspector
{
public:
    Inspector(const QDir &applicationDir, const QString &program);

    // The only sub-directory of config/, or an empty string.
    static QString defaultProgram(const QDir &applicationDir);

    void run();

    QDir applicationDir() const { return m_applicationDir; }
    QString program() const { return m_program; }
    QString configFile() const;
    bool configExists() const;
    bool loadEnabledPluginOnly() const { return m_loadEnabledPluginOnly; }

    const std::vector<PluginRecord> &plugins() const { return m_plugins; }
    QStringList queue() const { return m_queue; }
    QStringList notes() const { return m_notes; }
    // What the runs that ended without a clean stop were doing, oldest first.
    QList<ExtensionSystem::PluginCrash> unfinishedRuns() const { return m_unfinished; }
    // The plug-in the framework would have filed under this name, or null.
    const PluginRecord *installed(const QString &symbolic) const;
    bool allResolve() const;

private:
    void scan();
    void load(PluginRecord &record);
    void readConfiguration();
    int policy(const QString &symbolic) const;
    void install(int index);
    bool quarantine(PluginRecord &record);
    void explain(PluginRecord &record);
    QString relative(const QString &path) const;

    QDir m_applicationDir;
    QString m_program;
    bool m_loadEnabledPluginOnly = false;
    bool m_quarantining = true;
    QList<ExtensionSystem::PluginCrash> m_unfinished;
    QHash<QString, QString> m_policies; // symbolic name to the raw text in config.ini
    std::vector<PluginRecord> m_plugins;
    QHash<QString, int> m_installed;
    // The framework's own rule orders the plug-ins and names what keeps one out.
    ExtensionSystem::PluginResolver m_resolver;
    QStringList m_queue;
    QStringList m_notes;
};

#endif // ESINSPECT_INSPECTOR_H
