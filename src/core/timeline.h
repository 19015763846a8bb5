// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_TIMELINE_H
#define EXTENSIONSYSTEM_TIMELINE_H

#include "../extensionsystem_global.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace ExtensionSystem {

namespace Internal {
class TimelinePrivate;
}

/*!
    \class ExtensionSystem::Timeline
    \brief What the framework spent its time on: when each phase of each plug-in
    and of each extension file began and ended, as plain values.

    PluginFramework::timeline() returns the phases recorded so far. Each Entry
    names the phase, the plug-in or file it belongs to, the thread it ran on and
    its begin and end in nanoseconds since the framework was created. Phases that
    call one another nest: a plug-in's ActivatorStart lies inside the framework's
    FrameworkStart, and a plug-in started on demand lies inside the Dispatch that
    asked for it.

    Two views are built in. writeTrace() writes a Chrome trace-event JSON file,
    which Perfetto (ui.perfetto.dev) and chrome://tracing open as a timeline with
    one track per thread. profileTable() answers "which plug-in makes my start
    slow, and in which phase?" as text: one row per plug-in, sorted by total
    time, the phases as columns.

    \code
    framework.init();
    framework.start();
    framework.timeline().writeTrace(QStringLiteral("startup.json"));
    qInfo().noquote() << framework.timeline().profileTable();
    \endcode

    Implicitly shared: copies are cheap and share the entries.

    \sa PluginFramework::timeline()
*/
class EXTENSIONSYSTEM_EXPORT Timeline
{
    Q_GADGET
public:
    /*!
        The phases that are recorded. The first three belong to the framework,
        the next five to a plug-in, the last five to an extension file.
    */
    enum Phase {
        FrameworkInit, ///< PluginFramework::init(), the scan of the plug-ins directory included.
        FrameworkStart, ///< PluginFramework::start().
        FrameworkStop, ///< PluginFramework::stop(), also when it runs from the destructor or on quit.
        LibraryLoad, ///< Loading the plug-in's library and creating its root object.
        MetaDataRead, ///< Reading and checking the plug-in's META.INF.
        LoadQueue, ///< Entering the load queue, with the resolving it sets off.
        ActivatorStart, ///< The plug-in's start: its translation and IPluginActivator::start().
        ActivatorStop, ///< IPluginActivator::stop().
        FileDigest, ///< Comparing the extension file's digest with the stored one.
        FileParse, ///< Parsing the extension file, on a thread of the global thread pool.
        StoreWrite, ///< Writing what the parse found to extension.dat.
        Dispatch, ///< Handing what the parse found to the registered extension points.
        StoreRead ///< Reading an unchanged file's rows from extension.dat and handing them out.
    };
    Q_ENUM(Phase)

    /*!
        \brief One recorded phase.
    */
    struct Entry
    {
        /*! Which phase. */
        Phase phase = FrameworkInit;
        /*!
            The plug-in's symbolic name for the plug-in phases (its file's base
            name when its metadata cannot be read), the extension file's path for
            the file phases, empty for the framework's own phases.
        */
        QString name;
        /*!
            The file the phase worked on: the plug-in's library or the extension
            file; empty for the framework's own phases.
        */
        QString file;
        /*! When the phase began, in nanoseconds since the framework was created. */
        qint64 begin = 0;
        /*! When the phase ended, in the same clock as begin; never before it. */
        qint64 end = 0;
        /*!
            The thread the phase ran on: 0 for the framework's thread, 1, 2, ...
            for other threads in the order in which they first recorded a phase.
        */
        int thread = 0;

        /*! Returns end - begin, in nanoseconds. */
        qint64 duration() const { return end - begin; }
    };

    /*! Creates an empty timeline. */
    Timeline();
    /*! Creates a timeline of \a entries, in the order given. */
    explicit Timeline(const QVector<Entry> &entries);
    /*! Creates a copy of \a other that shares its entries. */
    Timeline(const Timeline &other);
    /*! Makes this timeline share the entries of \a other and returns it. */
    Timeline &operator=(const Timeline &other);
    /*! Destroys the timeline. */
    ~Timeline();

    /*!
        Returns the entries in the order in which they were recorded, which puts
        a nested phase before the phase that contains it.
    */
    QVector<Entry> entries() const;
    /*! Returns true if nothing is recorded. */
    bool isEmpty() const;

    /*!
        Returns the name of \a phase as the trace and the table write it, such as
        "load" for LibraryLoad or "parse" for FileParse.
    */
    static QString phaseName(Phase phase);

    /*!
        Returns the entries as a Chrome trace-event JSON document: one complete
        event ("ph": "X") per entry, timestamps and durations in whole
        microseconds (each end rounded like each begin, so that nesting holds),
        sorted by begin, one track per thread, named "main" and "pool 1", "pool 2" and so on.
        Each event is named after its phase (phaseName()) and the plug-in, or
        the directory of the extension file, such as "load org.example.core";
        its category is "framework", "plugin" or "extension file", and its one
        argument, "file", the library or extension file.
    */
    QByteArray toTraceJson() const;
    /*!
        Writes toTraceJson() to \a fileName. Returns false, and sets \a
        errorString if it is not null, when the file cannot be written.
    */
    bool writeTrace(const QString &fileName, QString *errorString = nullptr) const;

    /*!
        Returns a text table with one row per plug-in, sorted by total time,
        highest first. The columns are the plug-in phases and "ext. file", the
        sum of the phases of the extension file in the plug-in's directory, each
        in milliseconds over every time it ran. A phase includes what it called:
        a plug-in started on demand also counts in the dispatch that started it.
        Below the rows, the framework's own phases.
    */
    QString profileTable() const;

private:
    QSharedDataPointer<Internal::TimelinePrivate> d;
};

} // namespace ExtensionSystem

Q_DECLARE_TYPEINFO(ExtensionSystem::Timeline::Entry, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(ExtensionSystem::Timeline)

#endif // EXTENSIONSYSTEM_TIMELINE_H
