#include "iservicelistener.h"

namespace ExtensionSystem {

IServiceListener::IServiceListener()
    : IListener(3)
{
}

IServiceListener::~IServiceListener()
{
}

void IServiceListener::event(const QSharedDataPointer<EventData> &data)
{
    serviceChanged(ServiceEvent(data));
}

} // namespace ExtensionSystem
