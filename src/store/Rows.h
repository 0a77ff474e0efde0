// What is done with the rows of a table that meet a criterion.
#pragma once

#include <functional>
#include <string_view>

#include "platform/database/Database.h"

namespace pixmora {

/// Calls the action on each row found, one after the other. It may change or delete its row.
void ForEachRow(std::string_view table, std::string_view criteria, const std::function<void(Recordset &)> &action);

/// Deletes them all, together or not at all.
void DeleteRows(std::string_view table, std::string_view criteria);

}  // namespace pixmora
