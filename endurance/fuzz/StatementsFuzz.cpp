// Statements and criteria on their way to the engine: as a whole, and with a stranger's text in a literal.
#include <algorithm>

#include "Fuzz.h"
#include "platform/database/RecordsetRows.h"
#include "platform/runtime/Text.h"
#include "support/OpenStore.h"

namespace pixmora {
namespace {

/// What a statement may do: read, and the functions that the translation knows; and the engine's look at a table.
int Authorize(void *, int action, const char *name, const char *function, const char *, const char *) {
    if (action == SQLITE_SELECT || action == SQLITE_READ) return SQLITE_OK;
    if (action == SQLITE_PRAGMA && std::string_view(name) == "table_info") return SQLITE_OK;
    constexpr std::string_view functions[] = {"like", "sum", "count"};
    const auto isCalled = [function](std::string_view known) {
        return EqualsIgnoreCase(function, known);
    };
    if (action == SQLITE_FUNCTION && std::ranges::any_of(functions, isCalled)) return SQLITE_OK;
    ReportBroken("a statement only reads", __FILE__, __LINE__);
}

/// A database of the program with a few rows, on which nothing but reading is allowed any more.
class Base {
public:
    Base() : Engine(DatabasePath(CurrentSchemaVersion), SQLITE_OPEN_READWRITE) {
        for (const char *name : {"Ann", "bob", "O%34Brien"}) {
            const auto users = gDatabase->OpenRecordset("Users", RecordsetType::Table);
            users->AddNew();
            users->Set("Username", std::string(name));
            users->Set("Password", std::string("secret"));
            users->Update();
        }
        Engine.Table("Users");  // the engine makes a table of its own for the first look
        sqlite3_set_authorizer(Engine.Handle(), Authorize, nullptr);
    }

private:
    OpenStore store_;  // first: the engine's file is in it

public:
    DatabaseEngine Engine;
};

DatabaseEngine &Engine() {
    static Base base;
    return base.Engine;
}

std::int64_t CountOf(const std::string &statement) {
    return StatementRows(Engine(), TranslateSelect(statement)).Count();
}

/// The translation has marks and names only, and the engine reads it as the one condition that it stands for.
void CheckCriteria(const TranslatedCondition &condition) {
    std::string outside;
    std::size_t marks = 0;
    bool isInName = false;
    for (const char c : condition.Sql) {
        if (c == '"') isInName = !isInName;
        if (!isInName) outside += c;
        if (!isInName && c == '?') ++marks;
    }
    REQUIRE(!isInName && marks == condition.Literals.size());
    REQUIRE(HoldsOnly(outside, "\" ?=<>()!'-ACDEIKLNOPRSTXabcdefghijklmnopqrstuvwxyz"));

    sqlite3_stmt *handle = nullptr;
    const char *tail = nullptr;
    const std::string sql = "SELECT 1 FROM Users WHERE " + condition.Sql;
    if (sqlite3_prepare_v2(Engine().Handle(), sql.c_str(), -1, &handle, &tail) != SQLITE_OK) return;
    REQUIRE(tail == sql.c_str() + sql.size());
    REQUIRE(sqlite3_stmt_readonly(handle) != 0);
    REQUIRE(sqlite3_bind_parameter_count(handle) == static_cast<int>(marks));
    sqlite3_finalize(handle);
}

/// Opens and reads what the text asks for, as a recordset does.
void CheckStatement(std::string_view text) {
    ResultOf([&] {
        StatementRows statement(Engine(), TranslateSelect(text));
        const std::int64_t count = statement.Count();
        std::int64_t rows = 0;
        for (Row row; statement.FetchNext(row);) ++rows;
        REQUIRE(rows == count);
        return count;
    });
}

/// A text in a literal is that literal's value or an error, and what stands around it stays what it was.
void CheckLiteral(const std::string &text) {
    const std::string inQuotes = "Username=\"" + Replace(text, "\"", "") + "\" or Username='x'";
    const auto condition = ResultOf([&] { return TranslateCriteria(inQuotes); });
    REQUIRE(condition.has_value() == !Contains(text, std::string_view("\0", 1)));
    if (!condition) return;
    REQUIRE(condition->Sql == R"("Username" COLLATE TEXTS = ? OR "Username" COLLATE TEXTS = ? )");
    REQUIRE(condition->Literals == (std::vector<FieldValue>{Replace(text, "\"", ""), "x"}));

    const auto quoted = ResultOf([&] { return QuotedText(text); });
    REQUIRE(quoted.has_value() == !Contains(text, "'"));
    if (!quoted) return;
    const bool isUser =
        CompareTexts(text, "ann") == 0 || CompareTexts(text, "bob") == 0 || CompareTexts(text, "o%34brien") == 0;
    REQUIRE(CountOf("SELECT * FROM Users WHERE Username=" + *quoted) == (isUser ? 1 : 0));
    // "*" is the one wildcard of this language.
    if (!HoldsNone(text, "[?#") || std::ranges::any_of(text, [](char c) { return static_cast<signed char>(c) < 0; }))
        return;
    std::int64_t matches = 0;
    for (const char *name : {"ann", "bob", "o%34brien"}) matches += Like(name, LCase(text));
    REQUIRE(CountOf("SELECT * FROM Users WHERE Username LIKE " + *quoted) == matches);
}

}  // namespace

void CheckInput(std::string_view text) {
    if (const auto condition = ResultOf([&] { return TranslateCriteria(text); })) CheckCriteria(*condition);
    CheckStatement(text);
    CheckStatement("SELECT * FROM Users WHERE " + std::string(text));
    CheckLiteral(std::string(text));
}

}  // namespace pixmora
