// Texts to numbers, as the run time reads them. None of it depends on the locale.
#include "platform/runtime/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <utility>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// The decimal number at a text's head: sign, digits with a point, exponent.
struct NumberHead {
    std::size_t Length = 0;       ///< 0 when the text begins with no number
    std::optional<double> Value;  ///< none beyond a Double; 0 for what is too small for one
};

NumberHead ReadNumber(std::string_view text) {
    const std::size_t sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    // The library's reader knows no "+", and takes words for infinity.
    const bool isNumber = text.substr(sign, 1).find_first_of(".0123456789") == 0;
    if (!isNumber) return {};
    const char *const begin = text.data() + (text.front() == '+' ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) return {};
    const std::string_view number = text.substr(0, static_cast<std::size_t>(end - text.data()));
    if (error == std::errc()) return {number.size(), value};
    const std::size_t exponent = number.find_first_of("eE");
    const bool isTiny = exponent != std::string_view::npos ? number[exponent + 1] == '-'
                                                           : number.find_first_of("123456789") > number.find('.');
    return {number.size(), isTiny ? std::optional(0.0) : std::nullopt};
}

bool HasHexadecimalPrefix(std::string_view text) {
    return text.starts_with("&H") || text.starts_with("&h");
}

/// The digits behind "&H" as a bit pattern. @throws RunTimeError TypeMismatch, Overflow beyond 32 bits
std::uint32_t HexadecimalBits(std::string_view text) {
    const std::string_view digits = text.substr(2);
    std::uint32_t bits = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
    if (digits.empty() || result.ptr != digits.data() + digits.size()) throw RunTimeError(ErrorNumber::TypeMismatch);
    if (result.ec != std::errc()) throw RunTimeError(ErrorNumber::Overflow);
    return bits;
}

}  // namespace

std::int16_t CInt(std::string_view text) {
    if (const std::string trimmed = Trim(text); HasHexadecimalPrefix(trimmed)) {
        const std::uint32_t bits = HexadecimalBits(trimmed);
        if (bits > std::numeric_limits<std::uint16_t>::max()) throw RunTimeError(ErrorNumber::Overflow);
        return static_cast<std::int16_t>(bits);
    }
    const std::int32_t value = CLng(text);
    if (!std::in_range<std::int16_t>(value)) throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int16_t>(value);
}

std::int32_t CLng(std::string_view text) {
    return RoundToLong(CDbl(text));
}

double CDbl(std::string_view text) {
    const std::string trimmed = Trim(text);
    if (HasHexadecimalPrefix(trimmed)) return static_cast<std::int32_t>(HexadecimalBits(trimmed));
    const NumberHead head = ReadNumber(trimmed);
    if (head.Length == 0 || head.Length != trimmed.size()) throw RunTimeError(ErrorNumber::TypeMismatch);
    if (!head.Value) throw RunTimeError(ErrorNumber::Overflow);
    return *head.Value;
}

std::int32_t RoundToLong(double value) {
    const double rounded = std::nearbyint(value);
    const bool fits = rounded >= std::numeric_limits<std::int32_t>::min() &&
                      rounded <= std::numeric_limits<std::int32_t>::max();  // false for NaN too
    if (!fits) throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int32_t>(rounded);
}

bool IsNumeric(std::string_view text) {
    return Try([&] { return CDbl(text); }).has_value();
}

double Val(std::string_view text) {
    const std::string packed = Replace(std::string(text), " ", "");
    const NumberHead head = ReadNumber(packed);
    if (head.Length == 0) return 0;
    const double limit =
        packed.front() == '-' ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
    return head.Value.value_or(limit);
}

std::int32_t AddLong(std::int32_t left, std::int32_t right) {
    std::int32_t sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) throw RunTimeError(ErrorNumber::Overflow);
    return sum;
}

std::int32_t MultiplyLong(std::int32_t left, std::int32_t right) {
    std::int32_t product = 0;
    if (__builtin_mul_overflow(left, right, &product)) throw RunTimeError(ErrorNumber::Overflow);
    return product;
}

double Rnd() {
    static std::mt19937 generator{std::random_device{}()};  // one for the process: each seed costs as much as a page
    return std::uniform_real_distribution<double>(0, 1)(generator);
}

double RoundUpTo(double value, int places) {
    const double scale = std::pow(10.0, places);
    return std::ceil(value * scale) / scale;
}

}  // namespace pixmora
