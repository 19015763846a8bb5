// SPDX-License-Identifier: BSD-3-Clause
#ifndef DEMO_H
#define DEMO_H

// Shared by the example host and plug-ins: the two service interfaces they meet
// through, and one way to say what happens.

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTextStream>

// Published by demo.core through a factory: each consumer plug-in gets its own greeter.
class IGreeter
{
public:
    virtual ~IGreeter() { }
    virtual QString greet(const QString &who) const = 0;
};
Q_DECLARE_INTERFACE(IGreeter, "demo.IGreeter")

// Published by demo.shell for the host: the commands its extension point holds.
class IShell
{
public:
    virtual ~IShell() { }
    // "id|title|plugin|handler" for every command item of the point.
    virtual QStringList commands() const = 0;
    // Activates a command item; starts its plug-in on demand.
    virtual int run(const QString &id, const QString &argument) = 0;
};
Q_DECLARE_INTERFACE(IShell, "demo.IShell")

inline void tell(const QString &who, const QString &what)
{
    QTextStream out(stdout);
    out << "    . " << who << ": " << what << '\n';
    out.flush();
}

#endif // DEMO_H
