// Popularity: how often each file and each directory was looked at.
#include "store/Popularity.h"

#include <memory>
#include <utility>

#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/RecordKeeping.h"
#include "store/Rows.h"

namespace pixmora {

namespace {

constexpr int mostPopularFiles = 30;

/// A table of views: its fields for the path and the count.
struct ViewTable {
    std::string Name;
    std::string Path;
    std::string Count;
};

const ViewTable &FileViews() {
    static const ViewTable table{"PopularFiles", "FilePath", "FileCount"};
    return table;
}

const ViewTable &DirViews() {
    static const ViewTable table{"PopularDirs", "DirPath", "DirCount"};
    return table;
}

void CountVisit(const ViewTable &table, std::string_view albumName, std::string_view path) {
    const std::string storedPath = Replace(std::string(path), "'", "%39");
    const auto rows = gDatabase->OpenRecordset(table.Name, RecordsetType::Dynaset);
    rows->FindFirst("AlbumName=" + QuotedText(albumName) + " and " + table.Path + "=" + QuotedText(storedPath));
    if (rows->NoMatch()) {
        rows->AddNew();
        rows->Set("AlbumName", std::string(albumName));
        rows->Set(table.Path, storedPath);
        rows->Set(table.Count, 1);
    } else {
        rows->Edit();
        rows->Set(table.Count, AsLong(rows->Value(table.Count)) + 1);
    }
    rows->Update();
}

using ExistenceTest = bool (*)(std::string_view path);

/// Deliberate: a path with "%39" in it counts as gone, and the rows go by their path in whichever album.
void Tidy(const ViewTable &table, const AlbumDirectoryLookup &directoryOf, ExistenceTest exists, int limit) {
    const auto views = gDatabase->OpenRecordset("SELECT * FROM " + table.Name + " ORDER BY " + table.Count + " DESC",
                                                RecordsetType::Snapshot);
    for (int i = 0; i < limit && !views->Eof(); ++i, views->MoveNext()) {
        const std::string path = AsText(views->Value(table.Path));
        const std::optional<std::string> directory = directoryOf(AsText(views->Value("AlbumName")));
        const bool isThere = directory && exists(*directory + path);
        if (!isThere) DeleteRows(table.Name, table.Path + "=" + QuotedText(path));
    }
}

}  // namespace

void CountFileVisit(std::string_view albumName, std::string_view filePath) {
    KeepRecord(Record::Counts, [&] { CountVisit(FileViews(), albumName, filePath); });
}

void CountDirVisit(std::string_view albumName, std::string_view dirPath) {
    KeepRecord(Record::Counts, [&] { CountVisit(DirViews(), albumName, dirPath.empty() ? "\\" : dirPath); });
}

void TidyPopularFiles(const AlbumDirectoryLookup &directoryOf) {
    Tidy(FileViews(), directoryOf, FileExists, mostPopularFiles);
}

void TidyPopularDirs(const AlbumDirectoryLookup &directoryOf, int limit) {
    Tidy(DirViews(), directoryOf, PathExists, limit);
}

}  // namespace pixmora
