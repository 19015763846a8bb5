// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <extension/extensionfileparser.h>
#include <extension/extensionfileparsetask.h>
#include <extension/extensionstorage.h>
#include <extension/exttype.h>
#include <core/pluginframeworkconfig.h>
#include <core/qtcompat_p.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QScopeGuard>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#    include <QtCore/QTextCodec>
#endif
#include <QtSql>
#include <QtTest>
#include <QtXml/QDomDocument>

#include <memory>

#if defined(Q_OS_LINUX)
#    include "dacoverride.h"

#    include <fcntl.h>
#endif

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;

namespace {

// Qt 5's text streams take their encoding from the locale, set here to one that
// cannot encode most of the world; Qt 6's streams never look at the locale.
auto useLatin1Locale()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec *const codec = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    return qScopeGuard([codec] { QTextCodec::setCodecForLocale(codec); });
#else
    return qScopeGuard([] {});
#endif
}

QMutex logMutex;
QStringList logLines;

void captureMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    QMutexLocker locker(&logMutex); // the parse task logs from a pool thread
    logLines << message;
}

QStringList logged(const QString &part)
{
    QMutexLocker locker(&logMutex);
    return logLines.filter(part);
}

void clearLog()
{
    QMutexLocker locker(&logMutex);
    logLines.clear();
}

QString appDir()
{
    return QCoreApplication::applicationDirPath();
}
QString storePath()
{
    return PluginFrameworkConfig::configDir().filePath("extension.dat");
}
QString relative(const QString &path)
{
    return QString(path).remove(appDir());
}

QString writeExtension(const QString &name, const QString &xml)
{
    const QString dir = appDir() + "/plugins/" + name;
    QDir().mkpath(dir);
    QFile file(dir + "/extension.xml");
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return QString();
    file.write(xml.toUtf8());
    return file.fileName();
}

void setModified(const QString &path, const QDateTime &time)
{
    QFile file(path);
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(time, QFileDevice::FileModificationTime);
}

// extension.dat as another program would see it: a connection of our own, read-only.
QList<QStringList> rows(const QString &sql, const QString &dbPath = storePath())
{
    QList<QStringList> result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "tst_reader");
        db.setConnectOptions("QSQLITE_OPEN_READONLY");
        db.setDatabaseName(dbPath);
        if (db.open()) {
            QSqlQuery query(db);
            query.exec(sql);
            while (query.next()) {
                QStringList row;
                for (int i = 0; i < query.record().count(); ++i)
                    row << query.value(i).toString();
                result << row;
            }
        }
    }
    QSqlDatabase::removeDatabase("tst_reader");
    return result;
}

int count(const QString &table, const QString &where = QString(), const QString &dbPath = storePath())
{
    const auto result = rows("SELECT count(*) FROM " + table + (where.isEmpty() ? "" : " WHERE " + where), dbPath);
    return result.isEmpty() ? -1 : result.first().first().toInt();
}

// A store and a parser wired as the framework wires them.
struct Rig
{
    ExtensionStorage store{PluginFrameworkConfig::configDir(), nullptr};
    ExtensionFileParser parser{&store, nullptr};
    Rig()
    {
        QObject::connect(&parser, &ExtensionFileParser::extensionFound, &store,
                         &ExtensionStorage::writeExtensionPlugin);
    }
};

// Parses through the pool as the framework does and returns what arrived.
QList<ExtType::Plugin> parseAndWait(ExtensionFileParser &parser, const QString &path)
{
    QSignalSpy found(&parser, &ExtensionFileParser::extensionFound);
    parser.parse(path);
    // The task posts its result before it ends; the event loop then delivers it.
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QList<ExtType::Plugin> result;
    for (const QList<QVariant> &arguments : qAsConst(found))
        result << arguments.first().value<ExtType::Plugin>();
    return result;
}

} // namespace

class tst_ExtensionStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void recordTypesKnownAtLoad();
    void storeAndReparse();
    void reopenedStoreKeepsItsRows();
    void twoPlugins();
    void refusedRecords();
    void outerStructureOnly();
    void brokenFiles();
    void unusableStore();
    void damagedStoresAreMovedAsideWhole();
    void readOnlyStore();
    void indexesKeepRowsAndOrder();
};

void tst_ExtensionStore::initTestCase()
{
    qInstallMessageHandler(captureMessage);
}

void tst_ExtensionStore::init()
{
    QDir(appDir() + "/plugins").removeRecursively();
    QDir(appDir() + "/config").removeRecursively();
    clearLog();
}

