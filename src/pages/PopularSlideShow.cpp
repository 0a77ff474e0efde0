// PopularMedia.h: the most popular page's slide show.
#include "pages/AlbumAddress.h"
#include "pages/PopularMedia.h"
#include "platform/files/Files.h"
#include "platform/runtime/Text.h"
#include "store/MediaTypes.h"

namespace pixmora {

namespace {

constexpr PlayLook look = {
    .Back = R"(<img src="ShowGraphic?back.gif" alt="Back" border=0>)",
    .Forward = R"(<img src="ShowGraphic?forward.gif" alt="Forward" border=0>)",
    .Paused = R"(&nbsp;<img src="ShowGraphic?pausehigh.gif" alt="Paused">)",
};

void AppendFile(std::string &list, const PopularEntry &file) {
    list += PopularDetailsLink(file);
    if (IsPictureName(file.Path)) {
        Append(list, R"(<img src="ShowPicture?)", file.AlbumText(), "&slideshow&", LinkPath(file.Path),
               R"(" border=0><br>)");
    } else {
        list += R"(<img src="ShowGraphic?movie.gif" border=0><br>)";
    }
    Append(list, FileDisplayName(LastPathPart(file.Path)), "</a>");
}

/// The second row: the clicks, and the way to the file's directory.
void AppendOrigin(std::string &list, const PopularEntry &file) {
    const std::string directory = ParentPath(file.Path);
    Append(list, R"(<tr><td align="center"><font class="lblPictureList">)", CountText(file.Count, "Click"), "<br>",
           file.AlbumName, ", ", Replace(directory, "\\", "/"), R"(&nbsp;<a target="_top" href="ShowAlbum?)",
           DirectoryArguments(file, directory),
           R"("><img src="ShowGraphic?directory.gif" border=0 alt="Directory"></a>)", "</font></td></tr>", CrLf, CrLf);
}

std::string CurrentFile(const PopularEntry &file) {
    std::string list = Concat(PicTableOpening, "<tr>", HoverCell("pic"));
    if (!file.IsEmpty()) AppendFile(list, file);
    Append(list, "</font></td></tr>", CrLf, CrLf);
    if (!file.IsEmpty()) AppendOrigin(list, file);
    return list + "</table>";
}

/// "slideshow&play&3&": the arguments in front of the display time.
std::string ShowArguments(std::string_view word, std::int32_t index) {
    return Concat("slideshow&", word, "&", index, "&");
}

std::string Controls(const SlideShow &show) {
    const auto openLink = [&](std::string_view word, std::int32_t index) {
        return Concat(R"(<a href="ShowPopular?)", ShowArguments(word, index), show.Seconds, R"(">)");
    };
    const std::string next = Concat("ShowPopular?", ShowArguments("play", show.Next()), show.Seconds);
    // Here the page's own script starts the timer, whether or not the picture has come.
    const std::string start = Concat("self.setTimeout('NextPic()', ", show.Seconds, "000);");
    return PlayControls(show, look, openLink, NextPicScript(next, start));
}

}  // namespace

void FillPopularSlideShow(const PopularEntries &files, const SlideShow &show, PicParts &parts) {
    parts.List = CurrentFile(files[static_cast<std::size_t>(show.Index)]);
    parts.Page = FilePosition(show);
    parts.NavLeft = Controls(show);
    const std::string times = DisplayTimes(show, [&](int seconds) {
        return Concat(R"(<a href="ShowPopular?)", ShowArguments(show.Word, show.Index), seconds, R"(">)");
    });
    if (!times.empty()) parts.NavRight = "<br>" + times;
}

}  // namespace pixmora
