// The cleaning of the owner's texts: the allow list stands in the first line, the text behind it.
#include "Fuzz.h"
#include "setup/rules/StripTags.h"

namespace pixmora {
namespace {

/// Whether the part comes of the whole by leaving characters out.
bool IsLeftOf(std::string_view part, std::string_view whole) {
    for (const char c : part) {
        const std::size_t found = whole.find(c);
        if (found == std::string_view::npos) return false;
        whole.remove_prefix(found + 1);
    }
    return true;
}

void Check(std::string_view text, std::string_view allowList) {
    const std::string cleaned = StripTags(text, allowList);
    REQUIRE(!cleaned.empty());
    REQUIRE(cleaned == " " || IsLeftOf(cleaned, text));
    if (allowList.empty()) REQUIRE(HoldsNone(cleaned, "<"));
}

}  // namespace

void CheckInput(std::string_view text) {
    const auto [allowList, owners] = FirstLineAndRest(text);
    Check(owners, allowList);
    Check(owners, "");
}

}  // namespace pixmora
