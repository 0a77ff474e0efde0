// What the album editor decides: validation, saving, deletion.
#include "setup/rules/AlbumEditor.h"

#include <memory>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/StripTags.h"
#include "store/Catalogue.h"
#include "store/Rows.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr std::int64_t bigPictureBytes = 30720;
constexpr std::int32_t smallCopyWidth = 200;

constexpr const char *tablesOfTheName[] = {"PrivateDirs", "DBOrder",     "PopularFiles",
                                           "PopularDirs", "StatsHourly", "StatsDaily"};
// Deliberate: the statistics keep the rows of a deleted album, so that they stay whole.
constexpr const char *tablesOfADeletion[] = {"Albums", "PrivateDirs", "DBOrder", "PopularFiles", "PopularDirs"};

std::string OfAlbum(const std::string &name) {
    return "AlbumName=" + QuotedText(name);
}

FieldValue Flag(bool value) {
    return std::int64_t{value ? 1 : 0};
}

bool IsSet(const FieldValue &value) {
    return !IsNull(value) && AsLong(value) == 1;
}

/// Null when there is no such album.
std::unique_ptr<Recordset> FindAlbum(const std::string &name) {
    auto albums = gDatabase->OpenRecordset("Albums", RecordsetType::Dynaset);
    albums->FindFirst(OfAlbum(name));
    return albums->NoMatch() ? nullptr : std::move(albums);
}

std::unique_ptr<Recordset> NeedAlbum(const std::string &name) {
    auto album = FindAlbum(name);
    if (!album) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    return album;
}

std::string WithoutTrailingSeparator(std::string path) {
    if (path.ends_with('\\') || path.ends_with('/')) path.pop_back();
    return path;
}

/// Deletes, for each path of the walk, the first row that has it.
/// Deliberate: this second lookup does not look at the album, so of two albums with the same path it takes whichever is
/// first.
void DeleteFirstWithPath(std::string_view table, std::string_view pathField, const std::string &path) {
    const auto rows = gDatabase->OpenRecordset(table, RecordsetType::Dynaset);
    rows->FindFirst(std::string(pathField) + "=" + QuotedText(path));
    if (!rows->NoMatch()) rows->Delete();
}

void ResetPopularity(const std::string &albumName) {
    ForEachRow("PopularFiles", OfAlbum(albumName),
               [](Recordset &row) { DeleteFirstWithPath("PopularFiles", "FilePath", AsText(row.Value("FilePath"))); });
    ForEachRow("PopularDirs", OfAlbum(albumName),
               [](Recordset &row) { DeleteFirstWithPath("PopularDirs", "DirPath", AsText(row.Value("DirPath"))); });
}

/// The path starts with a backslash; a second one means a subdirectory.
bool IsBelowTheRoot(const std::string &filePath) {
    return filePath.find('\\', 1) != std::string::npos;
}

bool HeadHoldsNested(const char *statement, const char *field, int limit, bool (*isNested)(const std::string &)) {
    const auto rows = gDatabase->OpenRecordset(statement, RecordsetType::Snapshot);
    for (int i = 0; i < limit && !rows->Eof(); ++i, rows->MoveNext()) {
        if (isNested(AsText(rows->Value(field)))) return true;
    }
    return false;
}

bool IsNotTheRoot(const std::string &dirPath) {
    return dirPath != "\\";
}

/// Deliberate: neither the look nor the removal below goes by album.
bool PopularPageHoldsNested() {
    return HeadHoldsNested("SELECT * FROM PopularFiles ORDER BY FileCount DESC", "FilePath", 30, IsBelowTheRoot) ||
           HeadHoldsNested("SELECT * FROM PopularDirs ORDER BY DirCount DESC", "DirPath", 5, IsNotTheRoot);
}

void RemoveNested(const char *table, const char *field, bool (*isNested)(const std::string &)) {
    const auto rows = gDatabase->OpenRecordset(table, RecordsetType::Dynaset);
    for (; !rows->Eof(); rows->MoveNext()) {
        const std::string path = AsText(rows->Value(field));
        if (isNested(path)) DeleteFirstWithPath(table, field, path);
    }
}

void SetFields(Recordset &row, const AlbumFields &fields) {
    row.Set("AlbumName", fields.Name);
    row.Set("Directory", fields.Directory);
    if (!fields.Description.empty()) row.Set("Description", fields.Description);
    row.Set("SubDirs", Flag(fields.SubDirs));
    row.Set("Pictures", Flag(fields.Pictures));
    row.Set("Movies", Flag(fields.Movies));
    row.Set("FeaturedImage", std::int64_t{fields.FeaturedImage});
    // An old path stays in the row when the field is empty.
    if (!fields.FeaturedImagePath.empty()) row.Set("FeaturedImagePath", fields.FeaturedImagePath);
}

}  // namespace

bool AlbumEditor::TellIfGone() const {
    if (IsNewAlbum() || FindAlbum(editAlbumName_)) return false;
    ShowMessageBox("The album '" + editAlbumName_ + "' is there no more! It has been deleted meanwhile.", FlagCritical);
    return true;
}

AlbumFields AlbumEditor::Load() const {
    AlbumFields fields;
    if (IsNewAlbum()) return fields;
    const auto row = NeedAlbum(editAlbumName_);
    fields.Name = editAlbumName_;
    fields.Directory = TextOrEmpty(row->Value("Directory"));
    fields.Description = TextOrEmpty(row->Value("Description"));
    fields.SubDirs = IsSet(row->Value("SubDirs"));
    fields.Pictures = IsSet(row->Value("Pictures"));
    fields.Movies = IsSet(row->Value("Movies"));
    if (const FieldValue featured = row->Value("FeaturedImage");
        !IsNull(featured) && AsLong(featured) >= 0 && AsLong(featured) <= 2) {
        fields.FeaturedImage = static_cast<int>(AsLong(featured));
    }
    fields.FeaturedImagePath = TextOrEmpty(row->Value("FeaturedImagePath"));
    return fields;
}

