// clsWebServerCommands.h: the details page of one file. Opening it counts as a view.
#include <optional>
#include <vector>

#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "pages/AlbumAddress.h"
#include "pages/FileDetails.h"
#include "pages/Listings.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/MediaTypes.h"
#include "store/Popularity.h"
#include "store/Protection.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

struct DetailsAddress {
    AlbumPointer Album;
    std::string CountWord;
    std::string FullPath;  ///< empty for a path that no visitor may use

    /// Below the album's root, plain: "\a\b.jpg".
    std::string Path() const { return FullPath.substr(Album->Directory.size()); }
    std::string Name() const { return LastPathPart(FullPath); }
};

std::optional<DetailsAddress> ReadDetailsAddress(const Arguments &args) {
    try {
        const AlbumPointer album = AlbumArgument(args, 0);
        return DetailsAddress{album, Argument(args, 1), VisitorFilePath(album->Directory, Argument(args, 2))};
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

/// Names of the files before and behind one in its directory; empty without one.
struct Neighbours {
    std::string Previous;
    std::string Next;
};

bool IsShown(const clsAlbum &album, const std::string &name) {
    return (album.ShowPictures != 0 && PathMatchSpec(name, PicturePatterns)) ||
           (album.ShowMovies != 0 && PathMatchSpec(name, MoviePatterns));
}

Neighbours FindNeighbours(const DetailsAddress &address) {
    Neighbours neighbours;
    const std::string name = address.Name();
    bool isBehind = false;
    const Directory walk(ParentPath(address.FullPath));
    for (const DirectoryEntry &entry : walk.Entries()) {
        if (entry.IsDirectory) continue;
        if (entry.Name == name) {
            isBehind = true;
        } else if (IsShown(*address.Album, entry.Name)) {
            (isBehind ? neighbours.Next : neighbours.Previous) = entry.Name;
            if (isBehind) break;
        }
    }
    return neighbours;
}

/// @param graphic without its ending @param name of the neighbour, may be empty
std::string Arrow(const DetailsAddress &address, std::string_view graphic, const std::string &name) {
    if (name.empty()) return Concat(R"(<img src="ShowGraphic?)", graphic, R"(disabled.gif">)");
    // Deliberate: both arrows say "Previous File", and both count whatever this page does.
    return Concat(R"(<a href="ShowDetails?)", address.Album->ID, "&count&", LinkPath(ParentPath(address.Path()) + name),
                  R"(">)", R"(<img src="ShowGraphic?)", graphic, R"(.gif" border=0 alt="Previous File">)", "</a>");
}

void FillPicture(std::string &page, const DetailsAddress &address) {
    const std::string linkPath = LinkPath(address.Path());
    const std::string link = Concat("ShowPicture?", address.Album->ID, "&full&", linkPath);
    Fill(page, "{DOWNLOAD_IMG}", "downloadpicture.gif");
    Fill(page, "{DETAILS}", PictureDetails(address.FullPath));
    Fill(page, "{FILE_LINK}", link);
    Fill(page, "{FILE_REPRESENTATION}",
         Concat(R"(<a href=")", link, R"(" target="_top">)", R"(<img src="ShowPicture?)", address.Album->ID,
                "&preview&", linkPath, R"(" border=0>)", "<br><br>", R"(<font class="lblPictureList">)",
                FileDisplayName(address.Name()), "</font></a>"));
}

void FillMovie(std::string &page, const DetailsAddress &address) {
    // The page has counted the view, so the transfer doesn't.
    const std::string link = Concat("ShowMovie?", address.Album->ID, "&fullnocount&", LinkPath(address.Path()));
    Fill(page, "{DOWNLOAD_IMG}", "downloadmovie.gif");
    Fill(page, "{DETAILS}", MovieDetails(address.FullPath));
    Fill(page, "{FILE_LINK}", link);
    Fill(page, "{FILE_REPRESENTATION}",
         Concat(R"(<a href=")", link, R"(" target="_top">)", R"(<img src="ShowGraphic?movie.gif" border=0><br><br>)",
                R"(<font class="lblPictureList">)", FileDisplayName(address.Name()), "</font>", "</a>"));
}

/// The file's directory below the album's root, "\" or "\a\b".
std::string DirectoryOf(const DetailsAddress &address) {
    std::string directory = ParentPath(address.Path());
    if (directory.size() > 1) directory.pop_back();
    return directory;
}

/// Once for each visitor and file until the sweep forgets it; never in a protected directory.
void CountView(const Connection &socket, const DetailsAddress &address) {
    const clsAlbum &album = *address.Album;
    if (IsProtectedDir(album.ID, address.Name(), DirectoryOf(address))) return;
    if (!AddDownloadCookie(socket->RemoteHostIP(), album.ID, address.FullPath)) return;
    CountFileVisit(album.Name, address.Path());
    ++gDownloadsSession;
    RecordStat(Stat::Downloads, album.Name, 1);
}

}  // namespace

// Deliberate: no login is asked for. Protection acts on the listings and the media page.
void clsWebServerCommands::genShowDetails(const Connection &socket, const Arguments &args) const {
    const std::optional<DetailsAddress> address = ReadDetailsAddress(args);
    if (!address) return SendIgnoringErrors(socket, "Bad Request!");
    if (!FileExists(address->FullPath) || IsDirectory(address->FullPath))
        return SendIgnoringErrors(socket, "File Not Found!");

    const Neighbours neighbours = FindNeighbours(*address);
    std::string page = WriteResponseHead("text/html", true) + tplShowDetails;
    Fill(page, "{STYLE_SHEET}", gStyleSheet);
    Fill(page, "{SERVER_TITLE}", gServerTitle);
    Fill(page, "{AUTHOR}", gAuthor);
    Fill(page, "{FOOTER}", MakeFooter());
    Fill(page, "{LOGIN_NAME}", LoginNameText(socket->Tag));
    Fill(page, "{PREVIOUS_FILE}", Arrow(*address, "previous", neighbours.Previous));
    Fill(page, "{NEXT_FILE}", Arrow(*address, "next", neighbours.Next));
    Fill(page, "{DIR_TITLE}", DirDisplayTitle(address->Album->ID, Replace(ParentPath(address->Path()), "\\", "/")));
    if (IsPictureName(address->Name())) {
        FillPicture(page, *address);
    } else {
        FillMovie(page, *address);
    }
    SendIgnoringErrors(socket, page);
    if (address->CountWord == "count") CountView(socket, *address);
}

}  // namespace pixmora
