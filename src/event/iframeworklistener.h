// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IFRAMEWORKLISTENER_H
#define EXTENSIONSYSTEM_IFRAMEWORKLISTENER_H

#include "ilistener.h"
#include "frameworkevent.h"

namespace ExtensionSystem {

/*!
    A listener for framework events (type number 1): changes of the framework's
    state.

    Implement frameworkChanged() and register the object with
    PluginContext::registerFrameworkListener(). The plug-in keeps ownership: the
    framework stores only the pointer, so call PluginContext::unregisterlistener()
    before the listener is destroyed.
    \sa FrameworkEvent
*/
class EXTENSIONSYSTEM_EXPORT IFrameworkListener : public IListener
{
public:
    /*! Creates a listener of type 1, framework events. */
    IFrameworkListener();
    /*! Destroys the listener; it must have been unregistered before. */
    ~IFrameworkListener() override;

    /*! Wraps \a data in a FrameworkEvent and calls frameworkChanged() with it. */
    void event(const QSharedDataPointer<EventData> &data) override;
    /*!
        Called for every published framework event, synchronously on the
        publisher's thread, newest subscription first. \a event shares the
        publisher's record.
    */
    virtual void frameworkChanged(const FrameworkEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
