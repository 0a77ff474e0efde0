// What the arguments of an album address say.
#include "pages/AlbumAddress.h"

#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"

namespace pixmora {

namespace {

/// Whether the name can be a directory's own. Anything else would name a directory by a second path, which none of its
/// protections would know.
bool IsDirectoryName(std::string_view name) {
    constexpr std::string_view separatorsAndNul("\\/\0", 3);
    return name != "." && name != ".." && name.find_first_of(separatorsAndNul) == std::string_view::npos;
}

}  // namespace

AlbumPointer AlbumArgument(const Arguments &args, std::size_t index) {
    return AlbumByNumber(CLng(Argument(args, index)));
}

std::string LinkPath(std::string_view path) {
    return EncodeLinkPart(Replace(std::string(path), "\\", "/"));
}

std::string VisitorFilePath(std::string_view albumDirectory, std::string_view linkPath) {
    const std::string path = ProgramPath(DecodeLinkPart(linkPath));
    // Without its separator in front a path would lead to the album's neighbours on the disk.
    if (!path.starts_with('\\') || path.ends_with('\\') || HasForbiddenPart(path)) return {};
    std::string file(albumDirectory);
    for (const std::string &part : Split(path, "\\")) {
        // One spelling for each file: views are counted and protections found by it.
        if (!part.empty() && part != ".") file += "\\" + part;
    }
    return file;
}

AlbumDirectory ReadAlbumDirectory(const Arguments &args) {
    AlbumDirectory directory;
    for (std::size_t i = FirstDirectoryIndex(args.size() > 1 ? args[1] : ""); i < args.size(); ++i) {
        const std::string name = DecodeLinkPart(args[i]);
        if (name.empty()) continue;
        if (!IsDirectoryName(name)) directory.IsUsable = false;
        Append(directory.Path, "\\", name);
        Append(directory.RelativePath, name, "\\");
        Append(directory.LinkArguments, EncodeLinkPart(name), "&");
        directory.LastName = name;
    }
    if (directory.Path.empty()) {
        directory.Path = "\\";
        directory.LastName = DecodeLinkPart(args.back());
    }
    return directory;
}

}  // namespace pixmora
