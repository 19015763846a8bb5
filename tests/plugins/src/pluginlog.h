// SPDX-License-Identifier: BSD-3-Clause
#ifndef PLUGINLOG_H
#define PLUGINLOG_H

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

// What test plug-ins did, kept on the application object where the test reads it.
#define ES_TEST_PLUGIN_LOG "es.test.log"

inline void log(const QString &entry)
{
    QStringList entries = qApp->property(ES_TEST_PLUGIN_LOG).toStringList();
    entries << entry;
    qApp->setProperty(ES_TEST_PLUGIN_LOG, entries);
}

#endif // PLUGINLOG_H
