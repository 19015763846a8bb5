// SPDX-License-Identifier: BSD-3-Clause
#include "harness.h"

#include <extension/extensionfileparsetask.h>
#include <extension/exttype.h>
#include <plugin/plugindependency.h>
#include <plugin/pluginmetadata.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <tuple>

using namespace ExtensionSystem;

namespace FuzzHarness {

QString writeTemporary(const QString &name, const QByteArray &input)
{
    static QTemporaryDir directory;
    const QString path = directory.filePath(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return QString();
    file.write(input);
    return path;
}

namespace {

QString fail(const QString &what)
{
    return what.isEmpty() ? QStringLiteral("failure") : what;
}

// What a reader of the file format expects, worked out line by line without the
// library: the last line of a key wins, keys compare without case.
struct ExpectedMeta
{
    QString symbolic, version, compatVersion, company, describe;
    bool eager = false;
    bool sawDependency = false;
    QMap<QString, QPair<QString, QString>> dependencies; // lower-case name: written name, version
    QHash<QString, QString> properties;
};

ExpectedMeta expectMeta(const QByteArray &input)
{
    ExpectedMeta expected;
    int start = 0;
    while (start < input.size()) {
        int end = input.indexOf('\n', start);
        end = end < 0 ? input.size() : end + 1;
        QByteArray raw = input.mid(start, end - start);
        start = end;
        const int nul = raw.indexOf('\0');
        if (nul >= 0)
            raw.truncate(nul);
        const QString line = QString::fromUtf8(raw.constData(), raw.size());
        if (line.isEmpty())
            continue;
        const int colon = line.indexOf(QLatin1Char(':'));
        const QString key = (colon < 0 ? line : line.left(colon)).trimmed();
        const QString value = colon < 0 ? QString() : line.mid(colon + 1).trimmed();
        expected.properties.insert(key, value);
        const auto is = [&key](const char *known) {
            return QString::compare(key, QLatin1String(known), Qt::CaseInsensitive) == 0;
        };
        if (is("symbolic")) {
            expected.symbolic = value;
        } else if (is("version")) {
            expected.version = value;
        } else if (is("compatVersion")) {
            expected.compatVersion = value;
        } else if (is("company")) {
            expected.company = value;
        } else if (is("describe")) {
            expected.describe = value;
        } else if (is("activation")) {
            expected.eager = QString::compare(value, QLatin1String("eager"), Qt::CaseInsensitive) == 0;
        } else if (is("dependency")) {
            expected.sawDependency = true;
            for (const QString &entry : value.split(QLatin1Char(';'))) {
                if (entry.isEmpty())
                    continue;
                const int comma = entry.indexOf(QLatin1Char(','));
                const QString name = (comma < 0 ? entry : entry.left(comma)).trimmed();
                const QString needed = comma < 0 ? QString() : entry.mid(comma + 1).trimmed();
                expected.dependencies.insert(name.toLower(), qMakePair(name, needed));
            }
        }
    }
    return expected;
}

} // namespace

QString metaData(const QByteArray &input)
{
    const QString path = writeTemporary(QStringLiteral("META.INF"), input);
    if (path.isEmpty())
        return QString(); // nothing to test without a file

    const PluginMetaData meta(path);
    if (meta.filepath() != path)
        return fail(QStringLiteral("filepath changed"));
    if (meta.isValid() != !meta.symbolic().isEmpty())
        return fail(QStringLiteral("isValid() disagrees with the symbolic name"));
    if (meta.isValid() ? meta.error() != 0 : meta.error() != 2)
        return fail(QStringLiteral("error %1 for a readable file, valid %2").arg(meta.error()).arg(meta.isValid()));
    if (meta.error() == 2 && meta.errorString() != QStringLiteral("The meta file format invalid: ") + path)
        return fail(QStringLiteral("error text: ") + meta.errorString());

    // Dependencies come in ascending order of their lower-cased names.
    const QList<PluginDependency> dependencies = meta.dependencies();
    for (int i = 1; i < dependencies.size(); ++i) {
        if (!(dependencies.at(i - 1).symbolic().toLower() < dependencies.at(i).symbolic().toLower()))
            return fail(QStringLiteral("dependencies out of order or repeated"));
    }
    for (const PluginDependency &dependency : dependencies) {
        if (dependency.isResolved())
            return fail(QStringLiteral("a dependency is resolved straight from the file"));
        if (!(meta.dependency(dependency.symbolic().toLower()) == dependency))
            return fail(QStringLiteral("dependency() does not find ") + dependency.symbolic());
    }
    if (!dependencies.isEmpty() && meta.dependencyResolved())
        return fail(QStringLiteral("resolved with open dependencies"));

    {
        const ExpectedMeta expected = expectMeta(input);
        if (meta.symbolic() != expected.symbolic || meta.version() != expected.version
            || meta.compatVersion() != expected.compatVersion || meta.company() != expected.company
            || meta.describe() != expected.describe)
            return fail(QStringLiteral("a parsed field differs from the file"));
        if (meta.isEager() != expected.eager)
            return fail(QStringLiteral("activation read wrongly"));
        if (meta.dependencyResolved() != (expected.sawDependency && expected.dependencies.isEmpty()))
            return fail(QStringLiteral("resolution flag %1").arg(meta.dependencyResolved()));
        if (dependencies.size() != expected.dependencies.size())
            return fail(QStringLiteral("%1 dependencies, expected %2")
                                .arg(dependencies.size())
                                .arg(expected.dependencies.size()));
        int i = 0;
        for (auto it = expected.dependencies.constBegin(); it != expected.dependencies.constEnd(); ++it, ++i) {
            if (dependencies.at(i).symbolic() != it->first || dependencies.at(i).version() != it->second)
                return fail(QStringLiteral("dependency %1 read as %2,%3")
                                    .arg(i)
                                    .arg(dependencies.at(i).symbolic(), dependencies.at(i).version()));
        }
        for (auto it = expected.properties.constBegin(); it != expected.properties.constEnd(); ++it) {
            if (meta.getProperty(it.key()) != it.value())
                return fail(QStringLiteral("property '%1' reads '%2'").arg(it.key(), meta.getProperty(it.key())));
        }
    }

    // Resolving every dependency, then opening one again, walks the flag both ways.
    PluginMetaData again(path);
    const QList<PluginDependency> open = again.dependencies();
    for (const PluginDependency &dependency : open)
        again.setDependencyResolved(dependency.symbolic().toLower(), true);
    if (!open.isEmpty()) {
        if (!again.dependencyResolved())
            return fail(QStringLiteral("not resolved after resolving every dependency"));
        again.setDependencyResolved(open.last().symbolic().toLower(), false);
        if (again.dependencyResolved())
            return fail(QStringLiteral("still resolved after opening a dependency"));
    }
    return QString();
}

namespace {

// Each component counts by its low byte, unsigned, compared major first.
std::tuple<int, int, int> versionOrder(const QString &version)
{
    int parts[3];
    for (int i = 0; i < 3; ++i)
        parts[i] = version.section(QLatin1Char('.'), i, i).toInt(nullptr, 10) & 0xff;
    return std::make_tuple(parts[0], parts[1], parts[2]);
}

} // namespace

QString version(const QByteArray &input)
{
    const QStringList lines = QString::fromUtf8(input).split(QLatin1Char('\n'));
    const QString needed = lines.value(0);
    const QString provided = lines.value(1);
    const QString compat = lines.value(2);
    const QString providerName = lines.size() > 3 ? lines.at(3) : QStringLiteral("p");

    const PluginDependency dependency(QStringLiteral("p"), needed);
    const bool expected = providerName == QLatin1String("p") && versionOrder(provided) >= versionOrder(needed)
                          && versionOrder(needed) >= versionOrder(compat);
    if (dependency.checkCompatible(providerName, provided, compat) != expected)
        return fail(QStringLiteral("checkCompatible(%1, %2, %3) for %4 is %5")
                            .arg(providerName, provided, compat, needed)
                            .arg(!expected));

    // Copies compute their key again and must agree; equality is by text only.
    PluginDependency copy(dependency);
    PluginDependency assigned(QStringLiteral("other"), provided);
    assigned = dependency;
    assigned.setResolved(true);
    if (copy.checkCompatible(providerName, provided, compat) != expected
        || assigned.checkCompatible(providerName, provided, compat) != expected)
        return fail(QStringLiteral("a copy judges differently"));
    if (!(copy == dependency) || !(assigned == dependency) || !copy.isValid())
        return fail(QStringLiteral("copies differ from their original"));
    const PluginDependency other(QStringLiteral("p"), provided);
    if ((other == dependency) != (provided == needed))
        return fail(QStringLiteral("operator== is not a text comparison"));

    // A version always satisfies a dependency on itself when it is its own oldest.
    if (!dependency.checkCompatible(QStringLiteral("p"), needed, needed))
        return fail(QStringLiteral("%1 does not satisfy itself").arg(needed));
    return QString();
}

namespace {

bool trimmedText(const QString &text)
{
    return text == text.trimmed();
}

// The element text that a point receives must read back as the same element.
QString checkElementText(const QString &text, const QString &tag, const QString &id)
{
    QDomDocument document;
    QString message;
    if (!document.setContent(text, &message))
        return QStringLiteral("stored %1 text does not parse (%2): %3").arg(tag, message, text);
    const QDomElement element = document.documentElement();
    if (element.tagName() != tag)
        return QStringLiteral("stored text holds <%1>, not <%2>").arg(element.tagName(), tag);
    if (element.attribute(QStringLiteral("id")).trimmed() != id)
        return QStringLiteral("stored %1 text has id '%2', the record '%3'")
                .arg(tag, element.attribute(QStringLiteral("id")), id);
    return QString();
}

} // namespace

QString extensionFile(const QByteArray &input)
{
    const QString path = writeTemporary(QStringLiteral("plugins/fuzz/extension.xml"), input);
    if (path.isEmpty())
        return QString();

    Internal::ExtensionFileParseTask task(path, nullptr);
    task.setAutoDelete(false);
    QList<ExtType::Plugin> found;
    QStringList errors;
    QObject::connect(
            &task, &Internal::ExtensionFileParseTask::extensionFound, &task,
            [&found](const ExtType::Plugin &plugin) { found << plugin; }, Qt::DirectConnection);
    QObject::connect(
            &task, &Internal::ExtensionFileParseTask::errorOccured, &task,
            [&errors](const QString &error) { errors << error; }, Qt::DirectConnection);
    task.run();

    if (found.size() + errors.size() != 1)
        return fail(QStringLiteral("%1 results and %2 errors for one file").arg(found.size()).arg(errors.size()));
    if (!errors.isEmpty()) {
        const QString &error = errors.first();
        if (!error.startsWith(QStringLiteral("Invalid file format, File: ") + path)
            && error != QStringLiteral("Cannot find the plugin node in extension file: ") + path)
            return fail(QStringLiteral("unexpected error: ") + error);
        return QString();
    }

    const ExtType::Plugin plugin = found.first();
    if (!QRegularExpression(QStringLiteral("^[0-9a-f]{40}$")).match(plugin.md5).hasMatch())
        return fail(QStringLiteral("digest '%1'").arg(plugin.md5));
    if (!trimmedText(plugin.symbolic))
        return fail(QStringLiteral("symbolic name not trimmed"));
    if (plugin.symbolic.isEmpty() && !plugin.points.isEmpty())
        return fail(QStringLiteral("points kept without a plug-in id"));
    for (const ExtType::Point &point : plugin.points) {
        if (point.id.isEmpty() || point.plugin != plugin.symbolic)
            return fail(QStringLiteral("point '%1' of '%2' kept").arg(point.id, point.plugin));
        if (!trimmedText(point.id) || !trimmedText(point.name) || !trimmedText(point.description))
            return fail(QStringLiteral("point attributes not trimmed"));
        const QString problem = checkElementText(point.data, QStringLiteral("ExtPoint"), point.id);
        if (!problem.isEmpty())
            return problem;
    }
    for (const ExtType::Data &data : plugin.data) {
        if (data.point.isEmpty() || data.plugin.isEmpty() || data.extPlugin.isEmpty())
            return fail(QStringLiteral("data with an empty attribute kept"));
        if (!trimmedText(data.point) || !trimmedText(data.plugin) || !trimmedText(data.extPlugin))
            return fail(QStringLiteral("data attributes not trimmed"));
        const QString problem = checkElementText(data.data, QStringLiteral("ExtData"), data.point);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

} // namespace FuzzHarness
