// Walks over the rows of a table that meet a criterion.
#pragma once

#include <functional>
#include <string_view>

#include "store/Globals.h"

namespace pixmora {

/// Calls the action on each row found, one after the other.
void ForEachRow(std::string_view table, std::string_view criteria, const std::function<void(Recordset &)> &action);

void DeleteRows(std::string_view table, std::string_view criteria);

}  // namespace pixmora
