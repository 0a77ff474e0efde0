// Database.h: recordsets: a current row, moving and finding, and changes made to it.
#include <limits>
#include <utility>

#include "platform/database/Database.h"
#include "platform/database/FieldTypes.h"
#include "platform/database/RecordsetRows.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::int64_t beforeAllRows = std::numeric_limits<std::int64_t>::min();

/// Where the recordset stands. It begins at First; looking at the row reads it.
///
///     First --look--> OnRow | Eof        OnRow --Delete--> Deleted
///     OnRow, Deleted --MoveNext--> OnRow | Eof
///     any --find with a match--> OnRow
enum class Place { First, OnRow, Deleted, Eof };

enum class Pending { Nothing, NewRow, ChangedRow };

}  // namespace

struct Recordset::Implementation {
    Implementation(DatabaseEngine &engine, std::string_view source, RecordsetType type)
        : IsReadOnly(type == RecordsetType::Snapshot || IsStatement(source)) {
        if (IsStatement(source)) {
            Statement.emplace(engine, TranslateSelect(source));
        } else {
            Table.emplace(engine, source);
        }
    }

    /// @throws RunTimeError InvalidProcedureCall
    TableRows &WholeTable() {
        if (!Table) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        return *Table;
    }

    void Fetch(std::int64_t behind) {
        const bool isThere = Table ? Table->FetchBehind(behind, nullptr, Current) : Statement->FetchNext(Current);
        At = isThere ? Place::OnRow : Place::Eof;
    }

    void Look() {
        if (At == Place::First) Fetch(beforeAllRows);
    }

    /// @throws RunTimeError NoCurrentRecord at the end
    void RequireNotEof() {
        Look();
        if (At == Place::Eof) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    }

    void FindBehind(std::int64_t id, std::string_view criteria) {
        What = Pending::Nothing;
        const TranslatedCondition condition = TranslateCriteria(criteria);
        IsNoMatch = !WholeTable().FetchBehind(id, &condition, Current);
        if (!IsNoMatch) At = Place::OnRow;
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

    const std::vector<Field> &Fields() const { return Table ? Table->Fields() : Statement->Fields(); }

    std::size_t PlaceAt(int ordinal) const {
        const auto place = static_cast<std::size_t>(ordinal);
        if (ordinal < 0 || place >= Fields().size()) throw RunTimeError(ErrorNumber::ItemNotFound);
        return place;
    }

    FieldValue ValueAt(std::size_t place) {
        const FieldType type = Fields()[place].Type;
        if (What != Pending::Nothing && Changes[place]) return ReadValue(type, *Changes[place]);
        if (What == Pending::NewRow) return ReadValue(type, Null{});
        RequireRow();
        return ReadValue(type, Current.Values[place]);
    }

    void SetAt(std::size_t place, const FieldValue &value) {
        if (What == Pending::Nothing) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        Changes[place] = StoredValue(Fields()[place].Type, value);
    }

    void BeginPending(Pending what) {
        What = what;
        Changes.assign(Fields().size(), std::nullopt);
    }

    void WriteChanges() {
        if (!Table->Change(Current.Id, Changes)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
        for (std::size_t place = 0; place < Changes.size(); ++place) {
            if (Changes[place]) Current.Values[place] = *Changes[place];
        }
    }

    std::optional<TableRows> Table;          ///< one of the two
    std::optional<StatementRows> Statement;  ///< brings its rows once, and is never changed
    bool IsReadOnly;
    Place At = Place::First;
    Row Current;  ///< of Deleted the number alone
    bool IsNoMatch = false;
    Pending What = Pending::Nothing;
    TableRows::Changes Changes;
};

Recordset::Recordset(Database &database, std::string_view source, RecordsetType type)
    : implementation_(std::make_unique<Implementation>(*database.engine_, source, type)) {}

Recordset::~Recordset() = default;

Recordset::Implementation &Recordset::Open() const {
    if (implementation_ == nullptr) throw RunTimeError(ErrorNumber::ObjectNotSet);
    return *implementation_;
}

std::int64_t Recordset::RecordCount() {
    return Open().Table ? Open().Table->Count() : Open().Statement->Count();
}

bool Recordset::Eof() const {
    Open().Look();
    return Open().At == Place::Eof;
}

void Recordset::MoveNext() {
    Implementation &self = Open();
    self.What = Pending::Nothing;
    self.RequireNotEof();
    self.Fetch(self.Current.Id);
}

void Recordset::MoveAlong(double share) {
    Implementation &self = Open();
    self.What = Pending::Nothing;
    self.At = self.WholeTable().FetchAlong(share, self.Current) ? Place::OnRow : Place::Eof;
}

void Recordset::FindFirst(std::string_view criteria) {
    Open().FindBehind(beforeAllRows, criteria);
}

void Recordset::FindNext(std::string_view criteria) {
    Implementation &self = Open();
    self.RequireNotEof();
    self.FindBehind(self.Current.Id, criteria);
}

bool Recordset::NoMatch() const {
    return Open().IsNoMatch;
}

std::int64_t Recordset::Bookmark() const {
    Open().WholeTable();
    Open().RequireRow();
    return Open().Current.Id;
}

FieldValue Recordset::Value(std::string_view field) const {
    return Open().ValueAt(PlaceOf(Open().Fields(), field));
}

FieldValue Recordset::Value(int ordinal) const {
    return Open().ValueAt(Open().PlaceAt(ordinal));
}

void Recordset::AddNew() {
    Open().RequireWritable();
    Open().BeginPending(Pending::NewRow);
}

void Recordset::Edit() {
    Implementation &self = Open();
    self.RequireWritable();
    self.RequireRow();
    if (!self.Table->FetchRow(self.Current.Id, self.Current)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    self.BeginPending(Pending::ChangedRow);
}

void Recordset::Set(std::string_view field, const FieldValue &value) {
    Open().SetAt(PlaceOf(Open().Fields(), field), value);
}

void Recordset::Set(int ordinal, const FieldValue &value) {
    Open().SetAt(Open().PlaceAt(ordinal), value);
}

void Recordset::Update() {
    Implementation &self = Open();
    switch (std::exchange(self.What, Pending::Nothing)) {
        case Pending::Nothing:
            throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        case Pending::NewRow:
            return self.Table->Insert(self.Changes);
        case Pending::ChangedRow:
            return self.WriteChanges();
    }
}

void Recordset::Delete() {
    Implementation &self = Open();
    self.RequireWritable();
    self.RequireRow();
    self.What = Pending::Nothing;
    if (!self.Table->Remove(self.Current.Id)) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    self.At = Place::Deleted;
}

void Recordset::Close() {
    implementation_ = nullptr;
}

}  // namespace pixmora
