// The requests to the central service, and what becomes of its answers.
#include "outside/CentralService.h"

#include <string_view>
#include <vector>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/RequestGrammar.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "outside/OutboundRequest.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "store/RecordKeeping.h"
#include "store/Settings.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

constexpr std::string_view latestNews = "LatestNews";
constexpr int yesNoInformation = FlagYesNo | FlagInformation;

void WarnOfDifferentAddresses(const std::string &own, const std::string &seen) {
    if (!GetSetting("Setup", "RunFirewallCheck").empty() || !GetSetting("IgnoreMsg", "DifferentIps").empty()) return;
    if (!GetSetting("Setup", "PublicAddress").empty()) return;  // who has set it has seen to the network
    const bool ignoreInFuture =
        Asks("We have detected your private IP is " + own + ", but your public IP is " + seen +
             " !\r\n\r\nTherefore, unless you have configured your network for this, you may experience problems "
             "with visitors accessing your site.\r\n\r\nPlease run the Firewall Check in Setup to make sure you "
             "won't encounter any connection problems.\r\n\r\nWould you like to ignore this message in the future?");
    if (ignoreInFuture) SaveSetting("IgnoreMsg", "DifferentIPs", "1");
}

void TellOfMissingNetwork() {
    ShowMessageBox(
        "This computer is not connected to a network at the moment.\r\n\r\nUntil it is, nobody but you can see your "
        "website.",
        FlagInformation);
}

void TellOfExtinction() {
    if (Asks("This version of " + App::Title +
             " has been determined extinct!\r\n\r\nWould you like to read about the latest version now?")) {
        OpenInBrowser(ServiceBase() + "/download.php");
    }
}

void TellOfNewVersion() {
    if (Asks("There is a new version of " + App::Title + " available!\r\n\r\nWould you like to read about it now?",
             yesNoInformation)) {
        OpenInBrowser(ServiceBase() + "/whatsnew.php");
    }
}

/// @param stamp "yyyymmddhh"
void TellOfNews(const std::string &stamp) {
    if (stamp <= GetSetting("Records", "InstallTime") || stamp <= GetSetting("Records", "LatestNewsTime")) return;
    if (Asks("There is some important news regarding your software!\r\n\r\nWould you like to read it now?",
             yesNoInformation)) {
        OpenInBrowser(ServiceBase() + "/news.php?ver=" + EncodeServiceText(stamp));
        SaveSetting("Records", "LatestNewsTime", stamp);
    }
}

/// One word of the service's answer, a line end behind it or not. @return false when it calls the start off
bool Heed(std::string word) {
    word.erase(word.find_last_not_of("\r\n") + 1);
    if (word == "OK") {
        if (const std::string redirecting = RedirectingAddress(); !redirecting.empty())
            gSystray->ServiceAddress = redirecting;
    } else if (word == "OldVersionExtinct") {
        TellOfExtinction();
        return false;
    } else if (word == "NewVersionAvailable") {
        TellOfNewVersion();
    } else if (const std::size_t news = word.find(latestNews); news != std::string::npos) {
        TellOfNews(word.substr(news + latestNews.size()));
    }
    return true;
}

std::string FormatKey(const char *key, double value) {
    return key + NumberText(value);
}

}  // namespace

std::string ServiceBase() {
    return GetSetting("Setup", "ServiceBase");
}

std::string EncodedAccountName() {
    return EncodeServiceText(GetSetting("Setup", "AccountName"));
}

std::string RedirectingAddress() {
    return RedirectingAddress(ServiceBase(), GetSetting("Setup", "AccountName"));
}

std::string RedirectingAddress(const std::string &serviceBase, const std::string &accountName) {
    return serviceBase.empty() || accountName.empty() ? "" : serviceBase + "?" + EncodeLinkPart(accountName);
}

std::string VersionText() {
    return FormatPadded(App::Major, 2) + FormatPadded(App::Minor, 2) + FormatPadded(App::Revision, 4);
}

ServiceCheck CheckCentralService(bool startingServer) {
    const std::string own = GetLocalIP();
    if (own.empty()) TellOfMissingNetwork();
    gSystray->ServiceAddress.clear();
    gWebsiteAddress = BestWebsiteAddress();
    if (ServiceBase().empty()) return ServiceCheck::NoAnswer;
    const std::string answer =
        GetWebPage(ServiceBase() + "/clients/startup.php?&ver=" + VersionText() +
                   "&port=" + GetSetting("Setup", "ListenPort") + "&starting_server=" + (startingServer ? "1" : "0"));
    const std::vector<std::string> words = Split(answer, "|");
    const std::string seen = words.empty() ? std::string() : HostIn(words.front());
    if (seen.empty()) return ServiceCheck::NoAnswer;
    if (seen != own) {
        WarnOfDifferentAddresses(own, seen);
        gSystray->ServiceAddress = WebAddress(seen, gSystray->wnskListen->LocalPort);
    }
    bool mayGoOn = true;
    for (std::size_t i = 1; i < words.size(); ++i) mayGoOn &= Heed(words[i]);
    gWebsiteAddress = BestWebsiteAddress();
    return mayGoOn ? ServiceCheck::Answered : ServiceCheck::CalledOff;
}

void SendListing(std::int32_t pictures, std::int32_t movies) {
    if (ServiceBase().empty()) return;
    // The service takes the last three keys with their "&" doubled.
    SendWebRequest(ServiceBase() + "/clients/sendserverinfo.php?username=" + EncodedAccountName() + "&site_title=" +
                   EncodeServiceText(gServerTitle) + "&" + "&site_desc=" + EncodeServiceText(gSiteDescription) + "&" +
                   "&picturecount=" + std::to_string(pictures) + "&" + "&moviecount=" + std::to_string(movies));
}

void SendPing() {
    std::int32_t visitors = 0;
    std::int32_t pictures = 0;
    std::int32_t fileClicks = 0;
    std::int32_t kilobytes = 0;
    KeepRecord(Record::LastHour, [&] {
        visitors = ReadRecentSum(Stat::Visitors);
        pictures = ReadRecentSum(Stat::Thumbs);
        fileClicks = ReadRecentSum(Stat::Downloads);
        kilobytes = ReadRecentSum(Stat::Bandwidth);
        PurgeRecent();
    });
    if (ServiceBase().empty()) return;
    const std::string totals = FormatKey("&tr=", gRunningTotal * 60) + FormatKey("&tv=", gConnectionsTotal) +
                               FormatKey("&tt=", gThumbsTotal) + FormatKey("&td=", gDownloadsTotal) +
                               FormatKey("&tb=", gBandwidthTotal);
    const std::string recent = "&sr=" + std::to_string(gOnlineTimer->Elapsed() / 1000) +
                               "&rv=" + std::to_string(visitors) + "&rt=" + std::to_string(pictures) +
                               "&rd=" + std::to_string(fileClicks) + "&rb=" + std::to_string(kilobytes);
    SendWebRequest(ServiceBase() + "/clients/serverping.php?username=" + EncodedAccountName() +
                   "&ver=" + VersionText() + totals + recent);
}

}  // namespace pixmora
