// SPDX-License-Identifier: BSD-3-Clause
#include "inspector.h"

#include <ExtensionSystem/PluginFrameworkConfig>
#include <ExtensionSystem/PluginFrameworkConstance>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginConstance>
#include <ExtensionSystem/PluginDependency>
#include <ExtensionSystem/PluginManager>
#include <ExtensionSystem/PluginMetaData>
#include <ExtensionSystem/PluginQuarantine>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>
#include <QtCore/QSettings>
#include <QtCore/QSet>

using namespace ExtensionSystem;

namespace {

// Every metadata resource that is registered now, under any name.
QSet<QString> metaResources()
{
    QSet<QString> found;
    const QStringList roots = QDir(QStringLiteral(":/")).entryList(QDir::Dirs);
    for (const QString &root : roots) {
        const QString path = PluginConstance::PLUGIN_METAFILE.arg(root);
        if (QFile::exists(path))
            found.insert(path);
    }
    return found;
}

} // namespace

Inspector::Inspector(const QDir &applicationDir, const QString &program)
    : m_applicationDir(applicationDir)
    , m_program(program)
{ }

QString Inspector::defaultProgram(const QDir &applicationDir)
{
    const QStringList programs = QDir(applicationDir.filePath(PluginFrameworkConstance::CONFIG_DIR))
                                         .entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return programs.size() == 1 ? programs.first() : QString();
}

QString Inspector::configFile() const
{
    if (m_program.isEmpty())
        return QString();
    return m_applicationDir.filePath(PluginFrameworkConstance::CONFIG_DIR + QLatin1Char('/') + m_program
                                     + QStringLiteral("/config.ini"));
}

bool Inspector::configExists() const
{
    return !m_program.isEmpty() && QFileInfo(configFile()).isFile();
}

const PluginRecord *Inspector::installed(const QString &symbolic) const
{
    const auto it = m_installed.constFind(symbolic);
    return it == m_installed.constEnd() ? nullptr : &m_plugins[size_t(*it)];
}

bool Inspector::allResolve() const
{
    for (const PluginRecord &record : m_plugins) {
        if (!record.resolves())
            return false;
    }
    return true;
}

QString Inspector::relative(const QString &path) const
{
    return m_applicationDir.relativeFilePath(path);
}

void Inspector::run()
{
    readConfiguration();
    if (!m_program.isEmpty())
        m_unfinished = PluginQuarantine(m_applicationDir.absolutePath(), m_program).unfinishedRuns(&m_notes);
    scan();
    for (size_t i = 0; i < m_plugins.size(); ++i)
        install(int(i));
    m_queue = m_resolver.queue();
    for (int i = 0; i < m_queue.size(); ++i)
        m_plugins[size_t(m_installed.value(m_queue.at(i)))].queuePosition = i;
    for (PluginRecord &record : m_plugins)
        explain(record);
}

void Inspector::readConfiguration()
{
    // Never written to: a QSettings without changes leaves the file alone, and
    // one on a missing file does not create it.
    if (!configExists())
        return;
    QSettings settings(configFile(), QSettings::IniFormat);
    m_loadEnabledPluginOnly = settings.value(QStringLiteral("PluginManager/loadEnabledPluginOnly"), false).toBool();
    m_quarantining = settings.value(QStringLiteral("PluginManager/quarantineCrashedPlugins"), true).toBool();
    settings.beginGroup(QStringLiteral("Plugin"));
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        m_policies.insert(key, settings.value(key).toString());
    settings.endGroup();
}

int Inspector::policy(const QString &symbolic) const
{
    return PluginFrameworkConfig::policyOf(m_policies.value(symbolic));
}

void Inspector::scan()
{
    const QDir pluginsDir(m_applicationDir.filePath(PluginFrameworkConstance::PLUGIN_DIR));

    // Libraries outside the one level of sub-directories are never seen.
    const QFileInfoList stray = PluginManager::libraryFiles(pluginsDir);
    for (const QFileInfo &file : stray)
        m_notes << QObject::tr("%1 lies directly in plugins/ and is not scanned: each plug-in needs a "
                               "directory of its own")
                           .arg(relative(file.filePath()));

    const QFileInfoList directories = pluginsDir.entryInfoList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &directory : directories) {
        const QDir dir(directory.absoluteFilePath());
        const QFileInfoList libraries = PluginManager::libraryFiles(dir);
        if (libraries.isEmpty())
            m_notes << QObject::tr("%1/ holds no library").arg(relative(dir.absolutePath()));
        for (const QFileInfo &library : libraries) {
            PluginRecord record;
            record.filePath = library.absoluteFilePath();
            record.relativePath = relative(record.filePath);
            m_plugins.push_back(std::move(record));
        }
    }
}

