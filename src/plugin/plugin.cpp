// SPDX-License-Identifier: BSD-3-Clause
#include "plugin.h"
#include "plugin_p.h"

#include <core/debugoutput_p.h>
#include <core/pluginframeworkcontext.h>
#include <core/startjournal.h>
#include <core/timelinerecorder.h>
#include <plugin/ipluginactivator.h>
#include <plugin/pluginconstance.h>
#include <plugin/plugincontext.h>
#include <plugin/plugindependency.h>
#include <plugin/plugininfo.h>
#include <plugin/pluginmetadata.h>
#include <plugin/pluginresolver.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QLocale>

namespace ExtensionSystem {

using namespace Internal;

namespace Internal {

PluginPrivate::PluginPrivate(const QFileInfo &file, PluginFrameworkContext *context)
    : loader(file.absoluteFilePath())
    , fileInfo(file)
    , valid(false)
    , state(PluginInfo::Uninstalled)
    , error(0)
    , errorString(QObject::tr("No Error"))
    , context(context)
    , activator(nullptr)
    , pluginContext(nullptr)
    , metaData(nullptr)
{
    TimelineRecorder *timeline = this->timeline();
    const QString path = file.absoluteFilePath();
    // The plug-in's name is known only once its metadata is read.
    const QString fileName = PluginResolver::libraryName(file, nullptr);
    TimelineRecorder::Span loading(timeline, Timeline::LibraryLoad, fileName, path);
    loader.setLoadHints(PluginResolver::libraryLoadHints());
    bool libraryLoaded;
    {
        // The library's static initialisers run here: its own code.
        const StartJournal::Scope journal(PluginCrash::LibraryLoad, fileName, path);
        libraryLoaded = loader.load() || loader.isLoaded();
    }
    if (!libraryLoaded) {
        error = Plugin::LoadError;
        errorString =
                QObject::tr("Cannot load plugin library: %1, error: %2").arg(fileInfo.fileName(), loader.errorString());
        ES_DEBUG_IF_SHOWN() << "[ERROR] loading:" << fileInfo.fileName() << ">" << loader.errorString();
    }
    QObject *root;
    {
        const StartJournal::Scope journal(PluginCrash::RootObject, fileName, path);
        root = loader.instance();
    }
    if (!root) {
        error = Plugin::InstanceError;
        errorString = QObject::tr("Cannot instance plugin library: %1, error: %2")
                              .arg(fileInfo.fileName(), loader.errorString());
        ES_DEBUG_IF_SHOWN() << "[ERROR] loading:" << fileInfo.fileName() << ">" << loader.errorString();
        return;
    }

    // The metadata is a resource under the library's base name: ":/<base>/META-DATA/META.INF".
    const qint64 loaded = timeline ? timeline->now() : 0;
    const QString base = loader.fileName().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, -2);
    metaData = new PluginMetaData(PluginConstance::PLUGIN_METAFILE.arg(base));
    if (timeline && timeline->isEnabled()) {
        const QString name = PluginResolver::libraryName(file, metaData);
        const qint64 read = timeline->now();
        loading.setName(name);
        loading.setEnd(loaded);
        timeline->record(Timeline::MetaDataRead, name, path, loaded, read);
    }
    if (metaData->isValid()) {
        valid = true;
        ES_DEBUG_IF_SHOWN() << "     |-> init:" << metaData->symbolic();
    } else {
        error = metaData->error();
        errorString = metaData->errorString();
    }
}

PluginPrivate::~PluginPrivate()
{
    delete metaData;
}

void PluginPrivate::handleError(int error, const QString &errorString)
{
    Q_Q(Plugin);
    this->error = error;
    this->errorString = errorString;
    emit q->errorOccured(error, errorString);
}

TimelineRecorder *PluginPrivate::timeline() const
{
    return context ? context->timeline.data() : nullptr;
}

void PluginPrivate::clearError()
{
    error = Plugin::NoError;
    errorString = QObject::tr("No Error");
}

} // namespace Internal

Plugin::Plugin(const QFileInfo &file, PluginFrameworkContext *context, QObject *parent)
    : QObject(*new PluginPrivate(file, context), parent)
{
    Q_D(Plugin);
    d->pluginContext = new PluginContext(this, context, this);
    setState(PluginInfo::Installed);
}

Plugin::~Plugin()
{
    ES_DEBUG_IF_SHOWN() << "virtual ExtensionSystem::Plugin::~Plugin()"
                        << ">" << symbolic();
    setState(PluginInfo::Uninstalled);
}

int Plugin::state() const
{
    Q_D(const Plugin);
    return d->state;
}

int Plugin::error() const
{
    Q_D(const Plugin);
    return d->error;
}

QString Plugin::errorString() const
{
    Q_D(const Plugin);
    return d->errorString;
}

