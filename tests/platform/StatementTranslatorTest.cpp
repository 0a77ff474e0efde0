#include "platform/StatementTranslator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ErrorOf.h"

namespace pixmora {

namespace {

using Literals = std::vector<FieldValue>;
using namespace std::string_literals;

constexpr std::int64_t operator""_l(unsigned long long number) {
    return static_cast<std::int64_t>(number);
}

struct ConditionCase {
    const char *name;
    std::string criteria;
    std::string sql;
    Literals literals;
};

const ConditionCase conditions[] = {
    {"text in single quotes", "AlbumName='Holidays'", R"("AlbumName" = ? COLLATE NOCASE)", {"Holidays"}},
    {"text in double quotes", "AlbumName=\"It's\"", R"("AlbumName" = ? COLLATE NOCASE)", {"It's"}},
    {"doubled quotes are quotes",
     R"(a='it''s' or b="6"" x")",
     R"("a" = ? COLLATE NOCASE OR "b" = ? COLLATE NOCASE)",
     {"it's", "6\" x"}},
    {"empty text", "a=''", R"("a" = ? COLLATE NOCASE)", {""}},
    {"a text holds anything",
     "a='; -- /* %_* \\ \xC3\xA9 ) or 1=1'",
     R"("a" = ? COLLATE NOCASE)",
     {"; -- /* %_* \\ \xC3\xA9 ) or 1=1"}},
    {"whole, negative and broken numbers",
     "a=5 and b > -3599999 and c<=2.5",
     R"("a" = ? COLLATE NOCASE AND "b" > ? COLLATE NOCASE AND "c" <= ? COLLATE NOCASE)",
     {5_l, -3599999, 2.5}},
    {"a number beyond 64 bits", "a<99999999999999999999", R"("a" < ? COLLATE NOCASE)", {1e20}},
    {"dates of either form",
     "d<#3/1/2004# or d>=#2004-03-01 16:05:06#",
     R"("d" < ? COLLATE NOCASE OR "d" >= ? COLLATE NOCASE)",
     {"2004-03-01", "2004-03-01 16:05:06"}},
    {"wildcards",
     "FilePath LIKE \"*.JPG\" OR f not like 'a?#[1]'",
     R"(lower("FilePath") GLOB ? OR lower("f") NOT GLOB ?)",
     {"*.jpg", "a?[0-9][[]1]"}},
    {"parentheses, NOT, Null and truth",
     "not (a<>1) and b is null and c IS NOT NULL and d=True and e=FALSE",
     R"(NOT ("a" <> ? COLLATE NOCASE) AND "b" IS NULL AND "c" IS NOT NULL AND "d" = ? COLLATE NOCASE AND )"
     R"("e" = ? COLLATE NOCASE)",
     {1_l, 1_l, 0_l}},
    {"names in brackets",
     "[Order]=1 and [a\"b]=2",
     R"("Order" = ? COLLATE NOCASE AND "a""b" = ? COLLATE NOCASE)",
     {1_l, 2_l}},
};

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

TEST(StatementTranslator, LiftsLiteralsOutOfCriteria) {
    for (const ConditionCase &each : conditions) {
        const TranslatedCondition condition = TranslateCriteria(each.criteria);
        EXPECT_EQ(condition.Sql, each.sql) << each.name;
        EXPECT_EQ(condition.Literals, each.literals) << each.name;
    }
}

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

TEST(StatementTranslator, ReadsStatements) {
    const SelectStatement plain = TranslateSelect("SELECT * FROM t WHERE a=1 ORDER BY FileCount DESC, FilePath asc, b");
    EXPECT_EQ(plain.Table + ", " + plain.Where.Sql, R"(t, "a" = ? COLLATE NOCASE)");
    EXPECT_EQ(plain.OrderBy, R"("FileCount" COLLATE NOCASE DESC, "FilePath" COLLATE NOCASE, "b" COLLATE NOCASE)");

    std::string items;
    for (const SelectItem &item :
         TranslateSelect("select sum(Visitors) as v, COUNT(*) as n, Max([Order]) from t").Items) {
        items += item.Function + "(" + item.Field + ") " + item.Name + ", ";
    }
    EXPECT_EQ(items, "SUM(Visitors) v, COUNT(*) n, MAX(Order) Order, ");
}

}  // namespace pixmora
