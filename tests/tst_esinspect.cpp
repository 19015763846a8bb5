// SPDX-License-Identifier: BSD-3-Clause
// es-inspect run as a process against prepared application directories: what
// it says about each plug-in, the load queue, the graph, the extension store,
// and that it leaves every file as it found it.

#include "testsupport.h"

#include <plugin/pluginmanager.h>
#include <plugin/pluginresolver.h>

#include <QtCore/QDateTime>
#include <QtCore/QDirIterator>
#include <QtCore/QPluginLoader>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest>

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
    bool unchanged = false; // no file below the application directory changed
};

using TestSupport::writeFile;

QString deploy(const QString &app, const QString &plugin, const QString &directory, const QString &file = QString())
{
    const QString dir = app + QStringLiteral("/plugins/") + directory;
    QDir().mkpath(dir);
    const QString target =
            dir + QLatin1Char('/') + (file.isEmpty() ? plugin : file) + QStringLiteral(ES_TEST_LIBRARY_SUFFIX);
    if (!QFile::copy(TestSupport::builtPlugin(plugin), target))
        qFatal("cannot copy the test plug-in %s to %s", qPrintable(plugin), qPrintable(target));
    return target;
}

// Every entry below a directory with its size and modification time.
QStringList listing(const QString &root)
{
    QStringList entries;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        entries << QStringLiteral("%1 %2 %3")
                           .arg(info.filePath())
                           .arg(info.size())
                           .arg(info.lastModified().toMSecsSinceEpoch());
    }
    entries.sort();
    return entries;
}

Run inspect(const QString &app, const QStringList &arguments)
{
    Run run;
    const QStringList before = listing(app);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ES_INSPECT), arguments);
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    run.unchanged = before == listing(app);
    return run;
}

// The report's block for one library: from the line naming it to the next blank line.
QString block(const QString &report, const QString &file)
{
    const QRegularExpression start(QLatin1Char('^') + QRegularExpression::escape(file) + QLatin1Char('$'),
                                   QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = start.match(report);
    if (!match.hasMatch())
        return QString();
    const int end = report.indexOf(QStringLiteral("\n\n"), match.capturedStart());
    return report.mid(match.capturedStart(), end - match.capturedStart());
}

QStringList loadQueue(const QString &report)
{
    const QString section = report.section(QStringLiteral("Load queue"), 1).section(QStringLiteral("\n\n"), 0, 0);
    QStringList names;
    QRegularExpressionMatchIterator it =
            QRegularExpression(QStringLiteral("^\\s+\\d+\\. (\\S+)"), QRegularExpression::MultilineOption)
                    .globalMatch(section);
    while (it.hasNext())
        names << it.next().captured(1);
    return names;
}

// What the loader itself says about a library that does not load.
QString loaderError(const QString &path)
{
    QPluginLoader loader(path);
    loader.setLoadHints(ExtensionSystem::PluginResolver::libraryLoadHints());
    loader.load();
    return loader.instance() ? QString() : loader.errorString();
}

} // namespace

class tst_EsInspect : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void changesNoFile();
    void reasons_data();
    void reasons();
    void exitCodeAndLoadQueue();
    void dotGraph();
    void extensionStore();
    void usage();
    void namelessLibrariesReadAlike();

private:
    QString app(const QString &name) const { return m_root.path() + QLatin1Char('/') + name; }
    bool makeExtensionStore(const QString &path);

    QTemporaryDir m_root;
    QHash<QString, Run> m_runs;
    QHash<QString, QString> m_loaderErrors;
};

