// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H
#define EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H

#include "extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>

namespace ExtensionSystem {

// An event of the plug-ins' own: only a type number, no roles and no data.
class EXTENSIONSYSTEM_EXPORT CustomizedEvent
{
public:
    explicit CustomizedEvent(int type = 0);
    CustomizedEvent(const QSharedDataPointer<EventData> &data);
    CustomizedEvent(const CustomizedEvent &other);
    ~CustomizedEvent();
    CustomizedEvent &operator=(const CustomizedEvent &other);

    QSharedDataPointer<EventData> sharedData() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::CustomizedEvent)

#endif // EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H
