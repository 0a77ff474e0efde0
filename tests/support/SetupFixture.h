// A program's folder, database and settings for the tests of the setup dialogs, with a scripted owner.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/site/Globals.h"
#include "platform/App.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "setup/rules/AlbumEditor.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "support/ScriptedOwner.h"
#include "support/TempFolder.h"

namespace pixmora {

inline constexpr int CriticalQuestion = FlagYesNo | FlagCritical;

class SetupFixture : public testing::Test {
protected:
    SetupFixture() {
        App::SetPath(ProgramPath(Program.Path()));
        Registry::SetFilePath(Program.Path("settings.ini"));
        setenv("XDG_CONFIG_HOME", Program.MakeFolder("config").c_str(), 1);
        EXPECT_TRUE(OpenOrCreateDatabase());
    }
    ~SetupFixture() override {
        gDatabase.reset();
        unsetenv("XDG_CONFIG_HOME");
        Registry::SetFilePath("");
        App::SetPath("");
    }

    /// An album on a new folder of that name. @return the folder, in the system's form
    std::string MakeAlbum(const std::string &name) const {
        AlbumFields fields;
        fields.Name = name;
        fields.Directory = Program.MakeFolder("albums/" + name);
        AlbumEditor().Save(fields);
        return fields.Directory;
    }

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

    TempFolder Program;
    ScriptedOwner Owner;
};

}  // namespace pixmora
