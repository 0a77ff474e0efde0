// clsWebServerCommands.h: files that go out as they are: the graphics of htdocs, the site's icon and the albums' icons.
#include <memory>
#include <optional>

#include "core/site/BrowserCopy.h"
#include "core/site/RequestGrammar.h"
#include "pages/AlbumAddress.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

struct PlainFile {
    std::string Path;
    std::shared_ptr<BinaryFile> File;
};

PlainFile OpenPlainFile(const std::string &path) {
    return {path, BinaryFile::OpenForRead(path)};
}

PlainFile OpenAlbumIcon(const Arguments &args) {
    return OpenPlainFile(AlbumArgument(args, 0)->FeaturedImagePath);
}

/// @return the file's length, or nothing when the visitor's browser held it already
std::optional<std::size_t> SendPlainFile(const Connection &socket, std::string_view contentType, const PlainFile &file,
                                         bool isLasting = true) {
    const BrowserCopy copy = isLasting ? BrowserCopy(file.Path, "") : BrowserCopy();
    if (copy.AnswerIfHeld(socket)) return std::nullopt;
    const std::size_t length = SendFileIgnoringErrors(socket, copy.Head(contentType), file.File);
    DoEvents();
    return length;
}

/// The webcam's is another one every few seconds.
bool IsStill(std::string_view name) {
    return EqualsIgnoreCase(name.substr(0, name.find('.')), "capture");
}

}  // namespace

void clsWebServerCommands::genShowGraphic(const Connection &socket, const Arguments &args) const {
    const std::string name = DecodeLinkPart(Argument(args, 0));
    const std::string path = App::HtdocsPath(name);
    if (HasForbiddenPart(name) || !FileExists(path) || IsDirectory(path))
        return SendIgnoringErrors(socket, "File Not Found!");
    const auto length = SendPlainFile(socket, "image/gif", OpenPlainFile(path), !IsStill(name));
    if (length) BookKilobytes(NoAlbum, *length);
}

void clsWebServerCommands::genFaviconico(const Connection &socket) const {
    const std::string path = App::HtdocsPath("favicon.ico");
    SendPlainFile(socket, "image/x-icon", {path, BinaryFile::OpenBinary(path)});
}

void clsWebServerCommands::genShowAlbumIcon(const Connection &socket, const Arguments &args) const {
    const std::optional<PlainFile> icon = TryRead(args, OpenAlbumIcon);
    if (!icon) return SendIgnoringErrors(socket, "Bad Request!");
    SendPlainFile(socket, "image/jpeg", *icon);
}

}  // namespace pixmora
