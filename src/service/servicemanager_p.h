// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_SERVICEMANAGER_P_H
#define EXTENSIONSYSTEM_SERVICEMANAGER_P_H

#include "servicemanager.h"
#include "serviceregistration.h"

#include <QtCore/QHash>
#include <QtCore/QMultiHash>
#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

// How the tables hold a registration. They tell registrations apart by their
// truth value alone, and since every handle is true, all registrations are one
// key and one value to them: the id sequence 0, 1, 1, ... and the removal of
// every registration under a class or of a plug-in rest on this.
class FiledRegistration
{
public:
    FiledRegistration(const ServiceRegistration &registration)
        : registration(registration)
    { }
    // No assignment: a registration's assignment never releases the record it
    // held, and the tables must not leak on that account.
    FiledRegistration &operator=(const FiledRegistration &) = delete;

    ServiceRegistration registration;
};

inline bool operator==(const FiledRegistration &a, const FiledRegistration &b)
{
    return bool(a.registration) == bool(b.registration);
}

inline uint qHash(const FiledRegistration &key, uint seed)
{
    return uint(bool(key.registration)) ^ seed;
}

class EXTENSIONSYSTEM_AUTOTEST_EXPORT ServiceManagerPrivate : public QObjectPrivate
{
    ES_DECLARE_PUBLIC(ServiceManager)
public:
    enum Error {
        NoError = 0,
        InvalidParameters = 1,
        ClassMismatch = 2,
        CreateRegistrationFailed = 3,
        AlreadyRegistered = 4,
        InvalidRegistration = 5
    };

    explicit ServiceManagerPrivate(PluginFrameworkContext *context);
    ~ServiceManagerPrivate() override;

    void handleError(int error, const QString &errorString);
    void clearError();

    int error;
    QString errorString;
    PluginFrameworkContext *context;
    QHash<FiledRegistration, QStringList> registrationClasses;
    QMultiHash<QString, FiledRegistration> classRegistrations;
    QMultiHash<Plugin *, FiledRegistration> pluginRegistrations;
    QHash<QObject *, ServiceRegistration> objectRegistrations;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEMANAGER_P_H
