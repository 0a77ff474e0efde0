// What is no statement and no condition, by the lines of refused.tsv; RecordsetTest has what is.
#include "platform/database/StatementTranslator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/TempFolder.h"

namespace pixmora {

using namespace std::string_literals;

/// Either the translation refuses it or the engine does.
TEST(StatementTranslator, RefusesEverythingElse) {
    const TempFolder folder;
    const auto database = Database::CreateDatabase(ProgramPath(folder.Path("test.mdb")));
    database->CreateTable("T", {{"a", FieldType::Text}});
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    std::vector<std::string> lines = {"", "a='b\0c'"s, "a\0=1"s,
                                      std::string(5000, '(') + "a=1" + std::string(5000, ')')};
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "refused.tsv");
    for (std::string line; std::getline(table, line);) lines.push_back(line);
    EXPECT_GT(lines.size(), 35U);
    for (const std::string &line : lines) {
        const bool isWhole = IsStatement(line);
        const std::string statement = isWhole ? line : "SELECT * FROM T WHERE " + line;
        EXPECT_NE(ErrorOf([&] { database->OpenRecordset(statement, RecordsetType::Snapshot)->Eof(); }), ErrorNumber{})
            << line;
        EXPECT_NE(ErrorOf([&] { rows->FindFirst(line); }), ErrorNumber{}) << line;
    }
}

}  // namespace pixmora
