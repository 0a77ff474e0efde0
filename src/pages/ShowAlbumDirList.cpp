// clsWebServerCommands.h: the tree frame beside an album's media, with what leads away from it.
#include <algorithm>
#include <optional>

#include "core/site/Globals.h"
#include "pages/AlbumAddress.h"
#include "pages/Listings.h"
#include "pages/Templates.h"
#include "pages/Visibility.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/Popularity.h"

namespace pixmora {

namespace {

constexpr std::string_view blankIcon = R"(<img src="ShowGraphic?blank16.gif">)";
constexpr std::string_view cellOpening = R"(<tr><td height="20" class="lblFolder" nowrap>)";
constexpr std::string_view cellEnd = "</td></tr>";
constexpr std::string_view rowEnd = "</td></tr>\r\n\r\n";
constexpr std::string_view playArgs = "play&0&5";
constexpr std::string_view encodedPercent = "<byte>25<byte>";

enum class Place { Album, Popular, Statistics, Help };

/// What the visitor looks at: the frameset's address, brought to one form.
struct TreeAddress {
    Place CurrentPlace = Place::Album;
    std::int32_t Album = 1;
    std::string View = "thumbs";
    Arguments Args;  ///< album, view, page and so on, then directories; as delivered

    bool IsSlideshow() const { return View == "slideshow"; }
    /// The index of the argument before the first directory.
    std::size_t BaseLevel() const { return FirstDirectoryIndex(View) - 1; }
};

/// The visitor's tree under construction.
struct Tree {
    std::string User;
    TreeAddress Address;
    std::string Rows;
};

/// @throws RunTimeError when an argument is missing or is not the number that it has to be
TreeAddress ParseAlbumAddress(Arguments args) {
    const std::int32_t album = AlbumArgument(args, 0)->ID;
    CLng(Argument(args, 2));
    return {Place::Album, album, args[1], std::move(args)};
}

/// The album's number, the view and the page, and the inner parts of the file's path as directories.
Arguments ArgsOfDetails(const Arguments &args) {
    Arguments rebuilt = {Argument(args, 1), "thumbs", "1"};
    const std::vector<std::string> parts = Split(Argument(args, 3), "/");
    if (parts.size() > 2) rebuilt.insert(rebuilt.end(), parts.begin() + 1, parts.end() - 1);
    return rebuilt;
}

/// @throws RunTimeError as ParseAlbumAddress
TreeAddress ParseTreeAddress(const Arguments &args) {
    const std::string &word = Argument(args, 0);
    if (word == "ShowPopular") return {Place::Popular, 1, "thumbs", {Argument(args, 1)}};
    if (word == "ShowStats") return {Place::Statistics, 1, "thumbs", {word}};
    if (word == "ShowHelp") return {Place::Help, 1, "thumbs", {word}};
    if (word == "ShowLogin" || word == "ShowLogout") return ParseAlbumAddress({args.begin() + 1, args.end()});
    if (word == "ShowDetails") return ParseAlbumAddress(ArgsOfDetails(args));
    return ParseAlbumAddress(args);
}

/// A directory in link form. The frameset's script asks with the token in the place of each "%", so that the "%20" of a
/// blank survives the query's decoding; for a "%" of the name's own it sends the byte.
std::string LinkFormOf(const std::string &argument) {
    return Replace(Replace(argument, Concat(PercentToken, "20"), "%20"), encodedPercent, PercentToken);
}

std::string SelectedIf(bool isSelected, std::string_view text) {
    if (!isSelected) return std::string(text);
    return Concat(R"(<font class="lblFolderSelected">&nbsp;)", text, "&nbsp;</font>");
}

std::string ContentsText(const DirContents &contents) {
    return Concat("Subdirectories: ", contents.SubDirs, ", Pictures: ", contents.Pictures,
                  ", Movies: ", contents.Movies);
}

void AppendHelpRow(Tree &tree) {
    Append(tree.Rows, cellOpening, blankIcon, R"(<img src="ShowGraphic?help16.gif" align="absmiddle"> )",
           R"(<a href="ShowAlbum?ShowHelp">)", SelectedIf(tree.Address.CurrentPlace == Place::Help, "Help"), "</a>",
           cellEnd);
}

void AppendLoginRow(Tree &tree) {
    const TreeAddress &address = tree.Address;
    Append(tree.Rows, cellOpening, blankIcon, R"(<img src="ShowGraphic?login16.gif" align="absmiddle"> )");
    if (!tree.User.empty()) {
        Append(tree.Rows, R"(<a href="ShowLogout" target="media">Logged in as )", tree.User, "</a>", cellEnd);
        return;
    }
    Append(tree.Rows, R"(<a href="ShowAlbum?ShowLogin&)", address.Album, "&", address.View, "&1&");
    // Deliberate: in a slide show, too, the directories follow the page at once.
    for (std::size_t i = address.BaseLevel() + 1; i < address.Args.size(); ++i)
        Append(tree.Rows, LinkFormOf(address.Args[i]), "&");
    Append(tree.Rows, R"(">Login to Account</a>)", cellEnd);
}

void AppendPopularRow(Tree &tree) {
    const TreeAddress &address = tree.Address;
    Append(tree.Rows, cellOpening, blankIcon, R"(<img src="ShowGraphic?popular16.gif" align="absmiddle"> )",
           R"(<a href="ShowAlbum?ShowPopular&)", address.View);
    if (address.IsSlideshow()) Append(tree.Rows, "&", playArgs);
    Append(tree.Rows, R"(">)", SelectedIf(address.CurrentPlace == Place::Popular, "Most Popular"), "</a>", cellEnd);
}

/// One level of the branch that leads to the current place.
struct Level {
    std::size_t Index;      ///< of the argument before the one that names a directory of this level
    std::string Directory;  ///< the parent, with both separators
    std::string Prefix;     ///< of the links: the parent's directories as arguments
};

void BuildDirBranch(Tree &tree, const clsAlbum &album, const Level &level);

/// The directory that the address leads through on this level, in link form; empty behind the address's end.
std::string OpenDirectory(const Arguments &args, const Level &level, const std::vector<SubDirectory> &directories) {
    if (level.Index + 1 >= args.size()) return {};
    const std::string &delivered = args[level.Index + 1];
    std::string linkForm = LinkFormOf(delivered);
    const bool isThere = std::ranges::any_of(
        directories, [&](const SubDirectory &directory) { return EncodeLinkPart(directory.Name) == linkForm; });
    // Deliberate: an argument as it was delivered against the names in link form. Asked for without the script, a name
    // with a blank differs and stays closed.
    return isThere ? linkForm : delivered;
}

void AppendDirRow(Tree &tree, const clsAlbum &album, const Level &level, const SubDirectory &subDir, bool isOpen) {
    const std::string path = level.Directory + subDir.Name;
    if (!IsListed(tree.User, album, subDir.Name, path, "")) return;
    const std::string linkName = EncodeLinkPart(subDir.Name);
    const bool isCurrent = isOpen && level.Index + 2 == tree.Address.Args.size();
    const auto depth = static_cast<int>(level.Index - tree.Address.BaseLevel());
    Append(tree.Rows, cellOpening, RepeatString(blankIcon, depth + 2));
    if (isCurrent) tree.Rows += R"(<a name="curdir"></a>)";
    Append(tree.Rows, R"(<a href="ShowAlbum?)", tree.Address.Album, "&", tree.Address.View, "&1&");
    if (tree.Address.IsSlideshow()) Append(tree.Rows, playArgs, "&");
    Append(tree.Rows, level.Prefix, linkName, R"(" title=")", ContentsText(CountDirContents(album.Directory + path)),
           R"(">)", R"(<img src="ShowGraphic?folderclosed16.gif" align="absmiddle" border=0> )");
    Append(tree.Rows, SelectedIf(isCurrent, subDir.Name), isCurrent ? "</a>" : "");
    // Deliberate: the current row closes its link twice.
    Append(tree.Rows, "</a>", subDir.IsNew ? R"(&nbsp;<img src="ShowGraphic?new.gif">)" : "", rowEnd);
    if (isOpen) BuildDirBranch(tree, album, {level.Index + 1, path + "\\", Concat(level.Prefix, linkName, "&")});
}

/// The rows of one level and of the open branch below it.
void BuildDirBranch(Tree &tree, const clsAlbum &album, const Level &level) {
    const std::vector<SubDirectory> directories = ListSubDirs(album, level.Directory);
    const std::string open = OpenDirectory(tree.Address.Args, level, directories);
    for (const SubDirectory &subDir : directories)
        AppendDirRow(tree, album, level, subDir, EncodeLinkPart(subDir.Name) == open);
}

void AppendAlbumRow(Tree &tree, const clsAlbum &album) {
    const TreeAddress &address = tree.Address;
    const bool isCurrentAlbum = address.CurrentPlace == Place::Album && album.ID == address.Album;
    const bool isRoot = address.Args.size() == address.BaseLevel() + 1;
    Append(tree.Rows, cellOpening, blankIcon, R"(<img src="ShowGraphic?album16.gif" align="absmiddle"> )",
           R"(<a href="ShowAlbum?)", album.ID, "&", address.View, "&1");
    if (address.IsSlideshow()) Append(tree.Rows, "&", playArgs, "&");
    Append(tree.Rows, R"(" )", R"(title="Desc: )", album.Description, ", ",
           ContentsText(CountDirContents(album.Directory)), R"(">)", "<b>",
           SelectedIf(isCurrentAlbum && isRoot, album.Name), "</b>", "</a>", rowEnd);
    if (isCurrentAlbum) BuildDirBranch(tree, album, {address.BaseLevel(), "\\", ""});
}

void AppendAlbumRows(Tree &tree) {
    const ReadScope reads(*gDatabase);  // each directory asks for its protection and its place
    const AlbumListing listing(tree.User, tree.Address.View);
    for (const AlbumPointer &album : gAlbums) {
        if (listing.IsListed(*album)) AppendAlbumRow(tree, *album);
    }
}

void AppendStatisticsRow(Tree &tree) {
    Append(tree.Rows, cellOpening, blankIcon,
           R"(<img src="ShowGraphic?blank16.gif" align="absmiddle"><img src="ShowGraphic?stats16.gif" )"
           R"(align="absmiddle">&nbsp;)",
           R"(<a href="ShowAlbum?ShowStats" target="_top">)",
           SelectedIf(tree.Address.CurrentPlace == Place::Statistics, "Statistics"), "</a>", rowEnd);
}

/// Deliberate: under the most popular page the session alone is told, the statistics are not.
void BookTree(const TreeAddress &address, std::size_t bytes) {
    if (address.CurrentPlace == Place::Popular) {
        const std::size_t kilobytes = bytes / 1024;
        gBandwidthSession += static_cast<double>(kilobytes);
    } else {
        BookKilobytes(IsAlbumNumber(address.Album) ? AlbumByNumber(address.Album)->Name : NoAlbum, bytes);
    }
}

}  // namespace

void clsWebServerCommands::genShowAlbumDirList(const Connection &socket, const Arguments &args) const {
    std::optional<TreeAddress> address = TryRead(args, ParseTreeAddress);
    if (!address) return SendIgnoringErrors(socket, "Bad Request!");
    Tree tree{socket->Tag, std::move(*address), ""};
    AppendHelpRow(tree);
    AppendLoginRow(tree);
    AppendPopularRow(tree);
    AppendAlbumRows(tree);
    AppendStatisticsRow(tree);
    const std::size_t size = SendPage(socket, tplShowAlbumDirList,
                                      {{"{DIR_LIST}", tree.Rows},
                                       {"{SERVER_TITLE_SLASH}", EscapeForScript(gServerTitle)},
                                       {"{AUTHOR_SLASH}", EscapeForScript(gAuthor)},
                                       {"{SERVER_URL}", gWebsiteAddress}});
    BookTree(tree.Address, size);
}

}  // namespace pixmora
