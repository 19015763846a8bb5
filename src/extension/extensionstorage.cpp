// SPDX-License-Identifier: BSD-3-Clause
#include "extensionstorage.h"
#include "extensionstorage_p.h"

#include <core/debugoutput_p.h>

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace ExtensionSystem {

using namespace Internal;

namespace {

const QString DB_FILE_NAME = QStringLiteral("extension.dat");

const QString CREATE_PLUGIN_TABLE =
        QStringLiteral("CREATE TABLE IF NOT EXISTS `tbl_plugin` (`plug_id`\tINTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,"
                       "`plug_symbolic`\tTEXT,`plug_filepath`\tTEXT,`plug_md5`\tTEXT);");
const QString CREATE_EXTPOINT_TABLE = QStringLiteral(
        "CREATE TABLE IF NOT EXISTS `tbl_extpoint` (`ep_id`\tTEXT UNIQUE,`ep_name`\tTEXT,`ep_plugin`\tTEXT,"
        "`ep_description`\tTEXT,`ep_data`\tTEXT,PRIMARY KEY(ep_id));");
const QString CREATE_EXTDATA_TABLE =
        QStringLiteral("CREATE TABLE IF NOT EXISTS `tbl_extdata` (`ed_id`\tINTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,"
                       "`ed_point`\tTEXT,`ed_plugin`\tTEXT,`ed_extPlugin`\tTEXT,`ed_data`\tTEXT);");

const QString SELECT_PLUGIN = QStringLiteral("SELECT * FROM `tbl_plugin` WHERE `plug_symbolic` = '%1'");
const QString INSERT_PLUGIN = QStringLiteral(
        "INSERT INTO `tbl_plugin` (`plug_symbolic`, `plug_filepath`, `plug_md5`) VALUES('%1', '%2', '%3');");
// No WHERE: every row gets this digest, so all other files count as changed next
// time. Costly re-parsing, but the stored data stays right; kept on purpose.
const QString UPDATE_PLUGIN_DIGEST = QStringLiteral("UPDATE `tbl_plugin` SET `plug_md5`='%1';");
const QString DELETE_POINTS = QStringLiteral("DELETE FROM `tbl_extpoint` WHERE `ep_plugin` = '%1';");
const QString DELETE_DATA = QStringLiteral("DELETE FROM `tbl_extdata` WHERE `ed_plugin` = '%1';");
// Two statements in one text, which the driver refuses to prepare: this removes
// nothing. writeExtensionPlugin does the real removal.
const QString DELETE_EXTENSIONS = QStringLiteral(
        "DELETE FROM `tbl_extpoint` WHERE `ep_plugin` = '%1';DELETE FROM `tbl_extdata` WHERE `ed_plugin` = '%1';");
const QString INSERT_POINT =
        QStringLiteral("INSERT INTO `tbl_extpoint` (`ep_id`, `ep_name`, `ep_plugin`, `ep_description`, `ep_data`) "
                       "VALUES(?, ?, ?, ?, ?);");
const QString INSERT_DATA = QStringLiteral(
        "INSERT INTO `tbl_extdata` (`ed_point`, `ed_plugin`, `ed_extPlugin`, `ed_data`) VALUES(?, ?, ?, ?);");
const QString SELECT_PLUGIN_RECORD =
        QStringLiteral("SELECT `plug_symbolic`, `plug_md5` FROM `tbl_plugin` WHERE `plug_filepath` = '%1'");
const QString SELECT_TEXTS = QStringLiteral(
        "SELECT `ed_data` FROM `tbl_extdata` WHERE `ed_point` = '%1' AND `ed_extPlugin` = '%2' AND `ed_plugin` IN "
        "(SELECT `plug_symbolic` FROM `tbl_plugin` WHERE `plug_symbolic` IN ('%3'));");
const QString SELECT_TEXTS_OF_FILE = QStringLiteral(
        "SELECT `ed_point`, `ed_data` FROM `tbl_extdata` WHERE `ed_plugin` IN "
        "(SELECT `plug_symbolic` FROM `tbl_plugin` WHERE `plug_filepath` = '%1') AND `ed_extPlugin` IN ('%2');");

const QString ACTIVE_SEPARATOR = QStringLiteral("','");

// The reads look rows up by these columns. Not by ed_plugin: its rows would then
// come back grouped by plug-in, and extensionTextsOfFile hands them out in the
// order of the table when one file path is recorded for two plug-ins.
const QString CREATE_INDEXES[] = {
        QStringLiteral("CREATE INDEX IF NOT EXISTS `idx_extdata_point` ON `tbl_extdata` (`ed_point`);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS `idx_plugin_symbolic` ON `tbl_plugin` (`plug_symbolic`);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS `idx_plugin_filepath` ON `tbl_plugin` (`plug_filepath`);"),
};

// Every table and column of the store, in one statement: a store that another
// process holds locked costs one busy wait here, not one per table.
const QString SELECT_SCHEMA = QStringLiteral(
        "SELECT m.name, p.name FROM sqlite_master AS m JOIN pragma_table_info(m.name) AS p WHERE m.type = 'table'");

// What the running system reads; tbl_extpoint is only written.
const struct
{
    const char *table;
    QList<const char *> columns;
} REQUIRED_TABLES[] = {
        {"tbl_plugin", {"plug_id", "plug_symbolic", "plug_filepath", "plug_md5"}},
        {"tbl_extdata", {"ed_id", "ed_point", "ed_plugin", "ed_extPlugin", "ed_data"}},
};

// SQLite's "database disk image is malformed" and "file is not a database".
bool isCorruption(const QSqlError &error)
{
    const int code = error.nativeErrorCode().toInt() & 0xff;
    return code == 11 || code == 26;
}

} // namespace

// Why the open store cannot serve as one, or an empty string. A store that is
// locked, read-only or simply new is usable: only a damaged file or a database
// of another shape is not.
QString ExtensionStoragePrivate::unusableBecause()
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(SELECT_SCHEMA))
        return isCorruption(query.lastError()) ? query.lastError().text() : QString();
    QHash<QString, QStringList> columns;
    while (query.next())
        columns[query.value(0).toString()] << query.value(1).toString();
    query.finish();
    if (columns.isEmpty())
        return QString(); // no table at all: a store not yet made
    for (const auto &required : REQUIRED_TABLES) {
        const QString table = QLatin1String(required.table);
        if (!columns.contains(table))
            return QObject::tr("the table %1 is missing").arg(table);
        for (const char *column : required.columns) {
            if (!columns.value(table).contains(QLatin1String(column)))
                return QObject::tr("the table %1 has no column %2").arg(table, QLatin1String(column));
        }
    }
    return QString();
}