void tst_EsInspect::initTestCase()
{
    QVERIFY(m_root.isValid());

    // Most of what can go wrong, in one directory. Two programs, so that the
    // choice of config/host/ over config/other/ is visible.
    const QString mixed = app(QStringLiteral("mixed"));
    deploy(mixed, QStringLiteral("not.activator"), QStringLiteral("00_na"));
    deploy(mixed, QStringLiteral("chain.c"), QStringLiteral("01_c"));
    deploy(mixed, QStringLiteral("chain.b"), QStringLiteral("02_b"));
    deploy(mixed, QStringLiteral("cycle.x"), QStringLiteral("03_x"));
    deploy(mixed, QStringLiteral("cycle.y"), QStringLiteral("04_y"));
    deploy(mixed, QStringLiteral("wrong.version"), QStringLiteral("05_w"));
    deploy(mixed, QStringLiteral("chain.a"), QStringLiteral("06_a"));
    deploy(mixed, QStringLiteral("no.dependency"), QStringLiteral("07_n"));
    deploy(mixed, QStringLiteral("no.metadata"), QStringLiteral("08_m"));
    for (const char *broken : {"not.qtplugin", "unresolved.symbol", "unresolved.function"})
        m_loaderErrors.insert(QLatin1String(broken),
                              loaderError(deploy(mixed, QLatin1String(broken), QLatin1String(broken))));
    QVERIFY(writeFile(mixed + QStringLiteral("/plugins/garbage/garbage" ES_TEST_LIBRARY_SUFFIX),
                      QByteArray(4096, '\x7f')));
    m_loaderErrors.insert(QStringLiteral("garbage"),
                          loaderError(mixed + QStringLiteral("/plugins/garbage/garbage" ES_TEST_LIBRARY_SUFFIX)));
    deploy(mixed, QStringLiteral("chain.a.copy"), QStringLiteral("11_copy"));
    deploy(mixed, QStringLiteral("translated"), QStringLiteral("12_t"));
    deploy(mixed, QStringLiteral("self.dependency"), QStringLiteral("13_s"));
    QVERIFY(writeFile(mixed + QStringLiteral("/config/host/config.ini"),
                      "[Plugin]\ntranslated=\" DISABLE \"\nchain.c=Enable\n"));
    QVERIFY(writeFile(mixed + QStringLiteral("/config/other/config.ini"),
                      "[PluginManager]\nloadEnabledPluginOnly=true\n"));
    m_runs.insert(QStringLiteral("mixed"),
                  inspect(mixed, {QStringLiteral("--program"), QStringLiteral("host"), mixed}));

    // The white list, with config/app/ found as the only program; a renamed library.
    const QString whitelist = app(QStringLiteral("whitelist"));
    for (const char *name : {"chain.a", "chain.b", "chain.c", "no.dependency", "starter"})
        deploy(whitelist, QLatin1String(name), QLatin1String(name));
    deploy(whitelist, QStringLiteral("ext.host"), QStringLiteral("renamed"), QStringLiteral("renamed"));
    QVERIFY(writeFile(whitelist + QStringLiteral("/config/app/config.ini"),
                      "[PluginManager]\nloadEnabledPluginOnly=true\n"
                      "[Plugin]\nchain.b=enable\nchain.c=\"enable \"\nstarter=ENABLE\n"));
    m_runs.insert(QStringLiteral("whitelist"), inspect(whitelist, {whitelist}));

    // No configuration at all, and a dependency that is simply not there.
    const QString missing = app(QStringLiteral("missing"));
    deploy(missing, QStringLiteral("chain.b"), QStringLiteral("b"));
    deploy(missing, QStringLiteral("meta.nosymbolic"), QStringLiteral("ns"));
    m_runs.insert(QStringLiteral("missing"), inspect(missing, {missing}));

    // Everything resolves; the extension store of a previous run lies in config/host/.
    const QString clean = app(QStringLiteral("clean"));
    for (const char *name : {"chain.c", "chain.b", "chain.a", "ext.host", "ext.supplier"})
        deploy(clean, QLatin1String(name), QLatin1String(name));
    QFile::copy(QStringLiteral(ES_TEST_PLUGIN_DIR "/ext.supplier/extension.xml"),
                clean + QStringLiteral("/plugins/ext.supplier/extension.xml"));
    QVERIFY(writeFile(clean + QStringLiteral("/config/host/config.ini"),
                      "[PluginManager]\nloadEnabledPluginOnly=false\n"));
    QVERIFY(makeExtensionStore(clean + QStringLiteral("/config/host/extension.dat")));
    m_runs.insert(QStringLiteral("clean"), inspect(clean, {QStringLiteral("--extensions"), clean}));
}

