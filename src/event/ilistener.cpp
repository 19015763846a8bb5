// SPDX-License-Identifier: BSD-3-Clause
#include "ilistener.h"
#include "cleanuphelper.h"

namespace ExtensionSystem {

IListener::IListener(int type)
    : type(type)
    , cleanupHelper(nullptr)
{ }

IListener::~IListener()
{
    if (cleanupHelper)
        cleanupHelper->cleanup(this);
}

} // namespace ExtensionSystem