void tst_ExtensionStore::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    QVERIFY2(logged("still in use").isEmpty(), qPrintable(logged("still in use").join('\n')));
    QVERIFY(logged("duplicate connection").isEmpty());
}

void tst_ExtensionStore::recordTypesKnownAtLoad()
{
    // Registered when the library is loaded, under both spellings, so that
    // string-based and queued connections agree before any store exists.
    for (const char *name : {"PointList", "DataList", "Plugin"}) {
        QVERIFY(QtCompat::metaTypeIdByName(QByteArray("ExtType::") + name) != QMetaType::UnknownType);
        QCOMPARE(QtCompat::metaTypeIdByName(QByteArray("ExtType::") + name),
                 QtCompat::metaTypeIdByName(QByteArray("ExtensionSystem::ExtType::") + name));
    }
    QCOMPARE(QtCompat::metaTypeIdByName("ExtType::Plugin"), qMetaTypeId<ExtType::Plugin>());
    QVERIFY(QVariant::fromValue(QList<QVariantHash>{{{"k", 1}}}).canConvert<QVariantList>());
    QCOMPARE(QtCompat::metaTypeIdByName("QVariantHashList"), qMetaTypeId<QList<QVariantHash>>());
}

void tst_ExtensionStore::storeAndReparse()
{
    // A locale that cannot encode the text must not turn it into character references.
    const auto restoreCodec = useLatin1Locale();
    const QString title = QString::fromUtf8("Grüße, 日本語 ✓ Ωmega");
    const QString path = writeExtension(
            "alpha", QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Plugin id=\"alpha\">"
                             "<ExtPointSet><ExtPoint id=\"alpha.point\" name=\"Point\"><Inner x=\"1\"/></ExtPoint>"
                             "<ExtPoint name=\"no id\"/></ExtPointSet>"
                             "<ExtDataSet><ExtData id=\"alpha.point\" plugin=\"alpha\" extPlugin=\"alpha\" "
                             "title=\"%1\">%1</ExtData>"
                             "</ExtDataSet></Plugin>")
                             .arg(title));
    QVERIFY(!path.isEmpty());

    auto store = std::make_unique<ExtensionStorage>(PluginFrameworkConfig::configDir(), nullptr);
    QVERIFY(QFile::exists(storePath()));
    const auto tables =
            rows("SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name LIKE 'tbl_%' ORDER BY name");
    QCOMPARE(tables.size(), 3);
    QCOMPARE(tables.at(0).at(0), QString("tbl_extdata"));
    QCOMPARE(tables.at(2).at(1),
             QString("CREATE TABLE `tbl_plugin` (`plug_id`\tINTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,"
                     "`plug_symbolic`\tTEXT,`plug_filepath`\tTEXT,`plug_md5`\tTEXT)"));

    auto parser = std::make_unique<ExtensionFileParser>(store.get(), nullptr);
    QVERIFY(QObject::connect(parser.get(), SIGNAL(extensionFound(ExtType::Plugin)), store.get(),
                             SLOT(writeExtensionPlugin(ExtType::Plugin))));
    QSignalSpy spy(parser.get(), &ExtensionFileParser::extensionFound);
    QVERIFY(parser->parse(path));
    QTRY_COMPARE(spy.size(), 1);
    const auto record = spy.first().first().value<ExtType::Plugin>();
    QCOMPARE(record.symbolic, QString("alpha"));
    QCOMPARE(record.filepath, QString("/plugins/alpha/extension.xml"));
    QCOMPARE(record.points.size(), 1);

    // Directory, size and time, not the content.
    const QFileInfo info(path);
    const QByteArray pieces = "/plugins/alpha" + QByteArray::number(info.size())
                              + info.lastModified().toString("yyyy-MM-dd hh:mm:ss-zzz").toUtf8();
    QCOMPARE(record.md5, QString(QCryptographicHash::hash(pieces, QCryptographicHash::Sha1).toHex()));

    QCOMPARE(rows("SELECT plug_symbolic, plug_filepath, plug_md5 FROM tbl_plugin"),
             QList<QStringList>({{"alpha", "/plugins/alpha/extension.xml", record.md5}}));
    QCOMPARE(count("tbl_extpoint"), 1);
    QCOMPARE(count("tbl_extdata"), 1);

    QVERIFY(store->extensionTexts("alpha", "alpha.point").isEmpty()); // nothing active yet
    store->setActivePlugins({"alpha"});
    const QStringList texts = store->extensionTexts(" alpha ", "alpha.point");
    QCOMPARE(texts.size(), 1);
    QVERIFY(texts.first().contains(" title=\"" + title + "\""));
    QVERIFY(texts.first().contains(">" + title + "</ExtData>"));
    QCOMPARE(store->extensionTextsOfFile("/plugins/alpha/extension.xml").values("alpha.point"), texts);

    // Unchanged, also against a digest in capitals: no task. An edit of the same size
    // under the same time passes unseen.
    const int runs = logged("ExtensionFileParseTask::run()").size();
    QVERIFY(!parser->parse(path));
    ExtType::Plugin upper = record;
    upper.md5 = upper.md5.toUpper();
    store->writeExtensionPlugin(upper);
    QVERIFY(!parser->parse(path));
    const QDateTime modified = info.lastModified();
    writeExtension("alpha", QString(int(info.size()), QLatin1Char(' ')).replace(0, 10, "<Plugin/> "));
    setModified(path, modified);
    QVERIFY(!parser->parse(path));
    QThreadPool::globalInstance()->waitForDone();
    QCOMPARE(logged("ExtensionFileParseTask::run()").size(), runs);

    // Touched: read again, and the rows are replaced, not added.
    writeExtension("alpha", "<Plugin id=\"alpha\"><ExtDataSet>" + texts.first() + "</ExtDataSet></Plugin>");
    setModified(path, modified.addSecs(5));
    const auto found = parseAndWait(*parser, path);
    QCOMPARE(found.size(), 1);
    QCOMPARE(rows("SELECT plug_md5 FROM tbl_plugin"), QList<QStringList>({{found.first().md5}}));
    QCOMPARE(count("tbl_extdata"), 1);
}

