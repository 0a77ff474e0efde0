// What is no statement and no condition; RecordsetTest has what is.
#include "platform/database/StatementTranslator.h"

#include <gtest/gtest.h>

#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

using namespace std::string_literals;

const std::string refusedConditions[] = {"",
                                         "a='b",
                                         "a='b'c'",
                                         "a=#3/1/2004",
                                         "a=#yesterday#",
                                         "a=#2/30/2004#",
                                         "a=1; DROP TABLE Users",
                                         "a=1 -- and a=2",
                                         "a=1 /* and a=2 */",
                                         "a='b\0c'"s,
                                         "a\0=1"s,
                                         "load_extension('x')=1",
                                         "a=(SELECT 1)",
                                         "a=1+1",
                                         "\xC3\xA9=1",
                                         "a=5x",
                                         "a LIKE 5",
                                         "a=1 or",
                                         "(a=1",
                                         "a=1) or (a=1",
                                         "select=1",
                                         "a<>1",
                                         "not a=1",
                                         "a is null",
                                         "[a]=1",
                                         "a=99999999999999999999",
                                         std::string(5000, '(') + "a=1" + std::string(5000, ')')};

const char *const refusedStatements[] = {"SELECT * FROM",
                                         "SELECT * FROM T UNION SELECT * FROM T",
                                         "SELECT * FROM T, T",
                                         "SELECT hex(a) FROM T",
                                         "SELECT COUNT(a) AS n FROM T",
                                         "SELECT SUM(*) AS s FROM T",
                                         "SELECT * FROM T ORDER BY",
                                         "SELECT TOP * FROM T ORDER BY a",
                                         "SELECT TOP 1.5 * FROM T ORDER BY a",
                                         "SELECT a FROM T GROUP BY a,",
                                         "SELECT * FROM T; DELETE FROM T"};

}  // namespace

/// Either the translation refuses it or the engine does.
TEST(StatementTranslator, RefusesEverythingElse) {
    const TempFolder folder;
    const auto database = Database::CreateDatabase(ProgramPath(folder.Path("test.mdb")));
    database->CreateTable("T", {{"a", FieldType::Text}});
    const auto open = [&](const std::string &statement) {
        return ErrorOf([&] { database->OpenRecordset(statement, RecordsetType::Snapshot)->Eof(); });
    };
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    for (const std::string &text : refusedConditions) {
        EXPECT_NE(ErrorOf([&] { rows->FindFirst(text); }), ErrorNumber{}) << text;
        EXPECT_NE(open("SELECT * FROM T WHERE " + text), ErrorNumber{}) << text;
    }
    for (const char *text : refusedStatements) EXPECT_NE(open(text), ErrorNumber{}) << text;
}

}  // namespace pixmora
