// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H
#define EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H

#include "extensionsystem_global.h"
#include "exttype.h"

#include <QtCore/QObject>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParserPrivate;
class ExtensionStorage;

// Decides whether an extension.xml must be read: a file whose digest matches the
// stored one is left alone, any other is read by a task on the global pool.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionFileParser : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ExtensionFileParser)

public:
    ExtensionFileParser(ExtensionStorage *storage, QObject *parent);
    ~ExtensionFileParser() override;

public slots:
    // True when a task was started; false when the store's rows are to be used.
    bool parse(QString filepath);

signals:
    void errorOccured(int error, QString errorString);
    void extensionFound(ExtType::Plugin plugin);

private:
    Q_DISABLE_COPY(ExtensionFileParser)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H
