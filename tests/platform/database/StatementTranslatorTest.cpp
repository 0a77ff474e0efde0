// What is no statement and no condition; RecordsetTest has what is.
#include "platform/database/StatementTranslator.h"

#include <gtest/gtest.h>

#include "support/ErrorOf.h"

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
                                         "a=1 -- and b=2",
                                         "a=1 /* and b=2 */",
                                         "a='b\0c'"s,
                                         "[a\0]=1"s,
                                         "load_extension('x')=1",
                                         "a=(SELECT 1)",
                                         "a=1+1",
                                         "\xC3\xA9=1",
                                         "a",
                                         "a=5x",
                                         "a LIKE 5",
                                         "a=1 or",
                                         "(a=1",
                                         "select=1",
                                         std::string(1000, '(') + "a=1" + std::string(1000, ')')};

const char *const refusedStatements[] = {"SELECT * FROM",
                                         "SELECT * FROM Users UNION SELECT * FROM Albums",
                                         "SELECT * FROM Users, Albums",
                                         "SELECT hex(Password) FROM Users",
                                         "SELECT Username, COUNT(*) FROM Users",
                                         "SELECT SUM(*) FROM Users",
                                         "SELECT * FROM Users ORDER BY",
                                         "SELECT SUM(a) AS s FROM Users ORDER BY a",
                                         "SELECT TOP 1 * FROM Users",
                                         "SELECT TOP 0 * FROM Users ORDER BY a",
                                         "SELECT TOP 1.5 * FROM Users ORDER BY a",
                                         "SELECT TOP * FROM Users ORDER BY a",
                                         "SELECT * FROM Users GROUP BY a",
                                         "SELECT a, b, SUM(c) FROM Users GROUP BY a",
                                         "SELECT a, SUM(b) FROM Users GROUP BY a ORDER BY a",
                                         "SELECT a, SUM(b) FROM Users GROUP BY a, "};

}  // namespace

TEST(StatementTranslator, RefusesEverythingElse) {
    for (const std::string &text : refusedConditions) {
        EXPECT_EQ(ErrorOf([&] { TranslateCriteria(text); }), ErrorNumber::SyntaxError) << text;
        EXPECT_EQ(ErrorOf([&] { TranslateSelect("SELECT * FROM Users WHERE " + text); }), ErrorNumber::SyntaxError)
            << text;
    }
    for (const char *text : refusedStatements)
        EXPECT_EQ(ErrorOf([&] { TranslateSelect(text); }), ErrorNumber::SyntaxError) << text;
}

}  // namespace pixmora
