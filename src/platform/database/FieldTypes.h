// How the types of fields stand in the file, and their values.
#pragma once

#include <string_view>

#include "platform/database/Database.h"

namespace pixmora {

/// The declaration of a column of this type in SQL.
std::string_view DeclarationOf(FieldType type);
/// The way back; what is none of them reads as Text.
FieldType TypeOfDeclaration(std::string_view declaration);

/// A value as the engine stores it in a field of this type: Null, int64, double or text.
/// @throws RunTimeError Overflow, TypeMismatch
FieldValue StoredValue(FieldType type, const FieldValue &value);
/// The way back. @throws RunTimeError TypeMismatch for a stored value that is none of this type
FieldValue ReadValue(FieldType type, const FieldValue &stored);

}  // namespace pixmora
