// The connection to a database file.
#include "platform/database/DatabaseEngine.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/database/FieldTypes.h"
#include "platform/database/StatementTranslator.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Sleep.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// Far more shapes than the program has; only the tables that each album brings multiply them.
constexpr std::size_t mostStatements = 256;

constexpr int pauseBetweenTries = 5;  // ms

/// What is about the file, the disk or another program, and not about the statement.
struct FileTrouble {
    int Code;
    const char *Words;
};
constexpr FileTrouble fileTroubles[] = {
    {SQLITE_BUSY, "another program is using the database"},
    {SQLITE_CANTOPEN, "the database cannot be opened"},
    {SQLITE_CORRUPT, "the database is damaged"},
    {SQLITE_FULL, "the disk is full"},
    {SQLITE_IOERR, "the disk cannot be read or written"},
    {SQLITE_NOTADB, "the file is no database"},
    {SQLITE_PROTOCOL, "another program is using the database"},
    {SQLITE_READONLY, "the database cannot be written"},
};

/// Null for any other code.
const FileTrouble *TroubleOf(int code) {
    const auto *trouble = std::ranges::find(fileTroubles, code & 0xFF, &FileTrouble::Code);
    return trouble == std::end(fileTroubles) ? nullptr : trouble;
}

int CompareForEngine(void *, int leftSize, const void *left, int rightSize, const void *right) {
    const auto text = [](const void *bytes, int size) {
        return std::string_view(static_cast<const char *>(bytes), static_cast<std::size_t>(size));
    };
    return CompareTexts(text(left, leftSize), text(right, rightSize));
}

}  // namespace

RunTimeError FileError(int code) {
    const FileTrouble *trouble = TroubleOf(code);
    return {ErrorNumber::DatabaseFailure, trouble != nullptr ? trouble->Words : sqlite3_errstr(code)};
}

TableDefinition::TableDefinition(std::string name, std::vector<Field> fields)
    : Name(std::move(name)), Fields(std::move(fields)), From(" FROM " + QuotedIdentifier(Name)), Head("SELECT rowid") {
    for (const Field &field : Fields) Head += ", " + QuotedIdentifier(field.Name);
    Head += From;
}

std::size_t PlaceOf(const std::vector<Field> &fields, std::string_view name) {
    const auto place =
        std::ranges::find_if(fields, [&](const Field &field) { return EqualsIgnoreCase(field.Name, name); });
    if (place == fields.end()) throw RunTimeError(ErrorNumber::ItemNotFound);
    return static_cast<std::size_t>(place - fields.begin());
}

DatabaseEngine::DatabaseEngine(std::string_view path, int flags) {
    // One thread uses the connection, so it takes no lock on itself.
    const int result = sqlite3_open_v2(SystemPath(path).c_str(), &handle_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
        sqlite3_close_v2(handle_);
        throw FileError(result);
    }
    sqlite3_busy_handler(handle_, WaitForLock, this);
    // The name stands in this connection's statements alone and not in the file, which any tool can read.
    sqlite3_create_collation(handle_, "TEXTS", SQLITE_UTF8, nullptr, CompareForEngine);
    // Without this a misspelt field in double quotes would pass as a text.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    // Without this each new pattern of a LIKE has its statement prepared anew.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
}

DatabaseEngine::~DatabaseEngine() {
    statements_.clear();
    sqlite3_close_v2(handle_);
}

void DatabaseEngine::RaiseLastError() const {
    const int code = sqlite3_errcode(handle_);
    if (TroubleOf(code) != nullptr) throw FileError(code);
    throw RunTimeError(ErrorNumber::DatabaseError, sqlite3_errmsg(handle_));
}

int DatabaseEngine::WaitForLock(void *engine, int tries) {
    auto &self = *static_cast<DatabaseEngine *>(engine);
    // A pause on a busy machine is longer than asked for, so the time is taken and not the tries counted.
    if (tries == 0) self.waitBegun_ = GetTickCount();
    if (TicksBetween(self.waitBegun_, GetTickCount()) >= self.LockWait) self.hasWaitedInVain_ = true;
    if (self.hasWaitedInVain_) return 0;
    Sleep(pauseBetweenTries);
    return 1;
}

void DatabaseEngine::Execute(const std::string &sql) {
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) RaiseLastError();
}

void DatabaseEngine::ChangeSchema(const std::string &sql) {
    CloseReaders();
    statements_.clear();
    ForgetTables();
    Execute(sql);
}

bool DatabaseEngine::TableExists(std::string_view table) {
    PreparedStatement statement(*this, "SELECT 1 FROM sqlite_master WHERE type='table' AND name=? COLLATE NOCASE");
    statement.Bind(std::string(table));
    return statement.Step();
}

