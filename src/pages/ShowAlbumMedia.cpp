// clsWebServerCommands.h: the media page: one directory as thumbnails, as a list, or one at a time.
#include <algorithm>
#include <optional>

#include "core/site/Globals.h"
#include "pages/AlbumMedia.h"
#include "pages/Listings.h"
#include "pages/Templates.h"
#include "pages/Visibility.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/MediaTypes.h"
#include "store/Protection.h"

namespace pixmora {

namespace {

AlbumMedia ReadMediaAddress(const Arguments &args) {
    AlbumMedia media;
    media.Album = AlbumArgument(args, 0);
    media.ViewWord = Argument(args, 1);
    media.Shown = ReadView(media.ViewWord);
    media.Page = CLng(Argument(args, 2));
    media.Directory = ReadAlbumDirectory(args);
    return media;
}

std::string ViewItems(const AlbumMedia &media) {
    const std::string start = Concat(R"(<a target="_top" href="ShowAlbum?)", media.Album->ID);
    const std::string end = Concat(media.Directory.LinkArguments, R"(">)");
    return ViewRow(media.Shown, {.Thumbs = Concat(start, "&thumbs&", media.Page, "&", end),
                                 .List = Concat(start, "&list&", media.Page, "&", end),
                                 .SlideShow = Concat(start, "&slideshow&", media.Page, "&play&0&5&", end)});
}

std::string FileSizeText(const AlbumMedia &media, std::string_view file) {
    return FormatFileSize(Concat(media.Album->Directory, "\\", media.Directory.RelativePath, file));
}

void AppendThumbCell(std::string &list, const AlbumMedia &media, std::int32_t index) {
    const std::string &file = media.Files[static_cast<std::size_t>(index)];
    Append(list, ThumbCellOpening(index), DetailsLink(media, file));
    if (IsPictureName(file)) {
        Append(list, R"(<img src="ShowPicture?)", media.Album->ID, "&thumb&", MediaPath(media, file),
               R"(" border=0 width=")", gThumbSize, R"("><br>)", FileDisplayName(file), "</a>");
    } else {
        Append(list, R"(<img src="ShowGraphic?movie.gif" border=0><br><br>)", FileDisplayName(file), "</a><br><br>",
               "(", FileSizeText(media, file), ")");
    }
    list += ThumbCellClosing;
}

void AppendListRow(std::string &list, const AlbumMedia &media, std::int32_t index) {
    const std::string &file = media.Files[static_cast<std::size_t>(index)];
    const std::string_view icon = IsPictureName(file) ? "picture16" : "movie16";
    Append(list, "<tr>", R"(<td class="tdPictureCell">)", R"(<img src="ShowGraphic?)", icon,
           R"(.gif" align="absbottom">&nbsp;)", DetailsLink(media, file), R"(<font class="lblPictureList">)",
           FileDisplayName(file), "</font>", "</a></td>", "<td>", R"(<font class="lblPictureList">)",
           FileSizeText(media, file), "</font>", "</td></tr>", CrLf, CrLf);
}

/// The indexes of the files on a page, first and last; the last is below the first on a page behind the files.
/// @throws RunTimeError SubscriptOutOfRange for a page before the first, Overflow
struct PageRange {
    explicit PageRange(const AlbumMedia &media) : First(0), Last(media.LastIndex()) {
        if (gFilesPerPage == 0) return;
        First = MultiplyLong(AddLong(media.Page, -1), gFilesPerPage);
        if (First < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        Last = std::min(Last, AddLong(First, AddLong(gFilesPerPage, -1)));
    }
    std::int32_t First;
    std::int32_t Last;
};

std::string FileTable(const AlbumMedia &media) {
    const PageRange range(media);
    const std::int32_t count = std::max(0, range.Last - range.First + 1);
    std::string list(PicTableOpening);
    if (media.Shown == View::List) {
        for (std::int32_t i = 0; i < count; ++i) AppendListRow(list, media, range.First + i);
    } else {
        AppendGrid(list, count, [&](std::int32_t cell) { AppendThumbCell(list, media, range.First + cell); });
    }
    // Deliberate: also behind a list, whose rows are all closed.
    CloseLastRow(list, count);
    return list + "</table>";
}

std::string PageLink(const AlbumMedia &media, std::int64_t page) {
    return Concat(R"(<a href="ShowAlbumMedia?)", media.Album->ID, "&", media.ViewWord, "&", page, "&",
                  media.Directory.LinkArguments, R"(">)");
}

std::string FirstAndPrevious(const AlbumMedia &media) {
    if (media.Page == 1)
        return R"(<img src="ShowGraphic?firstdisabled.gif" alt="First">&nbsp;)"
               R"(<img src="ShowGraphic?previousdisabled.gif" alt="Previous">&nbsp;)";
    return Concat(PageLink(media, 1), R"(<img src="ShowGraphic?first.gif" alt="First" border=0></a>&nbsp;)",
                  PageLink(media, AddLong(media.Page, -1)),
                  R"(<img src="ShowGraphic?previous.gif" alt="Previous" border=0></a>&nbsp;)");
}