void Inspector::load(PluginRecord &record)
{
    const QSet<QString> before = metaResources();
    QPluginLoader loader(record.filePath);
    loader.setLoadHints(PluginResolver::libraryLoadHints());
    loader.load();
    QObject *root = loader.instance();
    if (!root) {
        record.loadError = loader.errorString();
        record.symbolic = QFileInfo(record.filePath).baseName();
        record.name = PluginResolver::libraryName(QFileInfo(record.filePath), nullptr);
        return;
    }
    // qt_metacast only asks; the activator is never called.
    record.activator = root->qt_metacast(ExtensionSystem_IPluginActivator_iid) != nullptr;

    const QString base = loader.fileName().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, -2);
    record.resourcePath = PluginConstance::PLUGIN_METAFILE.arg(base);
    record.metaData = std::make_shared<PluginMetaData>(record.resourcePath);
    record.symbolic = record.metaData->symbolic();
    record.name = PluginResolver::libraryName(QFileInfo(record.filePath), record.metaData.get());
    if (record.metaData->error() == PluginMetaData::OpenError) {
        QSet<QString> brought = metaResources() - before;
        brought.remove(record.resourcePath);
        record.foreignResources = brought.values();
        record.foreignResources.sort();
    }
}

// The framework's installation of one file: duplicates, then the black and white lists.
// A library the next start would not load is not loaded here either: a crash
// in its static initialisers would end this tool.
bool Inspector::quarantine(PluginRecord &record)
{
    if (!m_quarantining || m_program.isEmpty())
        return false;
    PluginCrash crash = PluginQuarantine(m_applicationDir.absolutePath(), m_program).blocks(record.filePath);
    for (const PluginCrash &ended : qAsConst(m_unfinished)) {
        if (ended.quarantines() && QFileInfo(ended.file()) == QFileInfo(record.filePath)) {
            crash = ended;
            record.quarantinedNext = true;
        }
    }
    if (crash.isNull())
        return false;
    record.symbolic = record.name = crash.plugin();
    record.refusal = PluginRecord::Quarantined;
    record.refusalReason = PluginProblem(PluginProblem::Quarantined, crash.plugin(), record.filePath);
    record.refusalReason.setCrash(crash);
    m_resolver.refuse(record.symbolic, record.refusalReason);
    return true;
}

void Inspector::install(int index)
{
    PluginRecord &record = m_plugins[size_t(index)];
    if (quarantine(record))
        return;
    load(record);
    if (const PluginRecord *first = installed(record.symbolic)) {
        record.refusal = PluginRecord::Duplicate;
        record.duplicateOf = first->relativePath;
        record.refusalReason = PluginProblem(PluginProblem::DuplicateName, record.symbolic, record.duplicateOf);
        return;
    }
    record.policy = policy(record.symbolic);
    if (record.policy == PluginFrameworkConfig::PolicyDisable) {
        record.refusal = PluginRecord::Blacklisted;
        record.refusalReason =
                PluginProblem(PluginProblem::Blacklisted, record.symbolic, m_policies.value(record.symbolic));
    } else if (record.policy == PluginFrameworkConfig::PolicyUndefine && m_loadEnabledPluginOnly) {
        record.refusal = PluginRecord::NotWhitelisted;
        record.refusalReason = PluginProblem(PluginProblem::NotWhitelisted, record.symbolic);
    }
    if (record.refusal != PluginRecord::NotRefused) {
        m_resolver.refuse(record.symbolic, record.refusalReason);
        return;
    }
    m_installed.insert(record.symbolic, index);
    m_resolver.install(record.symbolic, record.metaData.get(), record.loadError);
}

void Inspector::explain(PluginRecord &record)
{
    // What is wrong with the file itself comes first, as the framework says it,
    // then why installation refused it; only a sound, installed file waits for others.
    // A quarantined library was not loaded: what keeps it out is the quarantine alone.
    QList<PluginProblem> problems =
            record.refusal == PluginRecord::Quarantined
                    ? QList<PluginProblem>{record.refusalReason}
                    : PluginResolver::libraryProblems(QFileInfo(record.filePath), record.metaData.get(),
                                                      record.loadError, record.refusalReason);
    if (problems.isEmpty() && !record.resolves())
        problems = m_resolver.problems(record.symbolic);
    if (problems.isEmpty())
        return;
    record.problem = problems.first().reason();
    for (const PluginProblem &problem : qAsConst(problems)) {
        QString text = problem.text();
        if (problem.reason() == PluginProblem::NoMetaFile && !record.foreignResources.isEmpty())
            text += QObject::tr(" (this one carries %1: was the file renamed?)")
                            .arg(record.foreignResources.join(QStringLiteral(", ")));
        record.reasons << text;
    }
}
