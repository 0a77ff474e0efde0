// The process-wide values of a running site.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/site/Visitors.h"
#include "core/site/clsTimer.h"
#include "platform/pictures/PictureEngine.h"
#include "store/Globals.h"

namespace pixmora {

class clsWebServerCommands;
struct frmSystray;

extern std::unique_ptr<frmSystray> gSystray;  ///< defined with its form
/// The pages; exists only while the website runs. A request keeps its own reference while it works.
inline std::shared_ptr<clsWebServerCommands> gWebServerCommands;
inline std::unique_ptr<PictureEngine> gPictureEngine;
inline std::unique_ptr<clsTimer> gOnlineTimer;

inline bool gWebsiteStarted = false;
inline std::string gWebsiteAddress;  ///< "http://host:port", or the redirecting address

inline std::vector<clsVisitor> gVisitors;
inline std::vector<clsDownloadCookie> gDownloadCookies;

// The session's figures, and the totals as they stood at the last start or stop.
inline std::int32_t gVisitorsActive = 0;
inline std::int32_t gConnectionsSession = 0;
inline std::int32_t gThumbsSession = 0;
inline std::int32_t gDownloadsSession = 0;
inline double gBandwidthSession = 0;  ///< kilobytes
inline double gRunningTotal = 0;      ///< minutes
inline double gConnectionsTotal = 0;
inline double gThumbsTotal = 0;
inline double gDownloadsTotal = 0;
inline double gBandwidthTotal = 0;  ///< kilobytes

// Loaded at website start.
inline std::string gStyleSheet;
inline std::string gServerTitle;
inline std::string gAuthor;
inline std::string gSiteDescription;
inline std::string gWelcomeText;
inline std::int32_t gFilesPerRow = 3;
inline std::int32_t gFilesPerPage = 12;     ///< 0: no paging
inline std::int32_t gThumbSize = 150;       ///< pixels of width
inline std::int32_t gPreviewSize = 375;     ///< pixels of width
inline std::int32_t gSlideshowSize = 300;   ///< pixels of width
inline std::int32_t gThumbQuality = 0;      ///< flag value: percent times 4096
inline std::int32_t gPreviewQuality = 0;    ///< flag value
inline std::int32_t gSlideshowQuality = 0;  ///< flag value
inline std::int32_t gSortMethod = 0;        ///< of subdirectories: 0 name, 1 date, 2 the owner's order
inline std::int32_t gSortOrder = 0;         ///< 0 ascending, 1 descending

inline Tick gLastConversionTick = 0;  ///< when the last picture conversion began or ended
/// What answers the picture requests that have come during a conversion; none while there is none in work.
inline std::optional<std::vector<std::function<void()>>> gHeldPictures;
inline Tick gLastCaptureTick = 0;  ///< when the webcam last gave a still

}  // namespace pixmora
