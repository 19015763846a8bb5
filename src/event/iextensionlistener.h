// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IEXTENSIONLISTENER_H
#define EXTENSIONSYSTEM_IEXTENSIONLISTENER_H

#include <event/ilistener.h>
#include <event/extensionevent.h>

namespace ExtensionSystem {

class EXTENSIONSYSTEM_EXPORT IExtensionListener : public IListener
{
public:
    IExtensionListener();
    ~IExtensionListener() override;

    void event(const QSharedDataPointer<EventData> &data) override;
    virtual void extensionChanged(const ExtensionEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
