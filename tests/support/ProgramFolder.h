// A program's folder of a test's own, with the settings in it.
#pragma once

#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/registry/Registry.h"
#include "support/TempFolder.h"

namespace pixmora {

/// Is the program's folder, and holds its settings, for its life.
class ProgramFolder : public TempFolder {
public:
    ProgramFolder() {
        App::SetPath(ProgramPath(Path()));
        Registry::SetFilePath(Path("settings.ini"));
    }
    ~ProgramFolder() {
        Registry::SetFilePath("");
        App::SetPath("");
    }
};

}  // namespace pixmora
