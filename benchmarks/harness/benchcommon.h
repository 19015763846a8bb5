// SPDX-License-Identifier: BSD-3-Clause
#ifndef BENCHCOMMON_H
#define BENCHCOMMON_H

// What the case runners share: figures go to standard output as
// "FIGURE <name> <value>", failed checks as "CHECK FAILED <what>" with exit code 2.

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtCore/QTextStream>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>

namespace bench {

inline void figure(const char *name, double value)
{
    std::printf("FIGURE %s %.6f\n", name, value);
    std::fflush(stdout);
}

inline double millisecondsSince(const QElapsedTimer &timer)
{
    return timer.nsecsElapsed() / 1e6;
}

// Peak resident set size of this process so far, in KiB.
inline long peakRssKiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

[[noreturn]] inline void fail(const QString &what)
{
    std::printf("CHECK FAILED %s\n", qPrintable(what));
    std::fflush(stdout);
    std::exit(2);
}

inline void check(bool condition, const QString &what)
{
    if (!condition)
        fail(what);
}

} // namespace bench

#endif
