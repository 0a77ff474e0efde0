// What is done with the rows of a table that meet a criterion.
#include "store/Rows.h"

#include "store/Globals.h"

namespace pixmora {

void ForEachRow(std::string_view table, std::string_view criteria, const std::function<void(Recordset &)> &action) {
    const auto rows = gDatabase->OpenRecordset(table, RecordsetType::Dynaset);
    for (rows->FindFirst(criteria); !rows->NoMatch(); rows->FindNext(criteria)) action(*rows);
}

void DeleteRows(std::string_view table, std::string_view criteria) {
    Transaction transaction(*gDatabase);
    ForEachRow(table, criteria, [](Recordset &row) { row.Delete(); });
    transaction.Commit();
}

}  // namespace pixmora
