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
    std::string_view Name;
    std::string_view Path;
    std::string_view Count;
};
constexpr ViewTable fileViews{"PopularFiles", "FilePath", "FileCount"};
constexpr ViewTable dirViews{"PopularDirs", "DirPath", "DirCount"};

void CountVisit(const ViewTable &table, std::string_view albumName, std::string_view path) {
    const std::string storedPath = Replace(std::string(path), "'", "%39");
    const auto rows = gDatabase->OpenRecordset(table.Name, RecordsetType::Dynaset);
    rows->FindFirst(Concat("AlbumName=", QuotedText(albumName), " and ", table.Path, "=", QuotedText(storedPath)));
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
    const auto views = gDatabase->OpenRecordset(
        Concat("SELECT * FROM ", table.Name, " ORDER BY ", table.Count, " DESC"), RecordsetType::Snapshot);
    for (int i = 0; i < limit && !views->Eof(); ++i, views->MoveNext()) {
        const std::string path = AsText(views->Value(table.Path));
        const std::optional<std::string> directory = directoryOf(AsText(views->Value("AlbumName")));
        const bool isThere = directory && exists(*directory + path);
        if (!isThere) DeleteRows(table.Name, Concat(table.Path, "=", QuotedText(path)));
    }
}

}  // namespace

void CountFileVisit(std::string_view albumName, std::string_view filePath) {
    KeepRecord(Record::Counts, [&] { CountVisit(fileViews, albumName, filePath); });
}

void CountDirVisit(std::string_view albumName, std::string_view dirPath) {
    KeepRecord(Record::Counts, [&] { CountVisit(dirViews, albumName, dirPath.empty() ? "\\" : dirPath); });
}

void TidyPopularFiles(const AlbumDirectoryLookup &directoryOf) {
    Tidy(fileViews, directoryOf, FileExists, mostPopularFiles);
}

void TidyPopularDirs(const AlbumDirectoryLookup &directoryOf, int limit) {
    Tidy(dirViews, directoryOf, PathExists, limit);
}

}  // namespace pixmora
