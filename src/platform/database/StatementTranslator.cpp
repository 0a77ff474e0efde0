// Turns the program's statements and criteria into the SQL of SQLite, with every literal lifted out of the text.
#include "platform/database/StatementTranslator.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "platform/database/StatementTokens.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr std::array<std::string_view, 18> keywords = {"SELECT", "FROM", "WHERE", "ORDER", "BY",    "AND",
                                                       "OR",     "NOT",  "LIKE",  "IS",    "NULL",  "AS",
                                                       "ASC",    "DESC", "TRUE",  "FALSE", "GROUP", "TOP"};
constexpr std::array<std::string_view, 5> functions = {"SUM", "COUNT", "MIN", "MAX", "AVG"};
constexpr std::array<std::string_view, 6> comparisons = {"=", "<>", "<", ">", "<=", ">="};

/// Parentheses and NOTs inside one another; each costs a few hundred bytes of stack.
constexpr int deepestNesting = 100;

[[noreturn]] void Refuse() {
    throw RunTimeError(ErrorNumber::SyntaxError);
}

FieldValue NumberOf(const std::string &digits) {
    const char *end = digits.data() + digits.size();
    std::int64_t whole = 0;
    if (const auto result = std::from_chars(digits.data(), end, whole); result.ec == std::errc() && result.ptr == end) {
        return whole;
    }
    double number = 0;
    if (std::from_chars(digits.data(), end, number).ec != std::errc()) Refuse();
    return number;
}

FieldValue Negative(FieldValue number) {
    if (const auto *whole = std::get_if<std::int64_t>(&number)) return -*whole;
    return -std::get<double>(number);
}

std::string IsoDateOf(const std::string &text) {
    try {
        return IsoDate(ParseDate(text));
    } catch (const RunTimeError &) {
        Refuse();
    }
}

/// The pattern in the form of GLOB, which knows `*` and `?` alike, for a text in lower case.
std::string GlobPattern(std::string_view pattern) {
    std::string glob;
    for (const char c : LCase(pattern)) {
        if (c == '#') {
            glob += "[0-9]";
        } else if (c == '[') {
            glob += "[[]";
        } else {
            glob += c;
        }
    }
    return glob;
}

/// Reads by recursive descent, one token ahead, and writes SQL as it goes.
class Translator {
public:
    explicit Translator(std::string_view text) : tokens_(text), token_(tokens_.Next()) {}

    TranslatedCondition WholeCondition() {
        TranslatedCondition condition = Condition();
        ExpectEnd();
        return condition;
    }

    SelectStatement WholeStatement() {
        SelectStatement statement;
        Expect(TakeKeyword("SELECT"));
        if (TakeKeyword("TOP")) statement.Top = PositiveNumber();
        if (!TakeSymbol("*")) statement.Items = Items();
        Expect(TakeKeyword("FROM"));
        statement.Table = TakeName();
        if (TakeKeyword("WHERE")) statement.Where = Condition();
        if (TakeKeyword("GROUP")) {
            Expect(TakeKeyword("BY"));
            statement.GroupBy = GroupTerms(statement.Items);
        } else {
            Expect(IsOneKind(statement.Items));
        }
        if (TakeKeyword("ORDER")) {
            Expect(TakeKeyword("BY") && !statement.IsAggregate());
            statement.OrderBy = OrderTerms();
        }
        Expect(statement.Top == 0 || !statement.OrderBy.empty());
        ExpectEnd();
        return statement;
    }

private:
    static void Expect(bool isThere) {
        if (!isThere) Refuse();
    }
    void ExpectEnd() const { Expect(token_.Kind == TokenKind::End); }

    Token Take() {
        Token taken = std::move(token_);
        token_ = tokens_.Next();
        return taken;
    }
    bool TakeKeyword(std::string_view keyword) {
        if (!token_.IsKeyword(keyword)) return false;
        Take();
        return true;
    }
    bool TakeSymbol(std::string_view symbol) {
        if (!token_.IsSymbol(symbol)) return false;
        Take();
        return true;
    }

    bool IsName() const {
        if (token_.Kind == TokenKind::Name) return true;
        return token_.Kind == TokenKind::Word &&
               std::ranges::none_of(keywords, [this](std::string_view keyword) { return token_.IsKeyword(keyword); });
    }
    std::string TakeName() {
        Expect(IsName());
        return Take().Text;
    }

    std::int64_t PositiveNumber() {
        Expect(token_.Kind == TokenKind::Number);
        const FieldValue number = NumberOf(Take().Text);
        const auto *whole = std::get_if<std::int64_t>(&number);
        Expect(whole != nullptr && *whole > 0);
        return *whole;
    }

    std::vector<SelectItem> Items() {
        std::vector<SelectItem> items;
        do {
            items.push_back(Item());
        } while (TakeSymbol(","));
        return items;
    }

