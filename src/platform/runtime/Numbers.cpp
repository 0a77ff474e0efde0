// Texts to numbers, as the run time reads them. None of it depends on the locale.
#include "platform/runtime/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t CountDigits(std::string_view text, std::size_t start) {
    std::size_t end = start;
    while (end < text.size() && IsDigit(text[end])) ++end;
    return end - start;
}

/// A decimal number's place at the head of a text: sign, digits with a point, exponent.
struct NumberHead {
    std::size_t Length = 0;    ///< 0 when the text begins with no number
    std::size_t Exponent = 0;  ///< position of the "e", or 0
};

NumberHead FindNumber(std::string_view text) {
    std::size_t end = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    const std::size_t whole = CountDigits(text, end);
    end += whole;
    std::size_t fraction = 0;
    if (end < text.size() && text[end] == '.') {
        fraction = CountDigits(text, end + 1);
        if (whole + fraction > 0) end += 1 + fraction;
    }
    if (whole + fraction == 0) return {};

    NumberHead head{end, 0};
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t digits = end + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) ++digits;
        if (const std::size_t count = CountDigits(text, digits); count > 0) head = {digits + count, end};
    }
    return head;
}

/// The value of a number that FindNumber found. Beyond a Double: none when too large, 0 when too small.
std::optional<double> ValueOf(std::string_view text, NumberHead head) {
    std::string_view number = text.substr(0, head.Length);
    if (number.front() == '+') number.remove_prefix(1);
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec != std::errc::result_out_of_range) return value;

    const bool isTiny =
        head.Exponent > 0 ? text[head.Exponent + 1] == '-' : number.find_first_of("123456789") > number.find('.');
    if (isTiny) return 0.0;
    return std::nullopt;
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
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int16_t>(value);
}

std::int32_t CLng(std::string_view text) {
    return RoundToLong(CDbl(text));
}

double CDbl(std::string_view text) {
    const std::string trimmed = Trim(text);
    if (HasHexadecimalPrefix(trimmed)) return static_cast<std::int32_t>(HexadecimalBits(trimmed));
    const NumberHead head = FindNumber(trimmed);
    if (head.Length == 0 || head.Length != trimmed.size()) throw RunTimeError(ErrorNumber::TypeMismatch);
    const std::optional<double> value = ValueOf(trimmed, head);
    if (!value) throw RunTimeError(ErrorNumber::Overflow);
    return *value;
}

std::int32_t RoundToLong(double value) {
    const double rounded = std::nearbyint(value);
    const bool fits = rounded >= std::numeric_limits<std::int32_t>::min() &&
                      rounded <= std::numeric_limits<std::int32_t>::max();  // false for NaN too
    if (!fits) throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int32_t>(rounded);
}

bool IsNumeric(std::string_view text) {
    try {
        CDbl(text);
        return true;
    } catch (const RunTimeError &) {
        return false;
    }
}

double Val(std::string_view text) {
    const std::string packed = Replace(std::string(text), " ", "");
    const NumberHead head = FindNumber(packed);
    if (head.Length == 0) return 0;
    const double limit =
        packed.front() == '-' ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
    return ValueOf(packed, head).value_or(limit);
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
    const double scaled = value * scale;
    const double whole = std::floor(scaled);
    return (whole < scaled ? whole + 1 : whole) / scale;
}

}  // namespace pixmora
