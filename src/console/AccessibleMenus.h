// The painted menus among the windows that assistive technology finds.
#pragma once

namespace pixmora {

/// The toolkit leaves popups out of the program's windows. Installed once, before anybody asks for them.
void ShowMenusToAssistiveTechnology();

}  // namespace pixmora