std::optional<AlbumEditor::Refusal> AlbumEditor::Validate(const AlbumFields &fields) {
    if (fields.Name.empty()) return Refusal{"You must give your album a name!", Field::Name};
    if (LCase(fields.Name) == "most popular") {
        return Refusal{"This name is reserved! Please choose another name for your album.", Field::Name};
    }
    if (HasBadFileChars(fields.Name)) return Refusal{BadNameMessage("Album name"), Field::Name};
    if (fields.Directory.empty()) return Refusal{"You must choose a directory for this album!", Field::Directory};
    if (!PathExists(fields.Directory)) return Refusal{"This directory is invalid!", Field::Directory};
    if (!fields.Pictures && !fields.Movies) {
        return Refusal{"You must at least choose to show pictures or show movies!", Field::Pictures};
    }
    return std::nullopt;
}

AlbumFields AlbumEditor::Save(AlbumFields fields) const {
    if (!IsNewAlbum()) {
        const AlbumFields stored = Load();
        if (stored.Directory != fields.Directory) AskAboutDirectory(fields, stored.Directory);
        if (stored.SubDirs && !fields.SubDirs) AskAboutSubDirectories();
    }
    fields.Directory = WithoutTrailingSeparator(std::move(fields.Directory));
    fields.Description = Replace(StripTags(fields.Description, ""), "\"", "'");
    if (IsNewAlbum()) {
        SaveNew(fields);
    } else {
        SaveEdit(fields);
    }
    return fields;
}

void AlbumEditor::AskAboutDirectory(AlbumFields &fields, const std::string &storedDirectory) const {
    if (Asks("You have changed your album's directory! Doing this will reset your Most Popular page.\r\n\r\n"
             "Are you sure you want to do this?")) {
        ResetPopularity(editAlbumName_);
    } else {
        fields.Directory = storedDirectory;
    }
}

void AlbumEditor::AskAboutSubDirectories() {
    if (!PopularPageHoldsNested()) return;
    const int answer = ShowMessageBox(
        "You have decided to stop including subdirectories, but there are files on your Most Popular page that are in "
        "these subdirectories!\r\n\r\nDo you wanna keep these files on your Most Popular page?",
        CriticalQuestion);
    if (answer != AnswerNo) return;
    RemoveNested("PopularFiles", "FilePath", IsBelowTheRoot);
    RemoveNested("PopularDirs", "DirPath", IsNotTheRoot);
}

void AlbumEditor::SaveEdit(const AlbumFields &fields) const {
    Transaction transaction(*gDatabase);
    const auto row = NeedAlbum(editAlbumName_);
    row->Edit();
    SetFields(*row, fields);
    row->Update();
    for (const char *table : tablesOfTheName) {
        ForEachRow(table, OfAlbum(editAlbumName_), [&fields](Recordset &rows) {
            rows.Edit();
            rows.Set("AlbumName", fields.Name);
            rows.Update();
        });
    }
    transaction.Commit();
}

void AlbumEditor::SaveNew(const AlbumFields &fields) {
    // In spite of its name the setting holds the number given out last, until a website start rewrites it.
    const std::string number = std::to_string(AddLong(GetSettingNumber("Setup", "NextAlbumID", 0), 1));
    SaveSetting("AlbumIDs", fields.Name, number);
    SaveSetting("Setup", "NextAlbumID", number);
    const auto albums = gDatabase->OpenRecordset("Albums", RecordsetType::Table);
    albums->AddNew();
    SetFields(*albums, fields);
    albums->Set("DateCreated", Today());
    albums->Update();
}

void AlbumEditor::Delete() const {
    Transaction transaction(*gDatabase);
    for (const char *table : tablesOfADeletion) DeleteRows(table, OfAlbum(editAlbumName_));
    transaction.Commit();
}

bool AlbumEditor::OfferToDelete() const {
    if (ShowMessageBox("Are you sure you want to delete this album?", CriticalQuestion) == AnswerNo) return false;
    Delete();
    return true;
}

std::string BadNameMessage(std::string_view what) {
    return std::string(what) + " cannot contain any of the following characters:\r\n\r\n\\ / : * ? \" ' < > |";
}

bool IsDriveRoot(std::string_view path) {
    return !path.empty() && path.size() < 4;
}

std::string ChooserStart(const std::string &present, const std::string &myPictures, const std::string &myDocuments) {
    for (const std::string &path : {present, myPictures, myDocuments}) {
        if (PathExists(path)) return path;
    }
    return "/";
}

std::string OfferSmallCopy(const std::string &picturePath) {
    if (FileLength(picturePath) <= bigPictureBytes) return picturePath;
    if (!Asks("The picture you have specified is pretty big to show on your front page.\r\n\r\n"
              "Would you like me to resize it for you?")) {
        return picturePath;
    }
    std::string copyPath = picturePath + ".pixmoraicon";
    std::int32_t success = 0;
    gPictureEngine->Load(picturePath, 0, success);
    gPictureEngine->Resize(smallCopyWidth, 0, 0, success);
    const std::string copy = gPictureEngine->Encoded(3);
    if (Try([&] { WriteFileAtomically(copyPath, copy); })) return copyPath;
    ShowMessageBox("The smaller copy cannot be saved beside the picture! The picture will be shown as it is.",
                   FlagCritical);
    return picturePath;
}

}  // namespace pixmora
