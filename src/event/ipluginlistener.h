// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IPLUGINLISTENER_H
#define EXTENSIONSYSTEM_IPLUGINLISTENER_H

#include <event/ilistener.h>
#include <event/pluginevent.h>

namespace ExtensionSystem {

class EXTENSIONSYSTEM_EXPORT IPluginListener : public IListener
{
public:
    IPluginListener();
    ~IPluginListener() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    virtual void pluginChanged(const PluginEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
