// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_SERVICEMANAGER_H
#define EXTENSIONSYSTEM_SERVICEMANAGER_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class Plugin;
class ServiceReference;
class ServiceRegistration;

namespace Internal {
class PluginFrameworkContext;
class ServiceManagerPrivate;
} // namespace Internal

// The service registry of one framework: files services under their class
// names, announces them as service events and answers lookups, newest first.
class EXTENSIONSYSTEM_EXPORT ServiceManager : public QObject
{
    Q_OBJECT
    ES_DECLARE_PRIVATE(ServiceManager)
public:
    ServiceManager(Internal::PluginFrameworkContext *context, QObject *parent);
    ~ServiceManager() override;

    // On failure the result's plugin() is null; it is true all the same.
    ServiceRegistration registerService(Plugin *plugin, QObject *service, const QStringList &classes,
                                        const QHash<QString, QVariant> &properties);
    void unregisterService(const ServiceRegistration &registration);
    QList<ServiceReference> findServiceReferences(const QString &clazz, const QHash<QString, QVariant> &filter) const;

signals:
    void errorOccured(int error, const QString &errorString);

private:
    Q_DISABLE_COPY(ServiceManager)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_SERVICEMANAGER_H
