// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_CLEANUPHELPER_H
#define EXTENSIONSYSTEM_CLEANUPHELPER_H

#include "../extensionsystem_global.h"

namespace ExtensionSystem {

class IListener;

/*!
    Told by a listener that is being destroyed, so that no table keeps its pointer.

    A listener calls cleanup() from its destructor when a helper has been set with
    IListener::setCleanupHelper(). The event manager implements this interface and
    sets itself as the helper of the internal objects it creates for tracked
    receivers; listeners that plug-ins register get no helper and must be
    unregistered explicitly. Neither side owns the other.
*/
class EXTENSIONSYSTEM_EXPORT CleanupHelper
{
public:
    /*! Destroys the helper. Listeners that still point to it are not told. */
    virtual ~CleanupHelper();
    /*!
        Forgets \a listener: removes every entry that holds the pointer.

        Called from the IListener destructor, so \a listener is already partly
        destroyed: only its address and IListener::listenerType() may be used. An
        implementation must accept \c nullptr and being called twice for the same
        listener.
    */
    virtual void cleanup(IListener *listener) = 0;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_CLEANUPHELPER_H
