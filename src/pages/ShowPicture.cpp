// clsWebServerCommands.h: picture delivery: the stored file, or a JPEG of it made for this answer.
#include <optional>
#include <utility>

#include "core/site/Globals.h"
#include "pages/AlbumAddress.h"
#include "pages/Listings.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "store/MediaTypes.h"
#include "store/Settings.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

constexpr std::int32_t jpegType = 3;
constexpr std::int32_t defaultSpacing = 500;  // ms

struct PictureAddress {
    AlbumPointer Album;
    std::string Mode;
    std::string LinkPath;
};

PictureAddress ReadPictureAddress(const Arguments &args) {
    return {AlbumArgument(args, 0), Argument(args, 1), Argument(args, 2)};
}

struct Conversion {
    std::int32_t WidthLimit;  ///< pixels
    std::int32_t Flags;       ///< of the picture engine's Save
};

/// None for the stored file itself.
std::optional<Conversion> ConversionOf(std::string_view mode) {
    if (mode == "thumb") return Conversion{gThumbSize, gThumbQuality | jpegType};
    if (mode == "slideshow") return Conversion{gSlideshowSize, gSlideshowQuality | jpegType};
    if (mode == "preview") return Conversion{gPreviewSize, gPreviewQuality | jpegType};
    return std::nullopt;
}

/// A conversion in work. It lets others work between its pieces; pictures among them could not wait on top of it, since
/// they wait for its end. They begin when it is done, each as an event of its own.
class ConversionInWork {
public:
    ConversionInWork() { gHeldPictures.emplace(); }
    ~ConversionInWork() {
        const auto held = std::exchange(gHeldPictures, std::nullopt);
        for (const auto &answer : *held) RunSoon(answer);
    }
    ConversionInWork(const ConversionInWork &) = delete;
    ConversionInWork &operator=(const ConversionInWork &) = delete;
};

/// Waits until the last conversion is long enough past. Requests that wait inside each other's wait finish the last one
/// first. A visitor who goes leaves the queue: a stranger's requests would else pile up on the stack until it ends.
/// @return whether it is the visitor's turn
bool WaitForTurn(const Connection &socket) {
    const std::int32_t spacing = GetSettingNumber("Setup", "ConversionSpacing", defaultSpacing);
    DoEvents();
    while (IsWithin(gLastConversionTick, spacing)) {
        if (socket->State() != SocketState::Connected) return false;
        WaitUntilTick(TickAfter(TickAfter(gLastConversionTick, spacing), 1));
    }
    gLastConversionTick = GetTickCount();
    return true;
}

void CountPicture(std::string_view mode, const clsAlbum &album) {
    if (mode == "thumb") DoEvents();
    if (mode != "thumb" && mode != "slideshow") return;
    ++gThumbsSession;
    RecordStat(Stat::Thumbs, album.Name, 1);
}

/// Empty when the file is no picture that can be read; none when the engine raised an error.
std::optional<std::string> Convert(const std::string &path, const Conversion &conversion) {
    const ConversionInWork inWork;
    try {
        PictureEngine &engine = *gPictureEngine;
        std::int32_t success = 0;
        engine.Load(path, 0, success);
        if (success == 0) return "";
        if (engine.Width() > conversion.WidthLimit) engine.Resize(conversion.WidthLimit, 0, 0, success);
        return engine.Encoded(conversion.Flags, DoEvents);
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

/// Empty when the file can't be read.
std::string ReadPicture(const std::string &path) {
    try {
        return BinaryFile::OpenForRead(path)->ReadAll();
    } catch (const RunTimeError &) {
        return {};
    }
}

void SendPicture(const Connection &socket, const clsAlbum &album, std::string_view type, const std::string &bytes) {
    SendIgnoringErrors(socket, Concat(WriteResponseHead(type, true), bytes));
    BookKilobytes(album.Name, bytes.size());
}

/// @param path of a file that is there
void Deliver(const Connection &socket, const PictureAddress &address, const std::string &path) {
    CountPicture(address.Mode, *address.Album);
    const std::optional<Conversion> conversion = ConversionOf(address.Mode);
    const std::optional<std::string> bytes = conversion ? Convert(path, *conversion) : ReadPicture(path);
    if (!bytes) {
        SendIgnoringErrors(socket, Concat(WriteResponseHead("text/html", true), "Picture Conversion Error"));
        return;
    }
    gLastConversionTick = GetTickCount();
    DoEvents();
    SendPicture(socket, *address.Album, conversion ? "image/jpeg" : PictureContentType(path), *bytes);
}

void AnswerHeld(const Connection &socket, const Arguments &args) {
    const auto pages = gWebServerCommands;
    try {
        if (pages) pages->genShowPicture(socket, args);
    } catch (const RunTimeError &) {
        SendIgnoringErrors(socket, "Bad Request");
    }
    if (!pages) socket->Close();
    socket->SetAnswering(false);
}

}  // namespace

void clsWebServerCommands::genShowPicture(const Connection &socket, const Arguments &args) const {
    const std::optional<PictureAddress> address = TryRead(args, ReadPictureAddress);
    if (!address) return SendIgnoringErrors(socket, "Bad Request");
    if (!IsPictureName(address->LinkPath)) return SendIgnoringErrors(socket, "Not a Valid Picture!");
    if (gHeldPictures) {
        socket->SetAnswering(true);
        gHeldPictures->push_back([socket, args] { AnswerHeld(socket, args); });
        return;
    }
    const std::string path = VisitorFilePath(address->Album->Directory, address->LinkPath);
    if (!WaitForTurn(socket)) return;
    if (!FileExists(path)) return SendIgnoringErrors(socket, "Picture Not Found!");
    Deliver(socket, *address, path);
    DoEvents();
}

}  // namespace pixmora
