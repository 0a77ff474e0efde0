// What the media page and the most popular page have in common.
#include "pages/MediaViews.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/site/Globals.h"
#include "pages/AlbumAddress.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::array<int, 4> displayTimes = {2, 5, 10, 15};
constexpr std::int32_t defaultDisplayTime = 5;

std::string ViewItem(bool isCurrent, std::string_view opening, std::string_view graphic, std::string_view name) {
    if (isCurrent)
        return Concat(R"(<img src="ShowGraphic?)", graphic, R"(on.gif" alt=")", name, R"(" align="absmiddle">)");
    return Concat(opening, R"(<img src="ShowGraphic?)", graphic, R"(.gif" border=0 alt=")", name,
                  R"(" align="absmiddle"></a>)");
}

bool IsRowStart(std::int32_t cell) {
    if (gFilesPerRow == 0) throw RunTimeError(ErrorNumber::DivisionByZero);
    return cell % gFilesPerRow == 0;
}

}  // namespace

View ReadView(std::string_view word) {
    if (word == "list") return View::List;
    if (word == "slideshow") return View::SlideShow;
    return View::Thumbs;
}

void AddPicParts(std::vector<Filling> &fillings, PicParts parts) {
    fillings.push_back({"{PIC_LIST}", std::move(parts.List)});
    fillings.push_back({"{PIC_PAGE}", std::move(parts.Page)});
    fillings.push_back({"{PIC_NAV_LEFT}", std::move(parts.NavLeft)});
    fillings.push_back({"{PIC_NAV_RIGHT}", std::move(parts.NavRight)});
    fillings.push_back({"{PIC_VIEW}", std::move(parts.View)});
}

std::string ViewRow(View current, const ViewLinks &links) {
    return Concat(R"(<font class="lblPictureView">View As:</font>&nbsp;)",
                  ViewItem(current == View::Thumbs, links.Thumbs, "thumbs", "Thumbnails"), "&nbsp;",
                  ViewItem(current == View::List, links.List, "list", "List"), "&nbsp;",
                  ViewItem(current == View::SlideShow, links.SlideShow, "slideshow", "Slideshow"));
}

void AppendGrid(std::string &list, std::int32_t count, const std::function<void(std::int32_t)> &appendCell) {
    for (std::int32_t cell = 0; cell < count; ++cell) {
        if (IsRowStart(cell)) Append(list, "<tr>", CrLf);
        appendCell(cell);
        if (IsRowStart(cell + 1)) Append(list, "</tr>", CrLf);
    }
}

void CloseLastRow(std::string &list, std::int32_t count) {
    if (!IsRowStart(count)) Append(list, "</tr>", CrLf);
}

std::string HoverCell(std::string_view id) {
    return Concat(R"(<td align="center" valign="top" class="tdPictureCell" id=")", id, R"(" onMouseOver="mMouseOver(')",
                  id, R"(');" onMouseOut="mMouseOut(')", id, R"(');"><font class="lblPictureList">)");
}

std::string ThumbCellOpening(std::int32_t index) {
    return Concat(R"(<td valign="top"><table width="100%" border=0 cellpadding=5><tr>)",
                  HoverCell(Concat("pic_", index)));
}

void SlideShow::SetFileCount(std::int32_t count) {
    FileCount = count;
    if (Index < 0 || Index >= count) Index = 0;
}

std::int32_t SlideShow::Next() const {
    return Index + 1 >= FileCount ? 0 : Index + 1;
}

std::int32_t SlideShow::Previous() const {
    return Index == 0 ? FileCount - 1 : Index - 1;
}

SlideShow ReadSlideShow(const Arguments &args, std::size_t first) {
    SlideShow show;
    show.Word = Argument(args, first);
    show.Index = CLng(Argument(args, first + 1));
    show.Seconds = CLng(Argument(args, first + 2));
    if (show.Seconds < 1) show.Seconds = defaultDisplayTime;
    return show;
}

std::string FilePosition(const SlideShow &show) {
    return Concat(R"(<font class="lblPictureNav">File )", show.Index + 1, " of ", show.FileCount, "</font><br>");
}

std::string PlayControls(const SlideShow &show, const PlayLook &look,
                         const std::function<std::string(std::string_view, std::int32_t)> &openLink,
                         std::string_view script) {
    std::string controls = Concat(openLink(show.Word, show.Previous()), look.Back, "</a>&nbsp;");
    if (show.IsPlaying()) {
        Append(controls, R"(<img src="ShowGraphic?playhigh.gif" alt="Play">)", openLink("pause", show.Index),
               R"(<img src="ShowGraphic?pause.gif" border=0 alt="Pause"></a>)", script);
    } else {
        Append(controls, openLink("play", show.Index), R"(<img src="ShowGraphic?play.gif" border=0 alt="Play"></a>)",
               look.Paused);
    }
    Append(controls, openLink(show.Word, show.Next()), look.Forward, "</a>");
    return controls;
}

std::string NextPicScript(std::string_view address, std::string_view start) {
    std::string script = Concat(R"(<script language="javascript">)", CrLf);
    if (!start.empty()) Append(script, start, CrLf);
    Append(script, "function NextPic() {", CrLf, "location.href='", address, "';", CrLf, "}", CrLf, "</script>", CrLf);
    return script;
}

std::string DisplayTimes(const SlideShow &show, const std::function<std::string(int)> &openLink) {
    if (std::ranges::find(displayTimes, show.Seconds) == displayTimes.end()) return {};
    std::string row = R"(<font class="lblPictureNav">Display Time:</font>&nbsp;)";
    for (const int seconds : displayTimes) {
        if (seconds == show.Seconds) {
            Append(row, R"(<img src="ShowGraphic?time)", seconds, R"(on.gif" alt=")", seconds, R"( secs">)");
        } else {
            Append(row, openLink(seconds), R"(<img src="ShowGraphic?time)", seconds, R"(.gif" border=0 alt=")", seconds,
                   R"( secs"></a>)");
        }
    }
    return row;
}

}  // namespace pixmora
