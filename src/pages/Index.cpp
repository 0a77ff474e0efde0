// clsWebServerCommands.h: the front page.
#include <vector>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "pages/AlbumAddress.h"
#include "pages/Templates.h"
#include "pages/Visibility.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/MediaTypes.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

constexpr std::string_view rowsEnd = "<tr><td colspan=3><br><br></td></tr>\r\n\r\n";

/// What a row shows at its right: a picture, and below it the way to the picture's directory. Either may be empty.
struct Featured {
    std::string Picture;
    std::string DirectoryLink;
};

void AddRunTimes(std::vector<Filling> &fillings) {
    constexpr Tick dayAndOne = 86400001;
    const std::int64_t elapsed = gOnlineTimer->Elapsed();
    const std::int64_t whole = elapsed / 1000;
    const auto seconds = static_cast<double>(whole);
    fillings.push_back({"{SESSION_RUNTIME}", FormatElapsed(seconds, elapsed >= dayAndOne, false)});
    fillings.push_back({"{TOTAL_RUNTIME}", FormatElapsed(gRunningTotal * 60 + seconds, true, false)});
}

void AddFigures(std::vector<Filling> &fillings) {
    fillings.push_back({"{SESSION_CONNECTIONS}", std::to_string(gConnectionsSession)});
    fillings.push_back({"{TOTAL_CONNECTIONS}", NumberText(gConnectionsSession + gConnectionsTotal)});
    fillings.push_back({"{SESSION_THUMBS}", std::to_string(gThumbsSession)});
    fillings.push_back({"{TOTAL_THUMBS}", NumberText(gThumbsSession + gThumbsTotal)});
    fillings.push_back({"{SESSION_DOWNLOADS}", std::to_string(gDownloadsSession)});
    fillings.push_back({"{TOTAL_DOWNLOADS}", NumberText(gDownloadsSession + gDownloadsTotal)});
    fillings.push_back({"{SESSION_BANDWIDTH}", FormatByteSize(gBandwidthSession * 1024)});
    fillings.push_back({"{TOTAL_BANDWIDTH}", FormatByteSize((gBandwidthTotal + gBandwidthSession) * 1024)});
}

std::vector<Filling> SiteFillings() {
    std::vector<Filling> fillings = {
        {"{STYLE_SHEET}", gStyleSheet},
        {"{SERVER_TITLE}", gServerTitle},
        {"{SERVER_TITLE_SLASH}", EscapeForScript(gServerTitle)},
        {"{AUTHOR}", gAuthor},
        {"{AUTHOR_SLASH}", EscapeForScript(gAuthor)},
        {"{WELCOME}", gWelcomeText},
        {"{FOOTER}", MakeFooter()},
        {"{SERVER_URL}", gWebsiteAddress},
        {"{ACTIVE}", std::to_string(gVisitorsActive)},
    };
    AddRunTimes(fillings);
    AddFigures(fillings);
    return fillings;
}

/// To the folder of a file. @param path below the album's root: its separators become those of the link's arguments
std::string DirectoryLink(std::string_view album, std::string_view path) {
    return Concat(R"(<a href="ShowAlbum?)", album, "&thumbs&1", Replace(EncodeLinkPart(ParentPath(path)), "\\", "&"),
                  R"("><img src="ShowGraphic?directory.gif" border=0 alt="Directory"></a>)");
}

/// FilePath LIKE "*.jpg" OR FilePath LIKE "*.gif" ...
std::string IsPictureCriteria() {
    return Concat(R"(FilePath LIKE ")", Replace(std::string(PicturePatterns()), ";", R"(" OR FilePath LIKE ")"),
                  R"(")");
}

Featured MostPopular() {
    const auto files = gDatabase->OpenRecordset(Concat("SELECT TOP 1 * FROM PopularFiles WHERE ", IsPictureCriteria(),
                                                       " ORDER BY FileCount DESC, FilePath DESC"),
                                                RecordsetType::Snapshot);
    if (files->Eof()) return {};
    const std::string album = GetSetting("AlbumIDs", AsText(files->Value("AlbumName")));
    const std::string path = Replace(AsText(files->Value("FilePath")), "%39", "'");
    const std::string linkPath = LinkPath(path);
    return {Concat(R"(<a href="ShowAlbum?ShowDetails&)", album, "&nocount&", linkPath, R"(">)",
                   R"(<img src="ShowPicture?)", album, "&thumb&", linkPath, R"(" border=0></a>)"),
            DirectoryLink(album, path)};
}

