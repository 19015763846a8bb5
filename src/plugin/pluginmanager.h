// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINMANAGER_H
#define EXTENSIONSYSTEM_PLUGINMANAGER_H

#include "../extensionsystem_global.h"

#include "../core/pluginframeworkconfig.h"
#include "../core/plugincrash.h"
#include "plugininfo.h"
#include "pluginproblem.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace ExtensionSystem {

class Plugin;

namespace Internal {
class PluginFrameworkContext;
class PluginManagerPrivate;
} // namespace Internal

/*!
    \class ExtensionSystem::PluginManager
    \brief The registry of the plug-ins of one framework: installs them from the
    plug-ins directory, resolves them through the load queue, starts and stops
    them.

    The framework makes one manager, a QObject child of the PluginFramework; a
    host finds it among the framework's children, since the framework offers no
    accessor. The manager owns the internal plug-in objects it installs (they are
    its QObject children). Plug-ins reach it through PluginContext.

    The load queue decides the order: a plug-in enters it, and becomes resolved,
    once each of its dependencies is in it with a compatible version. The queue is
    the start order, read backwards the stop order. The metadata value
    \c activation plays no part in it.

    Failures are stored in error() and errorString(), written to debug output
    with the prefix "PluginManager::Error >" and emitted by errorOccured(). A
    failure in one plug-in never stops a walk over the others. Everything runs on
    the framework's thread, synchronously; no lock is taken.

    \sa PluginFramework, PluginContext, PluginInfo, PluginProblem
*/
class EXTENSIONSYSTEM_EXPORT PluginManager : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(PluginManager)
public:
    /*!
        The numbers of error() and errorOccured(); 2 is not used. The texts are
        translated; %1 is filled with the symbolic name or the file path.
        uninstall() also forwards a plug-in's own error numbers, which mean other
        things.
    */
    enum Error {
        NoError = 0, ///< No error yet; the text is "No Error".
        /*! "The 'plugins' directory not exists!": install(QDir) of a missing directory. */
        PluginsDirMissingError = 1,
        /*! "Cannot start plugin, that is invalid" or "Cannot stop plugin, that is
            invalid": a name in the load queue without an installed plug-in, e.g.
            after uninstall(). */
        InvalidPluginError = 3,
        /*! "The specified plugin has been installed, file: %1": the same file again. */
        AlreadyInstalledError = 4,
        /*! "Exists the same symbolic, symbolic: %1": another file has that symbolic name. */
        SymbolicTakenError = 5,
        /*! "Cannot start plugin: %1, that is not installed" (start), or "The
            plugin: %1 is not installed" (stop, uninstall). */
        NotInstalledError = 6,
        NotResolvedError = 7, ///< "Cannot start plugin: %1, that is not resolved".
        NotActiveError = 8, ///< "Cannot stop plugin: %1, that is not actived".
        /*! "Plugin: '%1' in the blacklist, cannot install it!": the policy is
            PluginFrameworkConfig::PolicyDisable. */
        BlacklistedError = 9,
        /*! "Plugin: '%1' not in the whitelist, and loadEnabledPluginOnly is ON,
            cannot install it!": no policy while loadEnabledPluginOnly is on. */
        NotWhitelistedError = 10
    };

    /*!
        Creates the manager of the framework behind \a context (not owned), with
        \a parent (the framework) as QObject parent. Made by the framework; hosts
        and plug-ins never create one. When config.ini says so (see
        PluginFrameworkConfig::watchPluginsDirectory()), the plug-ins directory is
        watched from the start.
    */
    PluginManager(Internal::PluginFrameworkContext *context, QObject *parent);
    /*!
        Destroys the manager and, as its QObject children, every plug-in object.
        It stops nothing: the framework stops the plug-ins before. Libraries are
        never unloaded.
    */
    ~PluginManager() override;

    /*!
        Returns the number of the last error: a value of Error, or a plug-in's
        own number forwarded by uninstall(); 0 until the first error. Nothing
        clears it.
    */
    int error() const;
    /*!
        Returns the translated text of the last error; "No Error" until the first.
    */
    QString errorString() const;
    /*!
        Returns the plug-in installed under \a symbolic, or \c nullptr. Plugin is
        internal to the library. The object belongs to the manager: do not delete
        it; uninstall() deletes it later from the event loop.
    */
    Plugin *find(const QString &symbolic) const;
    /*!
        Returns the plug-in installed from the library file \a filePath, given as
        QFileInfo::filePath() gave it at installation (not normalised), or
        \c nullptr. The object belongs to the manager.

        \warning uninstall() leaves the entry in place: afterwards this returns
        the old pointer, which dangles once the event loop has deleted the object.
    */
    Plugin *findByFile(const QString &filePath) const;
    /*!
        Returns a snapshot of the plug-in \a symbolic (metadata, current state,
        directory, file, startup policy), or an empty PluginInfo
        (PluginInfo::isValid() false) for an unknown name. A plug-in refused by
        the black or white list is still known here, with its policy. The copy
        does not follow later changes.
    */
    PluginInfo pluginInfo(const QString &symbolic) const;
    /*!
        Returns snapshots of all plug-ins known to pluginInfo(), sorted by
        symbolic name. Libraries that could not be loaded have no metadata and are
        not listed.
    */
    QList<PluginInfo> pluginInfos() const;
    /*!
        Returns the symbolic names of all resolved plug-ins in load-queue order,
        the start order. The queue only grows: a plug-in stays in it after
        uninstall().
    */
    QStringList loadQueue() const;
    /*!
        Says why the plug-in of the symbolic name \a name, or the library of that
        base name, is not running: an empty list while it is starting, active or
        stopping, otherwise the reasons, the first one first.

        For a name that is not installed, the reason it was refused at
        installation (black or white list, duplicate name, ...), or
        PluginProblem::UnknownPlugin. For a library that did not load or has no
        usable META.INF, that problem first (see PluginResolver::libraryProblems()),
        followed by its refusal when a file scanned before it took its name. For an installed plug-in, why it does
        not resolve (missing or incompatible dependency, cycle, ...); for a
        resolved one, PluginProblem::NoActivator or PluginProblem::NotStarted.
    */
    QList<PluginProblem> problems(const QString &name) const;

    /*!
        Returns the plug-ins that are quarantined: the previous process of this
        program died in their code while their library was loaded, their root
        object made, their translation loaded or their start() run (a crash,
        \c abort(), an uncaught exception, \c _exit(), or a kill of a hung
        host). Their libraries are not loaded, so neither a crash in a static
        initialiser nor one in start() repeats; plug-ins that need them resolve
        as they do when a dependency is missing, and problems() gives
        PluginProblem::Quarantined. A plug-in stays quarantined until its
        library file changes (a fixed build: its bytes are compared, not only
        its time), until releasePlugin(), or until es-inspect --release.
        Empty when config.ini's "PluginManager/quarantineCrashedPlugins" is
        false, or when nothing died.

        \since 1.1
        \sa previousCrash(), PluginQuarantine
    */
    QList<PluginCrash> quarantinedPlugins() const;
    /*!
        Releases the quarantined plug-in \a name (its symbolic name or its
        library's base name). After init() its library is installed at once,
        not started; before, the scan loads it. A plug-in that dies again in
        the same phase is quarantined again with PluginCrash::count() increased.
        Returns false when no quarantined plug-in has that name. config.ini is
        never written: the quarantine list is a file of its own.

        \since 1.1
    */
    bool releasePlugin(const QString &name);
    /*!
        Returns what the previous process of this program was running when it
        ended without a clean stop: the plug-in, the phase (also stop() or a
        handler's active(), which quarantine nothing) and the time; a null value
        when it ended cleanly or outside a plug-in's code. Known from the first
        installation on, that is from init().

        \since 1.1
    */
    PluginCrash previousCrash() const;

    /*!
        Returns the file name suffix of a plug-in library on this platform, as
        the build chose it for the plug-ins extensionsystem_add_plugin() makes:
        ".dll" on Windows, ".dylib" on macOS, ".so" elsewhere.
    */
    static QString librarySuffix();
    /*!
        Returns the files of \a dir that the directory scan installs: those whose
        names end with librarySuffix(), compared ignoring case, in the order of
        \a dir's own sorting (by name, ignoring case, for a default QDir).
        Sub-directories are not searched.
    */
    static QFileInfoList libraryFiles(const QDir &dir);

