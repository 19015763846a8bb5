// SPDX-License-Identifier: BSD-3-Clause
#include "pluginframework.h"
#include "pluginframework_p.h"

#include <core/debugoutput_p.h>

#include <core/pluginframeworkconfig.h>
#include <core/pluginframeworkcontext.h>
#include <core/startjournal.h>
#include <core/timelinerecorder.h>

#include <event/eventmanager.h>
#include <event/frameworkevent.h>
#include <extension/extensionmanager.h>
#include <plugin/pluginmanager.h>
#include <service/servicemanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLocale>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

PluginFrameworkPrivate::PluginFrameworkPrivate()
    : state(PluginFramework::FrameworkUninitialized)
    , context(nullptr)
    , error(0)
{ }

PluginFrameworkPrivate::~PluginFrameworkPrivate()
{
    delete context;
}

void PluginFrameworkPrivate::makeManagers()
{
    Q_Q(PluginFramework);
    // The order of creation is the order of destruction of the framework's
    // children; the configuration, made with the context, comes first.
    context->pluginManager = new PluginManager(context, q);
    context->eventManager = new EventManager(context, q);
    context->serviceManager = new ServiceManager(context, q);
    context->extensionManager = new ExtensionManager(context, q);

    PluginManager *plugins = context->pluginManager;
    ExtensionManager *extensions = context->extensionManager;
    // Queued: extension files are parsed once the directory scan has returned to the event loop.
    QObject::connect(plugins, &PluginManager::parsingExtensionFile, extensions, &ExtensionManager::parseExtensionFile,
                     Qt::QueuedConnection);
    // Queued like the announcements, so that it closes the scan after them.
    QObject::connect(plugins, &PluginManager::directoryScanned, extensions, &ExtensionManager::scanFinished,
                     Qt::QueuedConnection);
    QObject::connect(extensions, &ExtensionManager::extensionFilesReady, q, &PluginFramework::extensionFilesReady);
    QObject::connect(extensions, &ExtensionManager::requestStartingPlugin, plugins,
                     QOverload<QString>::of(&PluginManager::start));
    QObject::connect(extensions, &ExtensionManager::requestStoppingPlugin, plugins,
                     QOverload<QString>::of(&PluginManager::stop));
    QObject::connect(plugins, &PluginManager::loadingQueueChanged, extensions, &ExtensionManager::loadingQueueChanged);
}

void PluginFrameworkPrivate::setState(int newState)
{
    if (newState == state)
        return;
    const FrameworkEvent event(static_cast<FrameworkEvent::Action>(newState),
                               static_cast<FrameworkEvent::Action>(state));
    state = newState;
    // Listeners run while the state already reads the new value.
    context->eventManager->publish(event);
}

void PluginFrameworkPrivate::runStopSequence()
{
    Q_Q(PluginFramework);
    const TimelineRecorder::Span span(context->timeline.data(), Timeline::FrameworkStop, QString(), QString());
    setState(PluginFramework::FrameworkStopping);
    context->pluginManager->stop();
    emit q->stopped();
    setState(PluginFramework::FrameworkInitialized);
}

} // namespace Internal

PluginFramework::PluginFramework(QObject *parent)
    : QObject(*new PluginFrameworkPrivate, parent)
{
    Q_D(PluginFramework);
    d->context = new PluginFrameworkContext(this, this);
    d->makeManagers();
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &PluginFramework::stop);
}

PluginFramework::~PluginFramework()
{
    Q_D(PluginFramework);
    d->runStopSequence();
}

int PluginFramework::state() const
{
    Q_D(const PluginFramework);
    return d->state;
}

int PluginFramework::error() const
{
    Q_D(const PluginFramework);
    return d->context->error;
}

QString PluginFramework::errorString() const
{
    Q_D(const PluginFramework);
    return d->context->errorString;
}

bool PluginFramework::loadEnabledPluginOnly() const
{
    Q_D(const PluginFramework);
    return d->context->config->loadEnabledPluginOnly();
}

bool PluginFramework::watchingPluginDirEnabled() const
{
    Q_D(const PluginFramework);
    return d->context->config->watchPluginsDirectory();
}

