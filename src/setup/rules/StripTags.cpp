// Cleaning of the texts that the owner types for the site.
#include "setup/rules/StripTags.h"

#include <algorithm>

#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// Whether one of the allowed tags stands at the head of the text, which is what comes behind a "<".
bool IsAllowed(std::string_view text, std::string_view allowList) {
    return std::ranges::any_of(Split(allowList, ","), [text](const std::string &entry) {
        const std::string tag = UCase(Trim(entry));
        return UCase(text.substr(0, tag.size())) == tag;
    });
}

}  // namespace

std::string StripTags(std::string_view text, std::string_view allowList) {
    std::string cleaned = Replace(Trim(text), "\r\n", "");
    std::size_t position = 0;
    while ((position = cleaned.find('<', position)) != std::string::npos) {
        if (IsAllowed(std::string_view(cleaned).substr(position + 1), allowList)) {
            ++position;
            continue;
        }
        const std::size_t end = cleaned.find('>', position);
        cleaned.erase(position, end == std::string::npos ? std::string::npos : end - position + 1);
    }
    return cleaned.empty() ? " " : cleaned;
}

}  // namespace pixmora
