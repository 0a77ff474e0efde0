// What is no statement and no condition; RecordsetTest has what is.
#include "platform/database/StatementTranslator.h"

#include <gtest/gtest.h>

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
    const auto open = [&](const std::string &statement) {
        return ErrorOf([&] { database->OpenRecordset(statement, RecordsetType::Snapshot)->Eof(); });
    };
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    for (const std::string &text : {""s,
                                    "a='b"s,
                                    "a='b'c'"s,
                                    "a=#3/1/2004"s,
                                    "a=#yesterday#"s,
                                    "a=#2/30/2004#"s,
                                    "a=1; DROP TABLE Users"s,
                                    "a=1 -- and a=2"s,
                                    "a=1 /* and a=2 */"s,
                                    "a='b\0c'"s,
                                    "a\0=1"s,
                                    "load_extension('x')=1"s,
                                    "a=(SELECT 1)"s,
                                    "a=1+1"s,
                                    "\xC3\xA9=1"s,
                                    "a=5x"s,
                                    "a LIKE 5"s,
                                    "a=1 or"s,
                                    "(a=1"s,
                                    "a=1) or (a=1"s,
                                    "select=1"s,
                                    "a<>1"s,
                                    "not a=1"s,
                                    "a is null"s,
                                    "[a]=1"s,
                                    "a=99999999999999999999"s,
                                    std::string(5000, '(') + "a=1" + std::string(5000, ')')}) {
        EXPECT_NE(ErrorOf([&] { rows->FindFirst(text); }), ErrorNumber{}) << text;
        EXPECT_NE(open("SELECT * FROM T WHERE " + text), ErrorNumber{}) << text;
    }
    for (const char *text :
         {"* FROM", "* FROM T UNION SELECT * FROM T", "* FROM T, T", "hex(a) FROM T", "COUNT(a) AS n FROM T",
          "SUM(*) AS s FROM T", "* FROM T ORDER BY", "TOP * FROM T ORDER BY a", "TOP 1.5 * FROM T ORDER BY a",
          "a FROM T GROUP BY a,", "* FROM T; DELETE FROM T"}) {
        EXPECT_NE(open("SELECT "s + text), ErrorNumber{}) << text;
    }
}

}  // namespace pixmora