signals:
    /*!
        Emitted for every error the manager reports, once error() and
        errorString() hold \a error and \a errorString. Nothing in the framework
        is connected to it.
    */
    void errorOccured(int error, QString errorString);
    /*!
        Emitted by a directory scan for a plug-in directory that holds an
        "extension.xml", when the last library of that directory was installed;
        \a extfile is the file's absolute path. The framework connects it, queued,
        to its extension registry, which reads the file once control is back in
        the event loop.
    */
    void parsingExtensionFile(QString extfile);
    /*!
        Emitted with a copy of the load queue, \a loadingQueue, at the end of
        every directory scan, and after each installation once the first scan has
        ended. The extension registry uses it to know which plug-ins count.
    */
    void loadingQueueChanged(QStringList loadingQueue);
    /*!
        Emitted at the end of every scan of an existing directory, \a pluginDir,
        after the scan's parsingExtensionFile() and loadingQueueChanged(). The
        framework connects it, queued, to its extension registry: arriving after
        the scan's announcements, it closes the set of files that
        PluginFramework::extensionFilesReady() waits for.
    */
    void directoryScanned(QString pluginDir);
    /*!
        Emitted when a library has been installed under \a symbolic, after it was
        handed to the load queue (so it may already be resolved).
    */
    void installed(QString symbolic);
    /*!
        Emitted by uninstall() when the plug-in \a symbolic has been removed; its
        object is deleted later from the event loop.
    */
    void uninstalled(QString symbolic);

