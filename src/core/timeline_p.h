// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_TIMELINE_P_H
#define EXTENSIONSYSTEM_TIMELINE_P_H

#include "timeline.h"

#include <QtCore/QSharedData>

namespace ExtensionSystem {
namespace Internal {

class TimelinePrivate : public QSharedData
{
public:
    QVector<Timeline::Entry> entries;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_TIMELINE_P_H
