// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EVENTDATA_P_H
#define EXTENSIONSYSTEM_EVENTDATA_P_H

#include "eventdata.h"

#include <QtCore/QSharedDataPointer>

namespace ExtensionSystem {
namespace Internal {

// The role access that the typed event views have in common.
QVariant eventValue(const QSharedDataPointer<EventData> &d, int role);
bool setEventValue(QSharedDataPointer<EventData> &d, int role, const QVariant &value);

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTDATA_P_H
