// What the main window and the menus say about a site.
#include "console/MainStatus.h"

#include "console/MenuItems.h"
#include "support/RunningSite.h"

namespace pixmora::test {

namespace {

std::string Texts(const MenuItems &items) {
    std::string text;
    for (const MenuItem &item : items) {
        text += (text.empty() ? "" : "|") + item.Text;
        if (!item.SubItems.empty()) text += "{" + item.SubMenuName + ": " + Texts(item.SubItems) + "}";
    }
    return text;
}

using MainStatusTest = RunningSite;

TEST_F(MainStatusTest, AddsTheSessionToTheTotals) {
    const auto text = [](const auto &column) {
        return column.RunningTime + ", " + column.Connections + ", " + column.Thumbs + ", " + column.Downloads + ", " +
               column.Bandwidth;
    };
    gRunningTotal = 60 * 24 - 1;  // a minute short of a day
    gConnectionsTotal = 1000;
    gThumbsTotal = 20;
    gDownloadsTotal = 3;
    gBandwidthTotal = 1;
    EXPECT_EQ(text(ReadStoredFigures().Total), "0d 23h, 1000, 20, 3, 1.00 KB");
    gOnlineTimer->StartTimer();
    gConnectionsSession = 5;
    gThumbsSession = 6;
    gDownloadsSession = 7;
    gBandwidthSession = 1;
    Clock.Advance(60999);
    EXPECT_EQ(text(ReadRunningFigures().Session), "0h 1m, 5, 6, 7, 1.00 KB");
    EXPECT_EQ(text(ReadRunningFigures().Total), "1d 0h, 1005, 26, 10, 2.00 KB");
    Clock.Advance(86400000 - 60999);
    EXPECT_EQ(ReadRunningFigures().Session.RunningTime, "24h 0m");
    Clock.Advance(1);
    gBandwidthSession = 2000000001.0 / 1024;
    EXPECT_EQ(text(ReadRunningFigures().Session), "1d 0h, 5, 6, 7, 1.86 GB");
}

TEST_F(MainStatusTest, AddressAndMenusFollowTheState) {
    gVisitorsActive = 0;
    EXPECT_EQ(Texts(SystrayMenuItems(true)), "Active Visitors: 0||Start Website|Setup||Minimize Window||Exit");
    gWebsiteStarted = true;
    gVisitorsActive = 3;
    EXPECT_EQ(Texts(SystrayMenuItems(false)),
              "Active Visitors: 3||Stop Website|Setup||Put Link in AIM Away Message||Restore Window||Exit");
    gWebsiteAddress = "http://service.example?anna";
    EXPECT_EQ(ReadMainStatus().Address, "http://service.example?anna");
    SaveSetting("Setup", "ServiceBase", "http://service.example");
    EXPECT_EQ(ReadMainStatus().Address, "service.example?anna") << "of the service's address alone";
    gWebsiteAddress = "http://192.0.2.1:8080";
    EXPECT_EQ(ReadMainStatus().Address, "http://192.0.2.1:8080");
    gWebsiteStarted = false;
    AddAlbum("Alps & lakes");
    AddAlbum("Exit");
    EXPECT_EQ(Texts(AlbumMenuItems()), "Add New Album|Edit Album||Alps & lakes|Exit");
    EXPECT_EQ(Texts(ActiveMenuItems()), "No Active Users");
    constexpr std::int64_t month = 30 * 86400000LL;  // ms
    gVisitors = {{0, Uptime(), "127.0.0.1", "Home Page"}, {0, Uptime() - month - 60000, "10.0.0.9", ""}};
    EXPECT_EQ(Texts(ActiveMenuItems()),
              "Me{0ActiveMenu: Connected Time: 0h 0m|Page: Home Page}|"
              "10.0.0.9{1ActiveMenu: Connected Time: 720h 1m|Page: }");
}

}  // namespace

}  // namespace pixmora::test
