// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_PLUGINEVENT_H
#define EXTENSIONSYSTEM_PLUGINEVENT_H

#include "extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

// A change of state of one plug-in: the state entered and the state left.
class EXTENSIONSYSTEM_EXPORT PluginEvent
{
public:
    enum Role {
        RoleAction = 1,
        RolePrevAction = 2,
        RoleSymbolic = 3,
        RoleLocationDir = 4,
        RoleFilepath = 5,
        RoleVersion = 6,
        RoleInitIndex = 7,
        RolePluginSize = 8
    };

    // The plug-in states; 0 is no state, the action of a default-built event.
    enum Action { Uninstalled = 1, Installed = 2, Resolved = 4, Starting = 8, Stopping = 16, Active = 32 };

    // Maps every role but RolePrevAction, which can then never be set.
    explicit PluginEvent(Action action = Action(0));
    PluginEvent(Action action, Action prevAction, const QString &symbolic, const QString &locationDir,
                const QString &filepath, const QString &version, int initIndex, int pluginSize);
    PluginEvent(const QSharedDataPointer<EventData> &data);
    PluginEvent(const PluginEvent &other);
    ~PluginEvent();
    PluginEvent &operator=(const PluginEvent &other);

    QVariant data(Role role) const;
    bool setData(Role role, const QVariant &value);
    QSharedDataPointer<EventData> sharedData() const;

    int action() const;
    int prevAction() const;
    QString symbolic() const;
    QString locationDir() const;
    QString filepath() const;
    QString version() const;
    int initIndex() const;
    int pluginSize() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::PluginEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::PluginEvent)

#endif // EXTENSIONSYSTEM_PLUGINEVENT_H
