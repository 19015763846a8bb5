// SPDX-License-Identifier: BSD-3-Clause
#include "cleanuphelper.h"

namespace ExtensionSystem {

CleanupHelper::~CleanupHelper() = default;

} // namespace ExtensionSystem
