// How the types of fields stand in the file, and their values.
#include "platform/database/FieldTypes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// In the order of FieldType.
constexpr std::array<std::string_view, 6> declarations = {"TEXT", "LONG",  "SMALLINT", "BOOLEAN NOT NULL DEFAULT 0",
                                                          "DATE", "DOUBLE"};

/// @throws RunTimeError Overflow
template <typename Whole>
FieldValue InRangeOf(std::int64_t number) {
    if (!std::in_range<Whole>(number)) throw RunTimeError(ErrorNumber::Overflow);
    return number;
}

}  // namespace

std::string_view DeclarationOf(FieldType type) {
    return declarations[static_cast<std::size_t>(type)];
}

FieldType TypeOfDeclaration(std::string_view declaration) {
    // The engine gives the type without what follows it.
    const auto isIt = [declaration](std::string_view known) {
        return EqualsIgnoreCase(known.substr(0, known.find(' ')), declaration);
    };
    const auto found = std::ranges::find_if(declarations, isIt);
    return found == declarations.end() ? FieldType::Text : static_cast<FieldType>(found - declarations.begin());
}

FieldValue StoredValue(FieldType type, const FieldValue &value) {
    FieldValue read = ReadValue(type, value);
    if (IsNull(read)) return read;
    switch (type) {
        case FieldType::Long:
            return InRangeOf<std::int32_t>(AsLong(read));
        case FieldType::Integer:
            return InRangeOf<std::int16_t>(AsLong(read));
        case FieldType::Boolean:
            return AsLong(read);
        case FieldType::Date:
            return IsoDate(AsDate(read));
        default:
            return read;
    }
}

FieldValue ReadValue(FieldType type, const FieldValue &stored) {
    if (type == FieldType::Boolean) return !IsNull(stored) && AsBoolean(stored);
    if (IsNull(stored)) return stored;
    switch (type) {
        case FieldType::Text:
            return AsText(stored);
        case FieldType::Long:
        case FieldType::Integer:
            return AsLong(stored);
        case FieldType::Date:
            return AsDate(stored);
        case FieldType::Double:
            return AsDouble(stored);
        case FieldType::Boolean:
            break;
    }
    return stored;
}

}  // namespace pixmora
