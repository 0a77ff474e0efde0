// The database's tables: how the file comes into being, and how an older one is brought up to version 9.
#include "store/Schema.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"

namespace pixmora {

namespace {

struct Table {
    std::string Name;
    std::vector<Field> Fields;
};

constexpr FieldType text = FieldType::Text;
constexpr FieldType wholeLong = FieldType::Long;
constexpr FieldType wholeShort = FieldType::Integer;
constexpr FieldType date = FieldType::Date;

const Table &StatsRecentTable() {
    static const Table table{"StatsRecent",
                             {{"WhatTime", wholeLong}, {"WhatStat", wholeShort}, {"StatValue", wholeLong}}};
    return table;
}

/// A table of counters: its key fields, then one Long for each kind of event in the order of the kinds.
Table CounterTable(const std::string &name, std::vector<Field> fields) {
    for (const char *counter : {"RunningTime", "Visitors", "Thumbs", "Downloads", "Bandwidth"}) {
        fields.push_back({counter, wholeLong});
    }
    return {name, fields};
}

/// Plain tables all: no key is enforced, and duplicates are possible.
std::vector<Table> SchemaTables() {
    return {
        {"Albums",
         {{"AlbumName", text},
          {"Directory", text},
          {"Description", text},
          {"Pictures", wholeLong},
          {"Movies", wholeLong},
          {"FeaturedImage", wholeShort},
          {"FeaturedImagePath", text},
          {"SubDirs", wholeShort},
          {"DateCreated", date}}},
        {"Users", {{"Username", text}, {"Password", text}, {"FullName", text}, {"Admin", FieldType::Boolean}}},
        {"DBOrder", {{"AlbumName", text}, {"SubDir", text}, {"SeqPos", wholeShort}}},
        {"PrivateDirs", {{"AlbumName", text}, {"SubDir", text}, {"Username", text}}},
        {"PopularFiles", {{"AlbumName", text}, {"FilePath", text}, {"FileCount", wholeLong}}},
        {"PopularDirs", {{"AlbumName", text}, {"DirPath", text}, {"DirCount", wholeLong}}},
        {"StatsTotal", {{"Stat", wholeShort}, {"TotalCount", wholeLong}}},
        CounterTable("StatsHourly", {{"AlbumName", text}, {"WhichDay", date}, {"WhichHour", wholeShort}}),
        CounterTable("StatsDaily", {{"AlbumName", text}, {"WhichDay", date}}),
        CounterTable("StatsMonthly", {{"AlbumName", text}, {"WhichYear", wholeShort}, {"WhichMonth", wholeShort}}),
        StatsRecentTable(),
    };
}

void CreateTable(const Table &table) {
    gDatabase->CreateTable(table.Name, table.Fields);
}

void DeleteFileIfThere(const std::string &path) {
    if (FileExists(path)) DeleteFile(path);
}

/// The engine's log beside a database that is gone: it would be applied to whatever comes to stand under that name.
void DeleteLogOf(const std::string &path) {
    DeleteFileIfThere(path + "-wal");
    DeleteFileIfThere(path + "-shm");
}

/// Sets gDatabase. False when the file couldn't be opened.
bool Open(const std::string &path) {
    gDatabase = nullptr;
    // The engine gives a log the database's own mode.
    for (const char *file : {"", "-wal", "-shm"}) HideFromOthers(path + file);
    return Try([&] { gDatabase = Database::OpenDatabase(path); });
}

/// Where a file is made before it gets its name.
std::string UnfinishedPath(int version) {
    return DatabasePath(version) + ".new";
}

void RemoveUnfinished(int version) {
    DeleteFileIfThere(UnfinishedPath(version));
    DeleteLogOf(UnfinishedPath(version));
}

/// Closes gDatabase, which stands on the unfinished file, and gives the file its name.
void Publish(int version) {
    gDatabase->Checkpoint();
    gDatabase = nullptr;
    DeleteLogOf(DatabasePath(version));
    RenameFile(UnfinishedPath(version), DatabasePath(version));
    DeleteLogOf(UnfinishedPath(version));
}

void CreateCurrentVersion() {
    RemoveUnfinished(CurrentSchemaVersion);
    gDatabase = Database::CreateDatabase(UnfinishedPath(CurrentSchemaVersion));
    Transaction transaction(*gDatabase);
    for (const Table &table : SchemaTables()) CreateTable(table);
    transaction.Commit();
    Publish(CurrentSchemaVersion);
}

bool HasField(std::string_view table, std::string_view name) {
    return std::ranges::any_of(gDatabase->Fields(table),
                               [&](const Field &field) { return EqualsIgnoreCase(field.Name, name); });
}

void CopyField(std::string_view table, std::string_view from, std::string_view to) {
    const auto rows = gDatabase->OpenRecordset(table, RecordsetType::Table);
    for (; !rows->Eof(); rows->MoveNext()) {
        rows->Edit();
        rows->Set(to, rows->Value(from));
        rows->Update();
    }
}

/// Deliberate: a table without rows keeps its Long field and is left with the scratch field.
void WidenCounters() {
    const std::vector<std::string> tables = Split("StatsRecent|StatsTotal|StatsHourly|StatsDaily|StatsMonthly", "|");
    const std::vector<std::string> fields = Split("StatValue|TotalCount|Bandwidth|Bandwidth|Bandwidth", "|");
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (gDatabase->OpenRecordset(tables[i], RecordsetType::Table)->RecordCount() == 0) {
            gDatabase->AppendField(tables[i], {fields[i] + "Temp", FieldType::Double});
        } else {
            WidenToDouble(tables[i], fields[i]);
        }
    }
}

void MoveAdminToSeeAll() {
    gDatabase->AppendField("Users", {"SeeAll", FieldType::Boolean});
    const auto users = gDatabase->OpenRecordset("Users", RecordsetType::Table);
    for (; !users->Eof(); users->MoveNext()) {
        users->Edit();
        users->Set("SeeAll", users->Value("Admin"));
        users->Set("Admin", false);
        users->Update();
    }
}

void StepFrom8To9() {
    WidenCounters();
    MoveAdminToSeeAll();
}

void StepFrom7To8() {
    CreateTable(StatsRecentTable());
}

void RunStep(void (*step)()) {
    Transaction transaction(*gDatabase);
    step();
    transaction.Commit();
}

/// Makes the next version's file of the one that is there, which stays as it is. False when the copy couldn't be
/// opened.
bool Upgrade(int version, void (*step)()) {
    const int next = version + 1;
    RemoveUnfinished(next);
    CopyFile(DatabasePath(version), UnfinishedPath(next));
    if (!Open(UnfinishedPath(next))) return false;
    try {
        RunStep(step);
    } catch (const RunTimeError &) {
        // Deliberate: after a step that failed the plain copy passes as a finished file, so the next start gets on.
        Publish(next);
        throw;
    }
    Publish(next);
    return true;
}

}  // namespace

