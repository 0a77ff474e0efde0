// Walks over an album's directories for the pages.
#include "pages/Listings.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/site/Globals.h"
#include "core/site/RequestGrammar.h"
#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/MediaTypes.h"

namespace pixmora {

namespace {

constexpr int newForDays = 14;

/// A subdirectory with the text that it is sorted by.
struct Row {
    std::string Key;
    SubDirectory Entry;
};

/// @param places in the owner's order, where that is asked for @param directory as ListSubDirs has it
std::string SortKey(const std::optional<DirOrder> &places, std::string_view directory, const std::string &name,
                    DateTime lastWrite) {
    if (gSortMethod == 0) return EncodeLinkPart(name);
    if (!places) return IsoDate(lastWrite);
    // Deliberate: the separator in front of the directory's own. The order of an album's top level is stored in that
    // form, so it takes effect there and nowhere below.
    return places->Position("\\" + std::string(directory) + name, "000000");
}

bool IsSubDirectory(const DirectoryEntry &entry) {
    return entry.IsDirectory && !entry.Name.starts_with('.');
}

}  // namespace

std::vector<std::string> ListMediaFiles(const clsAlbum &album, std::string_view directory) {
    std::vector<std::string> names;
    const Directory walk(directory);
    for (const DirectoryEntry &entry : walk.Entries()) {
        if (entry.IsDirectory) continue;
        if (album.ShowPictures != 0 && PathMatchSpec(entry.Name, PicturePatterns())) names.push_back(entry.Name);
        if (album.ShowMovies != 0 && PathMatchSpec(entry.Name, MoviePatterns())) names.push_back(entry.Name);
    }
    return names;
}

std::vector<SubDirectory> ListSubDirs(const clsAlbum &album, std::string_view directory) {
    if (album.SubDirectories == 0) return {};

    std::optional<DirOrder> places;
    if (gSortMethod != 0 && gSortMethod != 1) places.emplace(album.Name);
    std::vector<Row> rows;
    const Directory walk(album.Directory + std::string(directory));
    for (const DirectoryEntry &entry : walk.Entries()) {
        if (!IsSubDirectory(entry)) continue;
        const std::optional<FileFacts> facts = walk.Facts(entry);
        if (!facts) continue;
        const bool isNew = DateDiffDays(facts->LastWriteTime, Now()) < newForDays;
        rows.push_back({SortKey(places, directory, entry.Name, facts->LastWriteTime), {entry.Name, isNew}});
    }
    std::ranges::stable_sort(rows, [](const Row &left, const Row &right) {
        const int order = CompareTexts(left.Key, right.Key);
        return gSortOrder == 0 ? order < 0 : order > 0;
    });

    std::vector<SubDirectory> sorted;
    sorted.reserve(rows.size());
    for (Row &row : rows) sorted.push_back(std::move(row.Entry));
    return sorted;
}

DirContents CountDirContents(std::string_view path) {
    DirContents contents;
    const Directory walk(path);
    for (const DirectoryEntry &entry : walk.Entries()) {
        if (entry.IsDirectory) {
            if (IsSubDirectory(entry)) ++contents.SubDirs;
        } else if (PathMatchSpec(entry.Name, PicturePatterns())) {
            ++contents.Pictures;
        } else if (PathMatchSpec(entry.Name, MoviePatterns())) {
            ++contents.Movies;
        }
    }
    return contents;
}

std::string DirDisplayTitle(const clsAlbum &album, std::string_view name) {
    if (!name.empty() && !Contains(name, "/")) return std::string(name);
    const std::vector<std::string> parts = Split(name, "/");
    const auto last = std::find_if(parts.rbegin(), parts.rend(), [](const std::string &part) { return !part.empty(); });
    return last == parts.rend() ? album.Name : *last;
}

}  // namespace pixmora
