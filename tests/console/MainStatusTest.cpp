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

class MainStatusTest : public RunningSite {};

TEST_F(MainStatusTest, SaysThatTheSiteIsOfflineUntilItRuns) {
    EXPECT_FALSE(ReadMainStatus().HasAlbums);
    EXPECT_EQ(ReadMainStatus().Albums, "0");
    EXPECT_EQ(ReadMainStatus().Address, "Website offline! Click Start Website.");
    EXPECT_EQ(ReadMainStatus().Version, "Version: 1.0.0");
    AddAlbum("Holiday");
    Start();
    EXPECT_TRUE(ReadMainStatus().IsStarted);
    EXPECT_TRUE(ReadMainStatus().HasAlbums);
    EXPECT_EQ(ReadMainStatus().Albums, "1");
    EXPECT_EQ(ReadMainStatus().Address, gWebsiteAddress);
}

TEST_F(MainStatusTest, ShowsOnlyTheServicesAddressWithoutItsScheme) {
    gWebsiteStarted = true;
    gWebsiteAddress = "http://service.example?anna";
    EXPECT_EQ(ReadMainStatus().Address, "http://service.example?anna");
    SaveSetting("Setup", "ServiceBase", "http://service.example");
    EXPECT_EQ(ReadMainStatus().Address, "service.example?anna");
    gWebsiteAddress = "http://192.0.2.1:8080";
    EXPECT_EQ(ReadMainStatus().Address, "http://192.0.2.1:8080");
    gWebsiteStarted = false;
}

TEST_F(MainStatusTest, AddsTheSessionToTheTotals) {
    gRunningTotal = 60 * 24 - 1;  // a minute short of a day
    gConnectionsTotal = 1000;
    gThumbsTotal = 20;
    gDownloadsTotal = 3;
    gBandwidthTotal = 1;
    EXPECT_EQ(ReadStoredFigures().Total.RunningTime, "0d 23h");
    EXPECT_EQ(ReadStoredFigures().Total.Connections, "1000");
    EXPECT_EQ(ReadStoredFigures().Session.Connections, "0");
    EXPECT_EQ(ReadStoredFigures().Session.Bandwidth, "0 bytes");

    gOnlineTimer->StartTimer();
    gVisitorsActive = 2;
    gConnectionsSession = 5;
    gThumbsSession = 6;
    gDownloadsSession = 7;
    gBandwidthSession = 1;
    Clock.Advance(60999);
    const MainFigures figures = ReadRunningFigures();
    EXPECT_EQ(figures.ActiveVisitors, "2");
    EXPECT_EQ(figures.Session.RunningTime, "0h 1m");
    EXPECT_EQ(figures.Total.RunningTime, "1d 0h");
    EXPECT_EQ(figures.Total.Connections, "1005");
    EXPECT_EQ(figures.Total.Thumbs, "26");
    EXPECT_EQ(figures.Total.Downloads, "10");
    EXPECT_EQ(figures.Session.Bandwidth, "1.00 KB");
    EXPECT_EQ(figures.Total.Bandwidth, "2.00 KB");
}

TEST_F(MainStatusTest, TurnsToDaysOnlyAfterTheWholeFirstDay) {
    gOnlineTimer->StartTimer();
    Clock.Advance(86400000);
    EXPECT_EQ(ReadRunningFigures().Session.RunningTime, "24h 0m");
    Clock.Advance(1);
    EXPECT_EQ(ReadRunningFigures().Session.RunningTime, "1d 0h");
    gBandwidthSession = 2000000001.0 / 1024;
    EXPECT_EQ(ReadRunningFigures().Session.Bandwidth, "1.86 GB");
}

TEST_F(MainStatusTest, ItemsFollowTheState) {
    gVisitorsActive = 0;
    EXPECT_EQ(Texts(SystrayMenuItems(true)), "Active Visitors: 0||Start Website|Setup||Minimize Window||Exit");
    gWebsiteStarted = true;
    gVisitorsActive = 3;
    EXPECT_EQ(Texts(SystrayMenuItems(false)),
              "Active Visitors: 3||Stop Website|Setup||Put Link in AIM Away Message||Restore Window||Exit");
    gWebsiteStarted = false;
    AddAlbum("Alps & lakes");
    AddAlbum("Exit");
    EXPECT_EQ(Texts(AlbumMenuItems()), "Add New Album|Edit Album||Alps & lakes|Exit");
}

TEST_F(MainStatusTest, VisitorsHaveTheirVisitBesideThem) {
    EXPECT_EQ(Texts(ActiveMenuItems()), "No Active Users");
    gVisitors = {{0, GetTickCount(), "127.0.0.1", "Home Page"}, {0, GetTickCount() - 3660000, "10.0.0.9", ""}};
    EXPECT_EQ(Texts(ActiveMenuItems()),
              "Me{0ActiveMenu: Connected Time: 0h 0m|Page: Home Page}|"
              "10.0.0.9{1ActiveMenu: Connected Time: 1h 1m|Page: }");
}

}  // namespace

}  // namespace pixmora::test
