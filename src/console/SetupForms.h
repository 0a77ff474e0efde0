// The seam to the setup dialogs, which stand above the console.
#pragma once

#include <functional>
#include <string>

#include "console/OwnerActions.h"

namespace pixmora {

/// Both are modal and return when the dialog is closed; both must be set.
struct SetupForms {
    std::function<void(const SetupOpening &opening)> ShowSetup;
    /// The album editor for a new album on that directory.
    std::function<void(const std::string &directory)> ShowNewAlbum;
};

}  // namespace pixmora
