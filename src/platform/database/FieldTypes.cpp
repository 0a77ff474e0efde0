// How the types of fields stand in the file, and their values.
#include "platform/database/FieldTypes.h"

#include <limits>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

template <typename Whole>
FieldValue WholeNumber(const FieldValue &value) {
    const std::int64_t number = AsLong(value);
    if (number < std::numeric_limits<Whole>::min() || number > std::numeric_limits<Whole>::max()) {
        throw RunTimeError(ErrorNumber::Overflow);
    }
    return number;
}

}  // namespace

std::string_view DeclarationOf(FieldType type) {
    switch (type) {
        case FieldType::Text:
            return "TEXT";
        case FieldType::Long:
            return "LONG";
        case FieldType::Integer:
            return "SMALLINT";
        case FieldType::Boolean:
            return "BOOLEAN NOT NULL DEFAULT 0";
        case FieldType::Date:
            return "DATE";
        case FieldType::Double:
            return "DOUBLE";
    }
    return "TEXT";
}

FieldType TypeOfDeclaration(std::string_view declaration) {
    const std::string name = UCase(declaration);
    if (name == "SMALLINT" || name == "SHORT") return FieldType::Integer;
    if (name.starts_with("BOOL")) return FieldType::Boolean;
    if (name.starts_with("DATE")) return FieldType::Date;
    if (name == "LONG" || Contains(name, "INT")) return FieldType::Long;
    const bool isText = Contains(name, "CHAR") || Contains(name, "CLOB") || Contains(name, "TEXT");
    return isText || name.empty() || name == "BLOB" ? FieldType::Text : FieldType::Double;
}

FieldValue StoredValue(FieldType type, const FieldValue &value) {
    if (type == FieldType::Boolean) return std::int64_t{!IsNull(value) && AsBoolean(value)};
    if (IsNull(value)) return value;
    switch (type) {
        case FieldType::Text:
            return AsText(value);
        case FieldType::Long:
            return WholeNumber<std::int32_t>(value);
        case FieldType::Integer:
            return WholeNumber<std::int16_t>(value);
        case FieldType::Date:
            return IsoDate(AsDate(value));
        case FieldType::Double:
            return AsDouble(value);
        case FieldType::Boolean:
            break;
    }
    return value;
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
