// SPDX-License-Identifier: BSD-3-Clause
#include <QtCore/QObject>

// A valid Qt plug-in whose root object does not implement the activator.
class NotActivator : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.something.else/1.0")
};

#include "notactivator.moc"
