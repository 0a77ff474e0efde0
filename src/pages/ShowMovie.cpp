// clsWebServerCommands.h: the beginning of a movie's transfer. The rest goes out chunk by chunk.
#include <optional>
#include <utility>

#include "core/site/ByteRange.h"
#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "core/site/frmSystray.h"
#include "pages/AlbumAddress.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
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

/// What goes out of a movie: all of it, or the part that a player asks for.
struct Delivery {
    std::int64_t First = 0;
    std::int64_t Length = 0;
    std::string Head;
};

Delivery WholeMovie(std::int64_t size) {
    return {0, size,
            Concat(WriteResponseHead("application/octet-stream", false), "Content-Length: ", size, CrLf, CrLf)};
}

/// Whether a player goes on elsewhere in a movie that it has begun: no download of its own, however long it is watched.
bool IsLaterPart(std::string_view request) {
    const std::string range = HeaderValue(request, "Range").value_or("");
    return gMoreTypes && range.starts_with("bytes=") && !range.starts_with("bytes=0-");
}

/// For players that seek.
Delivery MovieForPlayers(std::string_view path, std::int64_t size, std::string_view request) {
    const std::string_view type = MovieContentType(path);
    const auto range = ReadByteRange(HeaderValue(request, "Range").value_or(""), size);
    const auto head = [&](std::string_view status, std::string_view contentRange, std::int64_t length) {
        return WriteResponseHead(status, type,
                                 Concat("Pragma: no-cache\r\nAccept-Ranges: bytes\r\n", contentRange,
                                        "Content-Length: ", length, CrLf, CrLf));
    };
    if (!range) return {0, size, head("200 OK", "", size)};
    if (range->Length == 0)
        return {0, 0, head("416 Range Not Satisfiable", Concat("Content-Range: bytes */", size, CrLf), 0)};
    return {range->First, range->Length,
            head("206 Partial Content",
                 Concat("Content-Range: bytes ", range->First, "-", range->First + range->Length - 1, "/", size, CrLf),
                 range->Length)};
}

}  // namespace

void clsWebServerCommands::genShowMovie(const Connection &socket, const Arguments &args) const {
    const std::optional<MovieAddress> address = TryRead(args, ReadMovieAddress);
    if (!address) return SendIgnoringErrors(socket, "Bad Request!");

    const AlbumPointer album = AlbumByNumber(address->Album);
    const std::string path = VisitorFilePath(album->Directory, address->LinkPath);
    if (path.empty()) throw RunTimeError(ErrorNumber::FileNotFound);
    if (address->Mode == "full" && !IsLaterPart(socket->Request) &&
        AddDownloadCookie(socket->RemoteHostIP, address->Album, path))
        CountFileVisit(album->Name, PathInAlbum(*album, path));
    const std::int64_t size = FileLength(path);
    std::shared_ptr<BinaryFile> file = BinaryFile::OpenForRead(path);
    DoEvents();
    if (socket->Index > HighestSendIndex) {
        // Deliberate: no end here. The bounds error adds the failure answer.
        SendIgnoringErrors(socket, "Too many connections! Try again later.");
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    }
    const Delivery delivery = gMoreTypes ? MovieForPlayers(path, size, socket->Request) : WholeMovie(size);
    socket->Transfer = {.FileNumber = std::move(file),
                        .FilePath = path,
                        .FirstByte = delivery.First,
                        .FileSize = delivery.Length,
                        .BytesSent = 0,
                        .LastSendTick = GetTickCount()};
    SendIgnoringErrors(socket, delivery.Head);
    DoEvents();
}

}  // namespace pixmora
