// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_P_H
#define EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_P_H

#include "pluginframeworkconfig.h"

#include <QtCore/QMap>
#include <QtCore/private/qobject_p.h>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE

namespace ExtensionSystem {
namespace Internal {

class EXTENSIONSYSTEM_AUTOTEST_EXPORT PluginFrameworkConfigPrivate : public QObjectPrivate
{
    ES_DECLARE_PUBLIC(PluginFrameworkConfig)

public:
    PluginFrameworkConfigPrivate();
    ~PluginFrameworkConfigPrivate() override;

    QSettings *settings;
    QMap<int, QString> policyNames;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_PLUGINFRAMEWORKCONFIG_P_H
