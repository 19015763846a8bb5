// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEPROPERTY_H
#define EXTENSIONSYSTEM_SERVICEPROPERTY_H

#include "../extensionsystem_global.h"

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

/*!
    The keyed attributes of one registered service and the filter test that
    service lookup rests on.

    A deep-copying value: copies are independent, and changing one (for instance
    the copy that ServiceRegistration::property() returns) reaches no
    registration. Assignment merges rather than replaces. The keys are the
    \c SERVICE_... constants of PluginConstance: the service manager sets
    "service.objectclass", "service.plugin", "service.isfactory", "service.id"
    and "service.pid"; the registrant may add "service.ranking",
    "service.description", "service.vender" and keys of its own. To change the
    properties of a registered service use ServiceReference::setProperty().

    The type is registered with the meta-type system as
    "ExtensionSystem::ServiceProperty", so a ServiceEvent can carry it.
*/
class EXTENSIONSYSTEM_EXPORT ServiceProperty
{
public:
    /*! Creates a set that holds only "service.id" with the value -1. */
    ServiceProperty();
    /*!
        Creates a set holding exactly the entries of \a properties; no default id
        is added, so serviceId() reads 0 when \a properties has none.
    */
    ServiceProperty(const QHash<QString, QVariant> &properties);
    /*! Creates an independent copy of every entry of \a other. */
    ServiceProperty(const ServiceProperty &other);
    /*!
        Creates the property set of a registration, as the service manager does.

        It holds every entry of \a properties, then "service.plugin" from \a plugin (the
        registering plug-in's symbolic name), "service.objectclass" from
        \a classList, "service.pid" from \a servicePid, "service.id" from
        \a serviceId and "service.isfactory" from \a isFactory. These five replace
        whatever \a properties held under their keys, so a registrant cannot
        forge them.
    */
    ServiceProperty(const QString &plugin, const QStringList &classList, int serviceId, const QString &servicePid,
                    bool isFactory, const QHash<QString, QVariant> &properties);
    /*! Destroys the set. */
    ~ServiceProperty();

    /*!
        Merges \a other into this set: every entry of \a other is inserted,
        replacing the value of an equal key, and keys that only this set holds
        are kept. After `a = b`, \c a holds the union of both. Assigning a set
        to itself does nothing.
    */
    ServiceProperty &operator=(const ServiceProperty &other);

    /*! Returns the value of "service.ranking" as \c int, 0 when absent. Lookups do not sort by it. */
    int ranking() const;
    /*! Returns the class names under "service.objectclass", or an empty list. */
    QStringList classList() const;
    /*!
        Returns "service.isfactory": whether the service object was registered as
        an IServiceFactory; \c false when absent.
    */
    bool isFactory() const;
    /*! Returns "service.plugin", the registering plug-in's symbolic name, or a null string. */
    QString plugin() const;
    /*!
        Returns "service.id" as \c int: the id the service manager gave, -1 for a
        default-constructed set, 0 when the key is absent.

        \note Ids are not unique: the manager numbers services 0, 1, 1, 1, ...,
        starting again at 0 after any unregistration.
    */
    int serviceId() const;

    /*!
        Returns \c true when classList() contains \a clazz, compared
        case-sensitively; always \c false for an empty \a clazz.
    */
    bool containsClass(const QString &clazz) const;
    /*!
        Returns \c true when every entry of \a filter is present in this set with
        an equal value; an empty filter matches.

        A filter is a conjunction of exact tests: no wildcards, ranges, negation
        or case folding. Values compare with QVariant equality as Qt 5 has it,
        under Qt 6 too: values of different types compare after the filter's
        value is converted to the stored value's type where it can be (an \c int
        1 and a QString "1" are equal). A key that the set lacks fails, whatever
        the filter's value.
    */
    bool match(const QHash<QString, QVariant> &filter) const;

    /*! Raises "service.ranking" by one, creating it as 1 if absent. Changes this set only. */
    void rankingUp();
    /*! Lowers "service.ranking" by one, creating it as -1 if absent. Changes this set only. */
    void rankingDown();

protected:
    /*!
        The entries by key. Registrations and references read and write the
        entries directly.
    */
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
