#ifndef EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H
#define EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H

#include "extensionstorage.h"

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
    bool open();
    int execute(const QString &sql);
    int query(const QString &sql, QList<QSqlRecord> &records);

    QSqlDatabase db;
    QStringList activePlugins;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONSTORAGE_P_H
