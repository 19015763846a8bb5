// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTTYPE_H
#define EXTENSIONSYSTEM_EXTTYPE_H

#include "../extensionsystem_global.h"

#include <QtCore/QList>
#include <QtCore/QMetaType>
#include <QtCore/QString>

namespace ExtensionSystem {

/*!
    \brief Plain value records of what one \c extension.xml holds, as read by the
    parse task.

    Each \c ExtPoint and \c ExtData element is kept whole as XML text in its
    record's \c data field; only the ExtensionPoint that receives the text looks
    inside. All attribute values are trimmed, and a missing attribute is an empty
    string. The records are copyable values with no shared state, which is how the
    parse result crosses from the pool thread to the main thread.
*/
namespace ExtType {

/*!
    One \c ExtPoint element of an extension file.

    Only elements with a non-empty \c id, in a file whose root has a non-empty
    \c id, become a record.
*/
struct Point
{
    QString id; ///< The element's "id" attribute: the point id.
    QString name; ///< The element's "name" attribute.
    QString plugin; ///< The root element's "id": the symbolic name of the declaring plug-in.
    QString description; ///< The element's "description" attribute.
    QString data; ///< The whole \c ExtPoint element as XML text.
};

/*!
    One \c ExtData element of an extension file: an extension contributed to a
    point.

    Only elements whose \c id, \c plugin and \c extPlugin are all non-empty
    become a record. The \c data text is what ExtensionPoint::parseExtensionText()
    later receives.
*/
struct Data
{
    QString point; ///< The element's "id" attribute: the id of the point extended.
    QString plugin; ///< The element's "plugin" attribute: the plug-in that supplies the extension.
    QString extPlugin; ///< The element's "extPlugin" attribute: the plug-in that declares the point.
    QString data; ///< The whole \c ExtData element as XML text.
};

/// The \c ExtPoint records of one file, in document order.
typedef QList<Point> PointList;
/// The \c ExtData records of one file, in document order.
typedef QList<Data> DataList;

/*!
    Everything read from one extension file, as the parse task hands it on.

    The record is passed by value through a queued signal from the thread pool to
    the main thread, where the extension store writes it and the registered points
    receive its \c ExtData texts.
*/
struct Plugin
{
    QString symbolic; ///< The root element's "id": the symbolic name of the declaring plug-in; may be empty.
    QString filepath; ///< The file's path with the application directory removed (see storedPath()).
    /*!
        The file's digest as 40 lower-case hexadecimal digits. Despite the name it
        is an SHA-1 over the file's directory (application directory removed), its
        size and its modification time, not over its content.
    */
    QString md5;
    PointList points; ///< The kept \c ExtPoint elements, in document order.
    DataList data; ///< The kept \c ExtData elements, in document order.
};

/*!
    Registers PointList, DataList and Plugin with Qt's meta-type system, under
    their full names ("ExtensionSystem::ExtType::PointList", ...) and under the
    short names "ExtType::PointList", "ExtType::DataList" and "ExtType::Plugin",
    together with a list of \c QVariantHash as "QVariantHashList".

    This lets the records cross queued connections declared with either spelling;
    the parse result comes back from the pool thread that way. It runs once
    automatically when the library is loaded; calling it again is harmless.
*/
EXTENSIONSYSTEM_EXPORT void registerMetaTypes();

/*!
    Returns \a path as the extension store keys it: with every occurrence of
    QCoreApplication::applicationDirPath() removed (case-sensitive).

    For a file below the application directory the result is relative to it and
    starts with a slash: the form of ExtType::Plugin::filepath and of the paths
    that extension.dat holds.
*/
EXTENSIONSYSTEM_EXPORT QString storedPath(QString path);

} // namespace ExtType
} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ExtType::PointList)
Q_DECLARE_METATYPE(ExtensionSystem::ExtType::DataList)
Q_DECLARE_METATYPE(ExtensionSystem::ExtType::Plugin)

#endif // EXTENSIONSYSTEM_EXTTYPE_H
