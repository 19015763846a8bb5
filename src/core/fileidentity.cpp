// SPDX-License-Identifier: BSD-3-Clause
#include "fileidentity.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#ifdef Q_OS_UNIX
#    include <sys/stat.h>
#endif

namespace ExtensionSystem {
namespace Internal {

FileIdentity FileIdentity::of(const QString &path)
{
    FileIdentity identity;
#ifdef Q_OS_UNIX
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return identity;
    identity.size = qint64(status.st_size);
    identity.modified = qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    identity.changed = qint64(status.st_ctim.tv_sec) * 1000000000 + status.st_ctim.tv_nsec;
    identity.inode = quint64(status.st_ino);
    identity.device = quint64(status.st_dev);
#else
    // Elsewhere what Qt tells, to the millisecond.
    const QFileInfo info(path);
    if (!info.exists())
        return identity;
    identity.size = info.size();
    identity.modified = info.lastModified().toMSecsSinceEpoch() * 1000000;
    identity.changed = info.metadataChangeTime().toMSecsSinceEpoch() * 1000000;
#endif
    return identity;
}

} // namespace Internal
} // namespace ExtensionSystem
