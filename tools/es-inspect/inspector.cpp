#include "inspector.h"

#include <framework/pluginframeworkconfig.h>
#include <framework/pluginframeworkconstance.h>
#include <plugin/ipluginactivator.h>
#include <plugin/pluginconstance.h>
#include <plugin/plugindependency.h>
#include <plugin/pluginmetadata.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>
#include <QtCore/QQueue>
#include <QtCore/QSettings>
#include <QtCore/QSet>

using namespace ExtensionSystem;

namespace {

#if defined(Q_OS_WIN)
const char libraryPattern[] = "*.dll";
#elif defined(Q_OS_MACOS)
const char libraryPattern[] = "*.dylib";
#else
const char libraryPattern[] = "*.so";
#endif

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

QString shownVersion(const QString &version)
{
    return version.isEmpty() ? QObject::tr("no version (counts as 0.0.0)") : version;
}

QString shownName(const QString &symbolic)
{
    return symbolic.isEmpty() ? QObject::tr("(no name)") : symbolic;
}

} // namespace

Inspector::Inspector(const QDir &applicationDir, const QString &program)
    : m_applicationDir(applicationDir)
    , m_program(program)
{
}

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
    scan();
    for (size_t i = 0; i < m_plugins.size(); ++i)
        install(int(i));
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
    settings.beginGroup(QStringLiteral("Plugin"));
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        m_policies.insert(key, settings.value(key).toString());
    settings.endGroup();
}

int Inspector::policy(const QString &symbolic) const
{
    // The framework trims and folds case when it decides on a plug-in.
    const QString text = m_policies.value(symbolic).trimmed().toLower();
    if (text == QLatin1String("disable"))
        return PluginFrameworkConfig::PolicyDisable;
    if (text == QLatin1String("enable"))
        return PluginFrameworkConfig::PolicyEnable;
    return PluginFrameworkConfig::PolicyUndefine;
}

void Inspector::scan()
{
    const QDir pluginsDir(m_applicationDir.filePath(PluginFrameworkConstance::PLUGIN_DIR));
    const QStringList pattern(QString::fromLatin1(libraryPattern));

    // Libraries outside the one level of sub-directories are never seen.
    const QFileInfoList stray = pluginsDir.entryInfoList(pattern, QDir::Files);
    for (const QFileInfo &file : stray)
        m_notes << QObject::tr("%1 lies directly in plugins/ and is not scanned: each plug-in needs a "
                               "directory of its own").arg(relative(file.filePath()));

    const QFileInfoList directories = pluginsDir.entryInfoList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &directory : directories) {
        const QDir dir(directory.absoluteFilePath());
        const QFileInfoList libraries = dir.entryInfoList(pattern, QDir::Files);
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
    loader.load();
    QObject *root = loader.instance();
    if (!root) {
        record.loadError = loader.errorString();
        record.symbolic = QFileInfo(record.filePath).baseName();
        return;
    }
    // qt_metacast only asks; the activator is never called.
    record.activator = root->qt_metacast(ExtensionSystem_IPluginActivator_iid) != nullptr;

    const QString base = loader.fileName().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, -2);
    record.resourcePath = PluginConstance::PLUGIN_METAFILE.arg(base);
    record.metaData = std::make_shared<PluginMetaData>(record.resourcePath);
    record.symbolic = record.metaData->symbolic();
    if (record.metaData->error() == 1) {
        QSet<QString> brought = metaResources() - before;
        brought.remove(record.resourcePath);
        record.foreignResources = brought.values();
        record.foreignResources.sort();
    }
}

// The framework's installation of one file: duplicates, then the black and white lists.
void Inspector::install(int index)
{
    PluginRecord &record = m_plugins[size_t(index)];
    load(record);
    if (const PluginRecord *first = installed(record.symbolic)) {
        record.refusal = PluginRecord::Duplicate;
        record.duplicateOf = first->relativePath;
        return;
    }
    record.policy = policy(record.symbolic);
    if (record.policy == PluginFrameworkConfig::PolicyDisable) {
        record.refusal = PluginRecord::Blacklisted;
        return;
    }
    if (record.policy == PluginFrameworkConfig::PolicyUndefine && m_loadEnabledPluginOnly) {
        record.refusal = PluginRecord::NotWhitelisted;
        return;
    }
    m_installed.insert(record.symbolic, index);
    if (record.metaData && !m_queue.contains(record.symbolic))
        resolve(index);
}

