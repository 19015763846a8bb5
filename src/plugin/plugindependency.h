// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINDEPENDENCY_H
#define EXTENSIONSYSTEM_PLUGINDEPENDENCY_H

#include "extensionsystem_global.h"

#include <QtCore/QScopedPointer>
#include <QtCore/QString>

namespace ExtensionSystem {

namespace Internal {
class PluginDependencyPrivate;
}

// One entry of a plug-in's dependency list, and the version rule that decides
// whether a candidate provider meets it. A deep-copying value.
class EXTENSIONSYSTEM_EXPORT PluginDependency
{
    ES_DECLARE_PRIVATE(PluginDependency)

public:
    PluginDependency();
    PluginDependency(const QString &symbolic, const QString &version);
    PluginDependency(const PluginDependency &other);
    PluginDependency &operator=(const PluginDependency &other);
    ~PluginDependency();

    QString symbolic() const;
    QString version() const;

    bool isResolved() const;
    void setResolved(bool resolved);

    bool isValid() const;

    bool operator==(const PluginDependency &other) const;

    bool checkCompatible(const QString &symbolic, const QString &version, const QString &compatVersion) const;

private:
    QScopedPointer<Internal::PluginDependencyPrivate> d_ptr;
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINDEPENDENCY_H
