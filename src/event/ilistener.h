// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_ILISTENER_H
#define EXTENSIONSYSTEM_ILISTENER_H

#include "extensionsystem_global.h"

#include <event/eventdata.h>

#include <QtCore/QObject>
#include <QtCore/QSharedDataPointer>

namespace ExtensionSystem {

class CleanupHelper;

// Base of every listener: it wants the events of one type number.
class EXTENSIONSYSTEM_EXPORT IListener
{
public:
    explicit IListener(int type);
    virtual ~IListener();

    virtual void event(const QSharedDataPointer<EventData> &data) = 0;

    int listenerType() const { return type; }
    CleanupHelper *listenerCleanupHelper() const { return cleanupHelper; }
    void setCleanupHelper(CleanupHelper *helper) { cleanupHelper = helper; }

protected:
    int type;
    CleanupHelper *cleanupHelper;

private:
    Q_DISABLE_COPY(IListener)
};

} // namespace ExtensionSystem

#define ExtensionSystem_IListener_iid "ExtensionSystem::IListener"
Q_DECLARE_INTERFACE(ExtensionSystem::IListener, ExtensionSystem_IListener_iid)

#endif // EXTENSIONSYSTEM_ILISTENER_H
