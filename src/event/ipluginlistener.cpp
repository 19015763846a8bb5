// SPDX-License-Identifier: BSD-3-Clause
#include "ipluginlistener.h"

namespace ExtensionSystem {

IPluginListener::IPluginListener()
    : IListener(2)
{ }

IPluginListener::~IPluginListener() = default;

void IPluginListener::event(const QSharedDataPointer<EventData> &data)
{
    pluginChanged(PluginEvent(data));
}

} // namespace ExtensionSystem
