// Turns the program's statements and criteria into the SQL of SQLite, with every literal lifted out of the text.
//
//     statement   SELECT [TOP number] * | item, ...  FROM table  [WHERE condition]
//                 [GROUP BY field, ... | ORDER BY field [DESC], ...]
//     item        field  |  SUM(field) AS name
//     condition   comparisons joined by AND, OR and parentheses
//     comparison  operand = < > operand  |  field LIKE text, in which "*" stands for any characters
//     operand     field | 'text' | "text" | [-] number | #date#
//
// A literal, which may be a stranger's text, ends at its second quote and becomes a "?". Outside literals nothing
// passes but these words and symbols and, in quotes, names: no second statement, no comment, no function. Whether what
// is left makes sense the engine says.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/Database.h"

namespace pixmora {

/// A condition, with one "?" for each literal in order. Texts compare as CompareTexts (Text.h) has it.
struct TranslatedCondition {
    std::string Sql;
    std::vector<FieldValue> Literals;  ///< int64 or text; a date in its ISO form
};

struct SelectItem {
    std::string Field;
    std::string Name;  ///< what the recordset calls it
    bool IsSum = false;
};

struct SelectStatement {
    std::string Table;
    std::vector<SelectItem> Items;  ///< empty for "*"
    TranslatedCondition Where;      ///< its Sql is empty when every row is wanted
    std::string GroupBy;            ///< SQL of the terms, empty when there are no groups
    std::string OrderBy;            ///< SQL of the terms, empty when the order is the table's own
    std::int64_t Top = 0;           ///< so many rows at most; 0 for all
};

/// Whether the source of a recordset is a statement and no table's name.
bool IsStatement(std::string_view source);

/// @throws RunTimeError SyntaxError
SelectStatement TranslateSelect(std::string_view statement);
TranslatedCondition TranslateCriteria(std::string_view criteria);

/// A table's or field's name as SQL.
std::string QuotedIdentifier(std::string_view name);

}  // namespace pixmora
