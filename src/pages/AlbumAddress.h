// What the arguments of an album address say, and how its parts are put back into a link.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/site/RequestGrammar.h"
#include "platform/runtime/RunTimeError.h"
#include "store/clsAlbum.h"

namespace pixmora {

/// The album that an argument names by its number.
/// @throws RunTimeError TypeMismatch, Overflow or SubscriptOutOfRange when it names none
AlbumPointer AlbumArgument(const Arguments &args, std::size_t index);

/// What a page reads of its address; nothing when an argument is missing or isn't what it has to be.
template <typename Read>
auto TryRead(const Arguments &args, Read read) -> std::optional<decltype(read(args))> {
    return Try([&] { return read(args); });
}

/// A path below an album's root as it stands in links: "/" between the parts, and each part in link form.
/// @param path plain, with "\"
std::string LinkPath(std::string_view path);

/// A file's full path from an address: the album's root and the link path, decoded, in its one spelling. The one gate
/// that every visitor's path goes through.
/// @param linkPath with a leading "/". A path that no visitor may use (a ".." part, a NUL, no "/" in front) gives an
/// empty text, at which no file exists. @throws RunTimeError as DecodeLinkPart
std::string VisitorFilePath(std::string_view albumDirectory, std::string_view linkPath);

/// The directory of an album address, in each form that the pages need. Names that are empty are passed over.
struct AlbumDirectory {
    std::string Path;           ///< "\" for the root, else "\a\b"; plain
    std::string RelativePath;   ///< empty for the root, else "a\b\"; plain
    std::string LinkArguments;  ///< "a&b&", each name in link form
    std::string LastName;       ///< the directory's own name, or at the root the address's last argument; plain
    bool IsUsable = true;       ///< false when a name leads elsewhere ("..", a separator): there is no such directory
};

/// @param args of an album address, at least one; too few of them mean the root @throws RunTimeError TypeMismatch
AlbumDirectory ReadAlbumDirectory(const Arguments &args);

}  // namespace pixmora
