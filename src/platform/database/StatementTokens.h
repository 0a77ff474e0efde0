// The pieces of a statement or criterion.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

enum class TokenKind {
    Word,    ///< a keyword or a field's name
    Name,    ///< a name between brackets, never a keyword
    Text,    ///< a literal in single or double quotes, doubled quotes made single
    Number,  ///< digits, at most one point among them
    Date,    ///< what stands between two "#"
    Symbol,  ///< one of = <> < > <= >= ( ) , * -
    End,
};

struct Token {
    TokenKind Kind = TokenKind::End;
    std::string Text;

    bool IsSymbol(std::string_view symbol) const { return Kind == TokenKind::Symbol && Text == symbol; }
    /// Whether it is this keyword, in any case.
    bool IsKeyword(std::string_view keyword) const;
};

/// Cuts a text into its tokens, one at a time.
class StatementTokens {
public:
    explicit StatementTokens(std::string_view text) : text_(text) {}

    /// The next token; End again and again after the last.
    /// @throws RunTimeError SyntaxError for an unfinished literal or a character that starts no token
    Token Next();

private:
    Token TakeWord();
    Token TakeNumber();
    Token TakeQuoted(char quote);
    Token TakeUpTo(char end, TokenKind kind);
    Token TakeSymbol();
    char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace pixmora
