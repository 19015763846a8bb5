#include "exttype.h"

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

} // namespace ExtType
} // namespace ExtensionSystem
