// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORK_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORK_H

#include "../extensionsystem_global.h"

#include "../event/pluginevent.h"
#include "../core/timeline.h"

#include <QtCore/QObject>

namespace ExtensionSystem {

namespace Internal {
class PluginFrameworkPrivate;
}

/*!
    \class ExtensionSystem::PluginFramework
    \brief The one object a host creates: init() installs the plug-ins below
    plugins/, start() starts them in dependency order, stop() stops them in
    reverse.

    The framework owns the configuration and the managers of plug-ins, events,
    services and extensions, as QObject children, and through the plug-in manager
    the plug-ins. It has no event loop of its own: it runs on the thread that
    created it, inside the host's Qt event loop, which it needs for deferred work
    (reading extension files, deleting plug-in objects, rescanning a watched
    directory). All calls must come from that thread.

    \code
    QCoreApplication app(argc, argv);
    ExtensionSystem::PluginFramework framework;
    framework.init();
    framework.start();
    return app.exec(); // quitting runs stop()
    \endcode

    State changes go out as FrameworkEvent to listeners and tracked receivers
    (see PluginContext); stateChanged() is never emitted. Failures stay with the
    component where they occur and leave by its own \c errorOccured() signal
    (PluginManager::errorOccured() for installing, starting and stopping); the
    framework neither collects them nor offers accessors for the managers.

    \sa PluginManager, PluginContext, PluginFrameworkConfig
*/
class EXTENSIONSYSTEM_EXPORT PluginFramework : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginFramework)
public:
    /*!
        The states of the framework, as state() returns them and FrameworkEvent
        carries them. The values look like bits but are used one at a time. The
        state records what was last asked for; it guards nothing.
    */
    enum State {
        FrameworkUninitialized = 0, ///< Constructed; init() not run, or failed.
        FrameworkInitializing = 1, ///< init() is installing the plug-ins.
        FrameworkInitialized = 2, ///< init() has finished, or stop() has.
        FrameworkStopping = 4, ///< stop() is stopping the plug-ins.
        FrameworkStarting = 8, ///< start() is starting the plug-ins.
        FrameworkStarted = 16 ///< start() has finished.
    };
    Q_ENUM(State)

    /*!
        The numbers of errorOccured() emitted by the framework itself.
    */
    enum Error {
        NoError = 0, ///< No error; the text is "No Error".
        PluginsDirMissingError = 1 ///< init() found no plug-ins directory: "The Plugins Directory not exists".
    };

    /*!
        Creates the framework with \a parent, and with it, as QObject children in
        this order, the configuration (which opens config.ini and creates the
        configuration directory), the plug-in, event, service and extension
        managers. Nothing is installed yet.

        A QCoreApplication must exist: the constructor connects its
        QCoreApplication::aboutToQuit() signal to stop().
    */
    explicit PluginFramework(QObject *parent = nullptr);
    /*!
        Runs the stop sequence of stop() in any state, then destroys the managers
        and the plug-in objects. Listeners see the state go to FrameworkStopping
        and back to FrameworkInitialized, stopped() is emitted, and each plug-in
        that is not active gives the plug-in manager's error 8.
    */
    ~PluginFramework() override;

    /*!
        Returns the current state, a value of State. init() called again after
        start() moves it back to FrameworkInitialized.
    */
    int state() const;
    /*!
        Returns the error number kept in the framework's shared context. Nothing
        in the system sets it, so it stays 0 (NoError) for the life of the object,
        even after a failed init(): that failure shows only through
        errorOccured().
    */
    int error() const;
    /*!
        Returns the text that goes with error(): "No Error" for the life of the
        object.
    */
    QString errorString() const;
    /*!
        Returns the config.ini setting "PluginManager/loadEnabledPluginOnly",
        false by default: when true, only plug-ins whose startup policy is
        PluginFrameworkConfig::PolicyEnable are installed. Read from the file at
        each call.
    */
    bool loadEnabledPluginOnly() const;
    /*!
        Returns the config.ini setting "PluginManager/watchPluginsDirectory", true
        by default: whether the plug-ins directory is watched for new plug-ins.
        Read from the file at each call.
    */
    bool watchingPluginDirEnabled() const;
    /*!
        Emits errorOccured() with \a error and \a errorString, and does nothing
        else: error() and errorString() do not change. Called through the
        framework's internal context; hosts have no need to call it.
    */
    void handleError(int error, const QString &errorString);

    /*!
        Returns what the framework has recorded so far: when each phase of each
        plug-in (library load, metadata, load queue, activator start and stop),
        of each extension file (digest, parse, store write, dispatch or store
        read) and of init(), start() and stop() began and ended. Recording is on
        from construction and costs little; the entries stay for the life of the
        framework.

        \sa Timeline::writeTrace(), Timeline::profileTable(), setTimelineRecording()
    */
    Timeline timeline() const;
    /*!
        Returns whether phases are being recorded; true unless
        setTimelineRecording() turned it off.
    */
    bool isTimelineRecording() const;
    /*!
        Turns the recording of phases on or off, from now on: what is recorded
        stays. Off, the framework's only cost is one check per phase; meant for
        measuring what recording costs.
    */
    void setTimelineRecording(bool on);

    /*!
        Keeps, with \a on (the default), or does not keep the start journal:
        the record in "config/<program>/" of the plug-in code the process runs,
        from which the next init() learns where this process died. Off, a death
        in a plug-in's code in this run quarantines nothing and is not told to
        the next; the quarantine list and the journals of earlier runs are still
        read. Meant for measuring what the journal costs; call it before
        init(), which begins the journal.

        \since 1.1
    */
    void setStartJournalEnabled(bool on);
    /*!
        Returns whether this framework keeps the start journal; true unless
        setStartJournalEnabled() turned it off.

        \since 1.1
    */
    bool isStartJournalEnabled() const;

    /*!
        Turns the hang watchdog on with a threshold of \a msecs, or off with 0.
        While it runs, a phase of a plug-in's own code (its library load, root
        object, translation, start(), stop(), or a handler's active()) that has
        not returned after \a msecs is reported by one debug line from a thread
        of the watchdog's own, naming the plug-in, the phase and the time so
        far, and again each time \a msecs more have passed; the start journal
        notes it, so that if the user ends the hung process, the quarantine
        record of the next start says "did not return within N s". A negative
        value goes back to config.ini's "PluginManager/hangWatchdogSeconds".
        Off unless turned on here or there. Call it before or after init().

        \since 1.1
        \sa PluginManager::quarantinedPlugins()
    */
    void setHangWatchdog(int msecs);
    /*!
        Returns the hang watchdog's threshold in milliseconds as it is in force
        (set by setHangWatchdog() or read from config.ini), 0 when it is off.

        \since 1.1
    */
    int hangWatchdog() const;

