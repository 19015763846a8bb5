// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IFRAMEWORKLISTENER_H
#define EXTENSIONSYSTEM_IFRAMEWORKLISTENER_H

#include <event/ilistener.h>
#include <event/frameworkevent.h>

namespace ExtensionSystem {

class EXTENSIONSYSTEM_EXPORT IFrameworkListener : public IListener
{
public:
    IFrameworkListener();
    ~IFrameworkListener() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    virtual void frameworkChanged(const FrameworkEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
