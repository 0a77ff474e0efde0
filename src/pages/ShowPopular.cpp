// clsWebServerCommands.h: the most popular page: the directories and files of the whole site that were looked at most.
#include <algorithm>
#include <array>

#include "core/site/Globals.h"
#include "pages/AlbumAddress.h"
#include "pages/PopularMedia.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/MediaTypes.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

constexpr std::size_t directoriesShown = 5;

/// Whatever can't be read stays empty, an album that has no number any more included.
PopularEntry ReadEntry(const Recordset &row, std::string_view pathField, std::string_view countField) {
    PopularEntry entry;
    try {
        entry.AlbumName = AsText(row.Value("AlbumName"));
        entry.Count = AsLong(row.Value(countField));
        entry.Path = Replace(AsText(row.Value(pathField)), "%39", "'");
        entry.Album = AlbumNumberByName(entry.AlbumName);
    } catch (const RunTimeError &) {
        return entry;
    }
    return entry;
}

/// The number of files in the list.
std::size_t FileLimit(std::int64_t rows) {
    if (rows <= gFilesPerPage) return static_cast<std::size_t>(rows);
    // Deliberate: without paging one more than the front page promises.
    if (gFilesPerPage == 0) return static_cast<std::size_t>(std::max(0, gFilesPerRow)) * 5 + 1;
    return static_cast<std::size_t>(std::max(0, gFilesPerPage));
}

PopularEntries ReadFiles() {
    PopularEntries files;
    try {
        const auto rows = gDatabase->OpenRecordset("SELECT * FROM PopularFiles ORDER BY FileCount DESC, FilePath DESC",
                                                   RecordsetType::Snapshot);
        // Deliberate: a list that is longer than the table ends in empty entries.
        files.resize(FileLimit(rows->RecordCount()));
        for (std::size_t i = 0; i < files.size() && !rows->Eof(); ++i, rows->MoveNext())
            files[i] = ReadEntry(*rows, "FilePath", "FileCount");
    } catch (const RunTimeError &) {
        return files;
    }
    return files;
}

PopularEntries ReadDirectories() {
    PopularEntries directories;
    try {
        const auto rows =
            gDatabase->OpenRecordset("SELECT * FROM PopularDirs ORDER BY DirCount DESC", RecordsetType::Snapshot);
        for (; directories.size() < directoriesShown && !rows->Eof(); rows->MoveNext())
            directories.push_back(ReadEntry(*rows, "DirPath", "DirCount"));
    } catch (const RunTimeError &) {
        return directories;
    }
    return directories;
}

/// Opens a row of one cell that spans the table. @param attributes of the cell
void AppendWideCell(std::string &list, std::string_view attributes, std::size_t files) {
    const std::size_t perRow = static_cast<std::size_t>(std::max(0, gFilesPerRow));
    Append(list, "<tr><td ", attributes, R"(class="tdPictureCell" colspan=)", std::min(perRow, files), ">");
}

void AppendHeadingRow(std::string &list, std::string_view style, std::string_view heading, std::size_t files) {
    AppendWideCell(list, "", files);
    Append(list, R"(<font class=")", style, R"(">)", heading, "</font></td></tr>", CrLf, CrLf);
}

void AppendDirectoryRow(std::string &list, const PopularEntry &directory, std::size_t files) {
    const bool isRoot = directory.Path == "\\";
    AppendWideCell(list, R"(valign="top" )", files);
    Append(list, R"(&nbsp;&nbsp;&nbsp;<img src="ShowGraphic?)", isRoot ? "album16" : "folderclosed16",
           R"(.gif" width=16 height=16>&nbsp;)", R"(<a target="_top" href="ShowAlbum?)",
           DirectoryArguments(directory, directory.Path), R"(" title=" ()", CountText(directory.Count, "View"), ")\">",
           R"(<font class="lblPopularSubDir">)", directory.AlbumName);
    for (const std::string &part : Split(directory.Path, "\\")) {
        if (!part.empty()) Append(list, " > ", part);
    }
    Append(list, "</a><br></td></tr>", CrLf, CrLf);
}

std::string SizeText(const PopularEntry &file) {
    if (!file.Album || !IsAlbumNumber(*file.Album)) return {};
    return FormatFileSize(AlbumByNumber(*file.Album)->Directory + file.Path);
}

std::string DisplayName(const PopularEntry &file) {
    return FileDisplayName(LastPathPart(file.Path));
}

