// SPDX-License-Identifier: BSD-3-Clause
#include "exttype.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVariantHash>

namespace ExtensionSystem {
namespace ExtType {

void registerMetaTypes()
{
    // The full names come from Q_DECLARE_METATYPE; the short ones are how the
    // signals and slots of the extension classes spell the types.
    qRegisterMetaType<PointList>();
    qRegisterMetaType<DataList>();
    qRegisterMetaType<Plugin>();

    qRegisterMetaType<QList<QVariantHash>>("QVariantHashList");
    qRegisterMetaType<PointList>("ExtType::PointList");
    qRegisterMetaType<DataList>("ExtType::DataList");
    qRegisterMetaType<Plugin>("ExtType::Plugin");
}

Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

QString storedPath(QString path)
{
    return path.remove(QCoreApplication::applicationDirPath(), Qt::CaseSensitive);
}

} // namespace ExtType
} // namespace ExtensionSystem
