// A program's folder, database and settings for the tests of the setup dialogs, with a scripted owner.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/site/Globals.h"
#include "setup/rules/AlbumEditor.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "support/ProgramFolder.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

/// For a dialog's hands: one that gives what the variable holds then, and one that puts into it what it is given.
template <typename Value>
auto Give(const Value &variable) {
    return [&variable] {
        return variable;
    };
}
template <typename Value>
auto TakeInto(Value &variable) {
    return [&variable](const Value &value) {
        variable = value;
    };
}

/// An album on a new folder of that name below "albums". @return the folder, in the system's form
inline std::string SaveAlbum(const TempFolder &program, const std::string &name) {
    AlbumFields fields;
    fields.Name = name;
    fields.Directory = program.MakeFolder("albums/" + name);
    AlbumEditor().Save(fields);
    return fields.Directory;
}

class SetupFixture : public testing::Test {
protected:
    SetupFixture() {
        setenv("XDG_CONFIG_HOME", Program.MakeFolder("config").c_str(), 1);
        EXPECT_TRUE(OpenOrCreateDatabase());
    }
    ~SetupFixture() override {
        gDatabase.reset();
        unsetenv("XDG_CONFIG_HOME");
    }

    std::string MakeAlbum(const std::string &name) const { return SaveAlbum(Program, name); }

    /// A column's values, each with "|" behind it.
    static std::string Column(const std::string &table, const std::string &field) {
        std::string values;
        const auto rows = gDatabase->OpenRecordset(table, RecordsetType::Snapshot);
        for (; !rows->Eof(); rows->MoveNext()) {
            const FieldValue value = rows->Value(field);
            values += (IsNull(value) ? "" : AsText(value)) + "|";
        }
        return values;
    }

    ProgramFolder Program;
    ScriptedOwner Owner;
};

}  // namespace pixmora
