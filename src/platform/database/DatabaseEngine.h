// What stands behind Database and Recordset: the connection, its prepared statements kept by their shape, its tables'
// definitions, and the readers that are open.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/database/Database.h"
#include "platform/runtime/Clock.h"

namespace pixmora {

/// A field's place among others by its name, without regard to case, from 0. @throws RunTimeError ItemNotFound
std::size_t PlaceOf(const std::vector<Field> &fields, std::string_view name);

struct TableDefinition {
    /// @param name as the file spells it
    TableDefinition(std::string name, std::vector<Field> fields);

    std::string Name;
    std::vector<Field> Fields;
    std::string From;  ///< " FROM table"
    std::string Head;  ///< "SELECT rowid, field, ... FROM table"
};
using TablePointer = std::shared_ptr<const TableDefinition>;

/// Something that keeps a statement open between two calls.
class OpenReader {
public:
    virtual ~OpenReader() = default;
    /// Takes the rest of the rows into memory and lets go of the statement.
    virtual void ReadToEnd() = 0;
};

struct StatementFinalizer {
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};

struct CachedStatement {
    std::unique_ptr<sqlite3_stmt, StatementFinalizer> Handle;
    std::uint64_t LastUse = 0;
};
using StatementCache = std::unordered_map<std::string, CachedStatement>;

class RunTimeError;

/// Of a code that is about the file, in words for people.
RunTimeError FileError(int code);

/// One connection. What fails raises DatabaseFailure where the file can't be used now, else DatabaseError, with the
/// engine's own words.
class DatabaseEngine {
public:
    /// @param flags SQLITE_OPEN_... @param path of the program
    DatabaseEngine(std::string_view path, int flags);
    ~DatabaseEngine();
    DatabaseEngine(const DatabaseEngine &) = delete;
    DatabaseEngine &operator=(const DatabaseEngine &) = delete;

    sqlite3 *Handle() const { return handle_; }
    [[noreturn]] void RaiseLastError() const;

    /// Runs statements that are needed once.
    void Execute(const std::string &sql);
    /// The same for those that make or drop tables and fields: nothing that is open stands in their way.
    void ChangeSchema(const std::string &sql);
    /// Forgets what was read of the tables, after something that may have changed them.
    void ForgetTables() { tables_.clear(); }

    bool TableExists(std::string_view table);
    /// @throws RunTimeError ItemNotFound
    TablePointer Table(std::string_view table);

    /// A statement leaves the cache while it is in use, so that two users of one shape don't meet.
    StatementCache::node_type TakeStatement(const std::string &sql);
    void GiveBack(StatementCache::node_type statement);

    void AddReader(OpenReader *reader) { readers_.push_back(reader); }
    void RemoveReader(OpenReader *reader);
    /// Takes the rest of all readers' rows into memory.
    void CloseReaders();

    /// A lock was got and something written with it.
    void NoteWriting() { hasWaitedInVain_ = false; }

    int TransactionDepth = 0;
    int LockWait = 2000;  ///< ms, for another connection's lock

private:
    void DropLeastUsedStatement();
    /// The engine's busy handler. After a wait in vain nobody waits again until something was written: a lock that is
    /// held for minutes costs one wait, not one for each try.
    static int WaitForLock(void *engine, int tries);

    sqlite3 *handle_ = nullptr;
    StatementCache statements_;
    std::uint64_t uses_ = 0;
    Tick waitBegun_ = 0;
    bool hasWaitedInVain_ = false;
    std::unordered_map<std::string, TablePointer> tables_;  ///< by name in lower case
    std::vector<OpenReader *> readers_;
};

/// A statement in use. Given back to the cache, reset, at the end of its scope.
class PreparedStatement {
public:
    PreparedStatement(DatabaseEngine &engine, const std::string &sql);
    ~PreparedStatement();
    PreparedStatement(const PreparedStatement &) = delete;
    PreparedStatement &operator=(const PreparedStatement &) = delete;

    /// Binds the next "?". Null, int64, double and text only.
    void Bind(const FieldValue &stored);
    void Bind(const std::vector<FieldValue> &stored);

    /// Runs on to the next row; false at the end.
    bool Step();
    /// A column of the present row as stored, from 0.
    FieldValue Column(int column) const;
    /// So many columns from the first one on.
    void ReadColumns(int first, std::size_t count, std::vector<FieldValue> &values) const;
    std::int64_t WholeColumn(int column) const { return sqlite3_column_int64(handle_, column); }

private:
    DatabaseEngine &engine_;
    StatementCache::node_type node_;
    sqlite3_stmt *handle_;
    int bound_ = 0;
};

}  // namespace pixmora
