// What the main window shows, as texts.
#include "console/MainStatus.h"

#include <cstdint>

#include "core/site/Globals.h"
#include "outside/CentralService.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "store/Catalogue.h"

namespace pixmora {

namespace {

constexpr Tick dayMs = 86400000;
constexpr double bytesPerKilobyte = 1024;
constexpr double secondsPerMinute = 60;

/// The redirecting address of the central service is easier to read and to say without its scheme.
std::string ShownAddress() {
    constexpr std::string_view scheme = "http://";
    const std::string service = ServiceBase();
    const bool isService = !service.empty() && gWebsiteAddress.starts_with(service + "?");
    return isService && gWebsiteAddress.starts_with(scheme) ? gWebsiteAddress.substr(scheme.size()) : gWebsiteAddress;
}

Figures TotalFigures(double seconds, double connections, double thumbs, double downloads, double kilobytes) {
    return {FormatElapsed(seconds, true, false), NumberText(connections), NumberText(thumbs), NumberText(downloads),
            FormatByteSize(kilobytes * bytesPerKilobyte)};
}

}  // namespace

std::string VersionLine() {
    return "Version: " + std::to_string(App::Major) + "." + std::to_string(App::Minor) + "." +
           std::to_string(App::Revision);
}

MainStatus ReadMainStatus() {
    MainStatus status;
    status.IsStarted = gWebsiteStarted;
    status.Version = VersionLine();
    std::int32_t count = 0;
    GetAlbumNames(count);
    status.Albums = std::to_string(count);
    status.HasAlbums = count > 0;
    status.Address = gWebsiteStarted ? ShownAddress() : "Website offline! Click Start Website.";
    return status;
}

MainFigures ReadRunningFigures() {
    const std::int64_t elapsed = gOnlineTimer->Elapsed();
    const std::int64_t whole = elapsed / 1000;
    const auto seconds = static_cast<double>(whole);
    return {std::to_string(gVisitorsActive),
            {FormatElapsed(seconds, elapsed > dayMs, false), std::to_string(gConnectionsSession),
             std::to_string(gThumbsSession), std::to_string(gDownloadsSession),
             FormatByteSize(gBandwidthSession * bytesPerKilobyte)},
            TotalFigures(seconds + gRunningTotal * secondsPerMinute, gConnectionsTotal + gConnectionsSession,
                         gThumbsTotal + gThumbsSession, gDownloadsTotal + gDownloadsSession,
                         gBandwidthTotal + gBandwidthSession)};
}

MainFigures ReadStoredFigures() {
    MainFigures figures;
    figures.Total = TotalFigures(gRunningTotal * secondsPerMinute, gConnectionsTotal, gThumbsTotal, gDownloadsTotal,
                                 gBandwidthTotal);
    return figures;
}

}  // namespace pixmora
