// SPDX-License-Identifier: BSD-3-Clause
#include "serviceactivator.h"
#include "pluginlog.h"

#include <ExtensionSystem/PluginConstance>
#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/PluginMetaData>
#include <ExtensionSystem/ServiceProperty>
#include <ExtensionSystem/ServiceReference>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

using namespace ExtensionSystem;

namespace {

QStringList entries(PluginContext *context, const char *key)
{
    return context->metaData()->getProperty(QString::fromLatin1(key)).split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

} // namespace

QObject *CountingFactory::createService(PluginContext *context)
{
    log(QStringLiteral("create %1 for %2").arg(objectName(), context->symbolic()));
    auto *made = new QObject(this);
    made->setObjectName(QStringLiteral("%1-%2").arg(objectName()).arg(++m_made));
    return made;
}

void ServiceActivator::start(PluginContext *context)
{
    registerServices(context);
    consumeServices(context);
}

void ServiceActivator::stop(PluginContext *)
{
    for (ServiceRegistration &registration : m_registrations)
        registration.unregister();
    m_registrations.clear();
    qDeleteAll(m_services);
    m_services.clear();
}

// An entry: <name> <plain|shared|unshared|null|same> <class,class|-> [key=value ...];
// "same" offers the object of the previous entry once more.
void ServiceActivator::registerServices(PluginContext *context)
{
    for (const QString &entry : entries(context, "test.register")) {
        const QStringList fields = entry.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const QString name = fields.value(0);
        const QString kind = fields.value(1);
        QObject *service = nullptr;
        if (kind == QLatin1String("plain"))
            service = new PlainService;
        else if (kind == QLatin1String("shared") || kind == QLatin1String("unshared"))
            service = new CountingFactory(kind == QLatin1String("shared"));
        else if (kind == QLatin1String("same"))
            service = m_services.value(m_services.size() - 1);
        if (service && kind != QLatin1String("same")) {
            service->setObjectName(name);
            m_services << service;
        }

        QStringList classes = fields.value(2).split(QLatin1Char(','), Qt::SkipEmptyParts);
        classes.removeAll(QStringLiteral("-"));
        QHash<QString, QVariant> properties{{QStringLiteral("test.name"), name}};
        for (const QString &pair : fields.mid(3)) {
            const QString key = pair.section(QLatin1Char('='), 0, 0);
            const QString value = pair.section(QLatin1Char('='), 1);
            properties.insert(key, key == PluginConstance::SERVICE_RANKING ? QVariant(value.toInt()) : QVariant(value));
        }

        // A failed registration is kept only here: a copy would outlive its record.
        const ServiceRegistration registration = context->registerService(service, classes, properties);
        if (!registration.plugin()) {
            log(QStringLiteral("failed ") + name);
            continue;
        }
        log(QStringLiteral("registered %1 %2 %3")
                    .arg(name)
                    .arg(registration.property().serviceId())
                    .arg(registration.reference().property(PluginConstance::SERVICE_PID).toString()));
        m_registrations << registration;
    }
}

// A step: get <class> | unget <class>, on the newest service of the class;
// unget gives back what the last get of that class returned.
void ServiceActivator::consumeServices(PluginContext *context)
{
    QHash<QString, QObject *> got;
    for (const QString &step : entries(context, "test.consume")) {
        const QString action = step.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
        const QString clazz = step.section(QLatin1Char(' '), 1, 1, QString::SectionSkipEmpty);
        const QList<ServiceReference> references = context->findServiceReferences(clazz);
        if (references.isEmpty()) {
            log(QStringLiteral("%1 found no %2").arg(context->symbolic(), clazz));
            continue;
        }
        QObject *object = got.value(clazz);
        if (action == QLatin1String("unget")) {
            context->ungetService(references.first(), object);
        } else {
            object = context->getService(references.first());
            got.insert(clazz, object);
        }
        log(QStringLiteral("%1 %2 %3")
                    .arg(context->symbolic(), action, object ? object->objectName() : QStringLiteral("null")));
    }
}
