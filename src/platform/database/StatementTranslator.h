// Turns the program's statements and criteria into the SQL of SQLite, with every literal lifted out of the text.
//
//     statement   SELECT [TOP number] * | item, ...  FROM table  [WHERE condition]
//                 [GROUP BY field, ... | ORDER BY field [ASC | DESC], ...]      TOP needs ORDER BY
//     item        field [AS name]  |  SUM | COUNT | MIN | MAX | AVG ( field | * ) [AS name]
//     condition   comparisons joined by AND, OR, NOT and parentheses
//     comparison  operand = <> < > <= >= operand  |  operand [NOT] LIKE text  |  operand IS [NOT] NULL
//     operand     field | 'text' | "text" | number | #date# | TRUE | FALSE
//
// Anything else raises SyntaxError: a second statement, a comment, a function in a condition, a NUL.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/Database.h"

namespace pixmora {

/// A condition, with one "?" for each literal in order. Texts compare without regard to ASCII case.
struct TranslatedCondition {
    std::string Sql;
    std::vector<FieldValue> Literals;  ///< int64, double or text; a date in its ISO form
};

struct SelectItem {
    std::string Function;  ///< upper case; empty for a plain field
    std::string Field;     ///< as written; "*" only inside a function
    std::string Name;      ///< what the recordset calls it
};

struct SelectStatement {
    std::string Table;
    std::vector<SelectItem> Items;  ///< empty for "*"; all with a function or none, but for the fields of groups
    TranslatedCondition Where;      ///< its Sql is empty when every row is wanted
    std::string GroupBy;            ///< SQL of the terms, empty when there are no groups
    std::string OrderBy;            ///< SQL of the terms, empty when the order is the table's own
    std::int64_t Top = 0;           ///< so many rows at most, only with ORDER BY; 0 for all

    /// Whether its rows are made of several of the table's.
    bool IsAggregate() const { return !GroupBy.empty() || (!Items.empty() && !Items.front().Function.empty()); }
};

/// Whether the source of a recordset is a statement and no table's name. @throws RunTimeError SyntaxError when it is
/// neither
bool IsStatement(std::string_view source);

/// @throws RunTimeError SyntaxError
SelectStatement TranslateSelect(std::string_view statement);
TranslatedCondition TranslateCriteria(std::string_view criteria);

/// A table's or field's name as SQL.
std::string QuotedIdentifier(std::string_view name);

}  // namespace pixmora
