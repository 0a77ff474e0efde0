// The wildcard matches: the pattern stands in the first line, the text behind it.
#include <vector>

#include "Fuzz.h"
#include "platform/runtime/Text.h"

namespace pixmora {
namespace {

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

}  // namespace

void CheckInput(std::string_view text) {
    const auto [pattern, name] = FirstLineAndRest(text);
    CheckLike(std::string(name), std::string(pattern));
    CheckPathMatch(std::string(name), std::string(pattern));
}

}  // namespace pixmora