void tst_EsInspect::changesNoFile()
{
    // Loading every library, reading config.ini and the store: still nothing written.
    for (auto it = m_runs.cbegin(); it != m_runs.cend(); ++it) {
        QVERIFY2(it->out.contains(QStringLiteral("Load queue")), qPrintable(it.key() + it->err));
        QVERIFY2(it->unchanged, qPrintable(it.key()));
    }
}

bool tst_EsInspect::makeExtensionStore(const QString &path)
{
    bool made = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tst_esinspect"));
        db.setDatabaseName(path);
        made = db.open();
        QSqlQuery query(db);
        for (const char *sql :
             {"CREATE TABLE IF NOT EXISTS `tbl_plugin` (`plug_id`\tINTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,"
              "`plug_symbolic`\tTEXT,`plug_filepath`\tTEXT,`plug_md5`\tTEXT);",
              "CREATE TABLE IF NOT EXISTS `tbl_extpoint` (`ep_id`\tTEXT UNIQUE,`ep_name`\tTEXT,`ep_plugin`\tTEXT,"
              "`ep_description`\tTEXT,`ep_data`\tTEXT,PRIMARY KEY(ep_id));",
              "CREATE TABLE IF NOT EXISTS `tbl_extdata` (`ed_id`\tINTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,"
              "`ed_point`\tTEXT,`ed_plugin`\tTEXT,`ed_extPlugin`\tTEXT,`ed_data`\tTEXT);",
              "INSERT INTO tbl_plugin (plug_symbolic, plug_filepath, plug_md5) VALUES "
              "('ext.supplier', '/plugins/ext.supplier/extension.xml', '0123456789abcdef0123456789abcdef01234567');",
              "INSERT INTO tbl_extpoint VALUES ('test.point', 'Test point', 'ext.host', 'where items go', "
              "'<ExtPoint id=\"test.point\"/>');",
              "INSERT INTO tbl_extdata (ed_point, ed_plugin, ed_extPlugin, ed_data) VALUES ('test.point', "
              "'ext.supplier', 'ext.host', '<ExtData id=\"test.point\"><Item title=\"Größe ändern\"/></ExtData>');"})
            made = made && query.exec(QString::fromUtf8(sql));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tst_esinspect"));
    return made;
}

