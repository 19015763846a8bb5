// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IEXTENSIONLISTENER_H
#define EXTENSIONSYSTEM_IEXTENSIONLISTENER_H

#include "ilistener.h"
#include "extensionevent.h"

namespace ExtensionSystem {

/*!
    A listener for extension events (type number 4): extension points registered
    and removed.

    Implement extensionChanged() and register the object with
    PluginContext::registerExtensionListener(). The plug-in keeps ownership: the
    framework stores only the pointer, so call PluginContext::unregisterlistener()
    before the listener is destroyed.
    \sa ExtensionEvent
*/
class EXTENSIONSYSTEM_EXPORT IExtensionListener : public IListener
{
public:
    /*! Creates a listener of type 4, extension events. */
    IExtensionListener();
    /*! Destroys the listener; it must have been unregistered before. */
    ~IExtensionListener() override;

    /*! Wraps \a data in an ExtensionEvent and calls extensionChanged() with it. */
    void event(const QSharedDataPointer<EventData> &data) override;
    /*!
        Called for every published extension event, synchronously on the
        publisher's thread, newest subscription first. \a event shares the
        publisher's record.
    */
    virtual void extensionChanged(const ExtensionEvent &event) = 0;
};

} // namespace ExtensionSystem

#endif
