// What pixmoractl tells the owner of the site: its statistics, and what is wrong with it.
#pragma once

#include <string>
#include <vector>

namespace pixmora {

/// The tables of the statistics page in columns, or as comma-separated values (RFC 4180, but for its line ends) with
/// the bandwidth in kilobytes.
std::string StatsText(bool isCsv);

/// A line for each setting that is no number and has to be, pattern that can't be read, album folder that is missing or
/// can't be read, and fault of the database. Opens the database when there is one.
std::vector<std::string> SiteFaults();

}  // namespace pixmora
