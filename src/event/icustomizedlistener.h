// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ICUSTOMIZEDLISTENER_H
#define EXTENSIONSYSTEM_ICUSTOMIZEDLISTENER_H

#include <event/ilistener.h>
#include <event/customizedevent.h>

namespace ExtensionSystem {

class EXTENSIONSYSTEM_EXPORT ICustomizedListener : public IListener
{
public:
    explicit ICustomizedListener(int type);
    ~ICustomizedListener() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    virtual void customizedChanged(const CustomizedEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
