// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ISERVICEFACTORY_H
#define EXTENSIONSYSTEM_ISERVICEFACTORY_H

#include "../extensionsystem_global.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

class PluginContext;

/*!
    A service object that makes the objects its consumers get, instead of being
    handed out itself.

    A factory is a QObject that declares
    \code
    Q_INTERFACES(ExtensionSystem::IServiceFactory)
    \endcode
    so that PluginContext::getService() finds it, and, to be filed as a factory
    when it is registered (which lets it register under class names it does not
    implement and sets "service.isfactory"), names this interface unqualified in
    its list of base classes (`public IServiceFactory`). The two tests are
    separate: an object can pass one and not the other.

    Ownership: the factory object itself is an ordinary service object, owned by
    the plug-in that registers it. The objects createService() makes are owned by
    the factory or by the consumer, never by the framework: it keeps their
    pointers to hand them out again, forgets them on
    PluginContext::ungetService(), and never deletes them nor tells the factory.
    Deciding when to delete them is up to the factory and its consumers.
*/
class EXTENSIONSYSTEM_EXPORT IServiceFactory
{
public:
    /*! Destroys the factory; the objects it made are not deleted by this. */
    virtual ~IServiceFactory();

    /*!
        Returns whether each consumer plug-in shares one made object. The
        default returns \c true.

        With \c true, a plug-in's first PluginContext::getService() creates an
        object and its later calls return the same one, until the plug-in's first
        PluginContext::ungetService(), which forgets the object whatever the count
        of gets; the next get creates a new one. With \c false, every getService()
        creates a new object, and ungetService() forgets the object it is given,
        or all of the plug-in's objects when it ungets its last outstanding get or
        passes \c nullptr. Asked again on gets and ungets, so the answer should
        not change.
    */
    virtual bool sharedPerPlugin();
    /*!
        Makes the object that a consumer gets; called from
        PluginContext::getService(), on the calling thread.

        \a context is the consumer plug-in's context, not the factory's. The
        result, \c nullptr included, is handed to the consumer as is. It is owned
        by the factory or the consumer, never by the framework, which only keeps
        the pointer until the consumer ungets it.
    */
    virtual QObject *createService(PluginContext *context) = 0;
};

} // namespace ExtensionSystem

/*!
    The Qt interface identifier of IServiceFactory, "ExtensionSystem.IServiceFactory".

    Declared with Q_DECLARE_INTERFACE; PluginContext::getService() asks the
    service object's qt_metacast() for it to tell a factory.
*/
#define ExtensionSystem_IServiceFactory_iid "ExtensionSystem.IServiceFactory"
Q_DECLARE_INTERFACE(ExtensionSystem::IServiceFactory, ExtensionSystem_IServiceFactory_iid)

#endif // EXTENSIONSYSTEM_ISERVICEFACTORY_H
