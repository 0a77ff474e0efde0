// What is done with the rows of a table that meet a criterion.
#pragma once

#include <string_view>

namespace pixmora {

/// Deletes them all, together or not at all.
void DeleteRows(std::string_view table, std::string_view criteria);

}  // namespace pixmora
