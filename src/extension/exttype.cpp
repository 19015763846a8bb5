// SPDX-License-Identifier: BSD-3-Clause
#include "exttype.h"

#include <core/metatype_p.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariantHash>

namespace ExtensionSystem {
namespace ExtType {

void registerMetaTypes()
{
    // The full names come from Q_DECLARE_METATYPE; the short ones are how the
    // signals and slots of the extension classes spell the types.
    using Internal::registerMetaType;
    registerMetaType<PointList>();
    registerMetaType<DataList>();
    registerMetaType<Plugin>();

    registerMetaType<QList<QVariantHash>>("QVariantHashList");
    registerMetaType<PointList>("ExtType::PointList");
    registerMetaType<DataList>("ExtType::DataList");
    registerMetaType<Plugin>("ExtType::Plugin");
}

Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

QString storedPath(QString path)
{
    return path.remove(QCoreApplication::applicationDirPath(), Qt::CaseSensitive);
}

} // namespace ExtType
} // namespace ExtensionSystem
