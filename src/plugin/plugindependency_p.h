// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINDEPENDENCY_P_H
#define EXTENSIONSYSTEM_PLUGINDEPENDENCY_P_H

#include "plugindependency.h"

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginDependencyPrivate
{
public:
    PluginDependencyPrivate();
    PluginDependencyPrivate(const QString &symbolic, const QString &version, bool resolved);

    // Comparison key of "major.minor.patch": per component the low byte of the number,
    // as one character behind nine '0's, so that QString::operator< compares numerically.
    static QString computeVersionKey(const QString &version);
    // The key's three bytes as one number, major highest: two keys compare as
    // their numbers do, so the check compares numbers and builds no text.
    static quint32 versionOrder(const QString &version);

    QString symbolic;
    QString version;
    bool resolved;
    // The comparison key of version, as its number (versionOrder()).
    quint32 versionKey;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINDEPENDENCY_P_H
