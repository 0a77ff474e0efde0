// The process's memory towards the system.
#pragma once

namespace pixmora {

/// Gives free pages back to the system. The heap keeps them otherwise, once a big answer has waited for a slow reader.
/// Costs some milliseconds when there is much to give.
void ReturnFreeMemory();

}  // namespace pixmora