void tst_ExtensionStore::reopenedStoreKeepsItsRows()
{
    const ExtType::Plugin plugin{
            "alpha", "/plugins/alpha/extension.xml", "abc", {}, {{"pt", "alpha", "alpha", "<A/>"}}};
    {
        ExtensionStorage first(PluginFrameworkConfig::configDir(), nullptr);
        first.writeExtensionPlugin(plugin);
        first.setActivePlugins({"alpha"});
    }

    // A second start on the same file finds its rows and changes nothing; the
    // active list is not kept.
    auto store = std::make_unique<ExtensionStorage>(PluginFrameworkConfig::configDir(), nullptr);
    QCOMPARE(count("tbl_plugin"), 1);
    QString symbolic, digest;
    QVERIFY(store->pluginRecord(plugin.filepath, symbolic, digest));
    QCOMPARE(symbolic, plugin.symbolic);
    QCOMPARE(digest, plugin.md5);
    QVERIFY(store->activePlugins().isEmpty());

    // A store made while another lives takes the default connection over, as Qt warns;
    // the older one, destroyed later, must leave the newer one working.
    ExtensionStorage newer(PluginFrameworkConfig::configDir(), nullptr);
    store.reset();
    QVERIFY(newer.pluginRecord("/plugins/alpha/extension.xml", symbolic, digest));
    QCOMPARE(logged("duplicate connection").size(), 1);
    clearLog();
}

