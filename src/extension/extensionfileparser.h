// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H
#define EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H

#include "extensionsystem_global.h"
#include "exttype.h"

#include <QtCore/QObject>
#include <QtCore/QSharedPointer>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParserPrivate;
class ExtensionStorage;
class TimelineRecorder;

// Decides whether an extension.xml must be read: a file whose digest matches the
// stored one is left alone, any other is read by a task on the global pool.
class EXTENSIONSYSTEM_AUTOTEST_EXPORT ExtensionFileParser : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ExtensionFileParser)

public:
    ExtensionFileParser(ExtensionStorage *storage, QObject *parent);
    ~ExtensionFileParser() override;

    // Where the digest check and the parse tasks record their phases; may be null.
    void setTimeline(const QSharedPointer<TimelineRecorder> &timeline);

public slots:
    // True when a task was started; false when the store's rows are to be used.
    bool parse(QString filepath);

signals:
    void errorOccured(int error, QString errorString);
    void extensionFound(ExtType::Plugin plugin);
    // Each file that parse() handed to a task ends with one of these two, on the
    // parser's thread, after extensionFound for a file that parsed. The path is the one given to parse().
    void fileParsed(QString filepath, ExtType::Plugin plugin);
    void fileFailed(QString filepath);

private:
    Q_DISABLE_COPY(ExtensionFileParser)
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONFILEPARSER_H
