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

/// A number's decimal digits to the 15 places that the run time shows: 0.DIGITS times ten to the power of Point.
struct Decimal {
    bool IsNegative = false;
    std::string Digits;  ///< no zeros at its end; empty for zero
    int Point = 0;
};

constexpr int significantDigits = 15;

/// The digits of a whole number that shows them all, which most numbers are; nothing for any other.
std::optional<std::string> TextOfWhole(double value) {
    constexpr double tooLong = 1e15;
    if (!(std::abs(value) < tooLong) || value != std::floor(value)) return std::nullopt;
    return std::to_string(static_cast<std::int64_t>(value));
}

void DropZerosAtEnd(std::string &digits) {
    while (!digits.empty() && digits.back() == '0') digits.pop_back();
}

Decimal ToDecimal(double value) {
    if (!std::isfinite(value)) throw RunTimeError(ErrorNumber::Overflow);
    std::array<char, 40> buffer{};  // "d.dddddddddddddde-308"
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                   std::chars_format::scientific, significantDigits - 1)
                         .ptr;
    const char *mark = std::find(buffer.data(), end, 'e');
    Decimal decimal;
    decimal.IsNegative = value < 0;
    std::copy_if(static_cast<const char *>(buffer.data()), mark, std::back_inserter(decimal.Digits),
                 [](char c) { return c != '.'; });
    DropZerosAtEnd(decimal.Digits);
    const char *exponent = mark[1] == '+' ? mark + 2 : mark + 1;
    std::from_chars(exponent, end, decimal.Point);
    ++decimal.Point;
    return decimal;
}

/// Cuts to the places behind the point, rounding half away from zero on the digits as shown.
void RoundToPlaces(Decimal &decimal, int places) {
    const int kept = decimal.Point + places;
    if (kept >= static_cast<int>(decimal.Digits.size())) return;
    const bool up = kept >= 0 && decimal.Digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.Digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (up) {
        while (!decimal.Digits.empty() && decimal.Digits.back() == '9') decimal.Digits.pop_back();
        if (decimal.Digits.empty()) {
            decimal.Digits = "1";
            ++decimal.Point;
        } else {
            ++decimal.Digits.back();
        }
    }
    DropZerosAtEnd(decimal.Digits);
}

std::string WholeDigits(const Decimal &decimal) {
    if (decimal.Digits.empty() || decimal.Point <= 0) return "0";
    std::string whole = decimal.Digits.substr(0, static_cast<std::size_t>(decimal.Point));
    whole.resize(static_cast<std::size_t>(decimal.Point), '0');
    return whole;
}

/// The digits behind the point, as many as there are.
std::string FractionDigits(const Decimal &decimal) {
    if (decimal.Digits.empty()) return {};
    if (decimal.Point <= 0) return std::string(static_cast<std::size_t>(-decimal.Point), '0') + decimal.Digits;
    if (decimal.Point >= static_cast<int>(decimal.Digits.size())) return {};
    return decimal.Digits.substr(static_cast<std::size_t>(decimal.Point));
}

/// No sign for what was rounded away to nothing.
std::string SignOf(const Decimal &decimal) {
    return decimal.IsNegative && !decimal.Digits.empty() ? "-" : "";
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
    Decimal decimal = ToDecimal(value);
    RoundToPlaces(decimal, decimals);
    std::string text = SignOf(decimal) + WholeDigits(decimal);
    if (decimals > 0) {
        std::string fraction = FractionDigits(decimal);
        fraction.resize(static_cast<std::size_t>(decimals), '0');
        text += "." + fraction;
    }
    return text;
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