void tst_EsInspect::reasons_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("resolves");
    QTest::addColumn<QStringList>("fragments");

    auto row = [](const char *scenario, const char *file, bool resolves, const QStringList &fragments) {
        QTest::addRow("%s %s", scenario, file)
                << QString::fromLatin1(scenario) << QStringLiteral("plugins/") + QLatin1String(file) << resolves
                << fragments;
    };
    row("mixed", "00_na/not.activator" ES_TEST_LIBRARY_SUFFIX, true,
        {"position 1 in the load queue", "does not implement extensionsystem.ipluginactivator/1.0"});
    row("mixed", "01_c/chain.c" ES_TEST_LIBRARY_SUFFIX, true,
        {"policy:         enable", "position 4 in the load queue"});
    row("mixed", "06_a/chain.a" ES_TEST_LIBRARY_SUFFIX, true,
        {"version:        1.0.0", "compatVersion:  1.0.0", "activation:     lazy",
         "dependencies:   none (empty dependency line)"});
    row("mixed", "03_x/cycle.x" ES_TEST_LIBRARY_SUFFIX, false, {"dependency cycle: cycle.x -> cycle.y -> cycle.x"});
    row("mixed", "04_y/cycle.y" ES_TEST_LIBRARY_SUFFIX, false, {"dependency cycle: cycle.y -> cycle.x -> cycle.y"});
    row("mixed", "05_w/wrong.version" ES_TEST_LIBRARY_SUFFIX, false,
        {"dependencies:   chain.a 2.0.0 (not met)",
         "needs chain.a 2.0.0 but chain.a is 1.0.0 (compatible back to 1.0.0)"});
    row("mixed", "07_n/no.dependency" ES_TEST_LIBRARY_SUFFIX, false,
        {"no `dependency` line", "needs an empty `dependency:` line"});
    row("mixed", "08_m/no.metadata" ES_TEST_LIBRARY_SUFFIX, false, {"no META.INF at :/no.metadata/META-DATA/META.INF"});
    row("mixed", "not.qtplugin/not.qtplugin" ES_TEST_LIBRARY_SUFFIX, false, {"library fails to load: %not.qtplugin"});
    row("mixed", "unresolved.symbol/unresolved.symbol" ES_TEST_LIBRARY_SUFFIX, false,
        {"library fails to load: %unresolved.symbol"});
    row("mixed", "garbage/garbage" ES_TEST_LIBRARY_SUFFIX, false, {"library fails to load: %garbage"});
    row("mixed", "11_copy/chain.a.copy" ES_TEST_LIBRARY_SUFFIX, false,
        {"version:        1.5.0", "same symbolic name chain.a as plugins/06_a/chain.a" ES_TEST_LIBRARY_SUFFIX});
    row("mixed", "12_t/translated" ES_TEST_LIBRARY_SUFFIX, false,
        {"blacklisted: config.ini sets Plugin/translated to \" DISABLE \""});
    row("mixed", "13_s/self.dependency" ES_TEST_LIBRARY_SUFFIX, false, {"depends on itself (self.dependency 1.0.0)"});
    // Code that calls what no library defines fails at load, not at start.
    row("mixed", "unresolved.function/unresolved.function" ES_TEST_LIBRARY_SUFFIX, false,
        {"library fails to load: %unresolved.function", "es_function_that_no_library_defines"});
    // A blank dependency line does not let a nameless plug-in in.
    row("missing", "ns/meta.nosymbolic" ES_TEST_LIBRARY_SUFFIX, false,
        {"status:         unusable library, never starts",
         "META.INF at :/meta.nosymbolic/META-DATA/META.INF names no symbolic"});

    row("whitelist", "starter/starter" ES_TEST_LIBRARY_SUFFIX, true,
        {"policy:         enable", "position 1 in the load queue"});
    row("whitelist", "chain.a/chain.a" ES_TEST_LIBRARY_SUFFIX, false,
        {"not whitelisted: loadEnabledPluginOnly is on and config.ini has no \"enable\" for Plugin/chain.a"});
    row("whitelist", "chain.b/chain.b" ES_TEST_LIBRARY_SUFFIX, false,
        {"missing dependency: needs chain.a 1.0.0, which is not installed (chain.a is refused"});
    row("whitelist", "chain.c/chain.c" ES_TEST_LIBRARY_SUFFIX, false, {"depends on chain.b, which does not resolve"});
    row("whitelist", "no.dependency/no.dependency" ES_TEST_LIBRARY_SUFFIX, false, {"not whitelisted"});
    row("whitelist", "renamed/renamed" ES_TEST_LIBRARY_SUFFIX, false,
        {"no META.INF at :/renamed/META-DATA/META.INF", "carries :/ext.host/META-DATA/META.INF"});

    row("missing", "b/chain.b" ES_TEST_LIBRARY_SUFFIX, false,
        {"missing dependency: needs chain.a 1.0.0, which is not installed\n"});
}

