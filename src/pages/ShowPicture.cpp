// clsWebServerCommands.h: picture delivery: the stored file, or a JPEG of it made for this answer.
#include <optional>
#include <utility>

#include "core/site/BrowserCopy.h"
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
    socket->IsAwaitingTurn = true;
    while (socket->State() == SocketState::Connected && IsWithin(gLastConversionTick, spacing))
        WaitUntilTick(TickAfter(TickAfter(gLastConversionTick, spacing), 1));
    socket->IsAwaitingTurn = false;
    if (socket->State() != SocketState::Connected) return false;
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

/// @return the length of the file; 0 for one that can't be read
std::size_t SendStoredFile(const Connection &socket, const std::string &path, const BrowserCopy &copy) {
    try {
        return SendFileIgnoringErrors(socket, copy.Head(PictureContentType(path)), BinaryFile::OpenForRead(path));
    } catch (const RunTimeError &) {
        SendIgnoringErrors(socket, WriteResponseHead(PictureContentType(path), true));
        return 0;
    }
}

/// @return the length of the conversion, 0 for a picture that can't be read
std::size_t SendConversion(const Connection &socket, const std::string &bytes, const BrowserCopy &copy) {
    // What can't be read now may be readable soon.
    const std::string head = bytes.empty() ? WriteResponseHead("image/jpeg", true) : copy.Head("image/jpeg");
    SendIgnoringErrors(socket, head + bytes);
    return bytes.size();
}

/// @param path of a file that is there
void Deliver(const Connection &socket, const PictureAddress &address, const std::string &path,
             const BrowserCopy &copy) {
    CountPicture(address.Mode, *address.Album);
    const std::optional<Conversion> conversion = ConversionOf(address.Mode);
    std::optional<std::string> bytes;
    if (conversion) {
        bytes = Convert(path, *conversion);
        if (!bytes)
            return SendIgnoringErrors(socket, WriteResponseHead("text/html", true) + "Picture Conversion Error");
    }
    gLastConversionTick = GetTickCount();
    DoEvents();
    const std::size_t length = bytes ? SendConversion(socket, *bytes, copy) : SendStoredFile(socket, path, copy);
    BookKilobytes(address.Album->Name, length);
}

/// What decides a conversion's bytes beside its picture.
std::string FormOf(const std::optional<Conversion> &conversion) {
    return conversion ? Concat(conversion->WidthLimit, ",", conversion->Flags) : "";
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
    const std::string path = VisitorFilePath(address->Album->Directory, address->LinkPath);
    const BrowserCopy copy(path, FormOf(ConversionOf(address->Mode)));
    if (copy.AnswerIfHeld(socket)) return;
    if (gHeldPictures) {
        socket->SetAnswering(true);
        socket->IsAwaitingTurn = true;
        gHeldPictures->push_back([socket, args] { AnswerHeld(socket, args); });
        return;
    }
    if (!WaitForTurn(socket)) return;
    if (!FileExists(path)) return SendIgnoringErrors(socket, "Picture Not Found!");
    Deliver(socket, *address, path, copy);
    DoEvents();
}

}  // namespace pixmora
