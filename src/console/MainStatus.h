// What the main window shows, as texts: the state of the site, and the running figures.
#pragma once

#include <string>

namespace pixmora {

/// "Version: 1.0.0"
std::string VersionLine();

/// Everything that depends on the state and not on the counters.
struct MainStatus {
    bool IsStarted = false;
    std::string Version;     ///< its line
    std::string Albums;      ///< their number
    bool HasAlbums = false;  ///< else the link beside the number offers to make the first
    std::string Address;     ///< the site's address, or the notice that it is offline
};

/// From the process-wide values and the database, as they stand.
MainStatus ReadMainStatus();

/// The two columns of figures.
struct Figures {
    std::string RunningTime = "0h 0m";
    std::string Connections = "0";
    std::string Thumbs = "0";
    std::string Downloads = "0";
    std::string Bandwidth = "0 bytes";
};
struct MainFigures {
    std::string ActiveVisitors = "0";
    Figures Session;
    Figures Total;
};

/// Those of a running website; what the session has brought is added to the stored totals.
MainFigures ReadRunningFigures();
/// Those of a website that doesn't run: the stored totals beside an empty session.
MainFigures ReadStoredFigures();

}  // namespace pixmora
