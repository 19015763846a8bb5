// SPDX-License-Identifier: BSD-3-Clause
#include "extensionlisting.h"

#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QTextStream>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {

const char connectionName[] = "es-inspect.readonly";

struct PluginRow
{
    QString filepath;
    QString digest;
    QStringList points;
    QStringList data;
};

QString shortened(const QString &text)
{
    const QString simple = text.simplified();
    return simple.size() > 100 ? simple.left(97) + QStringLiteral("...") : simple;
}

bool list(QSqlDatabase &db, QTextStream &out)
{
    const QStringList tables = db.tables();
    for (const char *table : {"tbl_plugin", "tbl_extpoint", "tbl_extdata"}) {
        if (!tables.contains(QLatin1String(table))) {
            out << "  " << QObject::tr("not an extension store: the table %1 is missing").arg(QLatin1String(table))
                << '\n';
            return false;
        }
    }

    // Keyed by symbolic name, in the order the store recorded them.
    QStringList order;
    QMap<QString, PluginRow> rows;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    auto run = [&query, &out](const char *sql) {
        if (query.exec(QLatin1String(sql)))
            return true;
        out << "  " << QObject::tr("cannot read it: %1").arg(query.lastError().text()) << '\n';
        return false;
    };
    if (!run("SELECT plug_symbolic, plug_filepath, plug_md5 FROM tbl_plugin ORDER BY plug_id"))
        return false;
    while (query.next()) {
        const QString symbolic = query.value(0).toString();
        order << symbolic;
        rows[symbolic].filepath = query.value(1).toString();
        rows[symbolic].digest = query.value(2).toString();
    }
    QStringList strays; // rows of plug-ins that tbl_plugin does not know

    if (!run("SELECT ep_plugin, ep_id, ep_name, ep_description FROM tbl_extpoint ORDER BY ep_id"))
        return false;
    while (query.next()) {
        const QString plugin = query.value(0).toString();
        QString text = query.value(1).toString();
        if (!query.value(2).toString().isEmpty())
            text += QObject::tr(" \"%1\"").arg(query.value(2).toString());
        if (!query.value(3).toString().isEmpty())
            text += QStringLiteral(": ") + query.value(3).toString();
        if (!rows.contains(plugin))
            strays << plugin;
        rows[plugin].points << text;
    }

    if (!run("SELECT ed_plugin, ed_point, ed_extPlugin, ed_data FROM tbl_extdata ORDER BY ed_id"))
        return false;
    while (query.next()) {
        const QString plugin = query.value(0).toString();
        if (!rows.contains(plugin))
            strays << plugin;
        rows[plugin].data << QObject::tr("%1 of %2: %3")
                                     .arg(query.value(1).toString(), query.value(2).toString(),
                                          shortened(query.value(3).toString()));
    }
    strays.removeDuplicates();
    order << strays;

    if (order.isEmpty())
        out << "  " << QObject::tr("(empty: no extension file has been stored)") << '\n';
    for (const QString &symbolic : qAsConst(order)) {
        const PluginRow &row = rows[symbolic];
        out << "  " << symbolic << '\n';
        if (strays.contains(symbolic)) {
            out << "    " << QObject::tr("not in tbl_plugin: no extension file of it is recorded") << '\n';
        } else {
            out << "    " << QObject::tr("file:   %1").arg(row.filepath) << '\n';
            out << "    " << QObject::tr("digest: %1").arg(row.digest) << '\n';
        }
        if (row.points.isEmpty())
            out << "    " << QObject::tr("points: none") << '\n';
        for (const QString &point : row.points)
            out << "    " << QObject::tr("point:  %1").arg(point) << '\n';
        if (row.data.isEmpty())
            out << "    " << QObject::tr("data:   none") << '\n';
        for (const QString &data : row.data)
            out << "    " << QObject::tr("data:   %1").arg(data) << '\n';
    }
    return true;
}

} // namespace

ExtensionListing::ExtensionListing(const QString &storeFile)
    : m_storeFile(storeFile)
{ }

bool ExtensionListing::write(QTextStream &out) const
{
    if (m_storeFile.isEmpty()) {
        out << QObject::tr("Extensions: no configuration directory chosen, so no extension.dat to read") << '\n';
        return false;
    }
    // SQLite would create a missing file; a store that is not there is only reported.
    if (!QFileInfo(m_storeFile).isFile()) {
        out << QObject::tr("Extensions: there is no extension.dat at %1").arg(m_storeFile) << '\n';
        return false;
    }

    out << QObject::tr("Extensions in %1 (opened read-only):").arg(m_storeFile) << '\n';
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QLatin1String(connectionName));
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        db.setDatabaseName(m_storeFile);
        if (!db.open()) {
            out << "  " << QObject::tr("cannot open it: %1").arg(db.lastError().text()) << '\n';
        } else {
            ok = list(db, out);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(QLatin1String(connectionName));
    return ok;
}