void tst_EsInspect::reasons()
{
    QFETCH(QString, scenario);
    QFETCH(QString, file);
    QFETCH(bool, resolves);
    QFETCH(QStringList, fragments);

    const QString text = block(m_runs.value(scenario).out, file) + QLatin1Char('\n');
    QVERIFY2(text.size() > 1, qPrintable(m_runs.value(scenario).out));
    QCOMPARE(text.contains(QStringLiteral("status:         resolved")), resolves);
    QCOMPARE(text.contains(QStringLiteral("why:")), !resolves);
    for (QString fragment : qAsConst(fragments)) {
        // "%name" stands for the loader's own message about that library.
        const int at = fragment.indexOf(QLatin1Char('%'));
        if (at >= 0) {
            const QString error = m_loaderErrors.value(fragment.mid(at + 1));
            QVERIFY(!error.isEmpty());
            fragment = fragment.left(at) + error;
        }
        QVERIFY2(text.contains(fragment), qPrintable(fragment + QStringLiteral("\n--- not in:\n") + text));
    }
}

void tst_EsInspect::exitCodeAndLoadQueue()
{
    // Dependants enter behind what they wait for, the rest in directory order.
    const Run mixed = m_runs.value(QStringLiteral("mixed"));
    QCOMPARE(mixed.exitCode, 1);
    QCOMPARE(loadQueue(mixed.out), QStringList({"not.activator", "chain.a", "chain.b", "chain.c"}));
    QVERIFY(mixed.out.contains(QStringLiteral("Configuration: config/host/config.ini (loadEnabledPluginOnly: off)")));
    QVERIFY(mixed.out.contains(QStringLiteral("Summary: 4 of 16 plug-in libraries resolve; 12 do not.")));

    const Run whitelist = m_runs.value(QStringLiteral("whitelist"));
    QCOMPARE(whitelist.exitCode, 1);
    QCOMPARE(loadQueue(whitelist.out), QStringList({"starter"}));
    QVERIFY(whitelist.out.contains(QStringLiteral("Configuration: config/app/config.ini (loadEnabledPluginOnly: on)")));

    const Run missing = m_runs.value(QStringLiteral("missing"));
    QCOMPARE(missing.exitCode, 1);
    QCOMPARE(loadQueue(missing.out), QStringList());

    const Run clean = m_runs.value(QStringLiteral("clean"));
    QCOMPARE(clean.exitCode, 0);
    QCOMPARE(loadQueue(clean.out), QStringList({"chain.a", "chain.b", "chain.c", "ext.host", "ext.supplier"}));
    QVERIFY(clean.out.contains(QStringLiteral("Summary: all 5 plug-in libraries resolve.")));
}

