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
// For a constructor filling its own new record: the value is moved into its
// slot, no detach, no copy. Does nothing for a role the record does not map.
void putEventValue(EventData *d, int role, QVariant &&value);

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTDATA_P_H
