// Where a recordset's rows come from: a table, whose rows are found by their numbers and changed, or a statement.
#include "platform/database/RecordsetRows.h"

#include <utility>

#include "platform/runtime/RunTimeError.h"

namespace pixmora {

std::int64_t TableRows::Count() const {
    // Without a condition the engine counts pages' cells and looks at no row.
    PreparedStatement statement(engine_, "SELECT count(*)" + table_->From);
    statement.Step();
    return statement.WholeColumn(0);
}

bool TableRows::FetchOne(PreparedStatement &statement, Row &row) const {
    if (!statement.Step()) return false;
    row.Id = statement.WholeColumn(0);
    statement.ReadColumns(1, Fields().size(), row.Values);
    return true;
}

bool TableRows::FetchBehind(std::int64_t id, const TranslatedCondition *criteria, Row &row) const {
    const std::string condition = criteria == nullptr ? "" : "(" + criteria->Sql + ") AND ";
    PreparedStatement statement(engine_, table_->Head + " WHERE " + condition + "rowid > ? ORDER BY rowid LIMIT 1");
    if (criteria != nullptr) statement.Bind(criteria->Literals);
    statement.Bind(id);
    if (!FetchOne(statement, row)) return false;
    // In a damaged file a row may lie out of order, and a walk that it sent back would never end.
    if (row.Id <= id) throw FileError(SQLITE_CORRUPT);
    return true;
}

bool TableRows::FetchAlong(double share, Row &row) const {
    // The engine numbers from 1.
    PreparedStatement statement(engine_, table_->Head + " WHERE rowid >= 1 + CAST(round(((SELECT max(rowid)" +
                                             table_->From + ") - 1) * ?) AS INTEGER) ORDER BY rowid LIMIT 1");
    statement.Bind(share);
    return FetchOne(statement, row);
}

bool TableRows::FetchRow(std::int64_t id, Row &row) const {
    PreparedStatement statement(engine_, table_->Head + " WHERE rowid = ?");
    statement.Bind(id);
    return FetchOne(statement, row);
}

void TableRows::Insert(const Changes &changes) const {
    std::string fields;
    std::string marks;
    std::vector<FieldValue> values;
    for (std::size_t place = 0; place < changes.size(); ++place) {
        if (!changes[place]) continue;
        const char *separator = values.empty() ? "" : ", ";
        fields += separator + QuotedIdentifier(Fields()[place].Name);
        marks += std::string(separator) + "?";
        values.push_back(*changes[place]);
    }
    const std::string what = values.empty() ? " DEFAULT VALUES" : " (" + fields + ") VALUES (" + marks + ")";
    PreparedStatement statement(engine_, "INSERT INTO " + QuotedIdentifier(table_->Name) + what);
    statement.Bind(values);
    statement.Step();
}

bool TableRows::Change(std::int64_t id, const Changes &changes) const {
    std::string terms;
    std::vector<FieldValue> values;
    for (std::size_t place = 0; place < changes.size(); ++place) {
        if (!changes[place]) continue;
        terms += (values.empty() ? "" : ", ") + QuotedIdentifier(Fields()[place].Name) + "=?";
        values.push_back(*changes[place]);
    }
    if (values.empty()) return true;
    PreparedStatement statement(engine_,
                                "UPDATE " + QuotedIdentifier(table_->Name) + " SET " + terms + " WHERE rowid=?");
    statement.Bind(values);
    statement.Bind(id);
    statement.Step();
    return sqlite3_changes(engine_.Handle()) > 0;
}

bool TableRows::Remove(std::int64_t id) const {
    PreparedStatement statement(engine_, "DELETE" + table_->From + " WHERE rowid=?");
    statement.Bind(id);
    statement.Step();
    return sqlite3_changes(engine_.Handle()) > 0;
}

StatementRows::StatementRows(DatabaseEngine &engine, const SelectStatement &select) : engine_(engine) {
    const TablePointer table = engine.Table(select.Table);
    std::string items;
    const auto addItem = [&](const std::string &name, const Field &field, bool isSum) {
        fields_.push_back({name, isSum ? FieldType::Double : field.Type});
        const std::string column = QuotedIdentifier(field.Name);
        items += (items.empty() ? "" : ", ") + (isSum ? "SUM(" + column + ")" : column);
    };
    if (select.Items.empty()) {
        for (const Field &field : table->Fields) addItem(field.Name, field, false);
    }
    for (const SelectItem &item : select.Items) {
        addItem(item.Name, table->Fields[PlaceOf(table->Fields, item.Field)], item.IsSum);
    }
    unordered_ = "SELECT " + items + table->From;
    if (!select.Where.Sql.empty()) unordered_ += " WHERE " + select.Where.Sql;
    if (!select.GroupBy.empty()) unordered_ += " GROUP BY " + select.GroupBy;
    literals_ = select.Where.Literals;

    const std::string order = select.OrderBy.empty() ? "" : " ORDER BY " + select.OrderBy + ", rowid";
    const std::string limit = select.Top > 0 ? " LIMIT " + std::to_string(select.Top) : "";
    statement_.emplace(engine_, unordered_ + order + limit);
    unordered_ += limit;
    statement_->Bind(literals_);
    engine_.AddReader(this);
}

StatementRows::~StatementRows() {
    engine_.RemoveReader(this);
}

std::int64_t StatementRows::Count() const {
    PreparedStatement statement(engine_, "SELECT count(*) FROM (" + unordered_ + ")");
    statement.Bind(literals_);
    statement.Step();
    return statement.WholeColumn(0);
}

bool StatementRows::Step(Row &row) {
    if (!statement_) return false;
    if (!statement_->Step()) {
        statement_.reset();
        return false;
    }
    statement_->ReadColumns(0, fields_.size(), row.Values);
    return true;
}

bool StatementRows::FetchNext(Row &row) {
    if (taken_ == kept_.size()) return Step(row);
    row = std::move(kept_[taken_++]);
    return true;
}

void StatementRows::ReadToEnd() {
    engine_.RemoveReader(this);
    for (Row row; Step(row);) kept_.push_back(row);
}

}  // namespace pixmora
