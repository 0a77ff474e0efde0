#include "platform/StatementTranslator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/RunTimeError.h"

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
    {"blanks", "  \t"},
    {"text without an end", "a='b"},
    {"text ended by a doubled quote", "a='b''"},
    {"quote too many", "a='b'c'"},
    {"date without an end", "a=#3/1/2004"},
    {"no date", "a=#yesterday#"},
    {"no such day", "a=#2/30/2004#"},
    {"name without an end", "[a=1"},
    {"second statement", "a=1; DROP TABLE Users"},
    {"statement's end", "a=1;"},
    {"line comment", "a=1 -- and b=2"},
    {"block comment", "a=1 /* and b=2 */"},
    {"comment in place of a sign", "a=--1"},
    {"NUL behind the end", "a=1\0"s},
    {"NUL in a text", "a='b\0c'"s},
    {"NUL in a name", "[a\0]=1"s},
    {"function call", "load_extension('x')=1"},
    {"subquery", "a=(SELECT 1)"},
    {"parameter", "a=?"},
    {"concatenation", "a='x'||'y'"},
    {"arithmetic", "a=1+1"},
    {"byte beyond ASCII outside a text", "\xC3\xA9=1"},
    {"no operator", "a"},
    {"no right side", "a="},
    {"two operators", "a==1"},
    {"number run into a word", "a=5x"},
    {"LIKE a number", "a LIKE 5"},
    {"AND without a left side", "and a=1"},
    {"OR without a right side", "a=1 or"},
    {"parenthesis never closed", "(a=1"},
    {"parenthesis never opened", "a=1)"},
    {"keyword for a name", "select=1"},
    {"a thousand parentheses", std::string(1000, '(') + "a=1" + std::string(1000, ')')},
    {"a thousand NOTs",
     [] {
         std::string text;
         for (int i = 0; i < 1000; ++i) text += "not ";
         return text + "a=1";
     }()},
};

const RefusedCase refusedStatements[] = {
    {"no table", "SELECT * FROM"},
    {"no items", "SELECT FROM Users"},
    {"no condition", "SELECT * FROM Users WHERE"},
    {"two statements", "SELECT * FROM Users; DELETE FROM Users"},
    {"union", "SELECT * FROM Users UNION SELECT * FROM Albums"},
    {"join", "SELECT * FROM Users, Albums"},
    {"unknown function", "SELECT hex(Password) FROM Users"},
    {"function beside a field", "SELECT Username, COUNT(*) FROM Users"},
    {"SUM of all", "SELECT SUM(*) FROM Users"},
    {"order without a field", "SELECT * FROM Users ORDER BY"},
    {"order by number", "SELECT * FROM Users ORDER BY 1"},
    {"order of a sum", "SELECT SUM(a) AS s FROM Users ORDER BY a"},
    {"limit", "SELECT * FROM Users LIMIT 1"},
    {"quoted table", "SELECT * FROM 'Users'"},
};

template <typename Call>
void ExpectSyntaxError(const char *name, Call call) {
    try {
        call();
        ADD_FAILURE() << name << " was taken";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Number(), ErrorNumber::SyntaxError) << name;
    }
}

}  // namespace

TEST(StatementTranslator, LiftsLiteralsOutOfCriteria) {
    for (const ConditionCase &each : conditions) {
        const TranslatedCondition condition = TranslateCriteria(each.criteria);
        EXPECT_EQ(condition.Sql, each.sql) << each.name;
        EXPECT_EQ(condition.Literals, each.literals) << each.name;
    }
}

TEST(StatementTranslator, RefusesWhatIsNoCriterion) {
    for (const RefusedCase &each : refusedConditions) {
        ExpectSyntaxError(each.name, [&] { TranslateCriteria(each.text); });
        ExpectSyntaxError(each.name, [&] { TranslateSelect("SELECT * FROM Users WHERE " + each.text); });
    }
    for (const RefusedCase &each : refusedStatements) {
        ExpectSyntaxError(each.name, [&] { TranslateSelect(each.text); });
    }
}

TEST(StatementTranslator, ReadsStatements) {
    const SelectStatement plain = TranslateSelect(
        "SELECT * FROM PopularFiles WHERE FilePath LIKE \"*.jpg\" OR FilePath LIKE \"*.gif\" ORDER BY FileCount DESC, "
        "FilePath asc, AlbumName");
    EXPECT_EQ(plain.Table, "PopularFiles");
    EXPECT_TRUE(plain.Items.empty());
    EXPECT_EQ(plain.Where.Sql, R"(lower("FilePath") GLOB ? OR lower("FilePath") GLOB ?)");
    EXPECT_EQ(plain.OrderBy,
              R"("FileCount" COLLATE NOCASE DESC, "FilePath" COLLATE NOCASE, "AlbumName" COLLATE NOCASE)");
    EXPECT_FALSE(plain.IsAggregate());

    const SelectStatement sums = TranslateSelect("select sum(Visitors) as v, COUNT(*) as n, Max([Order]) from t");
    ASSERT_EQ(sums.Items.size(), 3U);
    EXPECT_TRUE(sums.IsAggregate());
    EXPECT_EQ(sums.Items[0].Function + " " + sums.Items[0].Field + " " + sums.Items[0].Name, "SUM Visitors v");
    EXPECT_EQ(sums.Items[1].Function + " " + sums.Items[1].Field + " " + sums.Items[1].Name, "COUNT * n");
    EXPECT_EQ(sums.Items[2].Function + " " + sums.Items[2].Field + " " + sums.Items[2].Name, "MAX Order Order");
}

TEST(StatementTranslator, TellsStatementsFromTables) {
    EXPECT_TRUE(IsStatement("  select * FROM t"));
    EXPECT_FALSE(IsStatement("MediaList1"));
    EXPECT_FALSE(IsStatement("Selections"));
    EXPECT_FALSE(IsStatement("DELETE FROM t"));
}

}  // namespace pixmora
