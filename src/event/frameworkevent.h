// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_FRAMEWORKEVENT_H
#define EXTENSIONSYSTEM_FRAMEWORKEVENT_H

#include "extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QVariant>

namespace ExtensionSystem {

// A change of the framework's state: the new state and the old one.
class EXTENSIONSYSTEM_EXPORT FrameworkEvent
{
public:
    enum Role { RoleAction = 1, RolePrevAction = 2 };

    // The framework states.
    enum Action {
        FrameworkUninitialized = 0,
        FrameworkInitializing = 1,
        FrameworkInitialized = 2,
        FrameworkStopping = 4,
        FrameworkStarting = 8,
        FrameworkStarted = 16
    };

    explicit FrameworkEvent(Action action = FrameworkUninitialized);
    FrameworkEvent(Action action, Action prevAction);
    FrameworkEvent(const QSharedDataPointer<EventData> &data);
    FrameworkEvent(const FrameworkEvent &other);
    ~FrameworkEvent();
    FrameworkEvent &operator=(const FrameworkEvent &other);

    QVariant data(Role role) const;
    bool setData(Role role, const QVariant &value);
    QSharedDataPointer<EventData> sharedData() const;

    int action() const;
    int prevAction() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::FrameworkEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::FrameworkEvent)

#endif // EXTENSIONSYSTEM_FRAMEWORKEVENT_H
