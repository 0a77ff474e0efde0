// clsWebServerCommands.h: the frameset behind every album address, where a visit to a directory is counted.
#include <algorithm>
#include <array>
#include <optional>

#include "core/site/Globals.h"
#include "core/site/Visitors.h"
#include "pages/AlbumAddress.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "store/Popularity.h"
#include "store/Protection.h"

namespace pixmora {

namespace {

/// The page in the big frame, and its arguments with the "?".
struct MediaFrame {
    std::string Page;
    std::string Args;
};

bool IsPageWord(std::string_view word) {
    constexpr std::array<std::string_view, 5> words = {"ShowLogin", "ShowPopular", "ShowDetails", "ShowStats",
                                                       "ShowHelp"};
    return std::ranges::find(words, word) != words.end();
}

MediaFrame ChooseMediaFrame(const std::string &word, const std::string &argText) {
    if (word == "ShowStats" || word == "ShowHelp") return {word, ""};
    if (IsPageWord(word)) return {word, "?" + argText.substr(argText.find('&') + 1)};
    return {"ShowAlbumMedia", "?" + argText};
}

struct Visit {
    AlbumPointer Album;
    AlbumDirectory Directory;
};

Visit ReadVisit(const Arguments &args) {
    return {AlbumArgument(args, 0), ReadAlbumDirectory(args)};
}

/// Once for each visitor, album and directory until the sweep forgets it; not for a directory that is closed to this
/// visitor.
void CountVisit(const Connection &socket, const Visit &visit) {
    const std::string &directory = visit.Directory.Path;
    const clsAlbum &album = *visit.Album;
    if (!visit.Directory.IsUsable) return;
    if (IsProtectedDir(album, visit.Directory.LastName, directory) &&
        !CanViewDir(socket->Tag, album, directory).IsGiven)
        return;
    if (AddDownloadCookie(socket->RemoteHostIP, album.ID, directory)) CountDirVisit(album.Name, directory);
}

}  // namespace

void clsWebServerCommands::genShowAlbum(const Connection &socket, const Arguments &args) const {
    const std::string word = args.empty() ? "" : args[0];
    if (!IsPageWord(word)) {
        const std::optional<Visit> visit = TryRead(args, ReadVisit);
        if (!visit) return SendIgnoringErrors(socket, "Bad Request!");
        CountVisit(socket, *visit);
    }
    std::string argText;
    for (const std::string &arg : args) Append(argText, EncodeLinkPart(DecodeLinkTokens(arg)), "&");
    const MediaFrame frame = ChooseMediaFrame(word, argText);
    SendPage(socket, tplShowAlbum,
             {{"{SERVER_TITLE}", gServerTitle},
              {"{MEDIA_FRAME}", frame.Page},
              {"{MEDIA_ARGS}", frame.Args},
              {"{DIR_ARGS}", argText}});
}

}  // namespace pixmora
