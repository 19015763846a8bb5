// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_QTCOMPAT_P_H
#define EXTENSIONSYSTEM_QTCOMPAT_P_H

// The few places where Qt 5 and Qt 6 differ in what this library relies on. The
// library behaves as it does on Qt 5; each function gives that behaviour on both,
// so that no other file needs to ask which Qt it is built with.

#include <QtCore/QByteArray>
#include <QtCore/QDebug>
#include <QtCore/QStringList>
#include <QtCore/QString>
#include <QtCore/QTextStream>
#include <QtCore/QVariant>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#    include <QtCore/QStringView>
#else
#    include <QtCore/QStringRef>
#endif

namespace ExtensionSystem {
namespace Internal {
namespace QtCompat {

// A piece of a string, read in place (toInt() and the like) without a copy.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using StringPart = QStringView;
inline StringPart midPart(const QString &text, int position, int length = -1)
{
    return QStringView(text).mid(position, length);
}
#else
using StringPart = QStringRef;
inline StringPart midPart(const QString &text, int position, int length = -1)
{
    return text.midRef(position, length);
}
#endif

// Qt 5 decodes a byte array up to its first zero byte; Qt 6 decodes every byte.
// A zero byte ends the text here, as it did.
inline QString fromUtf8UpToNul(const char *data, int size)
{
    return QString::fromUtf8(data, int(qstrnlen(data, uint(size))));
}

inline QString fromUtf8UpToNul(const QByteArray &bytes)
{
    return fromUtf8UpToNul(bytes.constData(), bytes.size());
}

// Qt 5's text streams use the locale's encoding unless told; Qt 6's use UTF-8.
inline void useUtf8(QTextStream &stream)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    stream.setEncoding(QStringConverter::Utf8);
#else
    stream.setCodec("UTF-8");
#endif
}

// QVariant equality as Qt 5 has it: numbers compare as numbers; values of
// different types compare after the right one is converted to the left one's
// type or, where it cannot be, the left one to the right one's. Qt 6 calls any
// two values of different non-numeric types unequal.
inline bool variantsEqual(const QVariant &left, const QVariant &right)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const auto isNumber = [](const QVariant &value) {
        switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::ULong:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Float:
        case QMetaType::Double:
            return true;
        default:
            return false;
        }
    };
    // Qt 6 compares two numbers as Qt 5 did; a number and a string it compares
    // as numbers too, where Qt 5 converted one to the other's type.
    if (left.metaType() == right.metaType() || (isNumber(left) && isNumber(right)))
        return left == right;
    QVariant target = left;
    QVariant converted = right;
    if (!converted.canConvert(target.metaType()))
        std::swap(target, converted);
    if (!converted.convert(target.metaType()))
        return false;
    return target == converted;
#else
    return left == right;
#endif
}

// A list as Qt 5 writes it to qDebug(), ("a", "b"); Qt 6 writes QList("a", "b").
// The debug lines that show a list write it through this.
struct DebugList
{
    const QStringList &items;
};

inline QDebug operator<<(QDebug debug, DebugList list)
{
    const bool spaces = debug.autoInsertSpaces();
    debug.nospace() << '(';
    for (int i = 0; i < list.items.size(); ++i) {
        if (i > 0)
            debug << ", ";
        debug << list.items.at(i);
    }
    debug << ')';
    debug.setAutoInsertSpaces(spaces);
    return debug.maybeSpace();
}

// The id of a type registered under the given name, or QMetaType::UnknownType.
inline int metaTypeIdByName(const QByteArray &name)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::fromName(name).id();
#else
    return QMetaType::type(name);
#endif
}

} // namespace QtCompat
} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_QTCOMPAT_P_H
