// Catalogue.h: the scan of an album's files at website start.
#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/MediaTypes.h"
#include "store/Protection.h"
#include "store/Schema.h"

namespace pixmora {

namespace {

class AlbumScan {
public:
    explicit AlbumScan(clsAlbum &album) : album_(album) {}

    void Run() {
        DropMediaList(album_.ID);
        CreateMediaList(album_.ID);
        mediaList_ = gDatabase->OpenRecordset(MediaListName(album_.ID), RecordsetType::Dynaset);
        ScanDirectory(album_.Directory);
        CommitRows();
        mediaList_->Close();
        album_.PictureCount = pictureCount_;
        album_.PictureSize = pictureSize_;
        album_.MovieCount = movieCount_;
        album_.MovieSize = movieSize_;
        album_.DateUpdated = DateText(AddDays(today_, -days_));
    }

    std::vector<std::string> UnreadableFolders() && { return std::move(unreadable_); }

private:
    void ScanDirectory(const std::string &path) {
        CommitRows();
        DoEvents();
        const Directory directory(path);
        const std::optional<FileFacts> ownFacts = directory.Facts({".", true});
        if (!directory.IsReadable() || !ownFacts) {
            unreadable_.push_back(path);
            return;
        }
        open_.push_back(*ownFacts);
        const std::string relativePath = RelativePath(path);
        const bool isProtected = IsProtectedDir(album_, LastPathPart(path), relativePath);
        for (const DirectoryEntry &entry : directory.Entries()) {
            if (entry.IsDirectory && entry.Name.starts_with('.')) {
                if (const auto facts = directory.Facts(entry)) NoteAge(facts->CreationTime);
            } else if (entry.IsDirectory) {
                if (isProtected || album_.SubDirectories == 0) continue;
                const auto facts = directory.Facts(entry);
                if (!facts || !IsOpen(*facts)) ScanDirectory(path + "\\" + entry.Name);
            } else if (!isProtected) {
                ScanFile(directory, entry, path);
            }
        }
        open_.pop_back();
    }

    void ScanFile(const Directory &directory, const DirectoryEntry &entry, const std::string &path) {
        if (album_.ShowPictures != 0 && PathMatchSpec(entry.Name, PicturePatterns())) {
            const auto facts = directory.Facts(entry);
            if (!facts) return;
            ++pictureCount_;
            pictureSize_ += static_cast<double>(facts->Size);
            NoteAge(facts->LastWriteTime);
            if (!rows_) rows_ = std::make_unique<Transaction>(*gDatabase);
            mediaList_->AddNew();
            mediaList_->Set("AlbumName", album_.Name);
            mediaList_->Set("FilePath", (path + "\\" + entry.Name).substr(album_.Directory.size()));
            mediaList_->Update();
        }
        if (album_.ShowMovies != 0 && PathMatchSpec(entry.Name, MoviePatterns())) {
            const auto facts = directory.Facts(entry);
            if (!facts) return;
            ++movieCount_;
            movieSize_ += static_cast<double>(facts->Size);
            NoteAge(facts->LastWriteTime);
        }
    }

    /// Before any other handler may run: what it writes is not the scan's.
    void CommitRows() {
        if (rows_) rows_->Commit();
        rows_.reset();
    }

    std::string RelativePath(const std::string &path) const {
        const std::string relativePath = path.substr(album_.Directory.size());
        return relativePath.empty() ? "\\" : relativePath;
    }

    void NoteAge(DateTime date) { days_ = std::min(days_, DateDiffDays(date, today_)); }

    /// Whether the folder is one of those being scanned: a link to a folder above itself would never end.
    bool IsOpen(const FileFacts &facts) const {
        return std::ranges::any_of(open_, [&](const FileFacts &folder) { return folder.IsSame(facts); });
    }

    clsAlbum &album_;
    const DateTime today_ = Today();
    std::unique_ptr<Recordset> mediaList_;
    std::unique_ptr<Transaction> rows_;  ///< of the files since the loop was last turned
    std::vector<std::string> unreadable_;
    std::vector<FileFacts> open_;  ///< the folders from the root to the present one
    std::int32_t pictureCount_ = 0;
    double pictureSize_ = 0;
    std::int32_t movieCount_ = 0;
    double movieSize_ = 0;
    int days_ = 32000;  ///< since the newest entry
};

}  // namespace

std::vector<std::string> ScanAlbum(clsAlbum &album) {
    AlbumScan scan(album);
    scan.Run();
    return std::move(scan).UnreadableFolders();
}

}  // namespace pixmora
