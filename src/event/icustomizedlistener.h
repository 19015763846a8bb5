// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ICUSTOMIZEDLISTENER_H
#define EXTENSIONSYSTEM_ICUSTOMIZEDLISTENER_H

#include "ilistener.h"
#include "customizedevent.h"

namespace ExtensionSystem {

/*!
    A listener for the customized events of one type number, which plug-ins
    publish with PluginContext::publishCustomizedEvent().

    Implement customizedChanged() and register the object with
    PluginContext::registerCustomizedListener(). The plug-in keeps ownership: the
    framework stores only the pointer, so call PluginContext::unregisterlistener()
    before the listener is destroyed.
    \sa CustomizedEvent
*/
class EXTENSIONSYSTEM_EXPORT ICustomizedListener : public IListener
{
public:
    /*!
        Creates a listener for the events of the type number \a type. A listener
        of type 0 is silently refused when it is registered; a type from 1 to 4
        also receives the framework's own events of that type, whose values are
        reachable only through CustomizedEvent::sharedData().
    */
    explicit ICustomizedListener(int type);
    /*! Destroys the listener; it must have been unregistered before. */
    ~ICustomizedListener() override;

    /*! Wraps \a data in a CustomizedEvent and calls customizedChanged() with it. */
    void event(const QSharedDataPointer<EventData> &data) override;
    /*!
        Called for every published event of this listener's type, synchronously
        on the publisher's thread, newest subscription first. \a event shares the
        publisher's record.
    */
    virtual void customizedChanged(const CustomizedEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
