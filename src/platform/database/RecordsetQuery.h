// The SQL behind a recordset, and the rows that it brings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/DatabaseEngine.h"
#include "platform/database/StatementTranslator.h"

namespace pixmora {

/// A row as stored, with the engine's number of it, which grows in the order in which rows were added.
struct Row {
    std::int64_t Id = 0;
    std::vector<FieldValue> Values;
};

/// What a recordset was opened on. Reads and writes rows; has no current one and keeps nothing open.
class RecordsetQuery {
public:
    /// @throws RunTimeError SyntaxError, ItemNotFound, DatabaseError for a condition with an unknown field
    RecordsetQuery(DatabaseEngine &engine, std::string_view source);

    const std::vector<Column> &Columns() const { return select_.Items.empty() ? table_->Columns : items_; }
    bool IsAggregate() const { return select_.IsAggregate(); }
    bool IsGrouped() const { return !select_.GroupBy.empty(); }
    /// Whether rows come in the table's own order, and so can be found by their numbers.
    bool IsInTableOrder() const { return select_.OrderBy.empty() && !IsAggregate(); }

    std::int64_t Count() const;
    /// The row that meets the criteria behind the row numbered `id`, after `skip` others. False when there is none.
    bool FetchBehind(std::int64_t id, std::int64_t skip, const TranslatedCondition &criteria, Row &row) const;
    /// The row at a share of the way from the first to the last. False when there is none.
    /// @throws RunTimeError InvalidProcedureCall for anything but a whole table
    bool FetchAlong(double share, Row &row) const;
    /// One row anew. False when it is gone.
    bool FetchRow(std::int64_t id, Row &row) const;
    bool Meets(std::int64_t id, const TranslatedCondition &criteria) const;

    /// SQL and literals of all rows in the statement's order.
    std::string SqlOfAllRows() const;
    const std::vector<FieldValue> &Literals() const { return select_.Where.Literals; }
    /// The present row of a statement made of that SQL.
    void ReadRow(const PreparedStatement &statement, Row &row) const;

    /// Of the columns, those that are set.
    using Changes = std::vector<std::optional<FieldValue>>;
    void Insert(const Changes &changes) const;
    /// False when the row is gone.
    bool Change(std::int64_t id, const Changes &changes) const;
    bool Remove(std::int64_t id) const;

private:
    void AddItems();
    std::string SqlBehind(const TranslatedCondition &criteria) const;
    /// Whether the recordset has all rows of a table with no gap in their numbers: then a place far on is found without
    /// a walk over the rows before it.
    bool NumbersArePlaces() const;

    DatabaseEngine &engine_;
    SelectStatement select_;
    TablePointer table_;
    std::vector<Column> items_;  ///< of a statement that names its columns
    std::string head_;           ///< "SELECT rowid, column, ... FROM table"
    std::string where_;          ///< the statement's own condition ready for an AND behind it, or empty
};

/// The rows of a statement that has an order of its own, fetched as far as they were asked for and then kept.
class OrderedRows : public OpenReader {
public:
    OrderedRows(DatabaseEngine &engine, const RecordsetQuery &query);
    ~OrderedRows() override;
    OrderedRows(const OrderedRows &) = delete;
    OrderedRows &operator=(const OrderedRows &) = delete;

    /// The row at this place from 0, or null behind the last one.
    Row *At(std::size_t place);
    void ReadToEnd() override;

private:
    bool FetchNext();

    DatabaseEngine &engine_;
    const RecordsetQuery &query_;
    std::optional<PreparedStatement> statement_;  ///< open while rows may follow
    bool isStarted_ = false;
    std::vector<Row> rows_;
};

}  // namespace pixmora
