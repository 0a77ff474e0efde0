// Where a recordset's rows come from: a table, whose rows are found by their numbers and changed, or a statement.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/DatabaseEngine.h"
#include "platform/database/StatementTranslator.h"

namespace pixmora {

/// A row as stored.
struct Row {
    std::int64_t Id = 0;  ///< the engine's number of a table's row, which grows in the order in which rows were added
    std::vector<FieldValue> Values;
};

/// A whole table. Has no current row and keeps nothing open.
class TableRows {
public:
    /// @throws RunTimeError ItemNotFound
    TableRows(DatabaseEngine &engine, std::string_view table) : engine_(engine), table_(engine.Table(table)) {}

    const std::vector<Field> &Fields() const { return table_->Fields; }
    std::int64_t Count() const;

    /// The first row that meets the criteria, or any, behind the row numbered `id`. False when there is none.
    bool FetchBehind(std::int64_t id, const TranslatedCondition *criteria, Row &row) const;
    /// The row at a share of the way from the first to the last. False when there is none.
    bool FetchAlong(double share, Row &row) const;
    /// One row anew. False when it is gone.
    bool FetchRow(std::int64_t id, Row &row) const;

    /// Of the fields, those that are set.
    using Changes = std::vector<std::optional<FieldValue>>;
    void Insert(const Changes &changes) const;
    /// False when the row is gone.
    bool Change(std::int64_t id, const Changes &changes) const;
    bool Remove(std::int64_t id) const;

private:
    bool FetchOne(PreparedStatement &statement, Row &row) const;

    DatabaseEngine &engine_;
    TablePointer table_;
};

/// What a SELECT statement brings, from its first row to its last.
class StatementRows : public OpenReader {
public:
    /// @throws RunTimeError SyntaxError, ItemNotFound, DatabaseError
    StatementRows(DatabaseEngine &engine, const SelectStatement &select);
    ~StatementRows() override;
    StatementRows(const StatementRows &) = delete;
    StatementRows &operator=(const StatementRows &) = delete;

    /// What the recordset calls them. A sum is a Double.
    const std::vector<Field> &Fields() const { return fields_; }
    std::int64_t Count() const;
    bool FetchNext(Row &row);
    void ReadToEnd() override;

private:
    bool Step(Row &row);

    DatabaseEngine &engine_;
    std::vector<Field> fields_;
    std::string unordered_;  ///< the SQL without its order
    std::vector<FieldValue> literals_;
    std::optional<PreparedStatement> statement_;  ///< open while rows may follow
    std::vector<Row> kept_;                       ///< rows read ahead of their turn
    std::size_t taken_ = 0;                       ///< how many of them had it
};

}  // namespace pixmora
