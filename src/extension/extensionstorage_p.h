// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H
#define EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H

#include "extensionstorage.h"

#include <QtCore/QSet>
#include <QtCore/private/qobject_p.h>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlRecord>

namespace ExtensionSystem {
namespace Internal {

class ExtensionStoragePrivate : public QObjectPrivate
{
    Q_DECLARE_PUBLIC(ExtensionStorage)

public:
    void initialize();
    QString unusableBecause();
    void healIfUnusable();
    bool open();
    int execute(const QString &sql);
    int query(const QString &sql, QList<QSqlRecord> &records);
    void createIndexes();
    const QString &activeList();
    void activeChanged();

    QSqlDatabase db;
    QStringList activePlugins;
    // The names of activePlugins again, for the membership test that every
    // plug-in event makes; the list keeps the order the queries are built in.
    QSet<QString> activeSet;
    // activePlugins joined as the queries quote it, made again only after the
    // list changed: with a thousand plug-ins it is a text of some 20 KB that
    // every read would otherwise build anew.
    QString activeJoined;
    bool activeJoinedValid = false;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H
