// clsWebServerCommands.h: the beginning of a movie's transfer. The rest goes out chunk by chunk.
#include <optional>

#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "pages/AlbumAddress.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/MediaTypes.h"
#include "store/Popularity.h"

namespace pixmora {

namespace {

struct MovieAddress {
    std::int32_t Album = 0;
    std::string Mode;
    std::string LinkPath;
};

MovieAddress ReadMovieAddress(const Arguments &args) {
    return {CInt(Argument(args, 0)), Argument(args, 1), Argument(args, 2)};
}

/// The file's path below the album's root, as the popular tables have it.
std::string PathInAlbum(const clsAlbum &album, const std::string &path) {
    return path.substr(album.Directory.size());
}

}  // namespace

void clsWebServerCommands::genShowMovie(const Connection &socket, const Arguments &args) const {
    const std::optional<MovieAddress> address = TryRead(args, ReadMovieAddress);
    if (!address) return SendIgnoringErrors(socket, "Bad Request!");

    const AlbumPointer album = AlbumByNumber(address->Album);
    const std::string path = VisitorFilePath(album->Directory, address->LinkPath);
    if (path.empty()) throw RunTimeError(ErrorNumber::FileNotFound);
    if (address->Mode == "full" && AddDownloadCookie(socket->RemoteHostIP(), address->Album, path))
        CountFileVisit(album->Name, PathInAlbum(*album, path));
    const std::int64_t size = FileLength(path);
    std::shared_ptr<BinaryFile> file = BinaryFile::OpenForRead(path);
    DoEvents();
    if (socket->Index > HighestSendIndex) {
        // Deliberate: no end here. The bounds error adds the failure answer.
        SendIgnoringErrors(socket, "Too many connections! Try again later.");
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    }
    SendState &state = gSendStates[static_cast<std::size_t>(socket->Index)];
    state.FilePath = path;
    state.FileSize = size;
    state.FileNumber = std::move(file);
    // Deliberate: BytesSent stays at what the last transfer of this index left.
    // LastSendTick waits for the first chunk.
    SendIgnoringErrors(socket,
                       Concat(WriteResponseHead(MovieContentType(path), false), "Content-Length: ", size, CrLf, CrLf));
    DoEvents();
}

}  // namespace pixmora
