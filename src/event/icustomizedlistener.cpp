// SPDX-License-Identifier: BSD-3-Clause
#include "icustomizedlistener.h"

namespace ExtensionSystem {

ICustomizedListener::ICustomizedListener(int type)
    : IListener(type)
{ }

ICustomizedListener::~ICustomizedListener() = default;

void ICustomizedListener::event(const QSharedDataPointer<EventData> &data)
{
    customizedChanged(CustomizedEvent(data));
}

} // namespace ExtensionSystem
