// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ILISTENER_H
#define EXTENSIONSYSTEM_ILISTENER_H

#include "../extensionsystem_global.h"

#include "eventdata.h"

#include <QtCore/QObject>
#include <QtCore/QSharedDataPointer>

namespace ExtensionSystem {

class CleanupHelper;

/*!
    Base of every listener: it wants the events of one type number.

    The type number is fixed at construction: 1 framework, 2 plug-in, 3 service,
    4 extension events, any other number a customized event. Plug-ins do not
    derive from this class directly but from IFrameworkListener, IPluginListener,
    IServiceListener, IExtensionListener or ICustomizedListener, and register the
    object through the matching \c register...Listener() function of their
    PluginContext.

    Ownership: registering does not transfer ownership. The event manager keeps
    only the raw pointer; the registrant owns the listener, must keep it alive
    while it is registered and must call PluginContext::unregisterlistener()
    before destroying it. A listener registered that way has no cleanup helper, so
    destroying it while registered leaves a dangling pointer that the next event
    of its type is delivered to. Registering the same object twice changes
    nothing, and nothing is unregistered for a plug-in when it stops.

    \warning Listeners are called synchronously on the publisher's thread, newest
    subscription first. Do not destroy a listener during a delivery, not even
    after unregistering it: the delivery in progress still calls it.
    \sa CleanupHelper, PluginContext::unregisterlistener()
*/
class EXTENSIONSYSTEM_EXPORT IListener
{
public:
    /*!
        Creates a listener for events of the type number \a type, with no cleanup
        helper. A listener of type 0 is silently refused when it is registered.
    */
    explicit IListener(int type);
    /*!
        Destroys the listener. If a cleanup helper is set, it first calls
        CleanupHelper::cleanup() with this listener so that no table keeps the
        pointer; otherwise it does nothing, and the listener must have been
        unregistered before.
    */
    virtual ~IListener();

    /*!
        Receives one event; called by the event manager for every published event
        of this listener's type.

        \a data is the event's shared record; the typed listener interfaces turn
        it into their event class. The call is synchronous, on the publisher's
        thread, inside the publish call.
    */
    virtual void event(const QSharedDataPointer<EventData> &data) = 0;

    /*!
        Returns the event type number this listener wants, as given to the
        constructor.
    */
    int listenerType() const { return type; }
    /*!
        Returns the object told when this listener is destroyed, or \c nullptr if
        none is set (the case for every listener that a plug-in registers). The
        helper is not owned by the listener.
    */
    CleanupHelper *listenerCleanupHelper() const { return cleanupHelper; }
    /*!
        Sets the object that the destructor tells, replacing any earlier one;
        \c nullptr removes it. The listener does not take ownership of \a helper,
        which must outlive the listener or be removed first.
    */
    void setCleanupHelper(CleanupHelper *helper) { cleanupHelper = helper; }

protected:
    int type; ///< The event type number this listener wants; fixed at construction.
    CleanupHelper *cleanupHelper; ///< Told by the destructor when set; not owned; \c nullptr by default.

private:
    Q_DISABLE_COPY(IListener)
};

} // namespace ExtensionSystem

/*!
    The Qt interface identifier of IListener, "ExtensionSystem::IListener".

    Declared with Q_DECLARE_INTERFACE; a QObject that lists IListener in its
    Q_INTERFACES answers qt_metacast() with it.
*/
#define ExtensionSystem_IListener_iid "ExtensionSystem::IListener"
Q_DECLARE_INTERFACE(ExtensionSystem::IListener, ExtensionSystem_IListener_iid)

#endif // EXTENSIONSYSTEM_ILISTENER_H
