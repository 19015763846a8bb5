#include "cleanuphelper.h"

namespace ExtensionSystem {

CleanupHelper::~CleanupHelper()
{
}

} // namespace ExtensionSystem
