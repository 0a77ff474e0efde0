// The targets that take texts of a language: statements, wildcards, tags, and the files of settings.
#include <algorithm>

#include "Fuzz.h"
#include "platform/database/RecordsetRows.h"
#include "platform/registry/RegistryFile.h"
#include "platform/runtime/Text.h"
#include "setup/rules/StripTags.h"
#include "store/IniFile.h"
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
struct Base {
    Base() {
        for (const char *name : {"Ann", "bob", "O%34Brien"})
            Store.Ask(std::string("INSERT INTO Users (Username, Password) VALUES ('") + name + "', 'secret')");
        Engine.Table("Users");  // the engine makes a table of its own for the first look
        sqlite3_set_authorizer(Engine.Handle(), Authorize, nullptr);
    }

    OpenStore Store;  // first: the engine's file is in it
    DatabaseEngine Engine{DatabasePath(CurrentSchemaVersion), SQLITE_OPEN_READWRITE};
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

/// Statements and criteria on their way to the engine: as a whole, and with a stranger's text in a literal.
void CheckStatements(std::string_view text) {
    if (const auto condition = ResultOf([&] { return TranslateCriteria(text); })) CheckCriteria(*condition);
    CheckStatement(text);
    CheckStatement("SELECT * FROM Users WHERE " + std::string(text));
    CheckLiteral(std::string(text));
}

/// Each character in a list of its own, which stands for itself alone.
std::string Literally(std::string_view text) {
    std::string pattern;
    for (const char c : text)
        pattern += HoldsNone(std::string_view(&c, 1), "*?#[") ? std::string(1, c) : std::string{'[', c, ']'};
    return pattern;
}

/// A match of a pattern without lists by the table of all its beginnings against all the text's.
bool MatchesByTable(std::string_view text, std::string_view pattern) {
    std::vector<bool> fits(text.size() + 1);
    fits[0] = true;
    for (const char p : pattern) {
        bool before = fits[0];
        fits[0] = fits[0] && p == '*';
        for (std::size_t t = 0; t < text.size(); ++t) {
            const bool one = p == '?' || (p == '#' ? text[t] >= '0' && text[t] <= '9' : text[t] == p);
            const bool now = p == '*' ? fits[t + 1] || fits[t] : before && one;
            before = fits[t + 1];
            fits[t + 1] = now;
        }
    }
    return fits[text.size()];
}

void CheckLike(const std::string &text, const std::string &pattern) {
    const auto matches = ResultOf([&] { return Like(text, pattern); });
    constexpr std::size_t tableIsFastEnough = 20000;
    if (HoldsNone(pattern, "[")) {
        REQUIRE(matches.has_value());
        if (text.size() * pattern.size() <= tableIsFastEnough) REQUIRE(*matches == MatchesByTable(text, pattern));
    }
    REQUIRE(Like(text, Literally(text)));
    if (!matches) return;
    REQUIRE(Like("x" + text, "?" + pattern) == *matches);
    if (*matches) REQUIRE(Like("x" + text + "yz", "*" + pattern + "**"));
}

void CheckPathMatch(const std::string &name, const std::string &patterns) {
    const bool matches = PathMatchSpec(name, patterns);
    REQUIRE(matches == PathMatchSpec(UCase(name), LCase(patterns)));
    REQUIRE(PathMatchSpec(name, patterns + "; *"));
    REQUIRE(matches == PathMatchSpec(name, " ;" + patterns + ";"));
    const bool isOnePattern = HoldsNone(patterns, "; #[");
    if (isOnePattern && !patterns.empty()) REQUIRE(matches == Like(LCase(name), LCase(patterns)));
}

/// The wildcard matches: the pattern stands in the first line, the text behind it.
void CheckWildcards(std::string_view text) {
    const auto [pattern, name] = FirstLineAndRest(text);
    CheckLike(std::string(name), std::string(pattern));
    CheckPathMatch(std::string(name), std::string(pattern));
}

/// Whether the part comes of the whole by leaving characters out.
bool IsLeftOf(std::string_view part, std::string_view whole) {
    for (const char c : part) {
        const std::size_t found = whole.find(c);
        if (found == std::string_view::npos) return false;
        whole.remove_prefix(found + 1);
    }
    return true;
}

void CheckStripping(std::string_view text, std::string_view allowList) {
    const std::string cleaned = StripTags(text, allowList);
    REQUIRE(!cleaned.empty());
    REQUIRE(cleaned == " " || IsLeftOf(cleaned, text));
    if (allowList.empty()) REQUIRE(HoldsNone(cleaned, "<"));
}

/// The cleaning of the owner's texts: the allow list stands in the first line, the text behind it.
void CheckStripTags(std::string_view text) {
    const auto [allowList, owners] = FirstLineAndRest(text);
    CheckStripping(owners, allowList);
    CheckStripping(owners, "");
}

/// What was read comes back from what is written, also what is damaged.
void CheckTree(std::string_view text) {
    const Registry::Tree tree = Registry::ReadTree(text);
    const std::string written = Registry::WriteTree(tree);
    const Registry::Tree again = Registry::ReadTree(written);
    REQUIRE(again.Preamble == tree.Preamble && again.Keys.size() == tree.Keys.size());
    for (std::size_t i = 0; i < tree.Keys.size(); ++i) {
        REQUIRE(again.Keys[i].Path == tree.Keys[i].Path && again.Keys[i].Folded == tree.Keys[i].Folded);
        REQUIRE(std::ranges::equal(again.Keys[i].Entries, tree.Keys[i].Entries, [](const auto &a, const auto &b) {
            return a.IsValue == b.IsValue && a.Name == b.Name && a.Data == b.Data && a.Remark == b.Remark;
        }));
    }
    REQUIRE(Registry::WriteTree(again) == written);
}

/// Any text is a key's path, a value's name and a value.
void CheckValue(std::string_view name, std::string_view value) {
    Registry::Tree tree;
    Registry::SetValue(tree.FindOrAdd(std::string("HKCU\\") + std::string(name)), name, std::string(value));
    Registry::Tree again = Registry::ReadTree(Registry::WriteTree(tree));
    Registry::Key *key = again.Find(std::string("HKCU\\") + std::string(name));
    REQUIRE(key != nullptr);
    const Registry::Entry *entry = Registry::FindValue(*key, name);
    REQUIRE(entry != nullptr && entry->Data == Registry::Value(std::string(value)));
}

void CheckIni(std::string_view text, const MemoryFile &file) {
    file.Fill(text);
    const IniFile ini(file.Path());
    REQUIRE(HoldsNone(ini.Value("Orientation", "Format"), "\n"));
    const std::string known = ini.Value("Added section", "key");
    file.Fill(std::string(text) + "\n[added SECTION]\r\n KEY = 'a=b' \n");
    const std::string added = IniFile(file.Path()).Value("Added section", "key");
    REQUIRE(added == "a=b" || added == known);
}

/// The registry's file and the plain INI reader, both on any bytes.
void CheckIniFiles(std::string_view text) {
    static const MemoryFile file;
    CheckTree(text);
    const auto [name, value] = FirstLineAndRest(text);
    CheckValue(name, value);
    CheckIni(text, file);
}

}  // namespace

const Targets targets = {
    {"fuzz_Statements", CheckStatements},
    {"fuzz_Like", CheckWildcards},
    {"fuzz_StripTags", CheckStripTags},
    {"fuzz_IniFiles", CheckIniFiles},
};

}  // namespace pixmora
