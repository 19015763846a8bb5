// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H
#define EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H

#include "../extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>

namespace ExtensionSystem {

/*!
    An event of the plug-ins' own: only a type number, no roles and no data.

    A plug-in publishes it with PluginContext::publishCustomizedEvent(); it reaches
    the ICustomizedListener objects registered for the same type number,
    synchronously. Receivers tracked with PluginContext::trackCustomizedEvent()
    for such a number are never called. The type number is not checked: a
    CustomizedEvent with a number from 1 to 4 is routed as a framework, plug-in,
    service or extension event and reads as an empty event of that class.

    A value class: copies share one EventData record.
    \sa ICustomizedListener
*/
class EXTENSIONSYSTEM_EXPORT CustomizedEvent
{
public:
    /*!
        Creates an event with the type number \a type and nothing else. Pick a
        number other than 0 to 4: listeners of type 0 are never registered, and
        1 to 4 are the framework's own event types.
    */
    explicit CustomizedEvent(int type = 0);
    /*!
        Creates a view that shares the record \a data, whatever its type; used by
        ICustomizedListener to rebuild the event it receives.
    */
    CustomizedEvent(const QSharedDataPointer<EventData> &data);
    /*! Creates a copy that shares the record of \a other. */
    CustomizedEvent(const CustomizedEvent &other);
    /*! Releases this view's share of the record. */
    ~CustomizedEvent();
    /*! Makes this event share the record of \a other. */
    CustomizedEvent &operator=(const CustomizedEvent &other);

    /*! Returns the shared record behind the event, which carries its type number. */
    QSharedDataPointer<EventData> sharedData() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::CustomizedEvent)

#endif // EXTENSIONSYSTEM_CUSTOMIZEDEVENT_H