void tst_ExtensionStore::twoPlugins()
{
    const QString pathA = writeExtension(
            "A", "<Plugin id=\"A\"><ExtPointSet><ExtPoint id=\"shared.point\"/></ExtPointSet>"
                 "<ExtDataSet><ExtData id=\"B.point\" plugin=\"A\" extPlugin=\"B\"/></ExtDataSet></Plugin>");
    const QString pathB = writeExtension(
            "B", "<Plugin id=\"B\"><ExtPointSet><ExtPoint id=\"B.point\"/>"
                 "<ExtPoint id=\"shared.point\"/></ExtPointSet>"
                 "<ExtDataSet><ExtData id=\"B.point\" plugin=\"B\" extPlugin=\"B\"/></ExtDataSet></Plugin>");
    Rig rig;
    ExtensionStorage &store = rig.store;
    ExtensionFileParser &parser = rig.parser;
    QCOMPARE(parseAndWait(parser, pathA).size(), 1);
    QCOMPARE(parseAndWait(parser, pathB).size(), 1);

    // The second owner of a point id is refused that row; its data still counts.
    QCOMPARE(rows("SELECT ep_id, ep_plugin FROM tbl_extpoint ORDER BY ep_id"),
             QList<QStringList>({{"B.point", "B"}, {"shared.point", "A"}}));
    QCOMPARE(count("tbl_extdata"), 2);

    // By point, the active list filters the supplier; by file, the declarer.
    store.setActivePlugins({"A"});
    QCOMPARE(store.extensionTexts("B", "B.point").size(), 1);
    QVERIFY(store.extensionTexts("B", "B.point").first().contains("plugin=\"A\""));
    QVERIFY(store.extensionTextsOfFile(relative(pathA)).isEmpty());
    store.setActivePlugins({});
    store.updateActivePlugin("B", true);
    store.updateActivePlugin("B", true);
    store.updateActivePlugin("A", false);
    store.updateActivePlugin("", true);
    QCOMPARE(store.activePlugins(), QStringList({"B"}));
    // A name that a set list repeats goes with all its repeats; the others keep their order.
    store.setActivePlugins({"A", "B", "C", "A"});
    store.updateActivePlugin("A", false);
    QCOMPARE(store.activePlugins(), QStringList({"B", "C"}));
    store.updateActivePlugin("D", true);
    store.updateActivePlugin("B", false);
    store.updateActivePlugin("C", false);
    QCOMPARE(store.activePlugins(), QStringList({"D"}));
    store.setActivePlugins({"B"});
    QVERIFY(store.extensionTexts("B", "B.point").first().contains("plugin=\"B\""));
    QCOMPARE(store.extensionTextsOfFile(relative(pathA)).keys(), QStringList({"B.point"}));
    QVERIFY(store.extensionTexts("B", "").isEmpty());

    // A's file changes: every row of tbl_plugin takes A's new digest.
    writeExtension("A", "<Plugin id=\"A\"><ExtDataSet><ExtData id=\"B.point\" plugin=\"A\" extPlugin=\"B\"/>"
                        "<ExtData id=\"x\" plugin=\"A\" extPlugin=\"B\"/></ExtDataSet></Plugin>");
    const auto changed = parseAndWait(parser, pathA);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(rows("SELECT plug_md5 FROM tbl_plugin"),
             QList<QStringList>({{changed.first().md5}, {changed.first().md5}}));
    QCOMPARE(count("tbl_extdata", "ed_plugin = 'A'"), 2);
    QCOMPARE(count("tbl_extpoint", "ep_plugin = 'A'"), 0);

    // The two-statement removal is refused by the driver and removes nothing.
    store.removeExtensions("B");
    QCOMPARE(count("tbl_extdata", "ed_plugin = 'B'"), 1);
    QCOMPARE(count("tbl_extpoint", "ep_plugin = 'B'"), 1);
    QCOMPARE(parseAndWait(parser, pathB).size(), 1); // its digest was overwritten
}

void tst_ExtensionStore::refusedRecords()
{
    Rig rig;
    ExtensionFileParser &parser = rig.parser;

    // The quote breaks the unbound INSERT: nothing of the file is kept, so it is read again.
    const QString quoted = writeExtension(
            "quoted", "<Plugin id=\"o'neil\"><ExtPointSet><ExtPoint id=\"q\"/></ExtPointSet>"
                      "<ExtDataSet><ExtData id=\"q\" plugin=\"o'neil\" extPlugin=\"o'neil\"/></ExtDataSet></Plugin>");
    QCOMPARE(parseAndWait(parser, quoted).size(), 1);
    QVERIFY(!logged("[DB] > writeExtensionPlugin: \"o'neil\"").isEmpty());
    QCOMPARE(count("tbl_plugin") + count("tbl_extpoint") + count("tbl_extdata"), 0);
    QCOMPARE(parseAndWait(parser, quoted).size(), 1);

    // No root id: the record comes, without points, and the store ignores it.
    const QString anonymous = writeExtension(
            "anonymous", "<Plugin><ExtPointSet><ExtPoint id=\"p\"/></ExtPointSet>"
                         "<ExtDataSet><ExtData id=\"p\" plugin=\"a\" extPlugin=\"b\"/></ExtDataSet></Plugin>");
    const auto record = parseAndWait(parser, anonymous);
    QCOMPARE(record.size(), 1);
    QVERIFY(record.first().symbolic.isEmpty());
    QVERIFY(record.first().points.isEmpty());
    QCOMPARE(record.first().data.size(), 1);
    QCOMPARE(count("tbl_plugin") + count("tbl_extdata"), 0);

    // A bare root is still a plug-in row.
    QCOMPARE(parseAndWait(parser, writeExtension("bare", "<plugin id=\"bare\"/>")).size(), 1);
    QCOMPARE(rows("SELECT plug_symbolic FROM tbl_plugin"), QList<QStringList>({{"bare"}}));
}

