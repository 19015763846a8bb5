// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONSTORAGE_H
#define EXTENSIONSYSTEM_EXTENSIONSTORAGE_H

#include "extensionsystem_global.h"
#include "exttype.h"

#include <QtCore/QMultiHash>
#include <QtCore/QObject>
#include <QtCore/QStringList>

QT_BEGIN_NAMESPACE
class QDir;
QT_END_NAMESPACE

namespace ExtensionSystem {
namespace Internal {

class ExtensionStoragePrivate;

// extension.dat: what every extension.xml declared, kept across runs so that an
// unchanged file is not read again. Works on the process's default SQL connection,
// on the thread that created it only. Reads of extension text count only the
// plug-ins in the active list.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionStorage : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ExtensionStorage)

public:
    ExtensionStorage(const QDir &dataDir, QObject *parent);
    ~ExtensionStorage() override;

    bool pluginRecord(const QString &filepath, QString &symbolic, QString &digest);
    void removeExtensions(const QString &symbolic);
    QStringList extensionTexts(const QString &extPlugin, const QString &pointId);
    QMultiHash<QString, QString> extensionTextsOfFile(const QString &filepath);

    QStringList activePlugins() const;
    void setActivePlugins(const QStringList &plugins);
    void updateActivePlugin(const QString &symbolic, bool present);

public slots:
    void writeExtensionPlugin(ExtType::Plugin plugin);

private:
    Q_DISABLE_COPY(ExtensionStorage)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONSTORAGE_H