std::string NextAndLast(const AlbumMedia &media) {
    // Deliberate: counted from the last index. A file alone on the last page is reached by its address only.
    const bool hasNext = gFilesPerPage != 0 && MultiplyLong(media.Page, gFilesPerPage) < media.LastIndex();
    if (!hasNext)
        return R"(<img src="ShowGraphic?nextdisabled.gif" alt="Next">&nbsp;)"
               R"(<img src="ShowGraphic?lastdisabled.gif" alt="Last">&nbsp;)";
    const double lastPage = RoundUpTo(static_cast<double>(media.LastIndex()) / gFilesPerPage, 0);
    return Concat(PageLink(media, AddLong(media.Page, 1)),
                  R"(<img src="ShowGraphic?next.gif" alt="Next" border=0></a>&nbsp;)",
                  PageLink(media, static_cast<std::int64_t>(lastPage)),
                  R"(<img src="ShowGraphic?last.gif" alt="Last" border=0></a>&nbsp;)");
}

void FillPage(const AlbumMedia &media, PicParts &parts) {
    const std::int32_t pages = gFilesPerPage == 0 ? 1 : media.LastIndex() / gFilesPerPage + 1;
    parts.List = FileTable(media);
    parts.Page = Concat(R"(<font class="lblPictureNav">Page )", media.Page, " of ", pages, "</font><br>");
    parts.NavLeft = FirstAndPrevious(media);
    parts.NavRight = NextAndLast(media);
}

void AppendSubDirectoryRow(std::string &list, const AlbumMedia &media, const SubDirectory &directory) {
    Append(list, R"(<tr><td height="20" class="lblFolder" nowrap>)", R"(<a href="ShowAlbum?)", media.Album->ID, "&",
           media.ViewWord, "&1&", media.Shown == View::SlideShow ? "play&0&5&" : "", media.Directory.LinkArguments,
           EncodeLinkPart(directory.Name), R"(" target="_top">)",
           R"(<img src="ShowGraphic?folderclosed16.gif" align="absmiddle" border=0> )", directory.Name, "</a>",
           directory.IsNew ? R"(&nbsp;<img src="ShowGraphic?new.gif">)" : "", "</td>", "</tr>", CrLf, CrLf);
}

/// In place of files: the way further down, or the word that there is nothing.
std::string NoFiles(const AlbumMedia &media, std::string_view user) {
    const ReadScope reads(*gDatabase);  // each directory asks for its protection and its place
    std::vector<SubDirectory> directories;
    if (media.Album->SubDirectories != 0 && media.Directory.IsUsable)
        directories = ListSubDirs(*media.Album, Concat("\\", media.Directory.RelativePath));
    if (directories.empty()) return R"(<font class="lblPictureNav">No files here.</font>)";

    std::string list =
        R"(<font class="lblPictureNav">No files here. Choose a subdirectory.</font><br><br><table border=0>)";
    for (const SubDirectory &directory : directories) {
        // Deliberate: no separator between the two, so that below the root only the parent's protection is found.
        const std::string path = media.Directory.Path + directory.Name;
        if (IsListed(user, *media.Album, directory.Name, path, "")) AppendSubDirectoryRow(list, media, directory);
    }
    return list + "</table>";
}

std::vector<std::string> FilesOf(const AlbumMedia &media) {
    if (!media.Directory.IsUsable) return {};
    return ListMediaFiles(*media.Album, Concat(media.Album->Directory, "\\", media.Directory.RelativePath));
}

PicParts MediaParts(const AlbumMedia &media, std::string_view user) {
    PicParts parts;
    parts.View = ViewItems(media);
    if (!media.HasFiles()) {
        parts.List = NoFiles(media, user);
    } else if (media.Shown == View::SlideShow) {
        FillSlideShow(media, parts);
    } else {
        FillPage(media, parts);
    }
    return parts;
}

}  // namespace

std::string MediaPath(const AlbumMedia &media, std::string_view file) {
    return Concat("/", LinkPath(media.Directory.RelativePath), EncodeLinkPart(file));
}

std::string DetailsLink(const AlbumMedia &media, std::string_view file) {
    return Concat(R"(<a href="ShowDetails?)", media.Album->ID, "&", media.CountWord, "&", MediaPath(media, file),
                  R"(">)");
}

void clsWebServerCommands::genShowAlbumMedia(const Connection &socket, const Arguments &args) const {
    std::optional<AlbumMedia> media = TryRead(args, ReadMediaAddress);
    if (!media) return SendIgnoringErrors(socket, "Bad Request!");

    const std::string user = socket->Tag;
    if (IsProtectedDir(*media->Album, media->Directory.LastName, media->Directory.Path)) {
        media->CountWord = "nocount";
        const ViewRight right = CanViewDir(user, *media->Album, media->Directory.Path);
        if (!right.IsGiven) return genShowLogin(socket, args, right.Refusal);
    }
    media->Files = FilesOf(*media);
    if (media->Shown == View::SlideShow && media->HasFiles()) {
        const auto show = TryRead(args, [](const Arguments &all) { return ReadSlideShow(all, 3); });
        if (!show) return SendIgnoringErrors(socket, "Bad Request!");
        media->Show = *show;
        media->Show.SetFileCount(media->LastIndex() + 1);
    }

    const bool isRoot = media->Directory.RelativePath.empty();
    std::vector<Filling> fillings = {
        {"{STYLE_SHEET}", gStyleSheet},
        {"{SERVER_TITLE}", gServerTitle},
        {"{DIR_TITLE}", DirDisplayTitle(*media->Album, isRoot ? "" : media->Directory.LastName)},
        {"{AUTHOR}", gAuthor},
        {"{LOGIN_NAME}", LoginNameText(user)},
    };
    AddPicParts(fillings, MediaParts(*media, user));
    const std::size_t size = SendPage(socket, tplShowAlbumMedia, fillings);
    DoEvents();
    BookKilobytes(media->Album->Name, size);
}

}  // namespace pixmora
