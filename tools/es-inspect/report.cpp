// SPDX-License-Identifier: BSD-3-Clause
#include "report.h"
#include "inspector.h"

#include <ExtensionSystem/PluginFrameworkConfig>
#include <ExtensionSystem/PluginConstance>
#include <ExtensionSystem/PluginDependency>
#include <ExtensionSystem/PluginMetaData>

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QTextStream>

using namespace ExtensionSystem;

namespace {

QString orNone(const QString &text)
{
    return text.isEmpty() ? QObject::tr("(none)") : text;
}

QString dependencyText(const PluginDependency &dependency)
{
    return dependency.version().isEmpty() ? QObject::tr("%1 (no version: counts as 0.0.0)").arg(dependency.symbolic())
                                          : QStringLiteral("%1 %2").arg(dependency.symbolic(), dependency.version());
}

QString dependenciesText(const PluginRecord &record)
{
    const PluginMetaData &metaData = *record.metaData;
    const QList<PluginDependency> dependencies = metaData.dependencies();
    if (dependencies.isEmpty()) {
        return metaData.dependencyResolved() ? QObject::tr("none (empty dependency line)")
                                             : QObject::tr("none declared (no dependency line)");
    }
    // Whether a need is met is known only for what the framework installs.
    const bool marked = record.refusal == PluginRecord::NotRefused && !record.resolves();
    QStringList parts;
    for (const PluginDependency &dependency : dependencies) {
        QString part = dependencyText(dependency);
        if (marked)
            part += dependency.isResolved() ? QObject::tr(" (met)") : QObject::tr(" (not met)");
        parts << part;
    }
    return parts.join(QStringLiteral(", "));
}

QString policyText(int policy)
{
    return PluginFrameworkConfig::policyName(PluginFrameworkConfig::StartupPolicy(policy));
}

QString problemWord(PluginProblem::Reason problem);

// Short status words for a graph node, and its colour.
QString statusWord(const PluginRecord &record)
{
    if (record.resolves())
        return QObject::tr("resolved #%1").arg(record.queuePosition + 1);
    if (record.unusable())
        return problemWord(record.problem);
    switch (record.refusal) {
    case PluginRecord::Duplicate:
        return QObject::tr("duplicate name");
    case PluginRecord::Blacklisted:
        return QObject::tr("blacklisted");
    case PluginRecord::NotWhitelisted:
        return QObject::tr("not whitelisted");
    case PluginRecord::Quarantined:
        return QObject::tr("quarantined");
    case PluginRecord::NotRefused:
        break;
    }
    return problemWord(record.problem);
}

QString problemWord(PluginProblem::Reason problem)
{
    switch (problem) {
    case PluginProblem::LoadFailed:
        return QObject::tr("fails to load");
    case PluginProblem::NoMetaFile:
        return QObject::tr("no META.INF");
    case PluginProblem::InvalidMetaFile:
        return QObject::tr("invalid META.INF");
    case PluginProblem::NoDependencyLine:
        return QObject::tr("no dependency line");
    case PluginProblem::DependencyCycle:
        return QObject::tr("dependency cycle");
    case PluginProblem::SelfDependency:
        return QObject::tr("depends on itself");
    case PluginProblem::MissingDependency:
        return QObject::tr("missing dependency");
    case PluginProblem::IncompatibleVersion:
        return QObject::tr("incompatible version");
    case PluginProblem::UnresolvedDependency:
        return QObject::tr("dependency unresolved");
    default:
        return QObject::tr("unresolved");
    }
}

QString statusColour(const PluginRecord &record)
{
    if (record.resolves())
        return QStringLiteral("palegreen");
    // A broken file is orange, a crashing one red, a refused one grey, a sound
    // one that waits in vain pink.
    if (record.unusable())
        return QStringLiteral("orange");
    if (record.refusal == PluginRecord::Quarantined)
        return QStringLiteral("tomato");
    if (record.refusal != PluginRecord::NotRefused)
        return QStringLiteral("lightgrey");
    return QStringLiteral("lightpink");
}

QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    text.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

} // namespace

Report::Report(const Inspector &inspector)
    : m_inspector(inspector)
{ }

