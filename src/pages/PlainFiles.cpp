// clsWebServerCommands.h: files that go out as they are: the graphics of htdocs, the site's icon and the albums' icons.
#include <optional>

#include "core/site/RequestGrammar.h"
#include "pages/AlbumAddress.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

void SendFile(const Connection &socket, std::string_view contentType, std::string_view bytes) {
    SendIgnoringErrors(socket, Concat(WriteResponseHead(contentType, true), bytes));
    DoEvents();
}

std::string ReadAlbumIcon(const Arguments &args) {
    return BinaryFile::OpenForRead(AlbumArgument(args, 0)->FeaturedImagePath)->ReadAll();
}

}  // namespace

void clsWebServerCommands::genShowGraphic(const Connection &socket, const Arguments &args) const {
    const std::string name = DecodeLinkPart(Argument(args, 0));
    const std::string path = App::HtdocsPath(name);
    if (HasForbiddenPart(name) || !FileExists(path) || IsDirectory(path))
        return SendIgnoringErrors(socket, "File Not Found!");
    const std::string bytes = BinaryFile::OpenForRead(path)->ReadAll();
    SendFile(socket, "image/gif", bytes);
    BookKilobytes(NoAlbum, bytes.size());
}

void clsWebServerCommands::genFaviconico(const Connection &socket) const {
    SendFile(socket, "image/x-icon", ReadBinaryFile(App::HtdocsPath("favicon.ico")));
}

void clsWebServerCommands::genShowAlbumIcon(const Connection &socket, const Arguments &args) const {
    const std::optional<std::string> icon = TryRead(args, ReadAlbumIcon);
    if (!icon) return SendIgnoringErrors(socket, "Bad Request!");
    SendFile(socket, "image/jpeg", *icon);
}

}  // namespace pixmora
