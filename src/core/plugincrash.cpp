// SPDX-License-Identifier: BSD-3-Clause
#include "plugincrash.h"

#include <QtCore/QObject>
#include <QtCore/QSharedData>

namespace ExtensionSystem {
namespace Internal {

class PluginCrashPrivate : public QSharedData
{
public:
    QString plugin;
    QString file;
    PluginCrash::Phase phase = PluginCrash::NoPhase;
    QDateTime time;
    int count = 1;
    int hangSeconds = 0;
    bool released = false;
};

} // namespace Internal

using namespace Internal;

PluginCrash::PluginCrash()
    : d(new PluginCrashPrivate)
{ }

PluginCrash::PluginCrash(const QString &plugin, const QString &file, Phase phase, const QDateTime &time)
    : d(new PluginCrashPrivate)
{
    d->plugin = plugin;
    d->file = file;
    d->phase = phase;
    d->time = time.toUTC();
}

PluginCrash::PluginCrash(const PluginCrash &other) = default;
PluginCrash &PluginCrash::operator=(const PluginCrash &other) = default;
PluginCrash::~PluginCrash() = default;

bool PluginCrash::isNull() const
{
    return d->phase == NoPhase;
}

QString PluginCrash::plugin() const
{
    return d->plugin;
}

QString PluginCrash::file() const
{
    return d->file;
}

PluginCrash::Phase PluginCrash::phase() const
{
    return d->phase;
}

QDateTime PluginCrash::time() const
{
    return d->time;
}

int PluginCrash::count() const
{
    return d->count;
}

int PluginCrash::hangSeconds() const
{
    return d->hangSeconds;
}

bool PluginCrash::isReleased() const
{
    return d->released;
}

bool PluginCrash::quarantines() const
{
    return d->phase >= LibraryLoad && d->phase <= ActivatorStart;
}

void PluginCrash::setCount(int count)
{
    d->count = count;
}

void PluginCrash::setHangSeconds(int seconds)
{
    d->hangSeconds = seconds;
}

void PluginCrash::setReleased(bool released)
{
    d->released = released;
}

QString PluginCrash::phaseName(Phase phase)
{
    switch (phase) {
    case NoPhase:
        break;
    case LibraryLoad:
        return QObject::tr("loading its library");
    case RootObject:
        return QObject::tr("making its root object");
    case Translation:
        return QObject::tr("loading its translation");
    case ActivatorStart:
        return QStringLiteral("start()");
    case ActivatorStop:
        return QStringLiteral("stop()");
    case HandlerCall:
        return QObject::tr("a handler's active()");
    }
    return QString();
}

QString PluginCrash::text() const
{
    if (isNull())
        return QString();
    const QString when = d->time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    // A phase in a call reads "in start()", one in the framework's own steps "while ...".
    const bool call = d->phase == ActivatorStart || d->phase == ActivatorStop || d->phase == HandlerCall;
    QString text;
    if (d->hangSeconds > 0) {
        text = call ? QObject::tr("%1 did not return from %2 within %3 s (on %4)")
                    : QObject::tr("%1 hung while %2 for more than %3 s (on %4)");
        text = text.arg(d->plugin, phaseName(d->phase)).arg(d->hangSeconds).arg(when);
    } else {
        text = call ? QObject::tr("%1 crashed in %2 on %3") : QObject::tr("%1 crashed while %2 on %3");
        text = text.arg(d->plugin, phaseName(d->phase), when);
    }
    if (d->count > 1)
        text += QObject::tr(" (%n times)", nullptr, d->count);
    if (quarantines())
        text += d->released ? QObject::tr("; released, it is loaded again") : QObject::tr("; it was not loaded");
    return text;
}

bool PluginCrash::operator==(const PluginCrash &other) const
{
    return d == other.d
           || (d->plugin == other.d->plugin && d->file == other.d->file && d->phase == other.d->phase
               && d->time == other.d->time && d->count == other.d->count && d->hangSeconds == other.d->hangSeconds
               && d->released == other.d->released);
}

} // namespace ExtensionSystem
