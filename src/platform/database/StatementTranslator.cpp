// Turns the program's statements and criteria into the SQL of SQLite, with every literal lifted out of the text.
#include "platform/database/StatementTranslator.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view wordCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789";

void Expect(bool isThere) {
    if (!isThere) throw RunTimeError(ErrorNumber::SyntaxError);
}

/// How many characters at the head of the text are of the set.
std::size_t Span(std::string_view text, std::string_view set) {
    return std::min(text.find_first_not_of(set), text.size());
}

bool IsOneOf(char c, std::string_view set) {
    return set.find(c) != std::string_view::npos;
}

std::int64_t NumberOf(std::string_view text) {
    std::int64_t number = 0;
    Expect(std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc());
    return number;
}

std::string IsoDateOf(std::string_view text) {
    try {
        return IsoDate(ParseDate(text));
    } catch (const RunTimeError &) {
        throw RunTimeError(ErrorNumber::SyntaxError);
    }
}

/// The pattern as the engine's LIKE has it, in which "!" takes its meaning from the next character.
std::string LikePattern(std::string_view pattern) {
    std::string like;
    for (const char c : pattern) {
        if (c == '%' || c == '_' || c == '!') like += '!';
        like += c == '*' ? '%' : c;
    }
    return like;
}

enum class TokenKind { Word, Number, Text, Date, Symbol, End };

struct Token {
    TokenKind Kind = TokenKind::End;
    std::string_view Text;  ///< of a text or date what stands between the quotes
};

/// Reads a statement's parts from left to right, one token ahead.
class Translator {
public:
    explicit Translator(std::string_view text) : rest_(text) { Take(); }

    TranslatedCondition WholeCondition() {
        TranslatedCondition condition = Condition();
        Expect(token_.Kind == TokenKind::End);
        return condition;
    }

    SelectStatement WholeStatement() {
        SelectStatement statement;
        Expect(TakeIf("SELECT"));
        if (TakeIf("TOP")) statement.Top = NumberOf(Take(TokenKind::Number));
        if (!TakeIf("*")) statement.Items = Items();
        Expect(TakeIf("FROM"));
        statement.Table = Take(TokenKind::Word);
        if (TakeIf("WHERE")) statement.Where = Condition();
        if (TakeIf("GROUP")) {
            statement.GroupBy = Terms();
        } else if (TakeIf("ORDER")) {
            statement.OrderBy = Terms();
        }
        Expect(token_.Kind == TokenKind::End);
        return statement;
    }

private:
    bool Is(std::string_view wordOrSymbol) const {
        return (token_.Kind == TokenKind::Word || token_.Kind == TokenKind::Symbol) &&
               EqualsIgnoreCase(token_.Text, wordOrSymbol);
    }
    bool TakeIf(std::string_view wordOrSymbol) {
        if (!Is(wordOrSymbol)) return false;
        Take();
        return true;
    }
    std::string_view Take(TokenKind kind) {
        Expect(token_.Kind == kind);
        return Take().Text;
    }
    Token Take() { return std::exchange(token_, NextToken()); }

    Token NextToken() {
        rest_.remove_prefix(Span(rest_, " \t\r\n"));
        if (rest_.empty()) return {};
        const char first = rest_.front();
        if (IsOneOf(first, digits)) return {TokenKind::Number, Cut(Span(rest_, digits))};
        if (IsOneOf(first, wordCharacters)) return {TokenKind::Word, Cut(Span(rest_, wordCharacters))};
        if (first == '\'' || first == '"') return {TokenKind::Text, CutQuoted(first)};
        if (first == '#') return {TokenKind::Date, CutQuoted(first)};
        Expect(IsOneOf(first, "=<>(),*-"));
        return {TokenKind::Symbol, Cut(1)};
    }
    std::string_view Cut(std::size_t length) {
        const std::string_view cut = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return cut;
    }
    std::string_view CutQuoted(char quote) {
        const std::size_t close = rest_.find(quote, 1);
        Expect(close != std::string_view::npos);
        const std::string_view inside = Cut(close + 1).substr(1, close - 1);
        Expect(!IsOneOf('\0', inside));
        return inside;
    }

    std::vector<SelectItem> Items() {
        std::vector<SelectItem> items;
        do {
            SelectItem &item = items.emplace_back();
            item.IsSum = TakeIf("SUM");
            if (item.IsSum) Expect(TakeIf("("));
            item.Name = item.Field = Take(TokenKind::Word);
            if (!item.IsSum) continue;
            Expect(TakeIf(")") && TakeIf("AS"));
            item.Name = Take(TokenKind::Word);
        } while (TakeIf(","));
        return items;
    }

    /// Of groups or of an order.
    std::string Terms() {
        Expect(TakeIf("BY"));
        std::string terms;
        do {
            terms += (terms.empty() ? "" : ", ") + Name(Take(TokenKind::Word));
            if (TakeIf("DESC")) terms += " DESC";
        } while (TakeIf(","));
        return terms;
    }

    static std::string Name(std::string_view name) { return QuotedIdentifier(name) + " COLLATE TEXTS"; }

    TranslatedCondition Condition() {
        TranslatedCondition condition;
        int open = 0;
        while (token_.Kind != TokenKind::End && !Is("GROUP") && !Is("ORDER")) {
            open += Is("(") ? 1 : Is(")") ? -1 : 0;
            Expect(open >= 0);
            TranslateToken(condition);
        }
        Expect(open == 0 && !condition.Sql.empty());
        return condition;
    }

    void TranslateToken(TranslatedCondition &condition) {
        const auto lift = [&](FieldValue literal, std::string_view mark) {
            condition.Literals.push_back(std::move(literal));
            condition.Sql += mark;
        };
        if (TakeIf("LIKE")) return lift(LikePattern(Take(TokenKind::Text)), "LIKE ? ESCAPE '!' ");
        const bool isJoint = Is("AND") || Is("OR");
        const Token token = Take();
        switch (token.Kind) {
            case TokenKind::Text:
                return lift(std::string(token.Text), "? ");
            case TokenKind::Number:
                return lift(NumberOf(token.Text), "? ");
            case TokenKind::Date:
                return lift(IsoDateOf(token.Text), "? ");
            case TokenKind::Word:
                condition.Sql += isJoint ? UCase(token.Text) : Name(token.Text);
                break;
            default:
                Expect(token.Text != "," && token.Text != "*");
                condition.Sql += token.Text;
        }
        condition.Sql += ' ';
    }

    std::string_view rest_;
    Token token_;  ///< the next one
};

}  // namespace

bool IsStatement(std::string_view source) {
    return EqualsIgnoreCase(source.substr(0, 7), "SELECT ");
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