// extension.dat is a cache of the extension files, which stay the source: a file
// that cannot serve is moved aside, never deleted, and a new store is begun.
void ExtensionStoragePrivate::healIfUnusable()
{
    const QString path = db.databaseName();
    if (QFileInfo(path).size() == 0)
        return; // missing or empty: a new store
    const QString found = unusableBecause();
    if (found.isEmpty())
        return;

    db.close();
    const QString stamped = path + QStringLiteral(".corrupt-")
                            + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString aside = stamped;
    for (int n = 2; QFile::exists(aside); ++n)
        aside = stamped + QStringLiteral("-%1").arg(n);
    if (!QFile::rename(path, aside)) {
        ES_DEBUG_IF_SHOWN() << "[ERROR] > extension.dat is not a usable store:" << found
                            << "- it cannot be moved aside to" << aside << "and stays as it is";
        db.open();
        return;
    }
    // A journal beside the old file belongs to it, not to the new store.
    for (const char *suffix : {"-journal", "-wal", "-shm"}) {
        if (QFile::exists(path + QLatin1String(suffix)))
            QFile::rename(path + QLatin1String(suffix), aside + QLatin1String(suffix));
    }
    ES_DEBUG_IF_SHOWN() << "[DB] > extension.dat is not a usable store:" << found << "- moved it to" << aside
                        << "and started a new one";
    db.open();
}

void ExtensionStoragePrivate::initialize()
{
    if (!db.isOpen() && !db.open()) {
        ES_DEBUG_IF_SHOWN() << "[ERROR] > Cannot open DB";
        return;
    }
    healIfUnusable();
    execute(CREATE_PLUGIN_TABLE);
    execute(CREATE_EXTPOINT_TABLE);
    execute(CREATE_EXTDATA_TABLE);
    createIndexes();
    activePlugins.clear();
    activeSet.clear();
    activeChanged();
}

// All three in one transaction: one journal write at the first start instead of
// three. A store that is read-only or locked goes without; it reads the same rows.
void ExtensionStoragePrivate::createIndexes()
{
    if (!db.isOpen())
        return;
    db.transaction();
    QSqlQuery query(db);
    for (const QString &sql : CREATE_INDEXES)
        query.exec(sql);
    query.finish();
    db.commit();
}

const QString &ExtensionStoragePrivate::activeList()
{
    if (!activeJoinedValid) {
        activeJoined = activePlugins.join(ACTIVE_SEPARATOR);
        activeJoinedValid = true;
    }
    return activeJoined;
}

