// What the owner's buttons and menu items do.
#include "console/OwnerActions.h"

#include "console/MenuItems.h"
#include "outside/Address.h"
#include "support/RunningSite.h"

namespace pixmora::test {

namespace {

class OwnerActionsTest : public RunningSite {
protected:
    OwnerActionsTest() : Directory(AddAlbum("Holiday")) {}

    /// What the hands were asked for since the last call, "|" between.
    std::string Done() { return std::exchange(done_, ""); }
    void Note(const std::string &what) { done_ += (done_.empty() ? "" : "|") + what; }

    std::string Directory;
    OwnerActions Actions{{[this] {
                              Note("start");
                              if (canStart_) Start();
                          },
                          [this] { Note("figures"); }, [this] { Note("toggle"); },
                          [this](const SetupOpening &opening) {
                              Note(std::string("setup") + (opening.ShowAlbumsTab ? " albums" : "") +
                                   (opening.AddAlbumOnOpen ? " add" : ""));
                          },
                          [this](const std::string &text) { Note("copy " + text); },
                          [this](const std::string &text) { Note("qr " + text); },
                          [this](const std::string &path) { Note("folder " + path); },
                          [this] {
                              Note("end");
                          }}};

    bool canStart_ = true;

private:
    std::string done_;
};

TEST_F(OwnerActionsTest, StartsAndStopsInTurnAndDrawsTheStatus) {
    Actions.StartStop();
    EXPECT_TRUE(gWebsiteStarted);
    EXPECT_EQ(Done(), "start|figures");
    const int changes = Owner.StatusChanges();
    Actions.StartStop();
    EXPECT_FALSE(gWebsiteStarted);
    EXPECT_GT(Owner.StatusChanges(), changes);
    EXPECT_EQ(Done(), "");
}

TEST_F(OwnerActionsTest, SetupNeedsAStoppedSite) {
    Actions.Setup();
    EXPECT_EQ(Done(), "setup");
    Start();
    const auto setUp = [this](int visitors, int answer) {
        gVisitorsActive = visitors;
        Owner.ExpectMessage("You must stop your website before you enter Setup.\r\n\r\nWould you like to do that now?",
                            FlagYesNo, answer);
        // The owner agrees to stop, then thinks of the visitors.
        if (visitors > 0) Owner.ExpectMessage("There are still people...", FlagYesNo, AnswerNo);
        if (visitors == 0 && answer == AnswerYes)
            Owner.ExpectMessage(
                "In order for your pictures and movies to appear online, you must restart your website.\r\n\r\nWould "
                "you like to do that now?",
                FlagYesNo, AnswerYes);
        Actions.ShowSetup(true, false);
        EXPECT_TRUE(gWebsiteStarted);
        return Done();
    };
    EXPECT_EQ(setUp(0, AnswerNo), "");
    EXPECT_EQ(setUp(1, AnswerYes), "");
    EXPECT_EQ(setUp(0, AnswerYes), "setup albums|start|figures");
}

TEST_F(OwnerActionsTest, StatisticsArePagesOfTheRunningSite) {
    canStart_ = false;
    for (const int answer : {AnswerYes, AnswerNo})
        Owner.ExpectMessage(
            "You must start your website before viewing your statistics.\r\n\r\nWould you like to start it now?",
            FlagYesNo, answer);
    Actions.Statistics();
    EXPECT_EQ(Done(), "start|figures");
    Start();
    Owner.ExpectBrowser("http://" + GetLocalIP() + ":" + std::to_string(Port()) + "/ShowAlbum?ShowStats");
    Actions.Statistics();
}

TEST_F(OwnerActionsTest, ExitAsksByWhatThereIsToLose) {
    const std::tuple<const char *, bool, int, std::string, int> cases[] = {
        // name, is started, visitors of the session, question, flags
        {"stopped", false, 5, "Are you sure you want to exit?", 36},
        {"nobody came", true, 0, "Are you sure you want to stop your website and exit?", 36},
        {"somebody came", true, 1,
         "There are still people on your website! If you stop your website they won't be able to see your "
         "files.\r\n\r\nAre you sure you want to stop your website and exit?",
         4},
    };
    for (const auto &[name, isStarted, sessionVisitors, question, flags] : cases) {
        SCOPED_TRACE(name);
        if (isStarted) Start();
        gConnectionsSession = sessionVisitors;
        gVisitorsActive = 1;  // asked about no more, once the owner has decided
        for (const int answer : {AnswerNo, AnswerYes}) {
            Owner.ExpectMessage(question, flags, answer);
            Actions.HandleClick(SystrayMenu, "Exit");
            EXPECT_EQ(Done(), answer == AnswerNo ? "" : "end");
            EXPECT_EQ(gWebsiteStarted, isStarted && answer == AnswerNo);
        }
    }
}

TEST_F(OwnerActionsTest, AnItemsTextIsItsCommand) {
    gWebsiteAddress = "http://192.0.2.1:8080";
    const std::tuple<const char *, std::string, std::string> cases[] = {
        // menu, item, what is done
        {SystrayMenu, "Active Visitors: 3", ""},
        {SystrayMenu, "Minimize Window", "toggle"},
        {SystrayMenu, "Setup", "setup"},
        {AddressOptsMenu, "Copy Link to Clipboard", "copy http://192.0.2.1:8080"},
        {AddressOptsMenu, "Show QR Code", "qr http://192.0.2.1:8080"},
        {AlbumMenu, "Add New Album", "setup add"},
        {AlbumMenu, "Edit Album", "setup albums"},
        {AlbumMenu, "Holiday", "folder " + Directory},
        {AlbumMenu, "No such album", ""},
        {ActiveMenu, "Holiday", ""},
        {SystrayMenu, "Start Website", "start|figures"},
        {SystrayMenu, "Stop Website", ""},
    };
    for (const auto &[menu, item, done] : cases) {
        Actions.HandleClick(menu, item);
        EXPECT_EQ(Done(), done) << item;
    }
    EXPECT_FALSE(gWebsiteStarted);
}

TEST_F(OwnerActionsTest, PassesTheAddressOn) {
    gWebsiteAddress = "http://192.0.2.1:8080";
    const std::pair<const char *, std::string> items[] = {
        {"View My Website", gWebsiteAddress},
        {"Email Link to Someone", EmailLink(gWebsiteAddress)},
        {"IM Link to Someone", InstantMessageLink(gWebsiteAddress)},
        {"Put Link in AIM Away Message", AwayLink(gWebsiteAddress, "")},
    };
    for (const auto &[item, link] : items) {
        Owner.ExpectBrowser(link);
        Actions.HandleClick(AddressOptsMenu, item);
    }
}

TEST_F(OwnerActionsTest, AnAlbumMayHaveLostItsFolderAndMayBeNamedLikeACommand) {
    std::filesystem::remove(Directory);
    Owner.ExpectMessage("Album directory cannot be found! Please run Setup and fix this album!", FlagCritical);
    Actions.HandleClick(AlbumMenu, "Holiday");
    EXPECT_EQ(Done(), "");
    AddAlbum("Exit");
    Owner.ExpectMessage("Are you sure you want to exit?", 36, AnswerNo);
    Actions.HandleClick(AlbumMenu, "Exit");
    EXPECT_EQ(Done(), "");
}

}  // namespace

}  // namespace pixmora::test
