// SPDX-License-Identifier: BSD-3-Clause
// Internal to ExtensionSystem and not part of its API: it may change in any version.
#ifndef EXTENSIONSYSTEM_FILEIDENTITY_H
#define EXTENSIONSYSTEM_FILEIDENTITY_H

#include "extensionsystem_global.h"

#include <QtCore/QString>

namespace ExtensionSystem {
namespace Internal {

// What tells one version of a file from another without reading it: a file that
// is replaced or rewritten always gets a new change time, which no program
// sets back. All zero for a file that does not exist.
struct EXTENSIONSYSTEM_AUTOTEST_EXPORT FileIdentity
{
    qint64 size = -1;
    qint64 modified = 0; // ns since the epoch
    qint64 changed = 0; // ns since the epoch
    quint64 inode = 0;
    quint64 device = 0;

    static FileIdentity of(const QString &path);
    bool exists() const { return size >= 0; }
    bool operator==(const FileIdentity &other) const
    {
        return size == other.size && modified == other.modified && changed == other.changed && inode == other.inode
               && device == other.device;
    }
    bool operator!=(const FileIdentity &other) const { return !(*this == other); }
};

} // namespace Internal
} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_FILEIDENTITY_H
