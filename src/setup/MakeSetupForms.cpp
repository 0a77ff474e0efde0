// The setup dialogs as the console opens them.
#include "setup/MakeSetupForms.h"

#include "setup/frmSetup.h"
#include "setup/frmSetupAlbum.h"

namespace pixmora {

SetupForms MakeSetupForms() {
    SetupForms forms;
    forms.ShowSetup = [](const SetupOpening &opening) {
        frmSetup form(opening);
        form.Run();
    };
    forms.ShowNewAlbum = [](const std::string &directory) {
        frmSetupAlbum form(nullptr);
        form.SetDirectory(directory);
        form.exec();
    };
    return forms;
}

}  // namespace pixmora
