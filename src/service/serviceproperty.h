// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEPROPERTY_H
#define EXTENSIONSYSTEM_SERVICEPROPERTY_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class ServiceRegistration;
class ServiceReference;

namespace Internal {
class ServiceRegistrationPrivate;
class ServiceReferencePrivate;
} // namespace Internal

// The keyed attributes of one registered service and the filter test that
// service lookup rests on. A deep-copying value; assignment merges.
class EXTENSIONSYSTEM_EXPORT ServiceProperty
{
public:
    ServiceProperty();
    ServiceProperty(const QHash<QString, QVariant> &properties);
    ServiceProperty(const ServiceProperty &other);
    ServiceProperty(const QString &plugin, const QStringList &classList, int serviceId, const QString &servicePid,
                    bool isFactory, const QHash<QString, QVariant> &properties);
    ~ServiceProperty();

    // Merges: keys that only this object holds are kept.
    ServiceProperty &operator=(const ServiceProperty &other);

    int ranking() const;
    QStringList classList() const;
    bool isFactory() const;
    QString plugin() const;
    int serviceId() const;

    bool containsClass(const QString &clazz) const;
    bool match(const QHash<QString, QVariant> &filter) const;

    void rankingUp();
    void rankingDown();

protected:
    // Registrations and references read and write the entries directly.
    QHash<QString, QVariant> m_properties;

private:
    friend class ServiceRegistration;
    friend class ServiceReference;
    friend class Internal::ServiceRegistrationPrivate;
    friend class Internal::ServiceReferencePrivate;
};

} // namespace ExtensionSystem

Q_DECLARE_METATYPE(ExtensionSystem::ServiceProperty)

#endif // EXTENSIONSYSTEM_SERVICEPROPERTY_H
