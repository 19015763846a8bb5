// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_EXTENSIONFILEPARSER_P_H
#define EXTENSIONSYSTEM_EXTENSIONFILEPARSER_P_H

#include "extensionfileparser.h"

#include <QtCore/private/qobject_p.h>

namespace ExtensionSystem {
namespace Internal {

class ExtensionFileParserPrivate : public QObjectPrivate
{
    Q_DECLARE_PUBLIC(ExtensionFileParser)

public:
    ExtensionFileParserPrivate();

    // Part of the parser's error table as it was designed; no path of the
    // parser fails today, so nothing calls it and error() stays 0.
    void setError(int code, const QString &text);

    int error;
    QString errorString;
    ExtensionStorage *storage;
    QSharedPointer<TimelineRecorder> timeline;
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_EXTENSIONFILEPARSER_P_H