void PluginFramework::handleError(int error, const QString &errorString)
{
    emit errorOccured(error, errorString);
}

void PluginFramework::init()
{
    Q_D(PluginFramework);
    // Made a second time on purpose: after init(), aboutToQuit runs the stop sequence twice.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &PluginFramework::stop);

    const TimelineRecorder::Span span(d->context->timeline.data(), Timeline::FrameworkInit, QString(), QString());
    PluginFrameworkConfig *config = d->context->config;
    const bool watching = config->watchPluginsDirectory();
    const bool enabledOnly = config->loadEnabledPluginOnly();
    const QString language = QLocale::system().name();
    const QString configPath = PluginFrameworkConfig::configDir().path();
    const QString languagePath = PluginFrameworkConfig::languageDir().path();
    const QDir pluginsDir = PluginFrameworkConfig::pluginsDir();

    ES_DEBUG_IF_SHOWN() << "Framework Configure:"
                        << "\n |-> plugin dir:           " << pluginsDir.path()
                        << "\n |-> language dir:         " << languagePath
                        << "\n |-> config dir:           " << configPath << "\n |-> language:             " << language
                        << "\n |-> loadEnabledPluginOnly:" << (enabledOnly ? "true" : "false")
                        << "\n |-> watchingPluginDir:    " << (watching ? "true" : "false");

    if (!pluginsDir.exists()) {
        d->error = PluginsDirMissingError;
        d->errorString = tr("The Plugins Directory not exists");
        emit errorOccured(d->error, d->errorString);
        return;
    }

    d->context->eventManager->trackEvent(QStringLiteral("PluginFramework"), 2, this,
                                         "2pluginChanged(const PluginEvent &)", Qt::AutoConnection);
    d->setState(FrameworkInitializing);
    d->context->pluginManager->install(pluginsDir);
    emit initialized();
    d->setState(FrameworkInitialized);
}

void PluginFramework::start()
{
    Q_D(PluginFramework);
    const TimelineRecorder::Span span(d->context->timeline.data(), Timeline::FrameworkStart, QString(), QString());
    d->setState(FrameworkStarting);
    d->context->pluginManager->start();
    emit started();
    d->setState(FrameworkStarted);
}

void PluginFramework::stop()
{
    Q_D(PluginFramework);
    d->runStopSequence();
}

void PluginFramework::exit()
{
    Q_D(PluginFramework);
    if (d->state > FrameworkInitialized)
        d->runStopSequence();
}

void PluginFramework::installPlugin(QString libpath)
{
    Q_D(PluginFramework);
    d->context->pluginManager->install(QFileInfo(libpath));
}

Timeline PluginFramework::timeline() const
{
    Q_D(const PluginFramework);
    return d->context->timeline->timeline();
}

bool PluginFramework::isTimelineRecording() const
{
    Q_D(const PluginFramework);
    return d->context->timeline->isEnabled();
}

void PluginFramework::setTimelineRecording(bool on)
{
    Q_D(PluginFramework);
    d->context->timeline->setEnabled(on);
}

void PluginFramework::setStartJournalEnabled(bool on)
{
    Q_D(PluginFramework);
    d->context->keepJournal = on;
}

bool PluginFramework::isStartJournalEnabled() const
{
    Q_D(const PluginFramework);
    return d->context->keepJournal;
}

void PluginFramework::setHangWatchdog(int msecs)
{
    Q_D(PluginFramework);
    d->context->hangWatchdogMsecs = msecs < 0 ? -1 : msecs;
    if (d->context->journal)
        d->context->journal->setWatchdog(d->context->hangWatchdog());
}

int PluginFramework::hangWatchdog() const
{
    Q_D(const PluginFramework);
    return d->context->hangWatchdog();
}

void PluginFramework::setLoadEnabledPluginOnly(bool on)
{
    Q_D(PluginFramework);
    d->context->config->setLoadEnabledPluginOnly(on);
}

void PluginFramework::setWatchingPluginDirEnable(bool on)
{
    Q_D(PluginFramework);
    d->context->pluginManager->setWatchingPluginDirEnable(on);
}

} // namespace ExtensionSystem
