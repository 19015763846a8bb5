// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EVENTDATA_H
#define EXTENSIONSYSTEM_EVENTDATA_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSharedData>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

// The record behind every event: values by key, and the role numbers of the
// event class that built it mapped to those keys. The event manager only ever
// handles this record; typed views are rebuilt from it by the receiver.
class EXTENSIONSYSTEM_EXPORT EventData : public QSharedData
{
public:
    EventData();
    explicit EventData(int type);
    EventData(const EventData &other);
    ~EventData();

    int type;
    QHash<QString, QVariant> data;
    QMap<int, QString> roles;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTDATA_H