void ExtensionStoragePrivate::activeChanged()
{
    activeJoinedValid = false;
    activeJoined.clear();
}

bool ExtensionStoragePrivate::open()
{
    if (db.isOpen() || db.open())
        return true;
    ES_DEBUG_IF_SHOWN() << "[SQL ERROR] > Open DB Error:" << db.lastError().text();
    return false;
}

// A failed statement is not an error here: it is committed past. Only a thrown
// exception would roll back, and nothing in this code base throws.
int ExtensionStoragePrivate::execute(const QString &sql)
{
    if (!open())
        return 0;

    db.transaction();
    QSqlQuery query(db);
    // One exec(sql): the driver compiles the text once and refuses what it cannot
    // compile, as prepare() would, without prepare()'s search for placeholders
    // that these texts do not have.
    query.exec(sql);
    int result = query.numRowsAffected();
    if (sql.startsWith(QLatin1String("insert"), Qt::CaseInsensitive) && result >= 1)
        result = query.lastInsertId().toInt();
    query.finish();
    db.commit();
    return result;
}

int ExtensionStoragePrivate::query(const QString &sql, QList<QSqlRecord> &records)
{
    if (!open())
        return 0;

    db.transaction();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec(sql); // compiled once, see execute()
    while (query.next())
        records.append(query.record());
    const int result = records.size();
    query.finish();
    db.commit();
    return result;
}

ExtensionStorage::ExtensionStorage(const QDir &dataDir, QObject *parent)
    : QObject(*new ExtensionStoragePrivate, parent)
{
    Q_D(ExtensionStorage);
    d->db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QLatin1String(QSqlDatabase::defaultConnection));

    if (!dataDir.exists() && !dataDir.mkpath(dataDir.absolutePath())) {
        ES_DEBUG_IF_SHOWN() << "[Error] > ExtensionStorage: Cannot find the data storage path:"
                            << dataDir.absolutePath();
        // Lands in the working directory.
        d->db.setDatabaseName(DB_FILE_NAME);
    } else {
        d->db.setDatabaseName(dataDir.absoluteFilePath(DB_FILE_NAME));
        ES_DEBUG_IF_SHOWN() << "ExtensionStorage > dbpath:" << dataDir.absoluteFilePath(DB_FILE_NAME)
                            << d->db.databaseName();
    }
    d->initialize();
}

ExtensionStorage::~ExtensionStorage()
{
    Q_D(ExtensionStorage);
    // Empty once a later store has taken the default connection over: Qt then
    // detached this handle, and the newer connection is not ours to remove.
    const QString name = d->db.connectionName();
    if (d->db.isOpen())
        d->db.close();
    // The last handle has to go before the connection is removed, or Qt reports
    // it as still in use.
    d->db = QSqlDatabase();
    if (!name.isEmpty())
        QSqlDatabase::removeDatabase(name);
}

void ExtensionStorage::writeExtensionPlugin(ExtType::Plugin plugin)
{
    Q_D(ExtensionStorage);
    ES_DEBUG_IF_SHOWN() << "[DB] > writeExtensionPlugin:" << plugin.symbolic;
    if (plugin.symbolic.isEmpty())
        return;

    QList<QSqlRecord> records;
    d->query(SELECT_PLUGIN.arg(plugin.symbolic), records);
    // query() has reported it already; the statements below would only add Qt's
    // own warnings about a closed database.
    if (!d->db.isOpen())
        return;

    d->db.transaction();
    QSqlQuery query(d->db);
    if (records.isEmpty()) {
        if (!query.exec(INSERT_PLUGIN.arg(plugin.symbolic, plugin.filepath, plugin.md5))) {
            d->db.rollback();
            return;
        }
    } else {
        if (!query.exec(UPDATE_PLUGIN_DIGEST.arg(plugin.md5))) {
            d->db.rollback();
            return;
        }
        query.exec(DELETE_POINTS.arg(plugin.symbolic));
        query.exec(DELETE_DATA.arg(plugin.symbolic));
    }
    query.finish();

    // A point id that another plug-in holds already fails this batch; the data
    // batch alone decides the commit.
    QSqlQuery pointQuery(d->db);
    pointQuery.prepare(INSERT_POINT);
    QVariantList pointIds, pointNames, pointPlugins, pointDescriptions, pointTexts;
    for (const ExtType::Point &point : qAsConst(plugin.points)) {
        pointIds << point.id;
        pointNames << point.name;
        pointPlugins << point.plugin;
        pointDescriptions << point.description;
        pointTexts << point.data;
    }
    pointQuery.addBindValue(pointIds, QSql::In);
    pointQuery.addBindValue(pointNames, QSql::In);
    pointQuery.addBindValue(pointPlugins, QSql::In);
    pointQuery.addBindValue(pointDescriptions, QSql::In);
    pointQuery.addBindValue(pointTexts, QSql::In);
    pointQuery.execBatch(QSqlQuery::ValuesAsRows);
    pointQuery.finish();

    QSqlQuery dataQuery(d->db);
    dataQuery.prepare(INSERT_DATA);
    QVariantList dataPoints, dataPlugins, dataExtPlugins, dataTexts;
    for (const ExtType::Data &data : qAsConst(plugin.data)) {
        dataPoints << data.point;
        dataPlugins << data.plugin;
        dataExtPlugins << data.extPlugin;
        dataTexts << data.data;
    }
    dataQuery.addBindValue(dataPoints, QSql::In);
    dataQuery.addBindValue(dataPlugins, QSql::In);
    dataQuery.addBindValue(dataExtPlugins, QSql::In);
    dataQuery.addBindValue(dataTexts, QSql::In);
    const bool stored = dataQuery.execBatch(QSqlQuery::ValuesAsRows);
    dataQuery.finish();

    if (stored)
        d->db.commit();
    else
        d->db.rollback();
}

