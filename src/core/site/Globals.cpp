#include "core/site/Globals.h"

#include "core/site/frmSystray.h"

namespace pixmora {

std::unique_ptr<frmSystray> gSystray;
std::shared_ptr<clsWebServerCommands> gWebServerCommands;
std::unique_ptr<PictureEngine> gPictureEngine;
std::unique_ptr<clsTimer> gOnlineTimer;

bool gWebsiteStarted = false;
std::string gWebsiteAddress;

std::vector<clsVisitor> gVisitors;
std::vector<clsDownloadCookie> gDownloadCookies;

std::int32_t gVisitorsActive = 0;
std::int32_t gConnectionsSession = 0;
std::int32_t gThumbsSession = 0;
std::int32_t gDownloadsSession = 0;
double gBandwidthSession = 0;
double gRunningTotal = 0;
double gConnectionsTotal = 0;
double gThumbsTotal = 0;
double gDownloadsTotal = 0;
double gBandwidthTotal = 0;

std::string gStyleSheet;
std::string gServerTitle;
std::string gAuthor;
std::string gSiteDescription;
std::string gWelcomeText;
std::int32_t gFilesPerRow = 3;
std::int32_t gFilesPerPage = 12;
std::int32_t gThumbSize = 150;
std::int32_t gPreviewSize = 375;
std::int32_t gSlideshowSize = 300;
std::int32_t gThumbQuality = 0;
std::int32_t gPreviewQuality = 0;
std::int32_t gSlideshowQuality = 0;
std::int32_t gSortMethod = 0;
std::int32_t gSortOrder = 0;

Tick gLastConversionTick = 0;
std::optional<std::vector<std::function<void()>>> gHeldPictures;
Tick gLastCaptureTick = 0;

}  // namespace pixmora
