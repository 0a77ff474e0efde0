// The album catalogue: definitions in the database.
#include "store/Catalogue.h"

#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/Protection.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

std::int16_t FlagOrZero(const FieldValue &value) {
    return IsNull(value) ? std::int16_t{0} : static_cast<std::int16_t>(AsLong(value));
}

/// "Monday, March 1, 2004" without its week day.
std::string DateWithoutWeekDay(const FieldValue &value) {
    if (IsNull(value)) return {};
    const std::string text = LongDate(AsDate(value));
    return text.substr(text.find(", ") + 2);
}

std::unique_ptr<Recordset> FindAlbumRow(std::string_view albumName) {
    auto albums = gDatabase->OpenRecordset("Albums", RecordsetType::Snapshot);
    albums->FindFirst("AlbumName=" + QuotedText(albumName));
    return albums;
}

}  // namespace

std::vector<std::string> GetAlbumNames(std::int32_t &count) {
    const auto albums = gDatabase->OpenRecordset("SELECT * FROM Albums ORDER BY AlbumName", RecordsetType::Snapshot);
    std::vector<std::string> names;
    for (; !albums->Eof(); albums->MoveNext()) names.push_back(TextOrEmpty(albums->Value("AlbumName")));
    count = static_cast<std::int32_t>(names.size());
    return names;
}

std::string GetAlbumDirectory(std::string_view albumName) {
    const auto albums = FindAlbumRow(albumName);
    return albums->NoMatch() ? std::string() : TextOrEmpty(albums->Value("Directory"));
}

DirOrder::DirOrder(std::string_view albumName) {
    const auto rows = gDatabase->OpenRecordset(
        "SELECT SubDir, SeqPos FROM DBOrder WHERE AlbumName = " + QuotedText(albumName), RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        places_.try_emplace(FoldedText(TextOrEmpty(rows->Value("SubDir"))), rows->Value("SeqPos"));
    }
}

std::string DirOrder::Position(std::string_view subDir, std::string_view fallback) const {
    const auto place = places_.find(FoldedText(ProtectionKey(subDir)));
    if (place == places_.end()) return std::string(fallback);
    return FormatPadded(AsLong(place->second), 6);
}

std::string GetDirOrderPos(std::string_view albumName, std::string_view subDir, std::string_view fallback) {
    return DirOrder(albumName).Position(subDir, fallback);
}

bool IsAlbumNumber(std::int32_t number) {
    return number >= 1 && static_cast<std::size_t>(number) <= gAlbums.size();
}

AlbumPointer AlbumByNumber(std::int32_t number) {
    if (!IsAlbumNumber(number)) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return gAlbums[static_cast<std::size_t>(number) - 1];
}

std::int32_t AlbumNumberByName(std::string_view albumName) {
    return Naming(Concat("AlbumIDs, ", albumName), [&] { return CLng(GetSetting("AlbumIDs", albumName)); });
}

AlbumPointer LoadAlbum(std::string_view albumName, std::int16_t id) {
    const auto row = FindAlbumRow(albumName);
    if (row->NoMatch()) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    auto album = std::make_shared<clsAlbum>();
    album->ID = id;
    album->Name = std::string(albumName);
    album->Directory = TextOrEmpty(row->Value("Directory"));
    album->Description = TextOrEmpty(row->Value("Description"));
    album->DateCreated = DateWithoutWeekDay(row->Value("DateCreated"));
    album->SubDirectories = FlagOrZero(row->Value("SubDirs"));
    album->ShowMovies = FlagOrZero(row->Value("Movies"));
    album->ShowPictures = FlagOrZero(row->Value("Pictures"));
    album->FeaturedImage = FlagOrZero(row->Value("FeaturedImage"));
    album->FeaturedImagePath = TextOrEmpty(row->Value("FeaturedImagePath"));
    return album;
}

}  // namespace pixmora
