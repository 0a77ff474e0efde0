// Text.h: wildcard matches: the run time's Like and the shell's path match.
#include <bitset>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// Matches a text against elements that are stars or stand for one character each. Only the last star seen is ever
/// tried again, so the work is bounded by text times pattern.
/// @param isStar whether the element at a position is a star
/// @param fits whether the character at a position of the text fits the element at a position of the pattern
template <typename IsStar, typename Fits>
bool MatchWildcards(std::size_t textSize, std::size_t patternSize, IsStar isStar, Fits fits) {
    // What stands behind the last star first: a file name's ending decides most matches.
    for (; patternSize > 0 && !isStar(patternSize - 1); --textSize, --patternSize) {
        if (textSize == 0 || !fits(textSize - 1, patternSize - 1)) return false;
    }
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t afterStar = 0;  // 0 while no star has been met
    std::size_t retryFrom = 0;
    while (t < textSize) {
        if (p < patternSize && isStar(p)) {
            afterStar = ++p;
            retryFrom = t;
        } else if (p < patternSize && fits(t, p)) {
            ++t;
            ++p;
        } else if (afterStar > 0) {
            t = ++retryFrom;
            p = afterStar;
        } else {
            return false;
        }
    }
    while (p < patternSize && isStar(p)) ++p;
    return p == patternSize;
}

using CharacterSet = std::bitset<256>;

std::size_t CodeOf(char c) {
    return static_cast<unsigned char>(c);
}

void AddRange(CharacterSet &set, char first, char last) {
    if (CodeOf(first) > CodeOf(last)) throw RunTimeError(ErrorNumber::InvalidPattern);
    for (std::size_t code = CodeOf(first); code <= CodeOf(last); ++code) set.set(code);
}

/// What stands between "[" and "]". A hyphen at either end stands for itself.
CharacterSet ReadList(std::string_view list) {
    const bool isNegated = list.size() > 1 && list.front() == '!';
    if (isNegated) list.remove_prefix(1);
    CharacterSet set;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const bool isRange = i + 2 < list.size() && list[i + 1] == '-';
        AddRange(set, list[i], isRange ? list[i + 2] : list[i]);
        if (isRange) i += 2;
    }
    return isNegated ? ~set : set;
}

struct LikeElement {
    bool IsStar = false;
    CharacterSet Characters;
};

LikeElement ElementOf(char c) {
    LikeElement element;
    switch (c) {
        case '*':
            element.IsStar = true;
            break;
        case '?':
            element.Characters.set();
            break;
        case '#':
            AddRange(element.Characters, '0', '9');
            break;
        default:
            element.Characters.set(CodeOf(c));
            break;
    }
    return element;
}

std::vector<LikeElement> ReadLikePattern(std::string_view pattern) {
    std::vector<LikeElement> elements;
    elements.reserve(pattern.size());
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '[') {
            elements.push_back(ElementOf(pattern[i]));
            continue;
        }
        const std::size_t end = pattern.find(']', i);
        if (end == std::string_view::npos) throw RunTimeError(ErrorNumber::InvalidPattern);
        // An empty list stands for the empty text, so for no element at all.
        if (end > i + 1) elements.push_back({false, ReadList(pattern.substr(i + 1, end - i - 1))});
        i = end;
    }
    return elements;
}

bool MatchesOneSpec(std::string_view name, std::string_view pattern) {
    return MatchWildcards(
        name.size(), pattern.size(), [&](std::size_t p) { return pattern[p] == '*'; },
        [&](std::size_t t, std::size_t p) {
            return pattern[p] == '?' || EqualsIgnoreCase(name.substr(t, 1), pattern.substr(p, 1));
        });
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern) {
    const std::vector<LikeElement> elements = ReadLikePattern(pattern);
    return MatchWildcards(
        text.size(), elements.size(), [&](std::size_t p) { return elements[p].IsStar; },
        [&](std::size_t t, std::size_t p) { return elements[p].Characters.test(CodeOf(text[t])); });
}

bool PathMatchSpec(std::string_view name, std::string_view patterns) {
    for (;;) {
        const std::size_t end = patterns.find(';');
        const std::string pattern = Trim(patterns.substr(0, end));
        if (!pattern.empty() && MatchesOneSpec(name, pattern)) return true;
        if (end == std::string_view::npos) return false;
        patterns.remove_prefix(end + 1);
    }
}

}  // namespace pixmora
