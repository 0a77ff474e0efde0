// The values of the setup dialog's controls, and the settings and files behind them.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// The texts of the controls as they stand; a box or an option group has a number in digits.
struct SetupFields {
    std::string ServerTitle;
    std::string Author;
    std::string RunOnStart;    ///< "1" or "0"
    std::string ListenPort;    ///< as typed
    std::string Style;         ///< name of a style sheet
    std::string FilesPerRow;   ///< "1" to "10"
    std::string FilesPerPage;  ///< a number, or "All"; empty when none is stored
    std::string ImageSize;     ///< slider position, "1" to "5"
    std::string ImageQuality;  ///< slider position, "1" to "5"
    std::string Webcam;        ///< "1" or "0"
    std::string SortMethod;    ///< index of the option
    std::string SortOrder;     ///< index of the option
    std::string ListOnline;    ///< "1" or "0"
    std::string ServiceBase;   ///< of the central service, as typed
    std::string AccountName;
    std::string PortMapping;    ///< "1" or "0"
    std::string MoreTypes;      ///< "1" or "0"
    std::string ShowPlaces;     ///< "1" or "0"
    std::string BrowserCache;   ///< minutes, or "Off"
    std::string PublicAddress;  ///< what the site calls itself by: host, host:port or URL; empty for what it finds out
    std::string Description;    ///< plain text, lines ending in CR LF
    std::string Welcome;        ///< HTML, lines ending in CR LF
};

/// What the welcome box holds before there is a file.
inline constexpr const char *WelcomeAtStart = "I hope you enjoy my collection of \r\nalbums!\r\n";

/// No limit, in the page box; stored as 0.
inline constexpr const char *AllFiles = "All";

/// Browsers keep nothing, in the box of minutes; stored as no setting.
inline constexpr const char *CacheOff = "Off";

/// The base address that a typed text comes to: without blanks around it and separators behind, "http://" in front of a
/// mere host. Empty for none.
std::string CleanServiceBase(std::string_view typed);

/// From the settings and the two text files. @param proposedPort where none is stored
SetupFields LoadSetupFields(const std::string &proposedPort = "80");

/// Writes settings, autostart entry and files, in their fixed order. A port out of range and a public
/// address that is none are told to the owner and not stored. @param program full path of what starts with the session
void SaveSetupFields(const SetupFields &fields, const std::string &program);

}  // namespace pixmora
