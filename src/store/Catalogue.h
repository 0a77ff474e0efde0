// The album catalogue: definitions in the database, and the scan of an album's files at website start.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/database/Database.h"
#include "store/clsAlbum.h"

namespace pixmora {

/// The albums' names in order. @param count their number
std::vector<std::string> GetAlbumNames(std::int32_t &count);

/// The album's root folder, empty when there is no such album.
std::string GetAlbumDirectory(std::string_view albumName);

/// The places of an album's subdirectories in the owner's order, read at once: a listing asks for each of its entries.
class DirOrder {
public:
    explicit DirOrder(std::string_view albumName);
    /// As GetDirOrderPos.
    std::string Position(std::string_view subDir, std::string_view fallback) const;

private:
    std::unordered_map<std::string, FieldValue> places_;  ///< by the stored path, folded
};

/// The subdirectory's place in the owner's order as six digits, or the fallback when it has none.
/// @param subDir below the album's root, with a leading "\", plain apostrophes
std::string GetDirOrderPos(std::string_view albumName, std::string_view subDir, std::string_view fallback);

/// The album with this number. @throws RunTimeError SubscriptOutOfRange
AlbumPointer AlbumByNumber(std::int32_t number);
bool IsAlbumNumber(std::int32_t number);

/// The album's number by its name, from the settings. @throws RunTimeError TypeMismatch when it has none
std::int32_t AlbumNumberByName(std::string_view albumName);

/// A new album from its row of the Albums table, not scanned. @throws RunTimeError NoCurrentRecord when there is no
/// such row
AlbumPointer LoadAlbum(std::string_view albumName, std::int16_t id);

/// Makes the album's media table and fills it with its pictures, counts and sizes its files and dates it by the newest.
/// Turns the message loop once a folder. Files of protected folders are left out.
/// @return the folders that could not be read, which contribute nothing
std::vector<std::string> ScanAlbum(clsAlbum &album);

}  // namespace pixmora