void AppendPopularRow(std::string &rows) {
    const Featured featured = MostPopular();
    Append(rows,
           R"(<tr style="cursor: hand;" onclick="location.href='ShowAlbum?ShowPopular&thumbs';"><td valign="top">)",
           CrLf, R"(<a href="ShowPopular?thumbs">)", R"(<img src="ShowGraphic?popular.gif" border=0></a></td>)",
           R"(<td valign="top" class="tdAlbumList"><a href="ShowAlbum?ShowPopular&thumbs">)"
           R"(<font class="lblAlbumName">Most Popular</font>)",
           "</a><br>", R"(<font class="lblPictureList">See the top 5 directories and top )",
           MultiplyLong(gFilesPerRow, 5), " pictures and movies!<br><br><b>Click to view!</b></font>",
           R"(</td><td><table width="100%" border=0 cellpadding=5><tr><td class="tdPictureCell" valign="top" )"
           R"(align="center" id="pop" onMouseOver="mMouseOver('pop');" onMouseOut="mMouseOut('pop');">)",
           featured.Picture, "</td></tr></table></td></tr>");
    // Deliberate: this row's last cell is not closed.
    if (!featured.DirectoryLink.empty())
        Append(rows, R"(<tr><td colspan=2>&nbsp;</td><td align="center">)", featured.DirectoryLink, "</tr>");
    rows += rowsEnd;
}

Featured RandomFile(const clsAlbum &album) {
    const auto media = gDatabase->OpenRecordset(MediaListName(album.ID), RecordsetType::Table);
    media->MoveAlong(Rnd());
    if (media->Eof()) return {};
    const std::string path = AsText(media->Value("FilePath"));
    const std::string linkPath = LinkPath(path);
    return {Concat(R"(<a href="ShowAlbum?ShowDetails&)", album.ID, "&count&", linkPath, R"(">)",
                   R"(<img src="ShowPicture?)", album.ID, "&thumb&", linkPath, R"(" border=0 width=")", gThumbSize,
                   R"("></a>)"),
            DirectoryLink(std::to_string(album.ID), path)};
}

std::string AlbumIcon(const clsAlbum &album) {
    return Concat(R"(<a href="ShowAlbum?)", album.ID, R"(&thumbs&1">)", R"(<img src="ShowAlbumIcon?)", album.ID,
                  R"(" border=0 width=")", gThumbSize, R"("></a>)");
}

/// @param featured of the row above
void ChooseFeatured(const clsAlbum &album, Featured &featured) {
    if (album.FeaturedImage == 1) {
        featured = RandomFile(album);
    } else if (album.FeaturedImage == 2) {
        featured = {AlbumIcon(album), ""};
    } else {
        featured.Picture.clear();  // Deliberate: the directory link of the row above stays and is shown again.
    }
}

std::string DaysText(int days) {
    if (days == 0) return "Today";
    if (days == 1) return "1 day ago";
    return Concat(days, " days ago");
}

/// "1,204 (3.10 MB)"
std::string CountAndSize(std::int32_t count, double bytes) {
    return count == 0 ? FormatGrouped(count) : Concat(FormatGrouped(count), " (", FormatByteSize(bytes), ")");
}

void AppendFact(std::string &rows, std::string_view cell, std::string_view value) {
    Append(rows, "<tr>", cell, R"(</td><td class="lblPictureList">)", value, "</td></tr>");
}

void AppendFacts(std::string &rows, const clsAlbum &album) {
    const int days = DateDiffDays(ParseDate(album.DateUpdated), Now());
    rows += R"(<table border=0 cellpadding="1" cellspacing="0">)";
    AppendFact(rows, R"(<td class="lblPictureList" width="70">Created:)", album.DateCreated);
    AppendFact(rows, R"(<td class="lblPictureList">Updated:)", DaysText(days));
    AppendFact(rows, R"(<td class="lblPictureList">Pictures:)", CountAndSize(album.PictureCount, album.PictureSize));
    AppendFact(rows, R"(<td class="lblPictureList">Movies:)", CountAndSize(album.MovieCount, album.MovieSize));
    rows += "</table>";
}

