#include "cleanuphelper.h"

namespace ExtensionSystem {

CleanupHelper::~CleanupHelper() = default;

} // namespace ExtensionSystem