// The load queue's rule, step for step: a plug-in enters once every dependency is
// in the queue and compatible; whoever waited for it is tried again, newest wait first.
bool Inspector::resolve(int index)
{
    PluginRecord &record = m_plugins[size_t(index)];
    PluginMetaData *metaData = record.metaData.get();
    if (!metaData)
        return false;
    const QString self = record.symbolic;
    const QList<PluginDependency> dependencies = metaData->dependencies();

    if (!dependencies.isEmpty() && !metaData->dependencyResolved()) {
        for (const PluginDependency &dependency : dependencies) {
            if (dependency.symbolic() == self)
                continue;
            const PluginRecord *provider = m_queue.contains(dependency.symbolic())
                                               ? installed(dependency.symbolic()) : nullptr;
            if (provider && provider->metaData
                && dependency.checkCompatible(provider->symbolic, provider->metaData->version(),
                                              provider->metaData->compatVersion())) {
                metaData->setDependencyResolved(dependency.symbolic(), true);
            }
            m_waitingFor.insert(self, dependency.symbolic());
            m_waitedBy.insert(dependency.symbolic(), self);
        }
    }
    if (!metaData->dependencyResolved())
        return false;

    if (!m_queue.contains(self))
        m_queue.append(self);

    const QStringList waited = m_waitingFor.values(self);
    for (const QString &name : waited)
        m_waitedBy.remove(name, self);
    m_waitingFor.remove(self);

    const QStringList waiting = m_waitedBy.values(self);
    for (const QString &name : waiting) {
        const int waiter = m_installed.value(name, -1);
        if (waiter >= 0)
            resolve(waiter);
    }
    return true;
}

// Dependencies of an unresolved plug-in that are installed, compatible and
// themselves unresolved: the edges along which a cycle can run.
QStringList Inspector::successors(const PluginRecord &record) const
{
    QStringList names;
    if (!record.metaData || record.resolves())
        return names;
    const QList<PluginDependency> dependencies = record.metaData->dependencies();
    for (const PluginDependency &dependency : dependencies) {
        const PluginRecord *provider = installed(dependency.symbolic());
        if (dependency.isResolved() || dependency.symbolic() == record.symbolic || !provider
            || !provider->metaData || provider->resolves())
            continue;
        if (dependency.checkCompatible(provider->symbolic, provider->metaData->version(),
                                       provider->metaData->compatVersion()))
            names << provider->symbolic;
    }
    return names;
}

bool Inspector::reaches(const QString &from, const QString &to) const
{
    QSet<QString> seen{from};
    QQueue<QString> open;
    open.enqueue(from);
    while (!open.isEmpty()) {
        const QString name = open.dequeue();
        if (name == to)
            return true;
        const QStringList next = successors(*installed(name));
        for (const QString &n : next) {
            if (!seen.contains(n)) {
                seen.insert(n);
                open.enqueue(n);
            }
        }
    }
    return false;
}

// The shortest cycle through a plug-in, first name repeated at the end, or empty.
QStringList Inspector::cycleThrough(const QString &symbolic) const
{
    QHash<QString, QString> parent;
    QQueue<QString> open;
    open.enqueue(symbolic);
    while (!open.isEmpty()) {
        const QString name = open.dequeue();
        const QStringList next = successors(*installed(name));
        for (const QString &n : next) {
            if (n == symbolic) {
                QStringList cycle{symbolic};
                for (QString at = name; at != symbolic; at = parent.value(at))
                    cycle.prepend(at);
                cycle.prepend(symbolic);
                return cycle;
            }
            if (!parent.contains(n)) {
                parent.insert(n, name);
                open.enqueue(n);
            }
        }
    }
    return QStringList();
}

