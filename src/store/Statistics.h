// Statistics: every event leaves its mark in five tables at once, and is kept as soon as the call returned. One that
// the disk, the file or another program's lock refuses is dropped, and the owner is told (see RecordKeeping.h).
#pragma once

#include <cstdint>
#include <string_view>

namespace pixmora {

/// The kinds of events, with the unit of the value.
enum class Stat : std::int16_t {
    RunningTime = 0,  ///< minutes
    Visitors = 1,
    Thumbs = 2,     ///< pictures delivered
    Downloads = 3,  ///< counted views of a file
    Bandwidth = 4,  ///< kilobytes
};

/// The names under which events of no album, and those of the most popular page, are recorded.
inline constexpr std::string_view NoAlbum = " ";
inline constexpr std::string_view MostPopularAlbum = "Most Popular";

/// Records one event, in one transaction. The first event of a row counts 1 whatever its value. A total or a bandwidth
/// that outgrows a Long turns its field into a Double.
/// @throws RunTimeError SyntaxError for a name with an apostrophe
void RecordStat(Stat kind, std::string_view albumName, std::int32_t value);

/// The total of a kind since the database was made, 0 when there was no such event.
double ReadStatTotal(Stat kind);

/// What the last hour brought of a kind.
std::int32_t ReadRecentSum(Stat kind);
/// Drops what is older than an hour from the recent events.
void PurgeRecent();

/// Drop the rows of days before the day before yesterday, and of more than 15 days ago.
void PurgeHourly();
void PurgeDaily();

}  // namespace pixmora
