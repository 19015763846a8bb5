// SPDX-License-Identifier: BSD-3-Clause
#ifndef ESINSPECT_EXTENSIONLISTING_H
#define ESINSPECT_EXTENSIONLISTING_H

#include <QtCore/QString>

class QTextStream;

// Lists what an extension store holds, per plug-in. The file is opened read-only
// through a connection of its own, so the process's default connection, which
// the framework's store takes, is never touched.
class ExtensionListing
{
public:
    explicit ExtensionListing(const QString &storeFile);

    // False when the file is missing or cannot be read as a store.
    bool write(QTextStream &out) const;

private:
    QString m_storeFile;
};

#endif // ESINSPECT_EXTENSIONLISTING_H
