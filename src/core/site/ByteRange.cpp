#include "core/site/ByteRange.h"

#include <algorithm>
#include <charconv>

namespace pixmora {

namespace {

/// Digits only; nothing for an empty text, any other character, and a number beyond 63 bits.
std::optional<std::int64_t> ReadOffset(std::string_view text) {
    std::int64_t value = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < 0 || text.starts_with('-')) return std::nullopt;
    return value;
}

}  // namespace

std::optional<ByteRange> ReadByteRange(std::string_view header, std::int64_t fileSize) {
    constexpr std::string_view unit = "bytes=";
    if (!header.starts_with(unit)) return std::nullopt;
    header.remove_prefix(unit.size());
    const std::size_t dash = header.find('-');
    if (dash == std::string_view::npos) return std::nullopt;
    const std::optional<std::int64_t> first = ReadOffset(header.substr(0, dash));
    const std::optional<std::int64_t> last = ReadOffset(header.substr(dash + 1));
    if (dash == 0) {  // the last bytes
        if (!last) return std::nullopt;
        const std::int64_t length = std::min(*last, fileSize);
        return ByteRange{fileSize - length, length};
    }
    const bool isOpen = dash + 1 == header.size();
    if (!first || (!last && !isOpen) || (last && *last < *first)) return std::nullopt;
    if (*first >= fileSize) return ByteRange{};
    return ByteRange{*first, std::min(last.value_or(fileSize - 1), fileSize - 1) - *first + 1};
}

}  // namespace pixmora
