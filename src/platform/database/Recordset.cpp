// Database.h: recordsets: a current row, moving and finding, and changes made to it.
#include <limits>
#include <utility>

#include "platform/database/Database.h"
#include "platform/database/FieldTypes.h"
#include "platform/database/RecordsetQuery.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr std::int64_t beforeAllRows = std::numeric_limits<std::int64_t>::min();

/// Where the recordset stands. It begins, and MoveFirst puts it, at First; looking at the row reads it.
///
///     First --look--> OnRow | Eof        OnRow --Delete--> Deleted
///     OnRow, Deleted --move--> OnRow | Eof
///     any --find with a match--> OnRow
enum class Place { First, OnRow, Deleted, Eof };

enum class Pending { Nothing, NewRow, ChangedRow };

}  // namespace

struct Recordset::Implementation {
    Implementation(DatabaseEngine &engine, std::string_view source, RecordsetType type)
        : Query(engine, source), IsReadOnly(type == RecordsetType::Snapshot || Query.IsAggregate()) {
        if (!Query.IsInTableOrder()) Ordered = std::make_unique<OrderedRows>(engine, Query);
    }

    void Look() {
        if (At == Place::First) Fetch(beforeAllRows, 0, 0);
    }

    /// Goes to the row `skip` rows behind the one numbered `id`, or, where the order is the statement's, to the place.
    void Fetch(std::int64_t id, std::int64_t skip, std::size_t place) {
        if (Ordered == nullptr) {
            At = Query.FetchBehind(id, skip, {}, Current) ? Place::OnRow : Place::Eof;
            return;
        }
        const Row *row = Ordered->At(place);
        At = row != nullptr ? Place::OnRow : Place::Eof;
        if (row != nullptr) Current = *row;
        OrderedPlace = place;
    }

    void Move(std::int64_t rows) {
        DropPending();
        Look();
        if (At == Place::Eof) throw RunTimeError(ErrorNumber::NoCurrentRecord);
        if (rows > 0) Fetch(Current.Id, rows - 1, OrderedPlace + static_cast<std::size_t>(rows));
    }

    void FindBehind(std::int64_t id, std::size_t place, std::string_view criteria) {
        DropPending();
        const TranslatedCondition condition = TranslateCriteria(criteria);
        const bool isFound =
            Ordered == nullptr ? Query.FetchBehind(id, 0, condition, Current) : FindInOrder(place, condition);
        IsNoMatch = !isFound;
        if (isFound) At = Place::OnRow;
    }

    bool FindInOrder(std::size_t place, const TranslatedCondition &condition) {
        if (Query.IsAggregate()) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        for (const Row *row = Ordered->At(place); row != nullptr; row = Ordered->At(++place)) {
            if (!Query.Meets(row->Id, condition)) continue;
            Current = *row;
            OrderedPlace = place;
            return true;
        }
        return false;
    }

