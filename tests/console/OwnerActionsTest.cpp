// What the owner's buttons and menu items do.
#include "console/OwnerActions.h"

#include "console/MenuItems.h"
#include "outside/Address.h"
#include "support/RunningSite.h"

namespace pixmora::test {

namespace {

constexpr const char *peopleThere =
    "There are still people on your website! If you stop your website they won't be able to see your files.\r\n\r\n";
constexpr const char *stopForSetup =
    "You must stop your website before you enter Setup.\r\n\r\nWould you like to do that now?";
constexpr const char *restartAfterSetup =
    "In order for your pictures and movies to appear online, you must restart your website.\r\n\r\n"
    "Would you like to do that now?";
constexpr const char *startForStatistics =
    "You must start your website before viewing your statistics.\r\n\r\nWould you like to start it now?";

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
    gVisitorsActive = 1;
    Owner.ExpectMessage(peopleThere + std::string("Are you sure you want to stop?"), FlagYesNo, AnswerNo);
    Actions.StartStop();
    EXPECT_TRUE(gWebsiteStarted);
    gVisitorsActive = 0;
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
    Owner.ExpectMessage(stopForSetup, FlagYesNo, AnswerNo);
    Actions.ShowSetup(true, false);
    EXPECT_TRUE(gWebsiteStarted);
    EXPECT_EQ(Done(), "");

    gVisitorsActive = 1;  // the owner agrees to stop, then thinks of the visitors
    Owner.ExpectMessage(stopForSetup, FlagYesNo, AnswerYes);
    Owner.ExpectMessage(peopleThere + std::string("Are you sure you want to stop?"), FlagYesNo, AnswerNo);
    Actions.ShowSetup(true, false);
    EXPECT_EQ(Done(), "");

    gVisitorsActive = 0;
    Owner.ExpectMessage(stopForSetup, FlagYesNo, AnswerYes);
    Owner.ExpectMessage(restartAfterSetup, FlagYesNo, AnswerYes);
    Actions.ShowSetup(true, false);
    EXPECT_EQ(Done(), "setup albums|start|figures");
    EXPECT_TRUE(gWebsiteStarted);
}

TEST_F(OwnerActionsTest, StatisticsArePagesOfTheRunningSite) {
    canStart_ = false;
    Owner.ExpectMessage(startForStatistics, FlagYesNo, AnswerYes);
    Owner.ExpectMessage(startForStatistics, FlagYesNo, AnswerNo);
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
        {"somebody came", true, 1, peopleThere + std::string("Are you sure you want to stop your website and exit?"),
         4},
    };
    for (const auto &[name, isStarted, sessionVisitors, question, flags] : cases) {
        SCOPED_TRACE(name);
        if (isStarted) Start();
        gConnectionsSession = sessionVisitors;
        gVisitorsActive = 1;  // asked about no more, once the owner has decided
        Owner.ExpectMessage(question, flags, AnswerNo);
        Actions.HandleClick(SystrayMenu, "Exit");
        EXPECT_EQ(Done(), "");
        EXPECT_EQ(gWebsiteStarted, isStarted);
        Owner.ExpectMessage(question, flags, AnswerYes);
        Actions.HandleClick(SystrayMenu, "Exit");
        EXPECT_EQ(Done(), "end");
        EXPECT_FALSE(gWebsiteStarted);
    }
}

TEST_F(OwnerActionsTest, AnItemsTextIsItsCommand) {
    gWebsiteAddress = "http://192.0.2.1:8080";
    const std::tuple<const char *, std::string, std::string> cases[] = {
        // menu, item, what is done
        {SystrayMenu, "Active Visitors: 3", ""},
        {SystrayMenu, "Restore Window", "toggle"},
        {SystrayMenu, "Minimize Window", "toggle"},
        {SystrayMenu, "Setup", "setup"},
        {AddressOptsMenu, "Copy Link to Clipboard", "copy http://192.0.2.1:8080"},
        {AddressOptsMenu, "Show QR Code", "qr http://192.0.2.1:8080"},
        {AlbumMenu, "Add New Album", "setup add"},
        {AlbumMenu, "Edit Album", "setup albums"},
        {AlbumMenu, "Holiday", "folder " + Directory},
        {AlbumMenu, "No such album", ""},
        {ActiveMenu, "Holiday", ""},
        {"0ActiveMenu", "Page: Album: Holiday", ""},
        {SystrayMenu, "exit", ""},
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
    Owner.ExpectBrowser("http://192.0.2.1:8080");
    Actions.HandleClick(AddressOptsMenu, "View My Website");
    Owner.ExpectBrowser("mailto:?subject=Check%20this%20out!&body=Here's%20the%20link:%20http://192.0.2.1:8080");
    Actions.HandleClick(AddressOptsMenu, "Email Link to Someone");
    Owner.ExpectBrowser("aim:goim?screenname=&message=Check+out+http://192.0.2.1:8080");
    Actions.HandleClick(AddressOptsMenu, "IM Link to Someone");
    Owner.ExpectBrowser(AwayLink("http://192.0.2.1:8080", ""));
    Actions.HandleClick(SystrayMenu, "Put Link in AIM Away Message");
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