QString Plugin::symbolic() const
{
    Q_D(const Plugin);
    return d->metaData ? d->metaData->symbolic() : d->fileInfo.baseName();
}

QString Plugin::version() const
{
    Q_D(const Plugin);
    return d->metaData ? d->metaData->version() : QString();
}

QString Plugin::reportName() const
{
    Q_D(const Plugin);
    return PluginResolver::libraryName(d->fileInfo, d->metaData);
}

QString Plugin::loaderErrorString() const
{
    Q_D(const Plugin);
    return d->loader.errorString();
}

QDir Plugin::location() const
{
    Q_D(const Plugin);
    return d->fileInfo.absoluteDir();
}

QFileInfo Plugin::fileInfo() const
{
    Q_D(const Plugin);
    return d->fileInfo;
}

const PluginMetaData *Plugin::metaData() const
{
    Q_D(const Plugin);
    return d->metaData;
}

PluginMetaData *Plugin::metaData()
{
    Q_D(Plugin);
    return d->metaData;
}

PluginContext *Plugin::pluginContext() const
{
    Q_D(const Plugin);
    return d->pluginContext;
}

void Plugin::setState(int state)
{
    Q_D(Plugin);
    if (state == d->state)
        return;
    const int from = d->state;
    d->state = state;
    emit stateChanged(symbolic(), from, state);
}

void Plugin::start()
{
    Q_D(Plugin);
    switch (d->state) {
    case PluginInfo::Resolved:
        break;
    case PluginInfo::Starting:
    case PluginInfo::Stopping:
        // The text keeps its "%1": it is reported as it stands.
        d->handleError(InStartingError, tr("The Plugin: %1 is in starting progress"));
        return;
    case PluginInfo::Installed: {
        QStringList dependencies;
        if (d->metaData) {
            const QList<PluginDependency> list = d->metaData->dependencies();
            for (const PluginDependency &dependency : list)
                dependencies << QStringLiteral("%1: v%2").arg(dependency.symbolic(), dependency.version());
        }
        d->handleError(NotResolvedError, tr("The Plugin: %1 is not resolved, dependency: %2")
                                                 .arg(d->loader.fileName(), dependencies.join(QStringLiteral(", "))));
        return;
    }
    case PluginInfo::Uninstalled:
        d->handleError(NotInstalledError, tr("The Plugin: %1 is not installed").arg(d->loader.fileName()));
        return;
    default: // Active
        return;
    }

    d->activator = qobject_cast<IPluginActivator *>(d->loader.instance());
    if (!d->activator) {
        // Without an activator there is nothing to start: stay Resolved and say why.
        d->handleError(NoActivatorError,
                       tr("Cannot start plugin: %1, its root object does not implement %2")
                               .arg(d->loader.fileName(), QStringLiteral(ExtensionSystem_IPluginActivator_iid)));
        return;
    }

    setState(PluginInfo::Starting);
    TimelineRecorder::Span span(d->timeline(), Timeline::ActivatorStart, symbolic(), d->fileInfo.absoluteFilePath());
    const QString translation =
            QStringLiteral("%1/languages/%2.qm").arg(d->fileInfo.absolutePath(), QLocale::system().name());
    const QString name = symbolic();
    const QString path = d->fileInfo.absoluteFilePath();
    {
        const StartJournal::Scope journal(PluginCrash::Translation, name, path);
        // Empty, not null: null arguments would make QTranslator try other names too.
        const QString none(QLatin1String(""));
        if (d->translator.load(translation, none, none, none))
            QCoreApplication::installTranslator(&d->translator);
    }
    {
        const StartJournal::Scope journal(PluginCrash::ActivatorStart, name, path);
        d->activator->start(d->pluginContext);
    }
    span.finish();
    setState(PluginInfo::Active);
    d->clearError();
}

void Plugin::stop()
{
    Q_D(Plugin);
    switch (d->state) {
    case PluginInfo::Active:
        break;
    case PluginInfo::Starting:
        d->handleError(InStartingError, tr("The Plugin: %1 is in starting progress"));
        return;
    case PluginInfo::Stopping:
        d->handleError(InStoppingError, tr("The Plugin: %1 is in stopping progress"));
        return;
    default:
        d->handleError(NotActiveError, tr("The Plugin: %1 is not actived"));
        return;
    }

    setState(PluginInfo::Stopping);
    {
        const TimelineRecorder::Span span(d->timeline(), Timeline::ActivatorStop, symbolic(),
                                          d->fileInfo.absoluteFilePath());
        const StartJournal::Scope journal(PluginCrash::ActivatorStop, symbolic(), d->fileInfo.absoluteFilePath());
        d->activator->stop(d->pluginContext);
    }
    QCoreApplication::removeTranslator(&d->translator);
    setState(PluginInfo::Resolved);
    d->clearError();
}

} // namespace ExtensionSystem