    /// @throws RunTimeError NoCurrentRecord
    void RequireRow() {
        Look();
        if (At != Place::OnRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    }

    void RequireWritable() const {
        if (IsReadOnly) {
            throw RunTimeError(ErrorNumber::DatabaseError, "Cannot update. Database or object is read-only.");
        }
    }

    std::size_t ColumnNamed(std::string_view name) const {
        for (std::size_t place = 0; place < Query.Columns().size(); ++place) {
            if (EqualsIgnoreCase(Query.Columns()[place].Name, name)) return place;
        }
        throw RunTimeError(ErrorNumber::ItemNotFound);
    }

    std::size_t ColumnAt(int ordinal) const {
        const auto place = static_cast<std::size_t>(ordinal);
        if (ordinal < 0 || place >= Query.Columns().size()) throw RunTimeError(ErrorNumber::ItemNotFound);
        return place;
    }

    FieldValue ValueAt(std::size_t place) {
        const std::optional<FieldType> type = Query.Columns()[place].Type;
        if (What != Pending::Nothing && Changes[place]) return ReadValue(*type, *Changes[place]);
        if (What == Pending::NewRow) return ReadValue(*type, Null{});
        RequireRow();
        return type ? ReadValue(*type, Current.Values[place]) : Current.Values[place];
    }

    void SetAt(std::size_t place, const FieldValue &value) {
        if (What == Pending::Nothing) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        Changes[place] = StoredValue(*Query.Columns()[place].Type, value);
    }

    void BeginPending(Pending what) {
        What = what;
        Changes.assign(Query.Columns().size(), std::nullopt);
    }

    void DropPending() { What = Pending::Nothing; }

    void WriteChanges() {
        if (!Query.Change(Current.Id, Changes)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
        for (std::size_t place = 0; place < Changes.size(); ++place) {
            if (Changes[place]) Current.Values[place] = *Changes[place];
        }
        if (Ordered != nullptr) *Ordered->At(OrderedPlace) = Current;
    }

    RecordsetQuery Query;
    bool IsReadOnly;
    std::unique_ptr<OrderedRows> Ordered;  ///< only where the order is not the table's own
    Place At = Place::First;
    Row Current;                   ///< of Deleted the number alone
    std::size_t OrderedPlace = 0;  ///< the current row's place in Ordered
    bool IsNoMatch = false;
    Pending What = Pending::Nothing;
    RecordsetQuery::Changes Changes;
};

Recordset::Recordset(Database &database, std::string_view source, RecordsetType type)
    : implementation_(std::make_unique<Implementation>(*database.engine_, source, type)) {}

Recordset::~Recordset() = default;

Recordset::Implementation &Recordset::Open() const {
    if (implementation_ == nullptr) throw RunTimeError(ErrorNumber::ObjectNotSet);
    return *implementation_;
}

std::int64_t Recordset::RecordCount() {
    return Open().Query.Count();
}

bool Recordset::Eof() const {
    Open().Look();
    return Open().At == Place::Eof;
}

void Recordset::MoveFirst() {
    Implementation &self = Open();
    self.DropPending();
    self.At = Place::First;
    self.RequireRow();
}

void Recordset::MoveNext() {
    Open().Move(1);
}

void Recordset::Move(std::int64_t rows) {
    if (rows < 0) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    Open().Move(rows);
}

void Recordset::MoveAlong(double share) {
    Implementation &self = Open();
    self.DropPending();
    self.At = self.Query.FetchAlong(share, self.Current) ? Place::OnRow : Place::Eof;
}

void Recordset::FindFirst(std::string_view criteria) {
    Open().FindBehind(beforeAllRows, 0, criteria);
}

void Recordset::FindNext(std::string_view criteria) {
    Implementation &self = Open();
    self.Look();
    if (self.At == Place::Eof) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    self.FindBehind(self.Current.Id, self.OrderedPlace + 1, criteria);
}

bool Recordset::NoMatch() const {
    return Open().IsNoMatch;
}

std::int64_t Recordset::Bookmark() const {
    Open().RequireRow();
    return Open().Current.Id;
}

FieldValue Recordset::Value(std::string_view field) const {
    return Open().ValueAt(Open().ColumnNamed(field));
}

FieldValue Recordset::Value(int ordinal) const {
    return Open().ValueAt(Open().ColumnAt(ordinal));
}

void Recordset::AddNew() {
    Open().RequireWritable();
    Open().BeginPending(Pending::NewRow);
}

void Recordset::Edit() {
    Implementation &self = Open();
    self.RequireWritable();
    self.RequireRow();
    if (!self.Query.FetchRow(self.Current.Id, self.Current)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    self.BeginPending(Pending::ChangedRow);
}

void Recordset::Set(std::string_view field, const FieldValue &value) {
    Open().SetAt(Open().ColumnNamed(field), value);
}

void Recordset::Set(int ordinal, const FieldValue &value) {
    Open().SetAt(Open().ColumnAt(ordinal), value);
}

void Recordset::Update() {
    Implementation &self = Open();
    switch (self.What) {
        case Pending::Nothing:
            throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        case Pending::NewRow:
            self.Query.Insert(self.Changes);
            break;
        case Pending::ChangedRow:
            self.WriteChanges();
            break;
    }
    self.DropPending();
}

void Recordset::Delete() {
    Implementation &self = Open();
    self.RequireWritable();
    self.RequireRow();
    self.DropPending();
    if (!self.Query.Remove(self.Current.Id)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    self.At = Place::Deleted;
}

void Recordset::Close() {
    implementation_ = nullptr;
}

}  // namespace pixmora