void tst_EsInspect::dotGraph()
{
    const QString mixed = app(QStringLiteral("mixed"));
    const Run run =
            inspect(mixed, {QStringLiteral("--dot"), QStringLiteral("--program"), QStringLiteral("host"), mixed});
    QVERIFY(run.unchanged);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.out.startsWith(QStringLiteral("digraph plugins {\n")), qPrintable(run.out));
    QVERIFY(run.out.endsWith(QStringLiteral("\n}\n")));

    // Every statement is a node or an edge; edges join declared nodes.
    const QRegularExpression node(QStringLiteral("^    (\\w+) \\[label=\"((?:[^\"\\\\]|\\\\.)*)\"(.*)\\];$"));
    const QRegularExpression edge(QStringLiteral("^    (\\w+) -> (\\w+) \\[label=\"((?:[^\"\\\\]|\\\\.)*)\"(.*)\\];$"));
    QHash<QString, QString> names; // node id to the first line of its label
    QHash<QString, QString> attributes;
    QStringList edges;
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(2);
    for (const QString &line : lines.mid(0, lines.size() - 1)) {
        const QRegularExpressionMatch e = edge.match(line);
        const QRegularExpressionMatch n = node.match(line);
        if (e.hasMatch()) {
            QVERIFY2(names.contains(e.captured(1)) && names.contains(e.captured(2)), qPrintable(line));
            edges << QStringLiteral("%1 -> %2 %3%4")
                             .arg(names.value(e.captured(1)), names.value(e.captured(2)), e.captured(3), e.captured(4));
        } else {
            QVERIFY2(n.hasMatch(), qPrintable(line));
            names.insert(n.captured(1), n.captured(2).section(QStringLiteral("\\n"), 0, 0));
            attributes.insert(n.captured(2).section(QStringLiteral("\\n"), 0, 0), n.captured(3));
        }
    }
    QCOMPARE(names.size(), 16);
    QVERIFY(attributes.value(QStringLiteral("chain.b")).contains(QStringLiteral("palegreen")));
    QVERIFY(attributes.value(QStringLiteral("cycle.x")).contains(QStringLiteral("lightpink")));
    QVERIFY(attributes.value(QStringLiteral("garbage" ES_TEST_LIBRARY_SUFFIX)).contains(QStringLiteral("orange")));
    QVERIFY(edges.contains(QStringLiteral("chain.b -> chain.a 1.0.0")));
    QVERIFY(edges.contains(QStringLiteral("chain.c -> chain.b 1.0")));
    QVERIFY(edges.contains(QStringLiteral("wrong.version -> chain.a 2.0.0, color=red, fontcolor=red")));
    QVERIFY(edges.contains(QStringLiteral("cycle.x -> cycle.y 1.0.0, color=red, fontcolor=red")));
    QVERIFY(edges.contains(QStringLiteral("self.dependency -> self.dependency 1.0.0, color=red, fontcolor=red")));
    QCOMPARE(edges.size(), 6);
}

void tst_EsInspect::extensionStore()
{
    const QStringList lines = m_runs.value(QStringLiteral("clean"))
                                      .out.section(QStringLiteral("Extensions in "), 1)
                                      .split(QLatin1Char('\n'));
    QVERIFY2(lines.first().endsWith(QStringLiteral("extension.dat (opened read-only):")), qPrintable(lines.first()));
    const QStringList expected = {QStringLiteral("  ext.supplier"),
                                  QStringLiteral("    file:   /plugins/ext.supplier/extension.xml"),
                                  QStringLiteral("    digest: 0123456789abcdef0123456789abcdef01234567"),
                                  QStringLiteral("    points: none"),
                                  QString::fromUtf8("    data:   test.point of ext.host: <ExtData "
                                                    "id=\"test.point\"><Item title=\"Größe ändern\"/></ExtData>"),
                                  QStringLiteral("  ext.host"),
                                  QStringLiteral("    not in tbl_plugin: no extension file of it is recorded"),
                                  QStringLiteral("    point:  test.point \"Test point\": where items go"),
                                  QStringLiteral("    data:   none")};
    QCOMPARE(lines.mid(1, expected.size()), expected);

    // Without a store nothing is opened, so nothing is created either.
    const QString whitelist = app(QStringLiteral("whitelist"));
    const Run none = inspect(whitelist, {QStringLiteral("--extensions"), whitelist});
    QVERIFY(none.unchanged);
    QVERIFY(none.out.contains(QStringLiteral("Extensions: there is no extension.dat at ")));
}

void tst_EsInspect::usage()
{
    const QString mixed = app(QStringLiteral("mixed"));
    QCOMPARE(inspect(mixed, {}).exitCode, 2);
    QCOMPARE(inspect(mixed, {mixed + QStringLiteral("/nowhere")}).exitCode, 2);
    QCOMPARE(inspect(mixed, {mixed + QStringLiteral("/config")}).exitCode, 2); // no plugins/ in it
    QCOMPARE(inspect(mixed, {QStringLiteral("--dot"), QStringLiteral("--extensions"), mixed}).exitCode, 2);
    QCOMPARE(inspect(mixed, {QStringLiteral("--colour"), mixed}).exitCode, 2);
    // Two programs and no choice: no config.ini is read, so the blacklist does not count.
    const Run unchosen = inspect(mixed, {mixed});
    QCOMPARE(unchosen.exitCode, 1);
    QVERIFY(unchosen.out.contains(QStringLiteral("Configuration: none chosen")));
    QVERIFY(block(unchosen.out, QStringLiteral("plugins/12_t/translated" ES_TEST_LIBRARY_SUFFIX))
                    .contains(QStringLiteral("status:         resolved")));
}

