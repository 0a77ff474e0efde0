// The pieces of a statement or criterion.
#include "platform/database/StatementTokens.h"

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

[[noreturn]] void Refuse() {
    throw RunTimeError(ErrorNumber::SyntaxError);
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool StartsWord(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

}  // namespace

bool Token::IsKeyword(std::string_view keyword) const {
    return Kind == TokenKind::Word && EqualsIgnoreCase(Text, keyword);
}

Token StatementTokens::Next() {
    while (position_ < text_.size() && IsBlank(text_[position_])) ++position_;
    if (position_ == text_.size()) return {};
    const char first = text_[position_];
    if (StartsWord(first)) return TakeWord();
    if (IsDigit(first)) return TakeNumber();
    if (first == '\'' || first == '"') return TakeQuoted(first);
    if (first == '#') return TakeUpTo('#', TokenKind::Date);
    if (first == '[') return TakeUpTo(']', TokenKind::Name);
    return TakeSymbol();
}

Token StatementTokens::TakeWord() {
    const std::size_t start = position_;
    while (StartsWord(At(position_)) || IsDigit(At(position_))) ++position_;
    return {TokenKind::Word, std::string(text_.substr(start, position_ - start))};
}

Token StatementTokens::TakeNumber() {
    const std::size_t start = position_;
    while (IsDigit(At(position_))) ++position_;
    if (At(position_) == '.' && IsDigit(At(position_ + 1))) {
        ++position_;
        while (IsDigit(At(position_))) ++position_;
    }
    return {TokenKind::Number, std::string(text_.substr(start, position_ - start))};
}

Token StatementTokens::TakeQuoted(char quote) {
    Token token{TokenKind::Text, {}};
    for (++position_; position_ < text_.size(); ++position_) {
        const char c = text_[position_];
        if (c == '\0') Refuse();
        if (c == quote && At(position_ + 1) != quote) {
            ++position_;
            return token;
        }
        if (c == quote) ++position_;
        token.Text += c;
    }
    Refuse();
}

Token StatementTokens::TakeUpTo(char end, TokenKind kind) {
    const std::size_t close = text_.find(end, position_ + 1);
    if (close == std::string_view::npos) Refuse();
    const std::string_view inside = text_.substr(position_ + 1, close - position_ - 1);
    if (inside.empty() || Contains(inside, std::string_view("\0", 1))) Refuse();
    position_ = close + 1;
    return {kind, std::string(inside)};
}

Token StatementTokens::TakeSymbol() {
    constexpr std::string_view symbols[] = {"<>", "<=", ">=", "<", ">", "=", "(", ")", ",", "*", "-"};
    for (const std::string_view symbol : symbols) {
        if (!text_.substr(position_).starts_with(symbol)) continue;
        position_ += symbol.size();
        return {TokenKind::Symbol, std::string(symbol)};
    }
    Refuse();
}

}  // namespace pixmora
