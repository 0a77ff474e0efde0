// The setup dialogs as the console opens them.
#pragma once

#include "console/SetupForms.h"

namespace pixmora {

SetupForms MakeSetupForms();

}  // namespace pixmora