public slots:
    /*!
        Scans \a pluginDir: installs, as install(QFileInfo) does, every library
        (see libraryFiles()) of each direct sub-directory, sub-directories in name
        order ignoring case. For each directory whose last library installed and
        that holds an "extension.xml" it emits parsingExtensionFile(), and at the
        end loadingQueueChanged().
        Libraries directly in \a pluginDir or deeper down are not seen. Nothing is
        started.

        A missing directory gives error 1 (PluginsDirMissingError) and nothing
        else. A failing file ends that file only; files already installed give
        error 4 each, so a second scan installs only what is new.
    */
    void install(QDir pluginDir);
    /*!
        Installs the library \a fileinfo: loads it, reads its META.INF, applies the
        black and white lists of config.ini and hands it to the load queue, where
        it becomes resolved once its dependencies are; plug-ins that waited for it
        may resolve too. Each state change is published as a PluginEvent. It is
        not started. Emits installed(), and loadingQueueChanged() once the first
        scan has ended.

        Errors: 4 (AlreadyInstalledError) for a file installed before, 5
        (SymbolicTakenError) when a plug-in of that symbolic name is installed, 9
        (BlacklistedError) and 10 (NotWhitelistedError) for the lists. A refused
        library stays loaded; its object is deleted later. A library that does not
        load, or whose META.INF is missing or names no one, is installed all the
        same, under its base name or an empty name, and never resolves; see
        problems().
    */
    void install(QFileInfo fileinfo);
    /*!
        Stops \a symbolic with its dependants, as stop(QString) does, then removes
        it: it leaves find() and pluginInfos(), its object is deleted later from
        the event loop, and uninstalled() is emitted.

        An unknown name gives error 6 ("The plugin: %1 is not installed"). If the
        plug-in holds an error of its own after the stop (a load or metadata
        failure, or a failed start or stop), that number and text are reported
        instead and the plug-in stays installed. The name stays in the load queue
        and the file cannot be installed again in this run (error 4).
    */
    void uninstall(QString symbolic);
    /*!
        Starts every resolved plug-in in load-queue order, synchronously.
        Plug-ins in any other state are passed over without a word; a plug-in's
        own failure is not reported here and does not stop the walk, and a
        dependant starts even if its dependency failed.
    */
    void start();
    /*!
        Stops every plug-in in reverse load-queue order, synchronously. Each entry
        that is not active gives error 8 (NotActiveError), and each name without
        an installed plug-in (after uninstall()) error 3, so a second stop()
        reports error 8 for every plug-in.
    */
    void stop();
    /*!
        Starts \a symbolic after the plug-ins it depends on, dependencies first;
        active ones are passed over. Error 6 for an unknown name and 7 for a
        listed plug-in that is not resolved. An installed plug-in that is not
        resolved has nothing to start, and nothing is reported.

        \sa PluginContext::startPlugin()
    */
    void start(QString symbolic);
    /*!
        Stops \a symbolic after the plug-ins that depend on it, the last resolved
        first. Error 6 for an unknown name, 8 for each listed plug-in that is not
        active (a dependant of two listed plug-ins is listed twice).

        \sa PluginContext::stopPlugin()
    */
    void stop(QString symbolic);
    /*!
        Writes \a startupPolicy for \a symbolic to config.ini (see
        PluginFrameworkConfig::setPluginStartupPolicy()) and into the PluginInfo
        of that name, if there is one. Installed and running plug-ins are not
        touched: the policy counts at the next installation. A name never
        installed gets its config.ini entry and no PluginInfo.
    */
    void setPluginStartupPolicy(QString symbolic, PluginFrameworkConfig::StartupPolicy startupPolicy);
    /*!
        Writes \a on to config.ini ("PluginManager/watchPluginsDirectory") and
        starts or stops watching the plug-ins directory. When an entry directly in
        it changes, the directory is scanned again from the event loop, as by
        install(QDir): new plug-ins are installed but not started, and each one
        already installed gives error 4. Changes inside a plug-in's own
        sub-directory are not seen.
    */
    void setWatchingPluginDirEnable(bool on);

private slots:
    void pluginStateChanaged(const QString &symbolic, int from, int to);
    void pluginDirectoryChanged(QString dir);

private:
    Q_DISABLE_COPY(PluginManager)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINMANAGER_H
