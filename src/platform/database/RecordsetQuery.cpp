// The SQL behind a recordset, and the rows that it brings.
#include "platform/database/RecordsetQuery.h"

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

SelectStatement SelectOf(std::string_view source) {
    if (IsStatement(source)) return TranslateSelect(source);
    SelectStatement wholeTable;
    wholeTable.Table = std::string(source);
    return wholeTable;
}

std::string BeforeAnd(const TranslatedCondition &condition) {
    return condition.Sql.empty() ? std::string() : "(" + condition.Sql + ") AND ";
}

}  // namespace

RecordsetQuery::RecordsetQuery(DatabaseEngine &engine, std::string_view source)
    : engine_(engine), select_(SelectOf(source)), table_(engine.Table(select_.Table)) {
    if (select_.Items.empty()) {
        head_ = table_->Head;
    } else {
        AddItems();
    }
    where_ = BeforeAnd(select_.Where);
    if (!where_.empty()) PreparedStatement(engine_, IsInTableOrder() ? SqlBehind({}) : SqlOfAllRows());
}

void RecordsetQuery::AddItems() {
    head_ = IsAggregate() ? "SELECT 0" : "SELECT rowid";
    for (const SelectItem &item : select_.Items) {
        if (item.Field == "*") {
            items_.push_back({item.Name, {}, std::nullopt});
            head_ += ", COUNT(*)";
            continue;
        }
        const Field &field = table_->Fields[table_->PlaceOf(item.Field)];
        if (!item.Function.empty()) {
            items_.push_back({item.Name, {}, std::nullopt});
            head_ += ", " + item.Function + "(" + QuotedIdentifier(field.Name) + ")";
        } else {
            items_.push_back({item.Name, field.Name, field.Type});
            head_ += ", " + QuotedIdentifier(field.Name);
        }
    }
    head_ += table_->From;
}

std::int64_t RecordsetQuery::Count() const {
    if (IsAggregate() && !IsGrouped()) return 1;
    // Without a condition the engine counts pages' cells and looks at no row.
    PreparedStatement statement(
        engine_, IsGrouped() || select_.Top > 0
                     ? "SELECT count(*) FROM (" + SqlOfAllRows() + ")"
                     : "SELECT count(*)" + table_->From + (where_.empty() ? "" : " WHERE " + where_ + "1"));
    statement.Bind(Literals());
    statement.Step();
    return statement.WholeColumn(0);
}

std::string RecordsetQuery::SqlBehind(const TranslatedCondition &criteria) const {
    return head_ + " WHERE " + where_ + BeforeAnd(criteria) + "rowid > ? ORDER BY rowid LIMIT 1 OFFSET ?";
}

bool RecordsetQuery::NumbersArePlaces() const {
    if (!where_.empty()) return false;
    PreparedStatement statement(engine_, "SELECT (SELECT max(rowid)" + table_->From + ") - (SELECT min(rowid)" +
                                             table_->From + ") + 1 = (SELECT count(*)" + table_->From + ")");
    return statement.Step() && statement.WholeColumn(0) != 0;
}

bool RecordsetQuery::FetchBehind(std::int64_t id, std::int64_t skip, const TranslatedCondition &criteria,
                                 Row &row) const {
    if (skip > 0 && criteria.Sql.empty() && NumbersArePlaces()) return FetchRow(id + 1 + skip, row);
    PreparedStatement statement(engine_, SqlBehind(criteria));
    statement.Bind(Literals());
    statement.Bind(criteria.Literals);
    statement.Bind(id);
    statement.Bind(skip);
    if (!statement.Step()) return false;
    ReadRow(statement, row);
    // In a damaged file a row may lie out of order, and a walk that it sent back would never end.
    if (row.Id <= id) throw RunTimeError(ErrorNumber::DatabaseFailure, sqlite3_errstr(SQLITE_CORRUPT));
    return true;
}

bool RecordsetQuery::FetchAlong(double share, Row &row) const {
    if (!where_.empty() || !IsInTableOrder()) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    // The engine numbers from 1.
    PreparedStatement statement(engine_, head_ + " WHERE rowid >= 1 + CAST(round(((SELECT max(rowid)" + table_->From +
                                             ") - 1) * ?) AS INTEGER) ORDER BY rowid LIMIT 1");
    statement.Bind(share);
    if (!statement.Step()) return false;
    ReadRow(statement, row);
    return true;
}

