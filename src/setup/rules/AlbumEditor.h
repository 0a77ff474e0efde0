// What the album editor decides: validation, saving with its consequences in the tables, deletion.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pixmora {

/// The fields of the editor, with what a new album starts from.
struct AlbumFields {
    std::string Name;
    std::string Directory;  ///< full path
    std::string Description;
    bool SubDirs = true;
    bool Pictures = true;
    bool Movies = true;
    int FeaturedImage = 1;          ///< 0 none, 1 random, 2 the picture in FeaturedImagePath
    std::string FeaturedImagePath;  ///< full path, or empty
};

/// One opening of the editor, for a new album or an existing one. It works on the database directly; what it saves or
/// deletes takes effect at once. Consequences that the owner may refuse are asked through the owner's dialogue.
class AlbumEditor {
public:
    enum class Field { Name, Directory, Pictures };
    struct Refusal {
        std::string Message;
        Field Where;  ///< the field that wants mending
    };

    /// For a new album.
    AlbumEditor() = default;
    /// For an existing one. @param albumName key of every lookup until the editor closes, also when the name is changed
    explicit AlbumEditor(std::string albumName) : editAlbumName_(std::move(albumName)) {}

    bool IsNewAlbum() const { return editAlbumName_.empty(); }
    /// Tells the owner of an existing album that has been deleted meanwhile, by pixmoractl for one. @return whether it
    /// has
    bool TellIfGone() const;

    /// The stored row; the defaults for a new album. @throws RunTimeError NoCurrentRecord when the album isn't there
    AlbumFields Load() const;

    /// The first rule that the fields break. An album of the same name, or of the same directory, breaks none.
    static std::optional<Refusal> Validate(const AlbumFields &fields);

    /// Writes valid fields and draws the consequences: a changed directory asks and resets the popular rows,
    /// subdirectories switched off ask about theirs, a new name goes through six tables. @return the fields as they
    /// were saved
    AlbumFields Save(AlbumFields fields) const;

    /// Deletes the album from five tables, without a question. Its statistics stay.
    void Delete() const;
    /// Asks, and deletes the album unless the answer is No. @return whether it is gone
    bool OfferToDelete() const;

private:
    void AskAboutDirectory(AlbumFields &fields, const std::string &storedDirectory) const;
    static void AskAboutSubDirectories();
    void SaveEdit(const AlbumFields &fields) const;
    static void SaveNew(const AlbumFields &fields);

    std::string editAlbumName_;
};

/// The message for a name with characters that it can't have. @param what "Album name" or "Username"
std::string BadNameMessage(std::string_view what);

/// Whether the path is refused as the root of a drive: by its length alone, fewer than four characters.
bool IsDriveRoot(std::string_view path);
/// The question asked then; Yes means to choose again.
inline constexpr const char *DriveRootQuestion =
    "As a security precaution, you are not allowed to share the root folder of a drive. (ex. C:\\)\r\n\r\n"
    "Please select another directory such as 'My Documents' or 'My Pictures'\r\n\r\n"
    "Would you like to try choosing a directory again?";

/// Where the choice of a directory starts: the first of these that exists, else the root of the disk. @param present
/// what the field holds
std::string ChooserStart(const std::string &present, const std::string &myPictures, const std::string &myDocuments);

/// Offers a small copy of a picture above 30720 bytes. Where the folder takes none, the owner is told. @return the path
/// to feature: that of the copy, or the picture's own
/// @throws RunTimeError PictureError when it is no picture that can be read
std::string OfferSmallCopy(const std::string &picturePath);

}  // namespace pixmora