public slots:
    /*!
        Installs the plug-ins: writes the configuration to debug output
        ("Framework Configure:"), subscribes pluginChanged() to plug-in events,
        moves to FrameworkInitializing, scans PluginFrameworkConfig::pluginsDir()
        as PluginManager::install(QDir) does, emits initialized() and moves to
        FrameworkInitialized. Nothing is started; the extension files found are
        read later, from the event loop.

        If the plug-ins directory is missing, it emits errorOccured() with 1
        (PluginsDirMissingError) and "The Plugins Directory not exists" and
        returns: the state stays, initialized() is not emitted.

        It runs in any state: a second call scans again (new plug-ins only) and
        moves the state through 1 to 2. It also connects
        QCoreApplication::aboutToQuit() to stop() a second time, so after init()
        quitting runs stop() twice.
    */
    void init();
    /*!
        Moves to FrameworkStarting, starts every resolved plug-in in load-queue
        order (PluginManager::start()), emits started() and moves to
        FrameworkStarted. Synchronous, in any state; a plug-in that fails to start
        stops nothing, and started() is emitted all the same.
    */
    void start();
    /*!
        Moves to FrameworkStopping, stops every plug-in in reverse load-queue
        order (PluginManager::stop()), emits stopped() and moves to
        FrameworkInitialized. Synchronous, in any state; it also runs from the
        destructor and on QCoreApplication::aboutToQuit(). Each plug-in that is
        not active gives the plug-in manager's error 8.
    */
    void stop();
    /*!
        Runs stop() if the state is FrameworkStopping, FrameworkStarting or
        FrameworkStarted, and does nothing otherwise.
    */
    void exit();
    /*!
        Installs the single library file \a libpath as
        PluginManager::install(QFileInfo) does, in any state, also before init():
        it is resolved if its dependencies are there, but not started, and its
        "extension.xml" is not announced. Failures go out by
        PluginManager::errorOccured().
    */
    void installPlugin(QString libpath);
    /*!
        Writes \a on to config.ini as "PluginManager/loadEnabledPluginOnly" and
        syncs the file. It counts at the next installation; installed plug-ins
        are not touched.

        \sa loadEnabledPluginOnly()
    */
    void setLoadEnabledPluginOnly(bool on);
    /*!
        Turns the watching of the plug-ins directory on or off and writes \a on
        to config.ini, as PluginManager::setWatchingPluginDirEnable() does.

        \sa watchingPluginDirEnabled()
    */
    void setWatchingPluginDirEnable(bool on);

