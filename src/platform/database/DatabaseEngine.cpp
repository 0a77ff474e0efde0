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

/// Whether the file, the disk or another program stands in the way, and not the statement.
bool IsOfTheFile(int result) {
    constexpr int kinds[] = {SQLITE_BUSY,  SQLITE_CANTOPEN, SQLITE_CORRUPT,  SQLITE_FULL,
                             SQLITE_IOERR, SQLITE_NOTADB,   SQLITE_PROTOCOL, SQLITE_READONLY};
    return std::ranges::find(kinds, result & 0xFF) != std::end(kinds);
}

int CompareForEngine(void *, int leftSize, const void *left, int rightSize, const void *right) {
    const auto text = [](const void *bytes, int size) {
        return std::string_view(static_cast<const char *>(bytes), static_cast<std::size_t>(size));
    };
    return CompareTexts(text(left, leftSize), text(right, rightSize));
}

}  // namespace

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
        const RunTimeError error(ErrorNumber::DatabaseFailure, sqlite3_errstr(result));
        sqlite3_close_v2(handle_);
        throw error;
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
    const bool isOfTheFile = IsOfTheFile(sqlite3_errcode(handle_));
    throw RunTimeError(isOfTheFile ? ErrorNumber::DatabaseFailure : ErrorNumber::DatabaseError,
                       sqlite3_errmsg(handle_));
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
