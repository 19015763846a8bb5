// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ISERVICELISTENER_H
#define EXTENSIONSYSTEM_ISERVICELISTENER_H

#include "ilistener.h"
#include "serviceevent.h"

namespace ExtensionSystem {

/*!
    A listener for service events (type number 3): services registered and about
    to be unregistered.

    Implement serviceChanged() and register the object with
    PluginContext::registerServiceListener(). The plug-in keeps ownership: the
    framework stores only the pointer, so call PluginContext::unregisterlistener()
    before the listener is destroyed.
    \sa ServiceEvent
*/
class EXTENSIONSYSTEM_EXPORT IServiceListener : public IListener
{
public:
    /*! Creates a listener of type 3, service events. */
    IServiceListener();
    /*! Destroys the listener; it must have been unregistered before. */
    ~IServiceListener() override;

    /*! Wraps \a data in a ServiceEvent and calls serviceChanged() with it. */
    void event(const QSharedDataPointer<EventData> &data) override;
    /*!
        Called for every published service event, synchronously on the
        publisher's thread inside the registering or unregistering call, newest
        subscription first. On ServiceEvent::Unregistering the service can still
        be found and got. \a event shares the publisher's record.
    */
    virtual void serviceChanged(const ServiceEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
