// The database engine: recordsets over SQLite 3, with the names of the interface that the program was designed on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/runtime/Clock.h"

namespace pixmora {

/// A Long is a whole number of 32 bits, an Integer one of 16. A Boolean is never Null: a row that didn't get one has
/// false.
enum class FieldType { Text, Long, Integer, Boolean, Date, Double };
enum class RecordsetType { Table = 1, Dynaset = 2, Snapshot = 4 };

struct Null {
    bool operator==(const Null &) const = default;
};
/// A field's value. Whole numbers of every size are int64; a Boolean field reads as bool, a Date field as DateTime.
using FieldValue = std::variant<Null, std::int64_t, double, bool, std::string, DateTime>;

/// Readings of a value; Null raises InvalidUseOfNull, a value of another kind is converted or raises TypeMismatch. A
/// Boolean counts as 1 or 0, a Double is rounded half to even.
std::int64_t AsLong(const FieldValue &value);
double AsDouble(const FieldValue &value);
bool AsBoolean(const FieldValue &value);
std::string AsText(const FieldValue &value);
DateTime AsDate(const FieldValue &value);
bool IsNull(const FieldValue &value);
/// As AsText, but Null is empty.
std::string TextOrEmpty(const FieldValue &value);

/// A visitor's or owner's text as a literal in single quotes for a statement or criterion.
/// @throws RunTimeError SyntaxError when the text holds "'": such a text fails the statement and never changes its
/// meaning.
std::string QuotedText(std::string_view text);
/// A date literal between "#" signs, in the short form.
std::string QuotedDate(DateTime date);

struct Field {
    std::string Name;
    FieldType Type;
};

class DatabaseEngine;
class Recordset;

/// An open database file, in WAL mode. Not copied; closed by its destructor, which no recordset or transaction may
/// outlive. Another connection's write lock is waited for, and once waited for in vain not again until a change got
/// through. A file that can't be used raises DatabaseFailure: no room, no lock, read-only, input or output, damage.
class Database {
public:
    /// Makes a new, empty file. @throws RunTimeError DatabaseFailure, DatabaseError when the file exists
    static std::unique_ptr<Database> CreateDatabase(std::string_view path);
    /// Opens an existing file for reading and writing. @throws RunTimeError DatabaseFailure when it isn't there,
    /// can't be opened, is locked or is no database
    static std::unique_ptr<Database> OpenDatabase(std::string_view path);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    bool TableExists(std::string_view table) const;
    void CreateTable(std::string_view table, const std::vector<Field> &fields);
    /// Also while recordsets are open. @throws RunTimeError ItemNotFound
    void DeleteTable(std::string_view table);
    /// @throws RunTimeError ItemNotFound
    std::vector<Field> Fields(std::string_view table) const;
    /// Appends the field at the end.
    void AppendField(std::string_view table, const Field &field);
    void DeleteField(std::string_view table, std::string_view field);

    /// Opens a table by name, or a SELECT statement (StatementTranslator.h has its form). Texts compare and sort as
    /// CompareTexts (Text.h) has it. A Snapshot and a statement refuse changes.
    /// @throws RunTimeError SyntaxError, ItemNotFound, DatabaseError
    std::unique_ptr<Recordset> OpenRecordset(std::string_view source, RecordsetType type);

    /// What Edit, Set and Update do to add to a number of the current row, in one statement.
    /// @param row the row's Bookmark @param ordinal of a Long or Double field, from 0 @return false, with nothing
    /// changed, when the row is gone or doesn't meet the criteria (any more), the field is Null or a Long would
    /// overflow
    /// @throws RunTimeError ItemNotFound, SyntaxError
    bool AddTo(std::string_view table, std::int64_t row, std::string_view criteria, int ordinal, std::int32_t value);

    /// Copies the whole database as it stands now into a file that isn't there yet, while anybody reads and writes it.
    void BackUp(std::string_view path) const;
    /// What the engine finds wrong with the file, a line each.
    std::vector<std::string> Faults() const;

