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

extern std::unique_ptr<frmSystray> gSystray;
/// The pages; exists only while the website runs. A request keeps its own reference while it works.
extern std::shared_ptr<clsWebServerCommands> gWebServerCommands;
extern std::unique_ptr<PictureEngine> gPictureEngine;
extern std::unique_ptr<clsTimer> gOnlineTimer;

extern bool gWebsiteStarted;
extern std::string gWebsiteAddress;  ///< "http://host:port", or the redirecting address

extern std::vector<clsVisitor> gVisitors;
extern std::vector<clsDownloadCookie> gDownloadCookies;

// The session's figures, and the totals as they stood at the last start or stop.
extern std::int32_t gVisitorsActive;
extern std::int32_t gConnectionsSession;
extern std::int32_t gThumbsSession;
extern std::int32_t gDownloadsSession;
extern double gBandwidthSession;  ///< kilobytes
extern double gRunningTotal;      ///< minutes
extern double gConnectionsTotal;
extern double gThumbsTotal;
extern double gDownloadsTotal;
extern double gBandwidthTotal;  ///< kilobytes

// Loaded at website start.
extern std::string gStyleSheet;
extern std::string gServerTitle;
extern std::string gAuthor;
extern std::string gSiteDescription;
extern std::string gWelcomeText;
extern std::int32_t gFilesPerRow;
extern std::int32_t gFilesPerPage;      ///< 0: no paging
extern std::int32_t gThumbSize;         ///< pixels of width
extern std::int32_t gPreviewSize;       ///< pixels of width
extern std::int32_t gSlideshowSize;     ///< pixels of width
extern std::int32_t gThumbQuality;      ///< flag value: percent times 4096
extern std::int32_t gPreviewQuality;    ///< flag value
extern std::int32_t gSlideshowQuality;  ///< flag value
extern std::int32_t gSortMethod;        ///< of subdirectories: 0 name, 1 date, 2 the owner's order
extern std::int32_t gSortOrder;         ///< 0 ascending, 1 descending

extern Tick gLastConversionTick;  ///< when the last picture conversion began or ended
/// What answers the picture requests that have come during a conversion; none while there is none in work.
extern std::optional<std::vector<std::function<void()>>> gHeldPictures;
extern Tick gLastCaptureTick;  ///< when the webcam last gave a still

}  // namespace pixmora
