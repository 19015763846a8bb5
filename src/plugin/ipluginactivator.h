// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_IPLUGINACTIVATOR_H
#define EXTENSIONSYSTEM_IPLUGINACTIVATOR_H

#include "../extensionsystem_global.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

class PluginContext;

/*!
    \class ExtensionSystem::IPluginActivator
    \brief The interface that the root object of every plug-in library
    implements: the framework calls start() and stop() on it.

    The root object is a QObject that declares the interface and the plug-in
    identifier:

    \code
    class Activator : public QObject, public ExtensionSystem::IPluginActivator
    {
        Q_OBJECT
        Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
        Q_INTERFACES(ExtensionSystem::IPluginActivator)
    public:
        void start(ExtensionSystem::PluginContext *context) override;
        void stop(ExtensionSystem::PluginContext *context) override;
    };
    \endcode

    The library also carries its META.INF as a resource (see PluginMetaData).
    The root object is made and owned by Qt's plug-in loader; the library is never
    unloaded, so the same object serves every start() and stop(). A root object
    that does not implement this interface cannot start: the plug-in stays
    resolved (see PluginProblem::NoActivator).

    Both functions run synchronously on the framework's thread, with nothing
    guarding them: an exception leaves the plug-in starting or stopping, and a
    call that hangs hangs the framework.
*/
class IPluginActivator
{
public:
    /*!
        Destroys the activator. The framework never deletes it: the root object
        lives until the process ends.
    */
    virtual ~IPluginActivator() { }
    /*!
        Starts the plug-in: called when it goes from resolved to active, after the
        plug-ins it depends on were started and its translation, if any, was installed
        ("languages/\<locale\>.qm" beside the library). \a context is the plug-in's
        door into the system; it is owned by the framework and stays valid until
        the plug-in is uninstalled. Register services, extension points, handlers
        and listeners here.

        Calling PluginContext::stopPlugin() for this plug-in from here fails,
        since it is still starting.
    */
    virtual void start(PluginContext *context) = 0;
    /*!
        Stops the plug-in: called when it goes from active back to resolved, after
        the plug-ins that depend on it have stopped. \a context is the same
        object as in start(). Withdraw here what start() registered: the
        framework removes none of it, services, listeners, subscriptions,
        extension points and handlers alike. The plug-in may be started again
        later.
    */
    virtual void stop(PluginContext *context) = 0;
};

} // namespace ExtensionSystem

/*!
    The Qt interface identifier of IPluginActivator,
    "extensionsystem.ipluginactivator/1.0": the IID a plug-in names in
    Q_PLUGIN_METADATA, and the one the framework casts the root object with.
*/
#define ExtensionSystem_IPluginActivator_iid "extensionsystem.ipluginactivator/1.0"
Q_DECLARE_INTERFACE(ExtensionSystem::IPluginActivator, ExtensionSystem_IPluginActivator_iid)

#endif // EXTENSIONSYSTEM_IPLUGINACTIVATOR_H