    /// With Full every committed change has reached the disk; otherwise a power cut may take what came since the last
    /// checkpoint (a crash of the program takes nothing in either case).
    void SetSynchronousFull(bool full);
    /// How long another connection's lock is waited for, ms; 2000 unless set.
    void SetLockWait(int ms);
    /// Brings the log into the database file as far as that goes without waiting: not at all while a transaction or an
    /// ordered recordset is open.
    void Checkpoint();

private:
    explicit Database(std::unique_ptr<DatabaseEngine> engine);
    friend class Recordset;
    friend class Transaction;
    friend class ReadScope;
    std::unique_ptr<DatabaseEngine> engine_;
};

/// All changes of a scope together or not at all; nests, the outermost decides. Rolled back unless Commit was called.
/// No scope may turn the message loop: what other handlers write meanwhile would share its fate.
class Transaction {
public:
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    /// @throws RunTimeError DatabaseFailure
    void Commit();

private:
    Database &database_;
    bool done_ = false;
};

/// The reads of a scope see one state of the file and take its lock once, which is most of what a small question costs.
/// Inside a transaction it changes nothing. As with a transaction, no scope may turn the message loop; nothing is
/// written in one.
class ReadScope {
public:
    /// @throws RunTimeError DatabaseError
    explicit ReadScope(Database &database);
    ~ReadScope();
    ReadScope(const ReadScope &) = delete;
    ReadScope &operator=(const ReadScope &) = delete;

private:
    Database &database_;
};

/// Rows of a table or statement, with a current row. Opened on the first row, in the order in which rows were added
/// unless the statement says otherwise. Rows are fetched as they are asked for: opening costs nothing that grows with
/// the table. A table shows changes that come ahead of the current row. A statement brings its rows once, from first to
/// last, and nothing is found in it.
class Recordset {
public:
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    /// The full number of rows, also right after opening.
    std::int64_t RecordCount();
    bool Eof() const;

    /// Past the last row Eof is true. @throws RunTimeError NoCurrentRecord when it was already
    void MoveNext();
    /// Goes to the row that lies at this share, 0 to 1, of the way from the first row to the last, to Eof when there is
    /// none. Rows that were only ever added count evenly; where some were deleted, the next one behind stands in.
    /// No row on the way is looked at. @throws RunTimeError InvalidProcedureCall for anything but a whole table
    void MoveAlong(double share);

    /// Goes to a table's first row that meets the criteria, or the next one behind the current row; NoMatch tells the
    /// outcome. With no match the current row stays. @throws RunTimeError InvalidProcedureCall on a statement
    void FindFirst(std::string_view criteria);
    void FindNext(std::string_view criteria);
    bool NoMatch() const;
    /// Finds the current row again as long as it exists; later another row may have it. @throws RunTimeError
    /// NoCurrentRecord
    std::int64_t Bookmark() const;

    /// A field of the current row. Names compare without regard to case; ordinals count from 0.
    /// @throws RunTimeError NoCurrentRecord, ItemNotFound
    FieldValue Value(std::string_view field) const;
    FieldValue Value(int ordinal) const;

    /// Begin a new row, or a change of the current row as it stands in the file now; Set takes values until Update
    /// writes them, and moving on before that drops them. Each Update and Delete outside a Transaction is one of its
    /// own.
    /// @throws RunTimeError Overflow from Set for a number beyond the field's range, TypeMismatch for a value that
    /// doesn't fit
    void AddNew();
    void Edit();
    void Set(std::string_view field, const FieldValue &value);
    void Set(int ordinal, const FieldValue &value);
    void Update();
    /// Deletes the current row; FindNext and MoveNext go on from where it stood.
    void Delete();
    /// From here on every call raises ObjectNotSet.
    void Close();

private:
    Recordset(Database &database, std::string_view source, RecordsetType type);
    friend class Database;
    struct Implementation;
    Implementation &Open() const;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace pixmora