void tst_ExtensionStore::outerStructureOnly()
{
    const QString path = writeExtension(
            "shape",
            "<PLUGIN id=\" a \">"
            "<ExtPointSet><ExtPoint id=\" p1 \" name=\" Name \" description=\"D\" plugin=\"other\"><Sub "
            "k=\"v\"/></ExtPoint>"
            "<ExtPoint name=\"no id\"/><Group><ExtPoint id=\"nested\"/></Group></ExtPointSet>"
            "<ExtData id=\"under.root\" plugin=\"a\" extPlugin=\"a\"/>"
            "<ExtDataSet><ExtData id=\"d1\" plugin=\"a\" extPlugin=\"b\"/><ExtData id=\"d\" plugin=\"a\"/></ExtDataSet>"
            "<extpointset><ExtPoint id=\"lower\"/></extpointset>"
            "<ExtDataSet><ExtData id=\"d2\" plugin=\" a\" extPlugin=\"b \"/></ExtDataSet></PLUGIN>");
    ExtensionFileParseTask task(path, nullptr);
    QSignalSpy found(&task, &ExtensionFileParseTask::extensionFound);
    task.run();
    QCOMPARE(found.size(), 1);
    const auto plugin = found.first().first().value<ExtType::Plugin>();
    QCOMPARE(plugin.symbolic, QString("a"));
    QCOMPARE(plugin.points.size(), 1);
    const ExtType::Point point = plugin.points.first();
    QCOMPARE(QStringList({point.id, point.name, point.plugin, point.description}),
             QStringList({"p1", "Name", "a", "D"}));
    QDomDocument text;
    QVERIFY(text.setContent(point.data));
    QCOMPARE(text.documentElement().firstChildElement("Sub").attribute("k"), QString("v"));
    QCOMPARE(plugin.data.size(), 2);
    QCOMPARE(QStringList({plugin.data.at(0).point, plugin.data.at(1).point}), QStringList({"d1", "d2"}));
    QCOMPARE(QStringList({plugin.data.at(1).plugin, plugin.data.at(1).extPlugin}), QStringList({"a", "b"}));

    const QString wrongRoot = writeExtension("wrong", "<Plugins id=\"a\"/>");
    ExtensionFileParseTask refused(wrongRoot, nullptr);
    QSignalSpy errors(&refused, &ExtensionFileParseTask::errorOccured);
    QSignalSpy none(&refused, &ExtensionFileParseTask::extensionFound);
    refused.run();
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.first().first().toString(), "Cannot find the plugin node in extension file: " + wrongRoot);
    QCOMPARE(none.size(), 0);
}

void tst_ExtensionStore::brokenFiles()
{
    Rig rig;
    ExtensionFileParser &parser = rig.parser;

    QString big = "<Plugin id=\"big\"><ExtDataSet>";
    for (int i = 0; i < 20000; ++i)
        big += QString("<ExtData id=\"p%1\" plugin=\"big\" extPlugin=\"big\"><Item text=\"%2\"/></ExtData>\n")
                       .arg(i)
                       .arg(QString(120, QLatin1Char('x')));
    big += "</ExtDataSet></Plugin>";
    QVERIFY(big.size() > 3000000);
    const QString bigPath = writeExtension("big", big.left(big.size() / 2));
    QVERIFY(parseAndWait(parser, bigPath).isEmpty());
    const QString malformed = writeExtension("malformed", "<Plugin id=\"m\"><ExtDataSet></Plugin>");
    QVERIFY(parseAndWait(parser, malformed).isEmpty());
    QCOMPARE(count("tbl_plugin"), 0);
    QCOMPARE(logged("Invalid file format, File: " + malformed + " > Line: 1, Column: ").size(), 1);
    QCOMPARE(logged("Invalid file format, File: " + bigPath).size(), 1);

    writeExtension("big", big);
    QCOMPARE(parseAndWait(parser, bigPath).size(), 1);
    QCOMPARE(count("tbl_extdata"), 20000);

    // A file gone before its task runs, and one gone before parse.
    const QString vanishing = writeExtension("vanishing", "<Plugin id=\"v\"/>");
    ExtensionFileParseTask task(vanishing, nullptr);
    QSignalSpy errors(&task, &ExtensionFileParseTask::errorOccured);
    QVERIFY(QFile::remove(vanishing));
    task.run();
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.first().first().toString(), "File: '" + vanishing + "' not exists");
    QVERIFY(!parser.parse(vanishing));
    QVERIFY(!parser.parse(QString()));
}

