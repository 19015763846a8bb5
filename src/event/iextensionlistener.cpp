// SPDX-License-Identifier: BSD-3-Clause
#include "iextensionlistener.h"

namespace ExtensionSystem {

IExtensionListener::IExtensionListener()
    : IListener(4)
{ }

IExtensionListener::~IExtensionListener() = default;

void IExtensionListener::event(const QSharedDataPointer<EventData> &data)
{
    extensionChanged(ExtensionEvent(data));
}

} // namespace ExtensionSystem
