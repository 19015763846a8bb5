// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_P_H
#define EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_P_H

#include "extensionfileparsetask.h"

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParseTaskPrivate : public QObjectPrivate
{
    Q_DECLARE_PUBLIC(ExtensionFileParseTask)

public:
    QString filepath;
    QSharedPointer<TimelineRecorder> timeline;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONFILEPARSETASK_P_H
