// The four ways to start the program.
#pragma once

#include <string>

namespace pixmora {

enum class RunMode {
    Normal,         ///< the owner starts the website by hand
    Start,          ///< start the website, and leave only the tray icon when that succeeds
    StartOpenSite,  ///< as Start, then open the site, whether the start succeeded or not
    NewAlbum,       ///< the command line is a directory: edit a new album on it first
};

/// Compares exactly: anything but the two words and nothing is a directory.
RunMode RunModeOf(const std::string &commandLine);

/// The directory of a NewAlbum command line: the whole of it, made absolute when it is there as a relative path.
std::string NewAlbumDirectory(const std::string &commandLine);

}  // namespace pixmora
