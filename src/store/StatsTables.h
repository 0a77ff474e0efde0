// The figures of the statistics page: by span, hour, day and month, over all albums.
#pragma once

#include <string>
#include <vector>

namespace pixmora {

/// What one or more of the statistics' rows say.
struct StatsFigures {
    double Visitors = 0;
    double Thumbs = 0;
    double Downloads = 0;
    double Bandwidth = 0;  ///< kilobytes

    StatsFigures &operator+=(const StatsFigures &other);
};

struct StatsRow {
    std::string Label;
    StatsFigures Counts;
};

struct StatsTable {
    std::string Title;
    std::string Span;  ///< heading of the labels
    std::vector<StatsRow> Rows;
};

/// The headings of the figures.
inline constexpr const char *StatsColumns[] = {"Visitors", "Thumbnails", "File Clicks", "Bandwidth"};
/// The figures as texts in the order of the columns.
std::vector<std::string> FigureTexts(const StatsFigures &figures);

/// "Stats Summary", "Last 24 Hours", "Daily Stats" and "Monthly Stats" as of now.
std::vector<StatsTable> ReadStatsTables();

}  // namespace pixmora
