// SPDX-License-Identifier: BSD-3-Clause
#include "eventdata.h"
#include "eventdata_p.h"

namespace ExtensionSystem {

EventData::EventData()
    : type(0)
{ }

EventData::EventData(int type)
    : type(type)
{ }

EventData::EventData(const EventData &other)
    : QSharedData(other)
    , type(other.type)
    , data(other.data)
    , roles(other.roles)
{ }

EventData::~EventData() = default;

} // namespace ExtensionSystem

namespace ExtensionSystem {
namespace Internal {

QVariant eventValue(const QSharedDataPointer<EventData> &d, int role)
{
    const QString key = d->roles.value(role);
    if (key.isEmpty())
        return QVariant();
    return d->data.value(key);
}

bool setEventValue(QSharedDataPointer<EventData> &d, int role, const QVariant &value)
{
    d.detach();
    const QString key = d->roles.value(role);
    if (key.isEmpty())
        return false;
    d->data.insert(key, value);
    return true;
}

} // namespace Internal
} // namespace ExtensionSystem
