#include "icustomizedlistener.h"

namespace ExtensionSystem {

ICustomizedListener::ICustomizedListener(int type)
    : IListener(type)
{
}

ICustomizedListener::~ICustomizedListener()
{
}

void ICustomizedListener::event(const QSharedDataPointer<EventData> &data)
{
    customizedChanged(CustomizedEvent(data));
}

} // namespace ExtensionSystem