    SelectItem Item() {
        SelectItem item;
        item.Field = TakeName();
        if (TakeSymbol("(")) {
            item.Function = UCase(item.Field);
            Expect(std::ranges::find(functions, item.Function) != functions.end());
            const bool countsRows = item.Function == "COUNT" && token_.IsSymbol("*");
            item.Field = countsRows ? Take().Text : TakeName();
            Expect(TakeSymbol(")"));
        }
        item.Name = TakeKeyword("AS") ? TakeName() : item.Field;
        return item;
    }

    /// Whether all items have a function or none.
    static bool IsOneKind(const std::vector<SelectItem> &items) {
        return std::ranges::all_of(
            items, [&](const SelectItem &item) { return item.Function.empty() == items.front().Function.empty(); });
    }

    /// The items that are plain fields have to be among the terms: another field's value would be any row's.
    std::string GroupTerms(const std::vector<SelectItem> &items) {
        std::vector<std::string> names;
        std::string terms;
        do {
            names.push_back(TakeName());
            terms += (terms.empty() ? "" : ", ") + QuotedIdentifier(names.back()) + " COLLATE NOCASE";
        } while (TakeSymbol(","));
        Expect(!items.empty() && std::ranges::all_of(items, [&](const SelectItem &item) {
            return !item.Function.empty() || std::ranges::any_of(names, [&](const std::string &name) {
                return EqualsIgnoreCase(name, item.Field);
            });
        }));
        return terms;
    }

    std::string OrderTerms() {
        std::string terms;
        do {
            if (!terms.empty()) terms += ", ";
            terms += QuotedIdentifier(TakeName()) + " COLLATE NOCASE";
            if (TakeKeyword("DESC")) {
                terms += " DESC";
            } else {
                TakeKeyword("ASC");
            }
        } while (TakeSymbol(","));
        return terms;
    }

    TranslatedCondition Condition() {
        TranslatedCondition condition;
        condition_ = &condition;
        Alternatives();
        return condition;
    }

    void Write(std::string_view sql) { condition_->Sql += sql; }
    void WriteLiteral(FieldValue value) {
        Write("?");
        condition_->Literals.push_back(std::move(value));
    }

    void Alternatives() {
        Conjunction();
        while (TakeKeyword("OR")) {
            Write(" OR ");
            Conjunction();
        }
    }

    void Conjunction() {
        Factor();
        while (TakeKeyword("AND")) {
            Write(" AND ");
            Factor();
        }
    }

    void Factor() {
        Expect(++nesting_ <= deepestNesting);
        if (TakeKeyword("NOT")) {
            Write("NOT ");
            Factor();
        } else if (TakeSymbol("(")) {
            Write("(");
            Alternatives();
            Expect(TakeSymbol(")"));
            Write(")");
        } else {
            Comparison();
        }
        --nesting_;
    }

    void Comparison() {
        // LIKE folds its left side, so the text before it is set apart until the operator is known.
        const std::size_t start = condition_->Sql.size();
        Operand();
        if (TakeKeyword("IS")) {
            Write(TakeKeyword("NOT") ? " IS NOT NULL" : " IS NULL");
            Expect(TakeKeyword("NULL"));
            return;
        }
        const bool isNegated = TakeKeyword("NOT");
        if (TakeKeyword("LIKE")) {
            Expect(token_.Kind == TokenKind::Text);
            condition_->Sql.insert(start, "lower(");
            Write(isNegated ? ") NOT GLOB " : ") GLOB ");
            WriteLiteral(GlobPattern(Take().Text));
            return;
        }
        Expect(!isNegated && token_.Kind == TokenKind::Symbol &&
               std::ranges::find(comparisons, token_.Text) != comparisons.end());
        Write(" " + Take().Text + " ");
        Operand();
        Write(" COLLATE NOCASE");
    }

    void Operand() {
        if (IsName()) {
            Write(QuotedIdentifier(Take().Text));
        } else if (TakeSymbol("-")) {
            Expect(token_.Kind == TokenKind::Number);
            WriteLiteral(Negative(NumberOf(Take().Text)));
        } else if (token_.Kind == TokenKind::Number) {
            WriteLiteral(NumberOf(Take().Text));
        } else if (token_.Kind == TokenKind::Text) {
            WriteLiteral(Take().Text);
        } else if (token_.Kind == TokenKind::Date) {
            WriteLiteral(IsoDateOf(Take().Text));
        } else if (token_.IsKeyword("TRUE") || token_.IsKeyword("FALSE")) {
            WriteLiteral(std::int64_t{Take().IsKeyword("TRUE")});
        } else {
            Refuse();
        }
    }

    StatementTokens tokens_;
    Token token_;  ///< the next one
    TranslatedCondition *condition_ = nullptr;
    int nesting_ = 0;
};

}  // namespace

bool IsStatement(std::string_view source) {
    return StatementTokens(source).Next().IsKeyword("SELECT");
}

SelectStatement TranslateSelect(std::string_view statement) {
    return Translator(statement).WholeStatement();
}

TranslatedCondition TranslateCriteria(std::string_view criteria) {
    return Translator(criteria).WholeCondition();
}

std::string QuotedIdentifier(std::string_view name) {
    return "\"" + Replace(std::string(name), "\"", "\"\"") + "\"";
}

}  // namespace pixmora
