// Opening, making and changing a database file.
#include "platform/database/Database.h"

#include <utility>

#include "platform/database/DatabaseEngine.h"
#include "platform/database/FieldTypes.h"
#include "platform/database/StatementTranslator.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

/// Sets the connection up and reads the file's head, which is where a file that is no database, or is held by another
/// program, shows it.
void BeginUse(DatabaseEngine &engine) {
    // An event writes a little in five tables, and small pages keep that little. A megabyte of them in memory is
    // enough, since the system keeps the file too. Checkpoints come each minute and when the log has grown; the file of
    // the log is then cut back to its usual size.
    engine.Execute(
        "PRAGMA page_size=1024; PRAGMA cache_size=-1024; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
        "PRAGMA wal_autocheckpoint=8000; PRAGMA journal_size_limit=8388608; PRAGMA temp_store=MEMORY;"
        "SELECT count(*) FROM sqlite_master");
}

std::string ColumnOf(const Field &field) {
    return QuotedIdentifier(field.Name) + " " + std::string(DeclarationOf(field.Type));
}

}  // namespace

Database::Database(std::unique_ptr<DatabaseEngine> engine) : engine_(std::move(engine)) {}

Database::~Database() = default;

std::unique_ptr<Database> Database::CreateDatabase(std::string_view path) {
    if (FileExists(path)) throw RunTimeError(ErrorNumber::DatabaseError, "Database already exists.");
    auto engine = std::make_unique<DatabaseEngine>(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    BeginUse(*engine);
    return std::unique_ptr<Database>(new Database(std::move(engine)));
}

std::unique_ptr<Database> Database::OpenDatabase(std::string_view path) {
    auto engine = std::make_unique<DatabaseEngine>(path, SQLITE_OPEN_READWRITE);
    // The engine would take an empty file for a new database.
    if (FileLength(path) == 0) throw FileError(SQLITE_NOTADB);
    if (sqlite3_db_readonly(engine->Handle(), "main") != 0) throw FileError(SQLITE_READONLY);
    BeginUse(*engine);
    return std::unique_ptr<Database>(new Database(std::move(engine)));
}

bool Database::TableExists(std::string_view table) const {
    return engine_->TableExists(table);
}

void Database::CreateTable(std::string_view table, const std::vector<Field> &fields) {
    std::string columns;
    for (const Field &field : fields) columns += (columns.empty() ? "" : ", ") + ColumnOf(field);
    engine_->ChangeSchema("CREATE TABLE " + QuotedIdentifier(table) + " (" + columns + ")");
}

void Database::DeleteTable(std::string_view table) {
    engine_->ChangeSchema("DROP TABLE " + QuotedIdentifier(engine_->Table(table)->Name));
}

std::vector<Field> Database::Fields(std::string_view table) const {
    return engine_->Table(table)->Fields;
}

void Database::AppendField(std::string_view table, const Field &field) {
    const TablePointer definition = engine_->Table(table);
    engine_->ChangeSchema("ALTER TABLE " + QuotedIdentifier(definition->Name) + " ADD COLUMN " + ColumnOf(field));
}

void Database::DeleteField(std::string_view table, std::string_view field) {
    const TablePointer definition = engine_->Table(table);
    const std::string name = definition->Fields[PlaceOf(definition->Fields, field)].Name;
    engine_->ChangeSchema("ALTER TABLE " + QuotedIdentifier(definition->Name) + " DROP COLUMN " +
                          QuotedIdentifier(name));
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view source, RecordsetType type) {
    return std::unique_ptr<Recordset>(new Recordset(*this, source, type));
}

bool Database::AddTo(std::string_view table, std::int64_t row, std::string_view criteria, int ordinal,
                     std::int32_t value) {
    const TablePointer definition = engine_->Table(table);
    const auto place = static_cast<std::size_t>(ordinal);
    if (place >= definition->Fields.size()) throw RunTimeError(ErrorNumber::ItemNotFound);
    const Field &field = definition->Fields[place];
    const TranslatedCondition condition = TranslateCriteria(criteria);
    const std::string name = QuotedIdentifier(field.Name);
    const char *range = field.Type == FieldType::Long ? " BETWEEN -2147483648 AND 2147483647" : " IS NOT NULL";
    PreparedStatement statement(*engine_, "UPDATE " + QuotedIdentifier(definition->Name) + " SET " + name + "=" + name +
                                              "+?1 WHERE rowid=?2 AND " + name + "+?1" + range + " AND (" +
                                              condition.Sql + ")");
    statement.Bind(std::int64_t{value});
    statement.Bind(row);
    statement.Bind(condition.Literals);
    statement.Step();
    return sqlite3_changes(engine_->Handle()) > 0;
}

void Database::BackUp(std::string_view path) const {
    const DatabaseEngine copy(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    HideFromOthers(path);
    sqlite3_backup *backup = sqlite3_backup_init(copy.Handle(), "main", engine_->Handle(), "main");
    if (backup == nullptr) copy.RaiseLastError();
    sqlite3_backup_step(backup, -1);
    if (sqlite3_backup_finish(backup) != SQLITE_OK) copy.RaiseLastError();
}

std::vector<std::string> Database::Faults() const {
    std::vector<std::string> faults;
    try {
        PreparedStatement statement(*engine_, "PRAGMA integrity_check");
        while (statement.Step()) faults.push_back(AsText(statement.Column(0)));
    } catch (const RunTimeError &error) {
        faults.push_back(error.Message());  // too much is wrong to go on
    }
    if (faults == std::vector<std::string>{"ok"}) faults.clear();
    return faults;
}

void Database::SetSynchronousFull(bool full) {
    engine_->Execute(full ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL");
    // What was written before must reach the disk too.
    if (full) Checkpoint();
}

void Database::SetLockWait(int ms) {
    engine_->LockWait = ms;
}

void Database::Checkpoint() {
    const int result =
        sqlite3_wal_checkpoint_v2(engine_->Handle(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    // Busy: another connection does this work at the moment. Locked: this one is in the middle of something.
    if (result != SQLITE_OK && result != SQLITE_BUSY && result != SQLITE_LOCKED) engine_->RaiseLastError();
}

}  // namespace pixmora
