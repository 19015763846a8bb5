// SPDX-License-Identifier: BSD-3-Clause
#include "iframeworklistener.h"

namespace ExtensionSystem {

IFrameworkListener::IFrameworkListener()
    : IListener(1)
{ }

IFrameworkListener::~IFrameworkListener() = default;

void IFrameworkListener::event(const QSharedDataPointer<EventData> &data)
{
    frameworkChanged(FrameworkEvent(data));
}

} // namespace ExtensionSystem