void Report::writeText(QTextStream &out) const
{
    const Inspector &in = m_inspector;
    const std::vector<PluginRecord> &plugins = in.plugins();
    const QString onOff = in.loadEnabledPluginOnly() ? QObject::tr("on") : QObject::tr("off");

    out << QObject::tr("Application directory: %1").arg(in.applicationDir().absolutePath()) << '\n';
    if (in.program().isEmpty()) {
        out << QObject::tr("Configuration: none chosen (config/ does not hold exactly one program directory; "
                           "name one with --program), so every policy is \"undefine\"")
            << '\n';
    } else if (!in.configExists()) {
        out << QObject::tr("Configuration: %1 does not exist, so every policy is \"undefine\"")
                        .arg(in.applicationDir().relativeFilePath(in.configFile()))
            << '\n';
    } else {
        out << QObject::tr("Configuration: %1 (loadEnabledPluginOnly: %2)")
                        .arg(in.applicationDir().relativeFilePath(in.configFile()), onOff)
            << '\n';
    }
    out << QObject::tr("Plug-in libraries: %1").arg(plugins.size()) << "\n\n";

    const int width = 16;
    auto line = [&out, width](const QString &label, const QString &value) {
        out << "  " << QString(label + QLatin1Char(':')).leftJustified(width) << value << '\n';
    };
    for (const PluginRecord &record : plugins) {
        out << record.relativePath << '\n';
        if (const PluginMetaData *metaData = record.metaData.get()) {
            line(QObject::tr("symbolic"), orNone(metaData->symbolic()));
            if (metaData->isValid()) {
                line(QObject::tr("version"), orNone(metaData->version()));
                line(QObject::tr("compatVersion"), orNone(metaData->compatVersion()));
                line(QObject::tr("activation"), metaData->isEager() ? PluginConstance::PLUGIN_ACTIVATION_EAGER
                                                                    : PluginConstance::PLUGIN_ACTIVATION_LAZY);
                line(QObject::tr("dependencies"), dependenciesText(record));
            }
        }
        if (record.policy != PluginFrameworkConfig::PolicyUndefine)
            line(QObject::tr("policy"), policyText(record.policy));
        if (record.resolves())
            line(QObject::tr("status"),
                 QObject::tr("resolved, position %1 in the load queue").arg(record.queuePosition + 1));
        else if (record.unusable())
            line(QObject::tr("status"), QObject::tr("unusable library, never starts"));
        else if (record.quarantinedNext)
            line(QObject::tr("status"),
                 QObject::tr("the last run died in it: quarantined at the next start, not loaded"));
        else if (record.refusal == PluginRecord::Quarantined)
            line(QObject::tr("status"), QObject::tr("quarantined, not loaded"));
        else if (record.refusal != PluginRecord::NotRefused)
            line(QObject::tr("status"), QObject::tr("not installed"));
        else
            line(QObject::tr("status"), QObject::tr("does not resolve"));
        for (const QString &reason : record.reasons)
            line(QObject::tr("why"), reason);
        if (record.metaData && !record.activator) {
            line(QObject::tr("note"), PluginProblem(PluginProblem::NoActivator, record.name).text());
        }
        out << '\n';
    }

    const QList<PluginCrash> unfinished = in.unfinishedRuns();
    if (!unfinished.isEmpty()) {
        out << QObject::tr("Last runs that did not end cleanly:") << '\n';
        for (const PluginCrash &crash : unfinished)
            out << "  " << crash.text() << '\n';
        out << '\n';
    }

    const QStringList notes = in.notes();
    if (!notes.isEmpty()) {
        out << QObject::tr("Notes:") << '\n';
        for (const QString &note : notes)
            out << "  " << note << '\n';
        out << '\n';
    }

    const QStringList queue = in.queue();
    out << QObject::tr("Load queue (start order; plug-ins stop in the reverse order):") << '\n';
    if (queue.isEmpty())
        out << "  " << QObject::tr("(empty)") << '\n';
    for (int i = 0; i < queue.size(); ++i) {
        out << QStringLiteral("  %1. %2").arg(i + 1, 2).arg(queue.at(i)) << "  ("
            << in.installed(queue.at(i))->relativePath << ")\n";
    }
    out << '\n';

    const int resolving = int(queue.size());
    const int total = int(plugins.size());
    if (resolving == total)
        out << QObject::tr("Summary: all %1 plug-in libraries resolve.").arg(total) << '\n';
    else
        out << QObject::tr("Summary: %1 of %2 plug-in libraries resolve; %3 do not.")
                        .arg(resolving)
                        .arg(total)
                        .arg(total - resolving)
            << '\n';
}

void Report::writeDot(QTextStream &out) const
{
    const std::vector<PluginRecord> &plugins = m_inspector.plugins();
    out << "digraph plugins {\n";
    out << "    node [shape=box, style=filled];\n";

    // Installed plug-ins are the targets of edges; refused files stand beside them.
    QHash<const PluginRecord *, QString> ids;
    for (size_t i = 0; i < plugins.size(); ++i) {
        const PluginRecord &record = plugins[i];
        const QString id = QStringLiteral("p%1").arg(i);
        ids.insert(&record, id);
        // Without readable metadata the file name says more than the name it is filed under.
        const bool named = record.metaData && record.metaData->isValid();
        const QString name = named ? record.symbolic : record.relativePath.section(QLatin1Char('/'), -1);
        QString label = name;
        if (record.metaData && !record.metaData->version().isEmpty())
            label += QLatin1Char('\n') + record.metaData->version();
        label += QLatin1Char('\n') + statusWord(record);
        out << "    " << id << " [label=" << quoted(label) << ", fillcolor=" << statusColour(record)
            << ", tooltip=" << quoted(record.relativePath) << "];\n";
    }

    QHash<QString, QString> missing;
    for (const PluginRecord &record : plugins) {
        if (!record.metaData || !record.metaData->isValid())
            continue;
        const bool marked = record.refusal == PluginRecord::NotRefused;
        const QList<PluginDependency> dependencies = record.metaData->dependencies();
        for (const PluginDependency &dependency : dependencies) {
            QString target;
            if (const PluginRecord *provider = m_inspector.installed(dependency.symbolic())) {
                target = ids.value(provider);
            } else {
                target = missing.value(dependency.symbolic());
                if (target.isEmpty()) {
                    target = QStringLiteral("m%1").arg(missing.size());
                    missing.insert(dependency.symbolic(), target);
                    out << "    " << target
                        << " [label=" << quoted(dependency.symbolic() + QLatin1Char('\n') + QObject::tr("missing"))
                        << ", style=dashed, fillcolor=white];\n";
                }
            }
            const bool met = record.resolves() || dependency.isResolved();
            out << "    " << ids.value(&record) << " -> " << target << " [label="
                << quoted(dependency.version().isEmpty() ? QStringLiteral("0.0.0") : dependency.version());
            if (!marked)
                out << ", style=dashed";
            else if (!met)
                out << ", color=red, fontcolor=red";
            out << "];\n";
        }
    }
    out << "}\n";
}
