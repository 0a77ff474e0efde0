// Requests and links: the first line's parts, the query's decoding, names on their way through links.
#include <algorithm>

#include "Fuzz.h"
#include "core/site/RequestGrammar.h"
#include "platform/runtime/Text.h"

namespace pixmora {
namespace {

/// The decoder as its description reads, with no thought of speed.
std::string DecodeSlowly(std::string text) {
    std::size_t position = 0;
    while ((position = text.find('%')) != std::string::npos) {
        const std::string escape = text.substr(position, 3);
        const std::string digits = escape.substr(1);
        if (digits.empty() || !HoldsOnly(digits, "0123456789abcdefABCDEF")) {
            throw RunTimeError(ErrorNumber::TypeMismatch);
        }
        text = Replace(text, escape, std::string(1, static_cast<char>(std::stoi(digits, nullptr, 16))));
    }
    return Replace(Replace(Replace(text, "+", " "), "**", " "), "*", "&");
}

void CheckDecoding(std::string_view text) {
    const auto decoded = ResultOf([&] { return DecodeQuery(std::string(text)); });
    constexpr std::size_t slowIsFastEnough = 128;
    if (text.size() <= slowIsFastEnough) {
        REQUIRE(decoded == ResultOf([&] { return DecodeSlowly(std::string(text)); }));
    }
    if (!decoded) return;
    REQUIRE(HoldsNone(*decoded, "%+*"));
    REQUIRE(decoded->size() <= text.size());
}

void CheckLinks(std::string_view name) {
    const std::string link = EncodeLinkPart(name);
    REQUIRE(HoldsNone(link, "&+# "));
    REQUIRE(std::ranges::count(link, '%') == std::ranges::count(name, ' '));
    REQUIRE(link.size() <= name.size() * std::string_view("<percent>num<percent>").size());
    // A star has no token, and a name with a piece of one in it can't be told from the token itself.
    if (name.empty() || !HoldsNone(name, "<*")) return;
    REQUIRE(DecodeLinkPart(link) == name);
    const Target target = ParseTarget("ShowPicture?1&thumb&" + link);
    REQUIRE(target.Args.size() == 3 && DecodeLinkPart(target.Args[2]) == name);
}

void CheckTarget(std::string_view text) {
    const auto target = ResultOf([&] { return ParseTarget(std::string(text)); });
    if (!target) return;
    REQUIRE(target->HasQuery == Contains(text, "?"));
    REQUIRE(HoldsNone(target->Name, target->HasQuery ? "?" : "?."));
    REQUIRE(target->HasQuery || target->Args.empty());
    for (const std::string &argument : target->Args) REQUIRE(HoldsNone(argument, "&%+*"));
}

void CheckFirstLine(std::string_view head) {
    const std::string method = GetRequestMethod(head);
    REQUIRE(HoldsNone(method, " ") && head.starts_with(method));
    const std::optional<std::string> target = GetRequestTarget(head);
    REQUIRE(target.has_value() == (std::ranges::count(head, ' ') >= 2));
    const std::string page =
        GetVisitorPageName(head, [](std::int32_t number) { return "Album " + std::to_string(number); });
    if (!target) {
        REQUIRE(page.empty());
        return;
    }
    REQUIRE(HoldsNone(*target, " ") && Contains(head, *target));
    REQUIRE(page.size() <= 4 * target->size() + 30);
    CheckTarget(*target);
}

}  // namespace

void CheckInput(std::string_view text) {
    CheckFirstLine(text);
    CheckTarget(text);
    CheckDecoding(text);
    CheckLinks(text);
    REQUIRE(HoldsNone(FileDisplayName(text), "_"));
}

}  // namespace pixmora
