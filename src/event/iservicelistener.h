// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ISERVICELISTENER_H
#define EXTENSIONSYSTEM_ISERVICELISTENER_H

#include <event/ilistener.h>
#include <event/serviceevent.h>

namespace ExtensionSystem {

class EXTENSIONSYSTEM_EXPORT IServiceListener : public IListener
{
public:
    IServiceListener();
    ~IServiceListener() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    virtual void serviceChanged(const ServiceEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
