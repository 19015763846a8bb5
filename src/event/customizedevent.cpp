// SPDX-License-Identifier: BSD-3-Clause
#include "customizedevent.h"

namespace ExtensionSystem {

CustomizedEvent::CustomizedEvent(int type)
    : d(new EventData(type))
{ }

CustomizedEvent::CustomizedEvent(const QSharedDataPointer<EventData> &data)
    : d(data)
{ }

CustomizedEvent::CustomizedEvent(const CustomizedEvent &other) = default;

CustomizedEvent::~CustomizedEvent() = default;

CustomizedEvent &CustomizedEvent::operator=(const CustomizedEvent &other) = default;

QSharedDataPointer<EventData> CustomizedEvent::sharedData() const
{
    return d;
}

} // namespace ExtensionSystem
