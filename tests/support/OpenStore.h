// A program's folder of a test's own, with a new database open in it.
#pragma once

#include <string>
#include <string_view>

#include "platform/App.h"
#include "platform/Files.h"
#include "store/Globals.h"
#include "store/Schema.h"
#include "support/TempFolder.h"

namespace pixmora {

class OpenStore {
public:
    OpenStore() {
        App::SetPath(ProgramPath(folder.Path()));
        OpenOrCreateDatabase();
    }
    ~OpenStore() {
        gDatabase = nullptr;
        App::SetPath("");
    }
    OpenStore(const OpenStore &) = delete;
    OpenStore &operator=(const OpenStore &) = delete;

    /// The file of a schema version, in the system's form.
    std::string FilePath(int version = 9) const { return SystemPath(DatabasePath(version)); }

    TempFolder folder;
};

}  // namespace pixmora