std::string DatabasePath(int version) {
    return App::Path() + "\\db_v" + std::to_string(version) + ".mdb";
}

std::string DatabaseMessage() {
    return "Error loading database!\r\n\r\nPlease make sure '" + SystemPath(DatabasePath(CurrentSchemaVersion)) +
           "' is not in use!";
}

std::string OwnersMessage(const RunTimeError &error) {
    switch (error.Number()) {
        case ErrorNumber::DatabaseError:
        case ErrorNumber::DatabaseFailure:
        case ErrorNumber::SyntaxError:
        case ErrorNumber::ItemNotFound:
            return "Error in database!\r\n\r\nPlease make sure '" + SystemPath(DatabasePath(CurrentSchemaVersion)) +
                   "' is not damaged, not in use, and not on a full disk!";
        default:
            return error.Message();
    }
}

bool OpenOrCreateDatabase() {
    for (int version = 7; version < CurrentSchemaVersion; ++version) HideFromOthers(DatabasePath(version));
    while (!FileExists(DatabasePath(CurrentSchemaVersion))) {
        if (FileExists(DatabasePath(8))) {
            if (!Upgrade(8, StepFrom8To9)) return false;
        } else if (FileExists(DatabasePath(7))) {
            if (!Upgrade(7, StepFrom7To8)) return false;
        } else {
            CreateCurrentVersion();
        }
    }
    return Open(DatabasePath(CurrentSchemaVersion));
}

void CreateStatsRecent() {
    Transaction transaction(*gDatabase);
    if (gDatabase->TableExists(StatsRecentTable().Name)) gDatabase->DeleteTable(StatsRecentTable().Name);
    CreateTable(StatsRecentTable());
    transaction.Commit();
}

std::string MediaListName(int album) {
    return "MediaList" + std::to_string(album);
}

void CreateMediaList(int album) {
    CreateTable({MediaListName(album), {{"AlbumName", text}, {"FilePath", text}}});
}

void DropMediaList(int album) {
    if (gDatabase->TableExists(MediaListName(album))) gDatabase->DeleteTable(MediaListName(album));
}

void WidenToDouble(std::string_view table, std::string_view field) {
    const std::string name(field);
    const std::string scratch = name + "Temp";
    Transaction transaction(*gDatabase);
    if (!HasField(table, scratch)) gDatabase->AppendField(table, {scratch, FieldType::Double});
    CopyField(table, name, scratch);
    gDatabase->DeleteField(table, name);
    gDatabase->AppendField(table, {name, FieldType::Double});
    CopyField(table, scratch, name);
    gDatabase->DeleteField(table, scratch);
    transaction.Commit();
}

}  // namespace pixmora
