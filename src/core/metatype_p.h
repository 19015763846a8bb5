// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_METATYPE_P_H
#define EXTENSIONSYSTEM_METATYPE_P_H

#include <QtCore/QMetaType>

namespace ExtensionSystem {
namespace Internal {

// The one way the library registers a type with Qt's meta-type system: under
// name, as signals, slots and queued connections spell it, or without one under
// the name Q_DECLARE_METATYPE gives it. A registration compares the name with
// every type Qt knows, so a caller that runs often keeps the result in a
// function-local static and registers once per process.
template<typename T> int registerMetaType(const char *name = nullptr)
{
    return name ? qRegisterMetaType<T>(name) : qRegisterMetaType<T>();
}

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_METATYPE_P_H
