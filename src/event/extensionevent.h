// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONEVENT_H
#define EXTENSIONSYSTEM_EXTENSIONEVENT_H

#include "extensionsystem_global.h"
#include "eventdata.h"

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ExtensionSystem {

// An extension point was opened or closed by a plug-in.
class EXTENSIONSYSTEM_EXPORT ExtensionEvent
{
public:
    enum Role { RoleAction = 1, RolePlugin = 2, RolePointId = 3 };

    enum Action { PointRegistered = 1, PointUnregistered = 2 };

    explicit ExtensionEvent(Action action = Action(0));
    ExtensionEvent(Action action, const QString &plugin, const QString &pointId);
    ExtensionEvent(const QSharedDataPointer<EventData> &data);
    ExtensionEvent(const ExtensionEvent &other);
    ~ExtensionEvent();
    ExtensionEvent &operator=(const ExtensionEvent &other);

    QVariant data(Role role) const;
    bool setData(Role role, const QVariant &value);
    QSharedDataPointer<EventData> sharedData() const;

    int action() const;
    QString plugin() const;
    QString pointId() const;

private:
    QSharedDataPointer<EventData> d;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ExtensionEvent::Action)
Q_DECLARE_METATYPE(ExtensionSystem::ExtensionEvent)

#endif // EXTENSIONSYSTEM_EXTENSIONEVENT_H
