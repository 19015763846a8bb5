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

// Every listener reads the values it wants through these, and every plug-in
// state change builds a record: look the key up in place rather than copy it.
QVariant eventValue(const QSharedDataPointer<EventData> &d, int role)
{
    const auto key = d->roles.constFind(role);
    if (key == d->roles.cend() || key->isEmpty())
        return QVariant();
    return d->data.value(*key);
}

bool setEventValue(QSharedDataPointer<EventData> &d, int role, const QVariant &value)
{
    d.detach();
    const auto key = d->roles.constFind(role);
    if (key == d->roles.cend() || key->isEmpty())
        return false;
    d->data.insert(*key, value);
    return true;
}

void putEventValue(EventData *d, int role, QVariant &&value)
{
    const auto key = d->roles.constFind(role);
    if (key != d->roles.cend() && !key->isEmpty())
        d->data[*key] = std::move(value);
}

} // namespace Internal
} // namespace ExtensionSystem
