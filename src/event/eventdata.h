// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EVENTDATA_H
#define EXTENSIONSYSTEM_EVENTDATA_H

#include "../extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSharedData>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

/*!
    The record behind every event: values by key, and the role numbers of the
    event class that built it mapped to those keys.

    The event manager only ever handles this record; typed views (FrameworkEvent,
    PluginEvent, ServiceEvent, ExtensionEvent, CustomizedEvent) are rebuilt from
    it by the receiver. It is implicitly shared through QSharedDataPointer with an
    atomic reference count: copies of an event share one record, and the record is
    freed with the last pointer to it. The typed setData() functions detach first,
    so a change made by one holder is not seen by the others.
*/
class EXTENSIONSYSTEM_EXPORT EventData : public QSharedData
{
public:
    /*! Creates an empty record of type 0, with no values and no roles. */
    EventData();
    /*! Creates an empty record with the event type number \a type. */
    explicit EventData(int type);
    /*!
        Copies the type, the values and the roles of \a other; used when a shared
        pointer detaches. The new record has its own reference count.
    */
    EventData(const EventData &other);
    /*! Destroys the record. */
    ~EventData();

    /*!
        The event type number, which routes the event: 1 framework, 2 plug-in,
        3 service, 4 extension, any other a customized event.
    */
    int type;
    /*! The event's values by property key, such as "event.plugin.symbolic". */
    QHash<QString, QVariant> data;
    /*!
        The role numbers of the event class that built the record, mapped to their
        property keys. A role that is not mapped can be neither read nor set.
    */
    QMap<int, QString> roles;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EVENTDATA_H
