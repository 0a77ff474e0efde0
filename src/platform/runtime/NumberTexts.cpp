// Numbers.h: numbers to texts, as the run time and the shell print them. None of it depends on the locale.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr int significantDigits = 15;

/// The digits of a whole number that shows them all, which most numbers are; nothing for any other.
std::optional<std::string> TextOfWhole(double value) {
    constexpr double tooLong = 1e15;
    if (!(std::abs(value) < tooLong) || value != std::floor(value)) return std::nullopt;
    return std::to_string(static_cast<std::int64_t>(value));
}

/// The value that the 15 digits say which the run time shows, a hair further from zero: so a half rounds away from it.
long double AsShown(double value) {
    std::array<char, 40> buffer{};  // "-d.dddddddddddddde-308"
    char *const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific,
                                    significantDigits - 1)
                          .ptr;
    long double shown = 0;
    std::from_chars(buffer.data(), end, shown);
    const bool hasFraction = shown != std::floor(shown);
    return hasFraction ? std::nextafter(shown, std::copysign(HUGE_VALL, shown)) : shown;
}

/// A value of 0 to 1000 with as many decimals as make three digits, the rest cut off.
std::string ThreeDigits(double value) {
    if (value >= 100) return std::to_string(static_cast<int>(value));
    const std::size_t decimals = value >= 10 ? 1 : 2;
    std::string text = FormatPadded(static_cast<int>(value * (decimals == 1 ? 10 : 100)), 3);
    return text.insert(3 - decimals, ".");
}

}  // namespace

std::string FormatPadded(std::int64_t value, int digits) {
    std::string text = std::to_string(value);
    const std::size_t sign = value < 0 ? 1 : 0;
    const std::size_t width = static_cast<std::size_t>(std::max(digits, 0)) + sign;
    if (text.size() < width) text.insert(sign, width - text.size(), '0');
    return text;
}

std::string FormatFixed(double value, int decimals) {
    if (decimals == 0) {
        if (std::optional<std::string> whole = TextOfWhole(value)) return *std::move(whole);
    }
    if (!std::isfinite(value)) throw RunTimeError(ErrorNumber::Overflow);
    std::array<char, 512> buffer{};  // 309 digits and the decimals
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), AsShown(value), std::chars_format::fixed, decimals)
            .ptr;
    std::string text(buffer.data(), end);
    // No sign for what was rounded away to nothing.
    return text.find_first_of("123456789") == std::string::npos && text.front() == '-' ? text.substr(1) : text;
}

std::string FormatGrouped(double value) {
    std::string text = FormatFixed(value, 0);
    const std::size_t start = text.front() == '-' ? 1 : 0;
    for (std::size_t i = text.size(); i > start + 3;) {
        i -= 3;
        text.insert(i, ",");
    }
    return text;
}

std::string NumberText(double value) {
    if (!std::isfinite(value)) throw RunTimeError(ErrorNumber::Overflow);
    if (value == 0) return "0";  // without a sign
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general,
                                   significantDigits)
                         .ptr;
    return UCase({buffer.data(), end});
}

std::string FormatByteSize(double bytes) {
    constexpr double shellLimit = 2000000000;
    constexpr double gigabyte = 1024.0 * 1024.0 * 1024.0;
    if (bytes > shellLimit) return FormatFixed(bytes / gigabyte, 2) + " GB";
    if (bytes < 1024) {
        const double whole = std::floor(bytes);
        return FormatFixed(whole, 0) + (whole == 1 ? " byte" : " bytes");
    }
    // A fourth digit is never shown: from 1000 of a unit the next one takes over ("0.97 MB").
    double value = bytes / 1024;
    const char *unit = " KB";
    for (const char *next : {" MB", " GB"}) {
        if (value < 1000) break;
        value /= 1024;
        unit = next;
    }
    return ThreeDigits(value) + unit;
}

std::string FormatElapsed(double seconds, bool inDays, bool inSeconds) {
    const auto total = static_cast<std::int64_t>(seconds);
    if (inDays) return std::to_string(total / 86400) + "d " + std::to_string(total % 86400 / 3600) + "h";
    if (inSeconds) return std::to_string(total / 60) + "m " + std::to_string(total % 60) + "s";
    return std::to_string(total / 3600) + "h " + std::to_string(total % 3600 / 60) + "m";
}

}  // namespace pixmora
