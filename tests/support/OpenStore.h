// A program's folder of a test's own, with a new database open in it.
#pragma once

#include "store/Globals.h"
#include "store/Schema.h"
#include "support/ProgramFolder.h"
#include "support/RawDatabase.h"

namespace pixmora {

class OpenStore {
public:
    OpenStore() { OpenOrCreateDatabase(); }
    ~OpenStore() { gDatabase = nullptr; }

    /// The file of a schema version, in the system's form.
    std::string FilePath(int version = 9) const { return SystemPath(DatabasePath(version)); }
    /// What another program of the engine answers to the statement.
    std::string Ask(const std::string &sql) const { return RunSql(FilePath(), sql); }

    ProgramFolder folder;
};

}  // namespace pixmora