void tst_ExtensionStore::unusableStore()
{
    const ExtType::Plugin plugin{"p", "/plugins/p/extension.xml", "abc", {}, {{"pt", "p", "p", "<ExtData/>"}}};
    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    {
        // Configuration directory below a regular file: the working directory takes over.
        const auto restoreCurrent = qScopeGuard([previous = QDir::currentPath()] { QDir::setCurrent(previous); });
        QVERIFY(QDir::setCurrent(temp.path()));
        QFile blocker(temp.filePath("blocker"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        {
            ExtensionStorage store(QDir(temp.filePath("blocker/config")), nullptr);
            store.writeExtensionPlugin(plugin);
            store.setActivePlugins({"p"});
            QCOMPARE(store.extensionTexts("p", "pt"), QStringList({"<ExtData/>"}));
        }
        QCOMPARE(logged("[Error] > ExtensionStorage: Cannot find the data storage path: \""
                        + temp.filePath("blocker/config"))
                         .size(),
                 1);
        QCOMPARE(count("tbl_extdata", QString(), temp.filePath("extension.dat")), 1);
    }
    {
        // A text file where the database should be: moved aside, and a new store serves.
        QDir().mkpath(temp.filePath("text"));
        QFile text(temp.filePath("text/extension.dat"));
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("not a database\n");
        text.close();
        ExtensionStorage store(QDir(temp.filePath("text")), nullptr);
        store.writeExtensionPlugin(plugin);
        store.setActivePlugins({"p"});
        QString symbolic, digest;
        QVERIFY(store.pluginRecord(plugin.filepath, symbolic, digest));
        QCOMPARE(store.extensionTexts("p", "pt"), QStringList({"<ExtData/>"}));
        const QStringList aside = QDir(temp.filePath("text")).entryList({"extension.dat.corrupt-*"});
        QCOMPARE(aside.size(), 1);
        QFile old(temp.filePath("text/" + aside.first()));
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("not a database\n"));
    }
    {
        // A directory in its place cannot be opened at all.
        QDir().mkpath(temp.filePath("dir/extension.dat"));
        ExtensionStorage store(QDir(temp.filePath("dir")), nullptr);
        QCOMPARE(logged("[ERROR] > Cannot open DB").size(), 1);
        store.writeExtensionPlugin(plugin);
        store.setActivePlugins({"p"});
        QVERIFY(store.extensionTexts("p", "pt").isEmpty());
        QVERIFY(store.extensionTextsOfFile(plugin.filepath).isEmpty());
        QCOMPARE(logged("[SQL ERROR] > Open DB Error:").size(), 3);
    }
}

void tst_ExtensionStore::damagedStoresAreMovedAsideWhole()
{
    using TestSupport::writeFile;
    const ExtType::Plugin plugin{"p", "/plugins/p/extension.xml", "abc", {}, {{"pt", "p", "p", "<ExtData/>"}}};
    const auto readAll = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    };
    const auto serves = [&plugin](const QDir &dir) {
        ExtensionStorage storage(dir, nullptr);
        storage.writeExtensionPlugin(plugin);
        storage.setActivePlugins({"p"});
        return storage.extensionTexts("p", "pt") == QStringList({"<ExtData/>"});
    };

    // Two stores damaged within the same second each get a name of their own:
    // the names of this second and the next few are taken already.
    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    const QDir dir(temp.path());
    const QString store = dir.filePath("extension.dat");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QStringList taken;
    for (int second = 0; second < 10; ++second) {
        taken << QStringLiteral("extension.dat.corrupt-")
                         + now.addSecs(second).toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
        QVERIFY(writeFile(dir.filePath(taken.last()), "taken"));
    }
    for (const QByteArray &content : {QByteArray("first damage\n"), QByteArray("second damage\n")}) {
        QVERIFY(writeFile(store, content));
        QVERIFY(serves(dir));
    }
    QStringList aside = dir.entryList({"extension.dat.corrupt-*"}, QDir::Files, QDir::Name);
    for (const QString &name : qAsConst(taken)) {
        QCOMPARE(readAll(dir.filePath(name)), QByteArray("taken"));
        aside.removeAll(name);
    }
    QCOMPARE(aside.size(), 2);
    QByteArrayList contents;
    for (const QString &name : qAsConst(aside)) {
        QVERIFY2(name.contains(QRegularExpression(QStringLiteral("Z-[0-9]+$"))), qPrintable(name));
        contents << readAll(dir.filePath(name));
    }
    std::sort(contents.begin(), contents.end());
    QCOMPARE(contents, QByteArrayList({"first damage\n", "second damage\n"}));

    // A store of another shape whose write-ahead log another connection keeps
    // open: its log and shared memory belong to it and go aside with it.
    QTemporaryDir shaped;
    QVERIFY(shaped.isValid());
    const QString other = QDir(shaped.path()).filePath("extension.dat");
    {
        QSqlDatabase holder = QSqlDatabase::addDatabase("QSQLITE", "holder");
        holder.setDatabaseName(other);
        QVERIFY(holder.open());
        QSqlQuery query(holder);
        QVERIFY(query.exec("PRAGMA journal_mode=WAL"));
        QVERIFY(query.exec("CREATE TABLE tbl_other (x)"));
        QVERIFY(query.exec("INSERT INTO tbl_other VALUES (1)"));
        QVERIFY(QFile::exists(other + "-wal") && QFile::exists(other + "-shm"));
        QVERIFY(serves(QDir(shaped.path())));
        const QStringList moved = QDir(shaped.path()).entryList({"extension.dat.corrupt-*"}, QDir::Files, QDir::Name);
        QCOMPARE(moved.size(), 3);
        QVERIFY(moved.at(1).endsWith("-shm") && moved.at(2).endsWith("-wal"));
        QCOMPARE(moved.at(1), moved.at(0) + "-shm");
        QCOMPARE(moved.at(2), moved.at(0) + "-wal");
        QVERIFY(!QFile::exists(other + "-wal") && !QFile::exists(other + "-shm"));
        query.finish();
        holder.close();
    }
    QSqlDatabase::removeDatabase("holder");
    QCOMPARE(count("tbl_extdata", QString(), other), 1);
}