void AppendAlbumRow(std::string &rows, const clsAlbum &album, const Featured &featured) {
    Append(rows, R"(<tr style="cursor: hand;" onclick="location.href='ShowAlbum?)", album.ID,
           R"(&thumbs&1';"><td valign="top">)", CrLf, R"(<a href="ShowAlbum?)", album.ID,
           R"(&thumbs&1"><img src="ShowGraphic?album32.gif" border=0></a>)", "</td>", CrLf,
           R"(<td valign="top" class="tdAlbumList"><a href="ShowAlbum?)", album.ID,
           R"(&thumbs&1"><font class="lblAlbumName">)", album.Name, "</font>", "</a><br>",
           R"(<font class="lblPictureList">)");
    if (!album.Description.empty()) Append(rows, album.Description, "<br><br>");
    AppendFacts(rows, album);
    Append(rows, "<br><b>Click to view!</b></font>",
           R"(</td><td><table width="100%" border=0 cellpadding=5><tr><td class="tdPictureCell" valign="top" )"
           R"(align="center" id="sharepic_)",
           album.ID, R"(" onMouseOver="mMouseOver('sharepic_)", album.ID, R"(');" onMouseOut="mMouseOut('sharepic_)",
           album.ID, R"(');">)", featured.Picture, "</td></tr></table></td></tr>");
    if (!featured.DirectoryLink.empty())
        Append(rows, R"(<tr><td colspan=2>&nbsp;</td><td align="center">)", featured.DirectoryLink, "</td></tr>");
    rows += rowsEnd;
}

/// @return whether the visitor may see any album
bool AppendAlbumRows(std::string &rows, std::string_view user) {
    bool isAnyShown = false;
    Featured featured;
    const AlbumListing listing(user, "thumbs");
    for (const AlbumPointer &album : gAlbums) {
        if (!listing.IsListed(*album)) continue;
        isAnyShown = true;
        ChooseFeatured(*album, featured);
        AppendAlbumRow(rows, *album, featured);
    }
    return isAnyShown;
}

void AppendNoAlbumsRow(std::string &rows) {
    Append(rows, R"(<tr><td colspan=3 class="lblPictureList">)",
           R"(There are no public albums. Please <a href="ShowAlbum?ShowLogin&1&thumbs&1">click here</a> to login.)",
           "</font></td></tr>", rowsEnd);
}

void AppendWebcamRow(std::string &rows) {
    const Tick age = TicksBetween(gLastCaptureTick, GetTickCount());
    Append(rows, R"(<tr><td valign="top">)", CrLf, R"(<img src="ShowGraphic?webcam.gif">)", "</td>",
           R"(<td valign="top"><a href="ShowGraphic?capture.jpg"><font class="lblAlbumName">My Webcam</font></a><br>)",
           R"(<font class="lblPictureList">Hit Refresh for Latest Image<br><br>)", "Picture Taken ",
           FormatFixed(age / 1000.0, 0), " secs ago.</font>",
           R"(</td><td class="tdPictureCell" valign="top" align="center">)", R"(<img src="ShowGraphic?capture.jpg">)",
           "</td></tr>", rowsEnd);
}

std::string ShareList(std::string_view user) {
    constexpr std::size_t usualRow = 1500;  // bytes
    const ReadScope reads(*gDatabase);      // each album asks for its featured picture
    std::string rows;
    rows.reserve(usualRow * (gAlbums.size() + 2));
    AppendPopularRow(rows);
    if (!AppendAlbumRows(rows, user)) AppendNoAlbumsRow(rows);
    if (gSystray->tmrWebCam.Enabled()) AppendWebcamRow(rows);
    return rows;
}

}  // namespace

void clsWebServerCommands::genIndex(const Connection &socket) const {
    std::vector<Filling> fillings = SiteFillings();
    fillings.push_back({"{SHARE_LIST}", ShareList(socket->Tag)});
    fillings.push_back({"{VERSION}", Concat(App::Major, ".", App::Minor)});
    const std::size_t size = SendPage(socket, tplIndex, fillings);
    DoEvents();
    // Deliberate: this page alone books the fraction of a kilobyte.
    const double kilobytes = static_cast<double>(size) / 1024;
    gBandwidthSession += kilobytes;
    RecordStat(Stat::Bandwidth, NoAlbum, RoundToLong(kilobytes));
}

}  // namespace pixmora
