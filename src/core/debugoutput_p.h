// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_DEBUGOUTPUT_P_H
#define EXTENSIONSYSTEM_DEBUGOUTPUT_P_H

#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>

namespace ExtensionSystem {
namespace Internal {

// Whether qDebug() output of the "default" category is shown. qDebug() builds
// its whole text before Qt looks at the logging rules and drops it; the lines
// written for every plug-in and every event are therefore built only when this
// is true, which is the very test Qt makes before it prints (a missing
// category, late at exit, counts as shown, as it does for Qt).
inline bool debugOutputEnabled()
{
    const QLoggingCategory *category = QLoggingCategory::defaultCategory();
    return !category || category->isDebugEnabled();
}

} // namespace Internal
} // namespace ExtensionSystem

// qDebug() for every debug line of the library, skipped, text and all, when
// debug output is off: what is printed stays the same, and nothing is built
// for a line nobody sees.
#define ES_DEBUG_IF_SHOWN()                                                                                            \
    if (!ExtensionSystem::Internal::debugOutputEnabled()) {                                                            \
    } else                                                                                                             \
        qDebug()

#endif // EXTENSIONSYSTEM_DEBUGOUTPUT_P_H