bool ExtensionStorage::pluginRecord(const QString &filepath, QString &symbolic, QString &digest)
{
    Q_D(ExtensionStorage);
    QList<QSqlRecord> records;
    if (d->query(SELECT_PLUGIN_RECORD.arg(filepath), records) == 0)
        return false;
    symbolic = records.first().value(QStringLiteral("plug_symbolic")).toString();
    digest = records.first().value(QStringLiteral("plug_md5")).toString();
    return !symbolic.isEmpty();
}

void ExtensionStorage::removeExtensions(const QString &symbolic)
{
    Q_D(ExtensionStorage);
    if (symbolic.isEmpty())
        return;
    d->execute(DELETE_EXTENSIONS.arg(symbolic));
}

QStringList ExtensionStorage::extensionTexts(const QString &extPlugin, const QString &pointId)
{
    Q_D(ExtensionStorage);
    if (pointId.isEmpty())
        return {};

    // The active list filters the plug-in that supplies the extension.
    QList<QSqlRecord> records;
    d->query(SELECT_TEXTS.arg(pointId.trimmed(), extPlugin.trimmed(), d->activeList()), records);
    QStringList texts;
    for (const QSqlRecord &record : qAsConst(records))
        texts << record.value(QStringLiteral("ed_data")).toString();
    return texts;
}

QMultiHash<QString, QString> ExtensionStorage::extensionTextsOfFile(const QString &filepath)
{
    Q_D(ExtensionStorage);
    const QString path = filepath.trimmed();
    if (path.isEmpty())
        return {};

    // Here the active list filters the plug-in that declares the point.
    QList<QSqlRecord> records;
    d->query(SELECT_TEXTS_OF_FILE.arg(path, d->activeList()), records);
    QMultiHash<QString, QString> texts;
    for (const QSqlRecord &record : qAsConst(records))
        texts.insert(record.value(QStringLiteral("ed_point")).toString(),
                     record.value(QStringLiteral("ed_data")).toString());
    return texts;
}

QStringList ExtensionStorage::activePlugins() const
{
    Q_D(const ExtensionStorage);
    return d->activePlugins;
}

void ExtensionStorage::setActivePlugins(const QStringList &plugins)
{
    Q_D(ExtensionStorage);
    if (plugins.isEmpty() || plugins.isSharedWith(d->activePlugins))
        return;
    d->activePlugins = plugins;
    d->activeSet = QSet<QString>(plugins.cbegin(), plugins.cend());
    d->activeChanged();
}

void ExtensionStorage::updateActivePlugin(const QString &symbolic, bool present)
{
    Q_D(ExtensionStorage);
    if (symbolic.isEmpty())
        return;
    if (present) {
        if (!d->activeSet.contains(symbolic)) {
            d->activePlugins.append(symbolic);
            d->activeSet.insert(symbolic);
            d->activeChanged();
        }
    } else if (d->activeSet.contains(symbolic)) {
        // A plug-in's Installed event comes right after its Resolved one, so the
        // name is usually last. A list without repeats, as this method keeps it,
        // needs only the one from the back; one set with repeats needs them all.
        if (d->activeSet.size() == d->activePlugins.size())
            d->activePlugins.removeAt(d->activePlugins.lastIndexOf(symbolic));
        else
            d->activePlugins.removeAll(symbolic);
        d->activeSet.remove(symbolic);
        d->activeChanged();
    }
}

} // namespace ExtensionSystem
