// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IPLUGINLISTENER_H
#define EXTENSIONSYSTEM_IPLUGINLISTENER_H

#include "ilistener.h"
#include "pluginevent.h"

namespace ExtensionSystem {

/*!
    A listener for plug-in events (type number 2): changes of state of the
    plug-ins.

    Implement pluginChanged() and register the object with
    PluginContext::registerPluginListener(). The plug-in keeps ownership: the
    framework stores only the pointer, so call PluginContext::unregisterlistener()
    before the listener is destroyed.
    \sa PluginEvent
*/
class EXTENSIONSYSTEM_EXPORT IPluginListener : public IListener
{
public:
    /*! Creates a listener of type 2, plug-in events. */
    IPluginListener();
    /*! Destroys the listener; it must have been unregistered before. */
    ~IPluginListener() override;

    /*! Wraps \a data in a PluginEvent and calls pluginChanged() with it. */
    void event(const QSharedDataPointer<EventData> &data) override;
    /*!
        Called for every published plug-in event, synchronously on the
        publisher's thread, newest subscription first. \a event shares the
        publisher's record.
    */
    virtual void pluginChanged(const PluginEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
