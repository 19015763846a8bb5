// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTTYPE_H
#define EXTENSIONSYSTEM_EXTTYPE_H

#include "extensionsystem_global.h"

#include <QtCore/QList>
#include <QtCore/QMetaType>
#include <QtCore/QString>

namespace ExtensionSystem {

// What one extension.xml holds, as read by the parse task. Each element is kept
// whole as XML text in `data`; only the point that receives it looks inside.
namespace ExtType {

struct Point
{
    QString id;
    QString name;
    QString plugin;
    QString description;
    QString data;
};

struct Data
{
    QString point;
    QString plugin;
    QString extPlugin;
    QString data;
};

typedef QList<Point> PointList;
typedef QList<Data> DataList;

struct Plugin
{
    QString symbolic;
    QString filepath;
    QString md5;
    PointList points;
    DataList data;
};

// Registers the records under their full and their short names, so that they cross
// queued connections declared either way: the parse result comes back from the
// pool thread so. Done once when the library is loaded; safe to call again.
EXTENSIONSYSTEM_EXPORT void registerMetaTypes();

// A file's path as the extension store keys it: with the application directory
// taken out wherever it occurs.
QString storedPath(QString path);

} // namespace ExtType
} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ExtType::PointList)
Q_DECLARE_METATYPE(ExtensionSystem::ExtType::DataList)
Q_DECLARE_METATYPE(ExtensionSystem::ExtType::Plugin)

#endif // EXTENSIONSYSTEM_EXTTYPE_H
