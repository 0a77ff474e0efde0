// AlbumMedia.h: the media page's slide show: one scaled picture, the controls, and the way on to the next.
#include "pages/AlbumMedia.h"
#include "pages/Templates.h"
#include "store/MediaTypes.h"

namespace pixmora {

namespace {

constexpr PlayLook look = {
    .Back = R"(<img src="ShowGraphic?previous.gif" border=0 alt="Back">)",
    .Forward = R"(<img src="ShowGraphic?next.gif" border=0 alt="Forward">)",
    .Paused = R"(&nbsp;<img src="ShowGraphic?pausehigh.gif" alt="Pause">)",
};

std::string CurrentFile(const AlbumMedia &media) {
    const std::string &file = media.Files[static_cast<std::size_t>(media.Show.Index)];
    std::string list = Concat(PicTableOpening, "<tr>", HoverCell("pic"), DetailsLink(media, file));
    if (IsPictureName(file)) {
        Append(list, R"(<img src="ShowPicture?)", media.Album->ID, "&slideshow&", MediaPath(media, file),
               R"(" border=0)");
    } else {
        list += R"(<img src="ShowGraphic?movie.gif" border=0)";
    }
    // Counted from the picture's arrival, so that a slow conversion doesn't cut its showing time short.
    if (media.Show.IsPlaying())
        Append(list, R"( onload="self.setTimeout('NextPic()', )", media.Show.Seconds, R"(000);")");
    Append(list, "><br>", FileDisplayName(file), "</a>", "</font></td></tr>", CrLf, CrLf, "</table>");
    return list;
}

/// "1&slideshow&1&play&3&5&": the arguments in front of the directory's.
std::string ShowArguments(const AlbumMedia &media, std::string_view word, std::int32_t index, std::int32_t seconds) {
    return Concat(media.Album->ID, "&", media.ViewWord, "&", media.Page, "&", word, "&", index, "&", seconds, "&");
}

std::string Controls(const AlbumMedia &media) {
    const SlideShow &show = media.Show;
    const auto openLink = [&](std::string_view word, std::int32_t index) {
        return Concat(R"(<a href="ShowAlbumMedia?)", ShowArguments(media, word, index, show.Seconds),
                      media.Directory.LinkArguments, R"(">)");
    };
    const std::string next = Concat("ShowAlbumMedia?", ShowArguments(media, "play", show.Next(), show.Seconds),
                                    EscapeForScript(media.Directory.LinkArguments));
    return PlayControls(show, look, openLink, NextPicScript(next, ""));
}

}  // namespace

void FillSlideShow(const AlbumMedia &media, PicParts &parts) {
    const SlideShow &show = media.Show;
    parts.List = CurrentFile(media);
    parts.Page = FilePosition(show);
    parts.NavLeft = Controls(media);
    parts.NavRight = DisplayTimes(show, [&](int seconds) {
        return Concat(R"(<a target="_top" href="ShowAlbum?)", ShowArguments(media, show.Word, show.Index, seconds),
                      media.Directory.LinkArguments, R"(">)");
    });
}

}  // namespace pixmora
