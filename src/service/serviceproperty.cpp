// SPDX-License-Identifier: BSD-3-Clause
#include "serviceproperty.h"

#include <plugin/pluginconstance.h>
#include <core/qtcompat_p.h>

namespace ExtensionSystem {

ServiceProperty::ServiceProperty()
{
    m_properties.insert(PluginConstance::SERVICE_ID, -1);
}

ServiceProperty::ServiceProperty(const QHash<QString, QVariant> &properties)
    : m_properties(properties)
{ }

ServiceProperty::ServiceProperty(const ServiceProperty &other)
    : m_properties(other.m_properties)
{ }

ServiceProperty::ServiceProperty(const QString &plugin, const QStringList &classList, int serviceId,
                                 const QString &servicePid, bool isFactory, const QHash<QString, QVariant> &properties)
    : m_properties(properties)
{
    // Written after the registrant's entries so that it cannot forge them.
    m_properties.insert(PluginConstance::SERVICE_PLUGIN, plugin);
    m_properties.insert(PluginConstance::SERVICE_OBJECTCLASS, classList);
    m_properties.insert(PluginConstance::SERVICE_PID, servicePid);
    m_properties.insert(PluginConstance::SERVICE_ID, serviceId);
    m_properties.insert(PluginConstance::SERVICE_ISFACTORY, isFactory);
}

ServiceProperty::~ServiceProperty() = default;

ServiceProperty &ServiceProperty::operator=(const ServiceProperty &other)
{
    if (this == &other)
        return *this;
    for (auto it = other.m_properties.cbegin(); it != other.m_properties.cend(); ++it)
        m_properties.insert(it.key(), it.value());
    return *this;
}

int ServiceProperty::ranking() const
{
    return m_properties.value(PluginConstance::SERVICE_RANKING).toInt();
}

QStringList ServiceProperty::classList() const
{
    return m_properties.value(PluginConstance::SERVICE_OBJECTCLASS).toStringList();
}

bool ServiceProperty::isFactory() const
{
    return m_properties.value(PluginConstance::SERVICE_ISFACTORY).toBool();
}

QString ServiceProperty::plugin() const
{
    return m_properties.value(PluginConstance::SERVICE_PLUGIN).toString();
}

int ServiceProperty::serviceId() const
{
    return m_properties.value(PluginConstance::SERVICE_ID).toInt();
}

bool ServiceProperty::containsClass(const QString &clazz) const
{
    if (clazz.isEmpty())
        return false;
    return classList().contains(clazz, Qt::CaseSensitive);
}

bool ServiceProperty::match(const QHash<QString, QVariant> &filter) const
{
    // Every entry must be present and equal; the filter's value is converted to
    // the stored value's type, so the stored value goes on the left.
    for (auto it = filter.cbegin(); it != filter.cend(); ++it) {
        const auto found = m_properties.constFind(it.key());
        if (found == m_properties.cend())
            return false;
        if (!Internal::QtCompat::variantsEqual(found.value(), it.value()))
            return false;
    }
    return true;
}

void ServiceProperty::rankingUp()
{
    m_properties.insert(PluginConstance::SERVICE_RANKING, ranking() + 1);
}

void ServiceProperty::rankingDown()
{
    m_properties.insert(PluginConstance::SERVICE_RANKING, ranking() - 1);
}

} // namespace ExtensionSystem
