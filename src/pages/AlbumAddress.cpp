// What the arguments of an album address say.
#include "pages/AlbumAddress.h"

#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
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

const std::string &Argument(const Arguments &args, std::size_t index) {
    if (index >= args.size()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return args[index];
}

AlbumPointer AlbumArgument(const Arguments &args, std::size_t index) {
    return AlbumByNumber(CLng(Argument(args, index)));
}

std::string LinkPath(std::string_view path) {
    return EncodeLinkPart(Replace(std::string(path), "\\", "/"));
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
