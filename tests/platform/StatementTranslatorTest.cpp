// What is no statement and no condition; RecordsetTest has what is.
#include "platform/StatementTranslator.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ErrorOf.h"

namespace pixmora {

namespace {

using namespace std::string_literals;

struct RefusedCase {
    const char *name;
    std::string text;
};

const RefusedCase refusedConditions[] = {
    {"nothing", ""},
    {"text without an end", "a='b"},
    {"quote too many", "a='b'c'"},
    {"date without an end", "a=#3/1/2004"},
    {"no date", "a=#yesterday#"},
    {"no such day", "a=#2/30/2004#"},
    {"second statement", "a=1; DROP TABLE Users"},
    {"line comment", "a=1 -- and b=2"},
    {"block comment", "a=1 /* and b=2 */"},
    {"NUL in a text", "a='b\0c'"s},
    {"NUL in a name", "[a\0]=1"s},
    {"function call", "load_extension('x')=1"},
    {"subquery", "a=(SELECT 1)"},
    {"arithmetic", "a=1+1"},
    {"byte beyond ASCII outside a text", "\xC3\xA9=1"},
    {"no operator", "a"},
    {"number run into a word", "a=5x"},
    {"LIKE a number", "a LIKE 5"},
    {"OR without a right side", "a=1 or"},
    {"parenthesis never closed", "(a=1"},
    {"keyword for a name", "select=1"},
    {"a thousand parentheses", std::string(1000, '(') + "a=1" + std::string(1000, ')')},
};

const RefusedCase refusedStatements[] = {
    {"no table", "SELECT * FROM"},
    {"union", "SELECT * FROM Users UNION SELECT * FROM Albums"},
    {"join", "SELECT * FROM Users, Albums"},
    {"unknown function", "SELECT hex(Password) FROM Users"},
    {"function beside a field", "SELECT Username, COUNT(*) FROM Users"},
    {"SUM of all", "SELECT SUM(*) FROM Users"},
    {"order without a field", "SELECT * FROM Users ORDER BY"},
    {"order of a sum", "SELECT SUM(a) AS s FROM Users ORDER BY a"},
};

}  // namespace

TEST(StatementTranslator, RefusesEverythingElse) {
    for (const RefusedCase &each : refusedConditions) {
        const std::string statement = "SELECT * FROM Users WHERE " + each.text;
        EXPECT_EQ(ErrorOf([&] { TranslateCriteria(each.text); }), CodeOf(ErrorNumber::SyntaxError)) << each.name;
        EXPECT_EQ(ErrorOf([&] { TranslateSelect(statement); }), CodeOf(ErrorNumber::SyntaxError)) << each.name;
    }
    for (const RefusedCase &each : refusedStatements) {
        EXPECT_EQ(ErrorOf([&] { TranslateSelect(each.text); }), CodeOf(ErrorNumber::SyntaxError)) << each.name;
    }
}

}  // namespace pixmora
