// clsWebServerCommands.h: the details page of one file. Opening it counts as a view.
#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "pages/AlbumAddress.h"
#include "pages/CameraFacts.h"
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

DetailsAddress ReadDetailsAddress(const Arguments &args) {
    const AlbumPointer album = AlbumArgument(args, 0);
    return {album, Argument(args, 1), VisitorFilePath(album->Directory, Argument(args, 2))};
}

/// Names of the files before and behind one in its directory; empty without one.
struct Neighbours {
    std::string Previous;
    std::string Next;
};

bool IsShown(const clsAlbum &album, const std::string &name) {
    return (album.ShowPictures != 0 && PathMatchSpec(name, PicturePatterns())) ||
           (album.ShowMovies != 0 && PathMatchSpec(name, MoviePatterns()));
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

std::vector<Filling> PictureFillings(const DetailsAddress &address) {
    const std::string linkPath = LinkPath(address.Path());
    const std::string link = Concat("ShowPicture?", address.Album->ID, "&full&", linkPath);
    clsExif exif;
    exif.ImageFile(address.FullPath);
    return {{"{DOWNLOAD_IMG}", "downloadpicture.gif"},
            {"{DETAILS}", PictureDetails(exif)},
            {"{CAMERA}", CameraFacts(exif)},
            {"{MOVIE_TYPE}", ""},
            {"{FILE_LINK}", link},
            {"{FILE_REPRESENTATION}",
             Concat(R"(<a href=")", link, R"(" target="_top">)", R"(<img src="ShowPicture?)", address.Album->ID,
                    "&preview&", linkPath, R"(" border=0>)", "<br><br>", R"(<font class="lblPictureList">)",
                    FileDisplayName(address.Name()), "</font></a>")}};
}

std::vector<Filling> MovieFillings(const DetailsAddress &address) {
    // The page has counted the view, so the transfer doesn't.
    const std::string link = Concat("ShowMovie?", address.Album->ID, "&fullnocount&", LinkPath(address.Path()));
    const MovieFacts facts = ReadMovieFacts(address.FullPath);
    return {
        {"{DOWNLOAD_IMG}", "downloadmovie.gif"},
        {"{DETAILS}", MovieDetails(address.FullPath, facts)},
        {"{CAMERA}", ""},
        {"{MOVIE_TYPE}", std::string(PlayableType(address.Name(), facts))},
        {"{FILE_LINK}", link},
        {"{FILE_REPRESENTATION}",
         Concat(R"(<a href=")", link, R"(" target="_top">)", R"(<img src="ShowGraphic?movie.gif" border=0><br><br>)",
                R"(<font class="lblPictureList">)", FileDisplayName(address.Name()), "</font>", "</a>")}};
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
    if (IsProtectedDir(album, address.Name(), DirectoryOf(address))) return;
    if (!AddDownloadCookie(socket->RemoteHostIP, album.ID, address.FullPath)) return;
    CountFileVisit(album.Name, address.Path());
    ++gDownloadsSession;
    RecordStat(Stat::Downloads, album.Name, 1);
}

}  // namespace

// Deliberate: no login is asked for. Protection acts on the listings and the media page.
void clsWebServerCommands::genShowDetails(const Connection &socket, const Arguments &args) const {
    const std::optional<DetailsAddress> address = TryRead(args, ReadDetailsAddress);
    if (!address) return SendIgnoringErrors(socket, "Bad Request!");
    if (!FileExists(address->FullPath) || IsDirectory(address->FullPath))
        return SendIgnoringErrors(socket, "File Not Found!");

    const Neighbours neighbours = FindNeighbours(*address);
    std::vector<Filling> fillings = {
        {"{STYLE_SHEET}", gStyleSheet},
        {"{SERVER_TITLE}", gServerTitle},
        {"{AUTHOR}", gAuthor},
        {"{FOOTER}", MakeFooter()},
        {"{LOGIN_NAME}", LoginNameText(socket->Tag)},
        {"{PREVIOUS_FILE}", Arrow(*address, "previous", neighbours.Previous)},
        {"{NEXT_FILE}", Arrow(*address, "next", neighbours.Next)},
        {"{DIR_TITLE}", DirDisplayTitle(*address->Album, Replace(ParentPath(address->Path()), "\\", "/"))},
    };
    std::ranges::move(IsPictureName(address->Name()) ? PictureFillings(*address) : MovieFillings(*address),
                      std::back_inserter(fillings));
    SendPage(socket, tplShowDetails, fillings);
    if (address->CountWord == "count") CountView(socket, *address);
}

}  // namespace pixmora
