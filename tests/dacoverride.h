// SPDX-License-Identifier: BSD-3-Clause
#ifndef ES_DACOVERRIDE_H
#define ES_DACOVERRIDE_H

#include <QtCore/QtGlobal>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

// Root passes file modes by these two capabilities; without them it obeys them,
// so that a read-only file is read-only to the tests too. The change holds for
// the calling thread only.
inline bool setDacOverride(bool on)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2] = {};
    if (syscall(SYS_capget, &header, data) != 0)
        return false;
    const quint32 bits = (1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH);
    data[0].effective = on ? (data[0].effective | (data[0].permitted & bits)) : (data[0].effective & ~bits);
    return syscall(SYS_capset, &header, data) == 0;
}

#endif // ES_DACOVERRIDE_H
