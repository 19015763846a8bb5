// SPDX-License-Identifier: BSD-3-Clause
#include "testactivator.h"
#include "pluginlog.h"

#include <ExtensionSystem/PluginContext>
#include <ExtensionSystem/PluginMetaData>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace {

QString option(ExtensionSystem::PluginContext *context, const char *key)
{
    return context->metaData()->getProperty(QString::fromLatin1(key));
}

} // namespace

void TestActivator::start(ExtensionSystem::PluginContext *context)
{
    log(QStringLiteral("start:") + context->symbolic());
    const QString greeting = QCoreApplication::translate("TestActivator", "hello");
    if (greeting != QLatin1String("hello"))
        log(QStringLiteral("translated:") + greeting);
    const QString next = option(context, "test.startPlugin");
    if (!next.isEmpty())
        context->startPlugin(next);
}

void TestActivator::stop(ExtensionSystem::PluginContext *context)
{
    log(QStringLiteral("stop:") + context->symbolic());
}
