// The database's tables: how the file comes into being, and how an older one is brought up to version 9.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

class RunTimeError;

/// The version of the files that the program works on.
inline constexpr int CurrentSchemaVersion = 9;

/// The database file of a schema version, in the program's folder.
std::string DatabasePath(int version);

/// What the owner reads when that file can't be used.
std::string DatabaseMessage();

/// An error in words for the owner: the database library's own say nothing to him.
std::string OwnersMessage(const RunTimeError &error);

/// Opens the version 9 file as gDatabase. Without one a version 8 or 7 file is copied and brought up, else a new file
/// is made. Each file gets its name when it is finished: cut short, all of it begins anew at the next start. A step
/// that fails leaves the copy as it was before the step, and that passes as a finished file at the next start.
/// The files are for their owner's eyes alone.
/// @return false when a file that is there, or its copy, couldn't be opened; gDatabase is empty then
/// @throws RunTimeError when copying, making or upgrading fails
bool OpenOrCreateDatabase();

/// Drops StatsRecent when it is there and makes it anew.
void CreateStatsRecent();

/// The table of the album's pictures.
std::string MediaListName(int album);
void CreateMediaList(int album);
/// A list that isn't there is no error.
void DropMediaList(int album);

/// Makes a Long field a Double one, keeping its values. It is the last field afterwards.
void WidenToDouble(std::string_view table, std::string_view field);

}  // namespace pixmora