bool RecordsetQuery::FetchRow(std::int64_t id, Row &row) const {
    PreparedStatement statement(engine_, head_ + " WHERE rowid = ?");
    statement.Bind(id);
    if (!statement.Step()) return false;
    ReadRow(statement, row);
    return true;
}

bool RecordsetQuery::Meets(std::int64_t id, const TranslatedCondition &criteria) const {
    PreparedStatement statement(engine_, "SELECT 1" + table_->From + " WHERE " + BeforeAnd(criteria) + "rowid = ?");
    statement.Bind(criteria.Literals);
    statement.Bind(id);
    return statement.Step();
}

std::string RecordsetQuery::SqlOfAllRows() const {
    std::string sql = head_ + " WHERE " + where_ + "1";
    if (IsGrouped()) sql += " GROUP BY " + select_.GroupBy;
    if (!IsAggregate()) sql += " ORDER BY " + select_.OrderBy + ", rowid";
    if (select_.Top > 0) sql += " LIMIT " + std::to_string(select_.Top);
    return sql;
}

void RecordsetQuery::ReadRow(const PreparedStatement &statement, Row &row) const {
    row.Id = statement.WholeColumn(0);
    row.Values.resize(Columns().size());
    for (std::size_t place = 0; place < Columns().size(); ++place) {
        row.Values[place] = statement.Column(static_cast<int>(place) + 1);
    }
}

void RecordsetQuery::Insert(const Changes &changes) const {
    std::string fields;
    std::string marks;
    std::vector<FieldValue> values;
    for (std::size_t place = 0; place < changes.size(); ++place) {
        if (!changes[place]) continue;
        const char *separator = values.empty() ? "" : ", ";
        fields += separator + QuotedIdentifier(Columns()[place].Source);
        marks += std::string(separator) + "?";
        values.push_back(*changes[place]);
    }
    const std::string what = values.empty() ? " DEFAULT VALUES" : " (" + fields + ") VALUES (" + marks + ")";
    PreparedStatement statement(engine_, "INSERT INTO " + QuotedIdentifier(table_->Name) + what);
    statement.Bind(values);
    statement.Step();
}

bool RecordsetQuery::Change(std::int64_t id, const Changes &changes) const {
    std::string terms;
    std::vector<FieldValue> values;
    for (std::size_t place = 0; place < changes.size(); ++place) {
        if (!changes[place]) continue;
        terms += (values.empty() ? "" : ", ") + QuotedIdentifier(Columns()[place].Source) + "=?";
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

bool RecordsetQuery::Remove(std::int64_t id) const {
    PreparedStatement statement(engine_, "DELETE" + table_->From + " WHERE rowid=?");
    statement.Bind(id);
    statement.Step();
    return sqlite3_changes(engine_.Handle()) > 0;
}

OrderedRows::OrderedRows(DatabaseEngine &engine, const RecordsetQuery &query) : engine_(engine), query_(query) {
    statement_.emplace(engine_, query_.SqlOfAllRows());
    engine_.AddReader(this);
}

OrderedRows::~OrderedRows() {
    engine_.RemoveReader(this);
}

Row *OrderedRows::At(std::size_t place) {
    while (place >= rows_.size()) {
        if (!FetchNext()) return nullptr;
    }
    return &rows_[place];
}

bool OrderedRows::FetchNext() {
    if (!statement_) return false;
    if (!isStarted_) statement_->Bind(query_.Literals());
    isStarted_ = true;
    if (!statement_->Step()) {
        statement_.reset();
        return false;
    }
    query_.ReadRow(*statement_, rows_.emplace_back());
    // A function's result is one row, and nothing stays open behind it.
    if (query_.IsAggregate() && !query_.IsGrouped()) statement_.reset();
    return true;
}

void OrderedRows::ReadToEnd() {
    engine_.RemoveReader(this);
    while (FetchNext()) {
    }
}

}  // namespace pixmora
