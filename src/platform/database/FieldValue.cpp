// Database.h: readings of field values, and values as literals of a statement.
#include <cmath>
#include <type_traits>

#include "platform/database/Database.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

[[noreturn]] void RefuseNull() {
    throw RunTimeError(ErrorNumber::InvalidUseOfNull);
}

[[noreturn]] void RefuseType() {
    throw RunTimeError(ErrorNumber::TypeMismatch);
}

std::int64_t Rounded(double value) {
    constexpr double beyond = 9223372036854775808.0;  // 2^63
    const double whole = std::nearbyint(value);
    if (!(whole >= -beyond && whole < beyond)) throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int64_t>(whole);
}

}  // namespace

bool IsNull(const FieldValue &value) {
    return std::holds_alternative<Null>(value);
}

std::int64_t AsLong(const FieldValue &value) {
    return std::visit(
        [](const auto &held) -> std::int64_t {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Null>) RefuseNull();
            if constexpr (std::is_same_v<Held, DateTime>) RefuseType();
            if constexpr (std::is_same_v<Held, std::string>) return CLng(held);
            if constexpr (std::is_same_v<Held, double>) return Rounded(held);
            if constexpr (std::is_integral_v<Held>) return held;
        },
        value);
}

double AsDouble(const FieldValue &value) {
    return std::visit(
        [](const auto &held) -> double {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Null>) RefuseNull();
            if constexpr (std::is_same_v<Held, DateTime>) RefuseType();
            if constexpr (std::is_same_v<Held, std::string>) return CDbl(held);
            if constexpr (std::is_arithmetic_v<Held>) return static_cast<double>(held);
        },
        value);
}

bool AsBoolean(const FieldValue &value) {
    if (const auto *text = std::get_if<std::string>(&value)) {
        if (EqualsIgnoreCase(*text, "True")) return true;
        if (EqualsIgnoreCase(*text, "False")) return false;
    }
    return AsDouble(value) != 0;
}

std::string AsText(const FieldValue &value) {
    return std::visit(
        [](const auto &held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Null>) RefuseNull();
            if constexpr (std::is_same_v<Held, bool>) return held ? "True" : "False";
            if constexpr (std::is_same_v<Held, std::int64_t>) return std::to_string(held);
            if constexpr (std::is_same_v<Held, double>) return NumberText(held);
            if constexpr (std::is_same_v<Held, DateTime>) return DateText(held);
            if constexpr (std::is_same_v<Held, std::string>) return held;
        },
        value);
}

std::string TextOrEmpty(const FieldValue &value) {
    return IsNull(value) ? std::string() : AsText(value);
}

DateTime AsDate(const FieldValue &value) {
    if (IsNull(value)) RefuseNull();
    if (const auto *date = std::get_if<DateTime>(&value)) return *date;
    if (const auto *text = std::get_if<std::string>(&value)) return ParseDate(*text);
    RefuseType();
}

std::string QuotedText(std::string_view text) {
    if (Contains(text, "'")) throw RunTimeError(ErrorNumber::SyntaxError);
    return "'" + std::string(text) + "'";
}

std::string QuotedDate(DateTime date) {
    return "#" + ShortDate(date) + "#";
}

}  // namespace pixmora
