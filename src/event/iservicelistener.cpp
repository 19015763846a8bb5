// SPDX-License-Identifier: BSD-3-Clause
#include "iservicelistener.h"

namespace ExtensionSystem {

IServiceListener::IServiceListener()
    : IListener(3)
{ }

IServiceListener::~IServiceListener() = default;

void IServiceListener::event(const QSharedDataPointer<EventData> &data)
{
    serviceChanged(ServiceEvent(data));
}

} // namespace ExtensionSystem