TablePointer DatabaseEngine::Table(std::string_view table) {
    const std::string key = LCase(table);
    if (const auto known = tables_.find(key); known != tables_.end()) return known->second;

    std::string name;
    std::vector<Field> fields;
    PreparedStatement statement(*this,
                                "SELECT m.name, f.name, f.type FROM sqlite_master m, pragma_table_info(m.name) f "
                                "WHERE m.type='table' AND m.name=? COLLATE NOCASE ORDER BY f.cid");
    statement.Bind(std::string(table));
    while (statement.Step()) {
        name = AsText(statement.Column(0));
        fields.push_back({AsText(statement.Column(1)), TypeOfDeclaration(AsText(statement.Column(2)))});
    }
    if (fields.empty()) throw RunTimeError(ErrorNumber::ItemNotFound);
    return tables_[key] = std::make_shared<TableDefinition>(std::move(name), std::move(fields));
}

StatementCache::node_type DatabaseEngine::TakeStatement(const std::string &sql) {
    if (auto node = statements_.extract(sql)) return node;

    sqlite3_stmt *handle = nullptr;
    const int length = static_cast<int>(sql.size()) + 1;
    if (sqlite3_prepare_v3(handle_, sql.c_str(), length, SQLITE_PREPARE_PERSISTENT, &handle, nullptr) != SQLITE_OK) {
        // Another program may have changed the tables; the next try looks at them anew.
        ForgetTables();
        RaiseLastError();
    }
    StatementCache fresh;
    fresh[sql].Handle.reset(handle);
    return fresh.extract(fresh.begin());
}

void DatabaseEngine::GiveBack(StatementCache::node_type statement) {
    if (statements_.size() >= mostStatements) DropLeastUsedStatement();
    statement.mapped().LastUse = ++uses_;
    statements_.insert(std::move(statement));
}

void DatabaseEngine::DropLeastUsedStatement() {
    statements_.erase(
        std::ranges::min_element(statements_, {}, [](const auto &entry) { return entry.second.LastUse; }));
}

void DatabaseEngine::CloseReaders() {
    while (!readers_.empty()) readers_.back()->ReadToEnd();
}

void DatabaseEngine::RemoveReader(OpenReader *reader) {
    std::erase(readers_, reader);
}

PreparedStatement::PreparedStatement(DatabaseEngine &engine, const std::string &sql)
    : engine_(engine), node_(engine.TakeStatement(sql)), handle_(node_.mapped().Handle.get()) {}

PreparedStatement::~PreparedStatement() {
    sqlite3_reset(handle_);
    sqlite3_clear_bindings(handle_);
    engine_.GiveBack(std::move(node_));
}

void PreparedStatement::Bind(const FieldValue &stored) {
    const int place = ++bound_;
    int result = SQLITE_OK;
    if (IsNull(stored)) {
        result = sqlite3_bind_null(handle_, place);
    } else if (const auto *whole = std::get_if<std::int64_t>(&stored)) {
        result = sqlite3_bind_int64(handle_, place, *whole);
    } else if (const auto *number = std::get_if<double>(&stored)) {
        result = sqlite3_bind_double(handle_, place, *number);
    } else {
        const std::string &text = std::get<std::string>(stored);
        result = sqlite3_bind_text64(handle_, place, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    if (result != SQLITE_OK) engine_.RaiseLastError();
}

void PreparedStatement::Bind(const std::vector<FieldValue> &stored) {
    for (const FieldValue &value : stored) Bind(value);
}

bool PreparedStatement::Step() {
    int result = sqlite3_step(handle_);
    if (result == SQLITE_BUSY && sqlite3_extended_errcode(engine_.Handle()) == SQLITE_BUSY_SNAPSHOT) {
        // Another program has written since our readers began; a writer has to begin behind that.
        engine_.CloseReaders();
        sqlite3_reset(handle_);
        result = sqlite3_step(handle_);
    }
    if (result != SQLITE_ROW && result != SQLITE_DONE) engine_.RaiseLastError();
    if (sqlite3_stmt_readonly(handle_) == 0) engine_.NoteWriting();
    return result == SQLITE_ROW;
}

FieldValue PreparedStatement::Column(int column) const {
    switch (sqlite3_column_type(handle_, column)) {
        case SQLITE_NULL:
            return Null{};
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_column_int64(handle_, column)};
        case SQLITE_FLOAT:
            return sqlite3_column_double(handle_, column);
        default:
            break;
    }
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(handle_, column));
    if (bytes == nullptr) return std::string();
    return std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column)));
}

void PreparedStatement::ReadColumns(int first, std::size_t count, std::vector<FieldValue> &values) const {
    values.resize(count);
    for (FieldValue &value : values) value = Column(first++);
}

}  // namespace pixmora
