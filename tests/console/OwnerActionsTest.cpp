// What the menus say about a site, and what the owner's buttons and menu items do.
#include "console/OwnerActions.h"

#include "console/MainStatus.h"
#include "console/MenuItems.h"
#include "console/Robot.h"
#include "outside/Address.h"
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

class OwnerActionsTest : public RunningSite {
protected:
    OwnerActionsTest() : Directory(AddAlbum("Holiday")) {}

    /// What the hands were asked for since the last call, "|" behind each.
    std::string Done() { return std::exchange(done_, ""); }
    std::string Click(const std::string &menu, const std::string &item) {
        Actions.HandleClick(menu, item);
        return Done();
    }
    ActionHands Hands() {
        const auto start = [this] {
            done_ += "start|";
            if (CanStart) Start();
        };
        const auto setUp = [this](const SetupOpening &opening) {
            done_ += Concat("setup", opening.ShowAlbumsTab ? " albums" : "", opening.AddAlbumOnOpen ? " add|" : "|");
        };
        return {start,
                Noting(done_, "figures"),
                Noting(done_, "toggle"),
                setUp,
                Noting(done_, "copy "),
                Noting(done_, "qr "),
                Noting(done_, "folder "),
                Noting(done_, "end")};
    }

    std::string Directory;
    bool CanStart = true;
    OwnerActions Actions{Hands()};

private:
    std::string done_;
};

TEST_F(OwnerActionsTest, AddressAndMenusFollowTheState) {
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
    AddAlbum("Exit");
    EXPECT_EQ(Texts(AlbumMenuItems()), "Add New Album|Edit Album||Exit|Holiday");
    EXPECT_EQ(Texts(ActiveMenuItems()), "No Active Users");
    constexpr std::int64_t month = 30 * 86400000LL;  // ms
    gVisitors = {{0, Uptime(), "127.0.0.1", "Home Page"}, {0, Uptime() - month - 60000, "10.0.0.9", ""}};
    EXPECT_EQ(Texts(ActiveMenuItems()),
              "Me{0ActiveMenu: Connected Time: 0h 0m|Page: Home Page}|"
              "10.0.0.9{1ActiveMenu: Connected Time: 720h 1m|Page: }");
}

TEST_F(OwnerActionsTest, SetupNeedsAStoppedSiteAndStatisticsARunningOne) {
    EXPECT_EQ(Click(SystrayMenu, "Setup"), "setup|");
    CanStart = false;
    for (const int answer : {AnswerYes, AnswerNo})
        Owner.ExpectMessage("You must start your website before viewing your statistics...", FlagYesNo, answer);
    Actions.Statistics();
    EXPECT_EQ(Done(), "start|figures|");
    CanStart = true;
    const int changes = Owner.StatusChanges();
    EXPECT_EQ(Click(SystrayMenu, "Start Website"), "start|figures|");
    EXPECT_GT(Owner.StatusChanges(), changes);
    Owner.ExpectBrowser("http://" + GetLocalIP() + ":" + std::to_string(Port()) + "/ShowAlbum?ShowStats");
    Actions.Statistics();
    const auto setUp = [this](int visitors, int answer) {
        gVisitorsActive = visitors;
        Owner.ExpectMessage("You must stop your website before you enter Setup...", FlagYesNo, answer);
        // The owner agrees to stop, then thinks of the visitors.
        if (visitors > 0) Owner.ExpectMessage("There are still people...", FlagYesNo, AnswerNo);
        if (visitors == 0 && answer == AnswerYes)
            Owner.ExpectMessage("In order for your pictures and movies to appear online...", FlagYesNo, AnswerYes);
        const std::string done = Click(AlbumMenu, "Edit Album");
        EXPECT_TRUE(gWebsiteStarted);
        return done;
    };
    EXPECT_EQ(setUp(0, AnswerNo), "");
    EXPECT_EQ(setUp(1, AnswerYes), "");
    EXPECT_EQ(setUp(0, AnswerYes), "setup albums|start|figures|");
    EXPECT_EQ(Click(SystrayMenu, "Stop Website"), "");
    EXPECT_FALSE(gWebsiteStarted);
}

TEST_F(OwnerActionsTest, ExitAsksByWhatThereIsToLose) {
    const std::tuple<bool, int, std::string, int> cases[] = {
        // is started, visitors of the session, question, flags
        {false, 5, "Are you sure you want to exit?", 36},
        {true, 0, "Are you sure you want to stop your website and exit?", 36},
        {true, 1, "There are still people on your website!...", 4},
    };
    for (const auto &[isStarted, sessionVisitors, question, flags] : cases) {
        if (isStarted) Start();
        gConnectionsSession = sessionVisitors;
        gVisitorsActive = 1;  // asked about no more, once the owner has decided
        for (const int answer : {AnswerNo, AnswerYes}) {
            Owner.ExpectMessage(question, flags, answer);
            EXPECT_EQ(Click(SystrayMenu, "Exit"), answer == AnswerNo ? "" : "end|");
            EXPECT_EQ(gWebsiteStarted, isStarted && answer == AnswerNo) << question;
        }
    }
}

TEST_F(OwnerActionsTest, AnItemsTextIsItsCommand) {
    gWebsiteAddress = "http://192.0.2.1:8080";
    const std::tuple<const char *, std::string, std::string> cases[] = {
        // menu, item, what is done
        {SystrayMenu, "Active Visitors: 3", ""},
        {SystrayMenu, "Minimize Window", "toggle|"},
        {AddressOptsMenu, "Copy Link to Clipboard", "copy http://192.0.2.1:8080|"},
        {AddressOptsMenu, "Show QR Code", "qr http://192.0.2.1:8080|"},
        {AlbumMenu, "Add New Album", "setup add|"},
        {AlbumMenu, "Holiday", "folder " + Directory + "|"},
        {AlbumMenu, "No such album", ""},
        {ActiveMenu, "Holiday", ""},
    };
    for (const auto &[menu, item, done] : cases) EXPECT_EQ(Click(menu, item), done) << item;
    const std::pair<const char *, std::string> links[] = {
        {"View My Website", gWebsiteAddress},
        {"Email Link to Someone", EmailLink(gWebsiteAddress)},
        {"IM Link to Someone", InstantMessageLink(gWebsiteAddress)},
        {"Put Link in AIM Away Message", AwayLink(gWebsiteAddress, "")},
    };
    for (const auto &[item, link] : links) {
        Owner.ExpectBrowser(link);
        EXPECT_EQ(Click(AddressOptsMenu, item), "");
    }
    std::filesystem::remove(Directory);
    Owner.ExpectMessage("Album directory cannot be found! Please run Setup and fix this album!", FlagCritical);
    EXPECT_EQ(Click(AlbumMenu, "Holiday"), "");
    AddAlbum("Exit");
    Owner.ExpectMessage("Are you sure you want to exit?", 36, AnswerNo);
    EXPECT_EQ(Click(AlbumMenu, "Exit"), "") << "an album may be named like a command";
}

}  // namespace
}  // namespace pixmora::test