void AppendThumbCell(std::string &list, const PopularEntry &file, std::int32_t index) {
    list += ThumbCellOpening(index);
    if (file.IsEmpty()) {
        list += ThumbCellClosing;
        return;
    }
    list += PopularDetailsLink(file);
    if (IsPictureName(file.Path)) {
        Append(list, R"(<img src="ShowPicture?)", file.AlbumText(), "&thumb&", LinkPath(file.Path),
               R"(" border=0 width=")", gThumbSize, R"("><br>)", DisplayName(file), "</a>");
    } else {
        Append(list, R"(<img src="ShowGraphic?movie.gif" border=0><br><br>)", DisplayName(file), "</a><br><br>", "(",
               SizeText(file), ")");
    }
    Append(list, "<br>", CountText(file.Count, "View"), ThumbCellClosing);
}

void AppendListRow(std::string &list, const PopularEntry &file) {
    const auto narrowCell = [](std::string_view text) {
        return Concat(R"(<td width="100">)", R"(<font class="lblPictureList">)", text, "</font></td>");
    };
    list += "<tr>";
    if (file.IsEmpty()) {
        Append(list, R"(<td align="left" class="tdPictureCell"></td>)", narrowCell(""), narrowCell(""));
    } else {
        const std::string_view icon = IsPictureName(file.Path) ? "picture16" : "movie16";
        Append(list, R"(<td align="left" class="tdPictureCell">)", "&nbsp;&nbsp;&nbsp;", PopularDetailsLink(file),
               R"(<font class="lblPictureList">)", R"(<img src="ShowGraphic?)", icon, R"(.gif" border=0>&nbsp;)",
               file.AlbumName, ": ", DisplayName(file), "</font></a></td>", narrowCell(SizeText(file)),
               narrowCell(CountText(file.Count, "View")));
    }
    Append(list, "</tr>", CrLf, CrLf);
}

std::string PopularTable(const PopularEntries &files, const PopularEntries &directories, View view) {
    std::string list(PicTableOpening);
    AppendHeadingRow(list, "lblPopularDirs", "Popular Directories", files.size());
    for (const PopularEntry &directory : directories) AppendDirectoryRow(list, directory, files.size());
    AppendHeadingRow(list, "lblPopularMedia", "Popular Media", files.size());
    if (view == View::List) {
        for (const PopularEntry &file : files) AppendListRow(list, file);
    } else {
        const auto count = static_cast<std::int32_t>(files.size());
        AppendGrid(list, count,
                   [&](std::int32_t cell) { AppendThumbCell(list, files[static_cast<std::size_t>(cell)], cell); });
        CloseLastRow(list, count);
    }
    return list + "</table>";
}

PicParts PopularParts(const Arguments &args) {
    const View view = ReadView(Argument(args, 0));
    PicParts parts;
    parts.View = "&nbsp;" + ViewRow(view, {.Thumbs = R"(<a href="ShowPopular?thumbs">)",
                                           .List = R"(<a href="ShowPopular?list">)",
                                           .SlideShow = R"(<a href="ShowPopular?slideshow&play&0&5">)"});
    parts.Page = "&nbsp;";
    const PopularEntries files = ReadFiles();
    if (view != View::SlideShow) {
        parts.List = PopularTable(files, ReadDirectories(), view);
        return parts;
    }
    SlideShow show = ReadSlideShow(args, 1);
    show.SetFileCount(static_cast<std::int32_t>(files.size()));
    if (files.empty()) {
        parts.List = R"(<font class="lblPictureNav">No files here.</font>)";
    } else {
        FillPopularSlideShow(files, show, parts);
    }
    return parts;
}

}  // namespace

std::string CountText(std::int64_t count, std::string_view word) {
    return Concat(count, " ", word, count == 1 ? "" : "s");
}

std::string PopularDetailsLink(const PopularEntry &file) {
    return Concat(R"(<a target="_top" href="ShowAlbum?ShowDetails&)", file.AlbumText(), "&nocount&",
                  LinkPath(file.Path), R"(">)");
}

std::string DirectoryArguments(const PopularEntry &entry, std::string_view path) {
    std::string arguments = Concat(entry.AlbumText(), "&thumbs&1&");
    for (const std::string &name : Split(path, "\\")) {
        if (!name.empty()) Append(arguments, EncodeLinkPart(name), "&");
    }
    return arguments;
}

// Deliberate: no protection is asked for. What was looked at shows here, wherever it lies.
void clsWebServerCommands::genShowPopular(const Connection &socket, const Arguments &args) const {
    std::vector<Filling> fillings = {{"{STYLE_SHEET}", gStyleSheet}, {"{SERVER_TITLE}", gServerTitle}};
    AddPicParts(fillings, PopularParts(args));
    BookKilobytes(MostPopularAlbum, SendPage(socket, tplShowPopular, fillings));
}

}  // namespace pixmora