void tst_EsInspect::namelessLibrariesReadAlike()
{
    using namespace ExtensionSystem;
    // Libraries without a usable name: no symbolic and no dependency line, no
    // symbolic with an empty and with a non-empty dependency line, no META.INF.
    const QList<QPair<QString, PluginProblem::Reason>> nameless{
            {QStringLiteral("meta.empty"), PluginProblem::InvalidMetaFile},
            {QStringLiteral("meta.nosymbolic"), PluginProblem::InvalidMetaFile},
            {QStringLiteral("meta.nosymbolic.needs"), PluginProblem::InvalidMetaFile},
            {QStringLiteral("no.metadata"), PluginProblem::NoMetaFile}};
    QHash<QString, QString> firstReasons;
    // In both scan orders the first library is entered under the empty name and
    // the others are refused as duplicates of it: that must change no first line.
    for (const bool reversed : {false, true}) {
        TestSupport::resetApplicationDirectory();
        QHash<QString, QString> files;
        for (int i = 0; i < nameless.size(); ++i) {
            const QString name = nameless.at(i).first;
            const QString path = TestSupport::deployPlugin(
                    name, QStringLiteral("%1_%2").arg(reversed ? nameless.size() - i : i + 1).arg(name));
            files.insert(name, QDir(TestSupport::appDir()).relativeFilePath(path));
        }
        QHash<QString, QList<PluginProblem>> problems;
        {
            PluginFramework framework;
            framework.init();
            const auto *manager = framework.findChild<PluginManager *>();
            for (const auto &library : nameless)
                problems.insert(library.first, manager->problems(library.first));
        }
        const Run run = inspect(TestSupport::appDir(), {TestSupport::appDir()});
        QCOMPARE(run.exitCode, 1);

        const QString firstInScan = reversed ? nameless.last().first : nameless.first().first;
        for (const auto &library : nameless) {
            const QString &name = library.first;
            const QList<PluginProblem> found = problems.value(name);
            QVERIFY2(!found.isEmpty(), qPrintable(name));
            QCOMPARE(found.first().reason(), library.second);
            QCOMPARE(found.first().plugin(), name);

            const QString text = block(run.out, files.value(name));
            QVERIFY2(text.contains(QStringLiteral("status:         unusable library, never starts")), qPrintable(text));
            QStringList why;
            const QStringList lines = text.split(QLatin1Char('\n'));
            for (const QString &line : lines) {
                if (line.startsWith(QStringLiteral("  why:")))
                    why << line.mid(18);
            }
            QCOMPARE(why.size(), found.size());
            QCOMPARE(why.first(), found.first().text());
            // The refusal, where it happened, is a further line in both places.
            QCOMPARE(found.size(), name == firstInScan ? 1 : 2);
            if (name != firstInScan) {
                QCOMPARE(found.last().reason(), PluginProblem::DuplicateName);
                QVERIFY2(why.last().startsWith(QStringLiteral("same symbolic name (no name) as plugins/")),
                         qPrintable(why.last()));
            }
            if (reversed)
                QCOMPARE(found.first().text(), firstReasons.value(name));
            firstReasons.insert(name, found.first().text());
        }
    }
    TestSupport::resetApplicationDirectory();
}

QTEST_GUILESS_MAIN(tst_EsInspect)

#include "tst_esinspect.moc"