signals:
    /*!
        Emitted with \a error 1 and \a errorString "The Plugins Directory not
        exists" when init() finds no plug-ins directory, and by handleError().
        Failures of the managers and plug-ins go out by their own signals.
    */
    void errorOccured(int error, QString errorString);
    /*!
        Declared and never emitted: state changes go out as FrameworkEvent only,
        to listeners registered with PluginContext::registerFrameworkListener()
        and receivers tracked with PluginContext::trackFrameworkEvent().
    */
    void stateChanged(int state);
    /*!
        Emitted by init() after the plug-ins directory has been scanned, just
        before the state becomes FrameworkInitialized.
    */
    void initialized();
    /*!
        Emitted by start() after the plug-ins have been started, just before the
        state becomes FrameworkStarted.
    */
    void started();
    /*!
        Emitted by stop(), and so by the destructor, after the plug-ins have been
        stopped, just before the state becomes FrameworkInitialized.
    */
    void stopped();
    /*!
        Emitted with \a event for every state change of every plug-in once init()
        has found the plug-ins directory, synchronously inside the change.
    */
    void pluginChanged(PluginEvent event);
    /*!
        Emitted once per scan of the plug-ins directory (init(), a call to
        PluginManager::install(QDir), or a rescan of the watched directory) when
        every extension file the scan announced has been parsed or read from the
        store and handed to the registered extension points; also when the scan
        found no extension file, with three empty lists. It comes from the event
        loop, after the last dispatch.

        \a parsedFiles were new or changed and have been parsed, stored and
        dispatched; \a storedFiles were unchanged (or gone), and their rows came
        from extension.dat; \a failedFiles could not be parsed and handed out
        nothing. The paths are those of the announcements.

        A host that starts its plug-ins after this signal lets their points see
        the extension files of this run, edits included:

        \code
        QEventLoop loop;
        QObject::connect(&framework, &PluginFramework::extensionFilesReady, &loop, &QEventLoop::quit);
        framework.init();
        if (framework.state() == PluginFramework::FrameworkInitialized)
            loop.exec();
        framework.start();
        \endcode
    */
    void extensionFilesReady(QStringList parsedFiles, QStringList storedFiles, QStringList failedFiles);

private:
    Q_DISABLE_COPY(PluginFramework)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORK_H