void tst_ExtensionStore::readOnlyStore()
{
    const ExtType::Plugin first{"first", "/first.xml", "1", {}, {{"pt", "first", "first", "<A/>"}}};
    const ExtType::Plugin second{"second", "/second.xml", "2", {}, {{"pt", "second", "first", "<B/>"}}};
    {
        ExtensionStorage store(PluginFrameworkConfig::configDir(), nullptr);
        store.writeExtensionPlugin(first);
    }
    QVERIFY(QFile::setPermissions(storePath(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
#if defined(Q_OS_LINUX)
    struct Restore
    {
        ~Restore() { setDacOverride(true); }
    } restore;
    if (geteuid() == 0)
        setDacOverride(false);
    const int fd = ::open(QFile::encodeName(storePath()).constData(), O_RDWR);
    if (fd >= 0) {
        ::close(fd);
        QSKIP("extension.dat stays writable: running as root without the right to drop CAP_DAC_OVERRIDE");
    }
#endif
    ExtensionStorage store(PluginFrameworkConfig::configDir(), nullptr);
    store.writeExtensionPlugin(second);
    store.setActivePlugins({"first", "second"});
    QCOMPARE(store.extensionTexts("first", "pt"), QStringList({"<A/>"}));
    QString symbolic, digest;
    QVERIFY(!store.pluginRecord("/second.xml", symbolic, digest));
    QVERIFY(store.pluginRecord("/first.xml", symbolic, digest));
    QCOMPARE(digest, QString("1"));
}

namespace {

// Everything the store's reads give for one active list, in the order they give it.
QStringList everyRead(ExtensionStorage &store, const QStringList &symbolics, const QStringList &points,
                      const QStringList &paths)
{
    QStringList result;
    for (const QString &extPlugin : symbolics) {
        for (const QString &point : points)
            result << QString("texts %1 %2: %3")
                              .arg(extPlugin, point, store.extensionTexts(extPlugin, point).join('|'));
    }
    for (const QString &path : paths) {
        const QMultiHash<QString, QString> texts = store.extensionTextsOfFile(path);
        QStringList keys = texts.uniqueKeys();
        std::sort(keys.begin(), keys.end());
        for (const QString &key : qAsConst(keys))
            result << QString("file %1 %2: %3").arg(path, key, texts.values(key).join('|'));
        QString symbolic = "-", digest = "-";
        const bool found = store.pluginRecord(path, symbolic, digest);
        result << QString("record %1: %2 %3 %4").arg(path).arg(found).arg(symbolic, digest);
    }
    return result;
}

} // namespace

// The store's lookups may use indexes only where they change no row and no
// order: the same reads on the same stores must give the same with and without.
void tst_ExtensionStore::indexesKeepRowsAndOrder()
{
    const QStringList symbolics{"p0", "p1", "p2", "p3", "p4", "p5", "p6", "p7", "p8", "ghost"};
    const QStringList points{"pt0", "pt1", "PT1", "pt2", "pt3", "pt4", ""};
    for (quint32 seed = 1; seed <= 6; ++seed) {
        QFile::remove(storePath());
        QRandomGenerator random(seed);
        auto pick = [&random](const QStringList &from) { return from.at(int(random.bounded(from.size()))); };
        // Nine plug-ins on five file paths, so that some paths are recorded for two
        // plug-ins; rows whose supplier is another plug-in or none that is known;
        // and files written again, which moves their rows to the end.
        QStringList paths;
        QList<ExtType::Plugin> files;
        for (int i = 0; i < 9; ++i) {
            ExtType::Plugin file;
            file.symbolic = symbolics.at(i);
            file.filepath = QString("/plugins/d%1/extension.xml").arg(i % 5);
            file.md5 = QString::number(seed * 100 + i);
            files << file;
            if (!paths.contains(file.filepath))
                paths << file.filepath;
        }
        paths << "/plugins/none/extension.xml";
        auto write = [&](ExtensionStorage &store, ExtType::Plugin file) {
            file.data.clear();
            for (int n = int(random.bounded(12)); n > 0; --n) {
                const QString supplier = random.bounded(4) == 0 ? pick(symbolics) : file.symbolic;
                file.data << ExtType::Data{pick(points.mid(0, 6)), supplier, pick(symbolics.mid(0, 5)),
                                           QString("<D n=\"%1\"/>").arg(random.generate() % 1000)};
            }
            store.writeExtensionPlugin(file);
        };

        ExtensionStorage store(PluginFrameworkConfig::configDir(), nullptr);
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < files.size(); ++i)
                write(store, files.at(int(random.bounded(files.size()))));
        }

        // A second connection sees the schema the store made and later takes its indexes away.
        QStringList indexes;
        for (const QStringList &row : rows("SELECT name FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL"))
            indexes << row.first();
        QVERIFY2(indexes.size() >= 3, qPrintable(indexes.join(' ')));
        QVERIFY(count("tbl_extdata") > 10);

        QList<QStringList> activeLists{symbolics, {}, {"p1", "p3", "p5", "p7"}, {"p8", "p0", "ghost"}};
        QStringList subset;
        for (const QString &symbolic : symbolics) {
            if (random.bounded(2))
                subset << symbolic;
        }
        activeLists << subset;
        QList<QStringList> indexed;
        for (const QStringList &active : qAsConst(activeLists)) {
            store.setActivePlugins(active.isEmpty() ? QStringList{"nobody"} : active);
            indexed << everyRead(store, symbolics, points, paths);
        }
        // Enough reads give several rows for their order to mean something.
        int several = 0;
        for (const QStringList &reads : qAsConst(indexed))
            several += int(std::count_if(reads.cbegin(), reads.cend(),
                                         [](const QString &line) { return line.contains('|'); }));
        QVERIFY2(several >= 20, qPrintable(QString::number(several)));

        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "tst_dropper");
            db.setDatabaseName(storePath());
            QVERIFY(db.open());
            for (const QString &index : qAsConst(indexes))
                QVERIFY(QSqlQuery(db).exec("DROP INDEX `" + index + "`"));
        }
        QSqlDatabase::removeDatabase("tst_dropper");
        QCOMPARE(count("sqlite_master", "type = 'index' AND sql IS NOT NULL"), 0);

        for (int i = 0; i < activeLists.size(); ++i) {
            const QStringList &active = activeLists.at(i);
            store.setActivePlugins(active.isEmpty() ? QStringList{"nobody"} : active);
            const QStringList plain = everyRead(store, symbolics, points, paths);
            QCOMPARE(plain.size(), indexed.at(i).size());
            for (int line = 0; line < plain.size(); ++line)
                QCOMPARE(plain.at(line), indexed.at(i).at(line));
        }
    }
}

QTEST_MAIN(tst_ExtensionStore)

#include "tst_extensionstore.moc"