void Inspector::explain(PluginRecord &record)
{
    // What is wrong with the file itself comes first: the framework meets it on loading.
    if (!record.metaData) {
        record.problem = PluginRecord::LoadFailed;
        record.reasons << QObject::tr("library fails to load: %1").arg(record.loadError);
    } else if (record.metaData->error() == 1) {
        record.problem = PluginRecord::NoMetaFile;
        QString text = QObject::tr("no META.INF at %1: a library carries its metadata as a resource "
                                   "under its own base name").arg(record.resourcePath);
        if (!record.foreignResources.isEmpty())
            text += QObject::tr(" (this one carries %1: was the file renamed?)")
                        .arg(record.foreignResources.join(QStringLiteral(", ")));
        record.reasons << text;
    } else if (!record.metaData->isValid()) {
        record.problem = PluginRecord::InvalidMetaFile;
        record.reasons << QObject::tr("META.INF at %1 names no symbolic").arg(record.resourcePath);
    }

    switch (record.refusal) {
    case PluginRecord::Duplicate:
        record.reasons << QObject::tr("same symbolic name %1 as %2, which comes first in directory order: "
                                      "this file is refused")
                              .arg(shownName(record.symbolic), record.duplicateOf);
        return;
    case PluginRecord::Blacklisted:
        record.reasons << QObject::tr("blacklisted: config.ini sets Plugin/%1 to \"%2\"")
                              .arg(record.symbolic, m_policies.value(record.symbolic));
        return;
    case PluginRecord::NotWhitelisted:
        record.reasons << QObject::tr("not whitelisted: loadEnabledPluginOnly is on and config.ini has no "
                                      "\"enable\" for Plugin/%1")
                              .arg(shownName(record.symbolic));
        return;
    case PluginRecord::NotRefused:
        break;
    }
    if (record.problem != PluginRecord::NoProblem || record.resolves())
        return;

    const PluginMetaData &metaData = *record.metaData;
    record.problem = PluginRecord::Unresolved;
    const QList<PluginDependency> dependencies = metaData.dependencies();
    if (dependencies.isEmpty() && !metaData.dependencyResolved()) {
        record.problem = PluginRecord::NoDependencyLine;
        record.reasons << QObject::tr("no `dependency` line in META.INF: a plug-in without dependencies "
                                      "needs an empty `dependency:` line");
        return;
    }

    auto because = [&record](PluginRecord::Problem problem, const QString &text) {
        if (record.problem == PluginRecord::Unresolved)
            record.problem = problem;
        record.reasons << text;
    };
    const QStringList cycle = cycleThrough(record.symbolic);
    if (!cycle.isEmpty())
        because(PluginRecord::Cycle, QObject::tr("dependency cycle: %1").arg(cycle.join(QStringLiteral(" -> "))));

    for (const PluginDependency &dependency : dependencies) {
        if (dependency.isResolved())
            continue;
        const QString name = dependency.symbolic();
        const QString needed = shownVersion(dependency.version());
        if (name == record.symbolic) {
            because(PluginRecord::SelfDependency,
                    QObject::tr("depends on itself (%1 %2): such a dependency is never met").arg(name, needed));
            continue;
        }
        const PluginRecord *provider = installed(name);
        if (!provider) {
            QString text = QObject::tr("missing dependency: needs %1 %2, which is not installed").arg(name, needed);
            for (const PluginRecord &other : m_plugins) {
                if (other.symbolic == name && other.refusal != PluginRecord::NotRefused) {
                    text += QObject::tr(" (%1 is refused: see %2)").arg(name, other.relativePath);
                    break;
                }
                if (other.refusal == PluginRecord::NotRefused && other.symbolic.compare(name, Qt::CaseInsensitive) == 0) {
                    text += QObject::tr(" (there is %1, but names are case-sensitive)").arg(other.symbolic);
                    break;
                }
            }
            because(PluginRecord::MissingDependency, text);
            continue;
        }
        if (!provider->metaData) {
            because(PluginRecord::UnresolvedDependency, QObject::tr("depends on %1, which does not resolve").arg(name));
            continue;
        }
        const QString version = provider->metaData->version();
        const QString compatVersion = provider->metaData->compatVersion();
        if (!dependency.checkCompatible(provider->symbolic, version, compatVersion)) {
            because(PluginRecord::IncompatibleVersion,
                    QObject::tr("incompatible version: needs %1 %2 but %1 is %3 (compatible back to %4)")
                        .arg(name, needed, shownVersion(version),
                             compatVersion.isEmpty() ? QStringLiteral("0.0.0") : compatVersion));
            continue;
        }
        if (provider->resolves()) {
            // Dependencies are filed under lower-case names but marked met under the
            // name as written, so a name with capitals is never marked.
            because(PluginRecord::CapitalisedDependency,
                    QObject::tr("depends on %1, written with capitals: dependencies are filed in lower case, "
                                "so this one is never counted as met").arg(name));
            continue;
        }
        if (!cycle.isEmpty() && reaches(name, record.symbolic))
            continue; // told as the cycle above
        because(PluginRecord::UnresolvedDependency, QObject::tr("depends on %1, which does not resolve").arg(name));
    }
    if (record.reasons.isEmpty())
        record.reasons << QObject::tr("does not resolve, for a reason this tool cannot name");
}
