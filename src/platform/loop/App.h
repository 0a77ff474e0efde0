// The program itself: its title, version, folder, and whether it runs already.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora::App {

inline const std::string Title = "Pixmora! Digital Media Software";
inline constexpr int Major = PIXMORA_VERSION_MAJOR;
inline constexpr int Minor = PIXMORA_VERSION_MINOR;
inline constexpr int Revision = PIXMORA_VERSION_REVISION;

/// The program's folder, "\" between parts and none at the end: $PIXMORA_HOME when set, else the executable's folder
/// when it is writable, else $XDG_DATA_HOME/pixmora. Made when it doesn't exist; read from the environment once, at the
/// first call.
const std::string &Path();
/// Chooses another folder, for tests, and gives up the lock on the former one. Empty: chosen anew at the next call.
void SetPath(std::string path);

/// The path of a file in the program's htdocs folder; of the folder itself without a name.
std::string HtdocsPath(std::string_view name = {});

/// The path of a file or folder that came with the program.
std::string ShippedPath(std::string_view name);

/// Copies the shipped htdocs, and exif.ini with it, into the program's folder when it holds no htdocs. @throws
/// RunTimeError when the copy fails
void InstallHtdocs();
/// Brings those of the files there that the owner has left as they were to the form in which they are shipped now, and
/// adds new ones. @return those that stay in an older form, because the owner has changed them or the system refuses:
/// paths below the program's folder, with "/". Of each newer form this is told once.
/// @throws RunTimeError when the program's folder can't be written
std::vector<std::string> UpdateShippedFiles();

/// Whether another process of this user has the same program's folder. The first call takes the folder's lock and keeps
/// it for the life of the process; however a process ends, its lock goes with it.
bool PrevInstance();

}  // namespace pixmora::App
