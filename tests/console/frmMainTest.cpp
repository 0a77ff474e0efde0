// The main window.
#include "console/frmMain.h"

#include "console/Robot.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"
#include "support/RunningSite.h"

namespace pixmora::test {

namespace {

class frmMainTest : public RunningSite {
protected:
    frmMainTest() {
        AddAlbum("Holiday");
        Main.Load();
    }
    ~frmMainTest() override { clsXPMenu::KillAllMenus(); }

    void StartSite() {
        Start();
        Main.UpdateStatus();
    }
    /// The texts of the open menu's items.
    static std::string MenuTexts() {
        std::string texts;
        QWidget *menu = ShownWindow("frmXPMenu");
        if (menu == nullptr) return "(no menu)";
        for (const auto *row : menu->findChildren<QPushButton *>()) texts += row->text().toStdString() + "|";
        return texts;
    }

    std::string Done;
    bool HasTray = true;
    OwnerActions Actions{
        {[this] { Done += "start "; }, [] {}, [] {},
         [this](const SetupOpening &opening) { Done += opening.AddAlbumOnOpen ? "setup add " : "setup "; },
         [](const std::string &) {}, [](const std::string &) {}, [](const std::string &) {},
         [this] {
             Done += "end ";
         }}};
    frmMain Main{Actions,
                 {[this] { return HasTray; }, [this] { Done += "unloaded "; },
                  [this](const QRect &) {
                      Done += "menu ";
                  }}};
};

TEST_F(frmMainTest, FollowsTheStateOfTheSite) {
    EXPECT_EQ(TextOf(Main, "lblAddress"), "Website offline! Click Start Website.");
    EXPECT_FALSE(Find(Main, "imgStopServer").isVisible());
    EXPECT_EQ(Find(Main, "lblSeeActive").toolTip(), QStringLiteral("Start your website first."));
    EXPECT_EQ(Main.focusWidget(), &Find(Main, "cmdStartStop"));
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start ");
    StartSite();
    Owner.ExpectBrowser(gWebsiteAddress);
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start ");
    EXPECT_EQ(TextOf(Main, "lblAddress"), gWebsiteAddress);
    EXPECT_TRUE(Find(Main, "imgStopServer").isVisible());
    Find(Main, "cmdStartStop").resize(300, 50);  // as a long address makes it
    EXPECT_EQ(Find(Main, "imgStopServer").geometry(), QRect(0, 0, 300, 50));
    EXPECT_EQ(Find(Main, "lblSeeActive").toolTip(), QString());
    EXPECT_EQ(Find(Main, "cmdStartStop").accessibleName(), QStringLiteral("Stop Website"));
}

TEST_F(frmMainTest, MenusOpenBesideTheirLinksWhileTheSiteRuns) {
    for (const char *link : {"lblAddressOptions", "lblSeeActive"}) EXPECT_FALSE(Find(Main, link).isEnabled()) << link;
    Click(Main, "lblAlbumsBrowse");
    EXPECT_EQ(MenuTexts(), "Add New Album|Edit Album|Holiday|");
    StartSite();
    Click(Main, "lblSeeActive");
    EXPECT_EQ(MenuTexts(), "No Active Users|");
    Click(Main, "lblAddressOptions");
    EXPECT_TRUE(MenuTexts().starts_with("View My Website|"));
}

TEST_F(frmMainTest, WithoutAlbumsTheLinkMakesTheFirst) {
    EXPECT_EQ(TextOf(Main, "lblStatAlbums") + TextOf(Main, "lblAlbumsBrowse"), "1Browse");
    AlbumEditor("Holiday").Delete();
    Main.UpdateStatus();
    EXPECT_EQ(TextOf(Main, "lblStatAlbums") + TextOf(Main, "lblAlbumsBrowse"), "0Create");
    Click(Main, "lblAlbumsBrowse");
    EXPECT_EQ(Done, "setup add ");
}

TEST_F(frmMainTest, ShowsFiguresEachSecondAndOnLoading) {
    gThumbsTotal = 7;
    Main.Load();
    EXPECT_EQ(TextOf(Main, "lblStatThumbsTotal"), "7");
    EXPECT_EQ(TextOf(Main, "lblStatRunningTimeSession"), "0h 0m");
    Clock.Advance(3600000);
    gOnlineTimer->StopTimer();  // a start that failed before its first step
    Main.ShowFigures();
    EXPECT_EQ(TextOf(Main, "lblStatRunningTimeSession"), "0h 0m");
    Main.Load();  // while a question of the start is open
    StartSite();
    gThumbsSession = 2;
    EXPECT_TRUE(TurnUntil([this] { return TextOf(Main, "lblStatThumbsSession") == "2"; }));
    Main.Unload();
    gVisitorsActive = 4;
    gBandwidthSession = 3;
    Main.Load();
    EXPECT_EQ(TextOf(Main, "lblStatActiveSession"), "4");
    EXPECT_EQ(TextOf(Main, "lblStatBandwidthSession"), "3.00 KB");
}

TEST_F(frmMainTest, GoesToTheTrayOrIsMinimised) {
    EXPECT_FALSE(Find(Main, "cmdMenu").isVisible());
    Click(Main, "imgMin");
    EXPECT_EQ(Done, "unloaded ");
    EXPECT_FALSE(Main.isVisible());
    HasTray = false;
    Main.LookForTray();
    EXPECT_FALSE(Main.isVisible()) << "a tray may come back";
    Main.LookForTray();
    EXPECT_TRUE(Main.IsUp()) << "nothing else brings it back";
    EXPECT_TRUE(Find(Main, "cmdMenu").isVisible());
    Click(Main, "cmdMenu");
    EXPECT_EQ(Done, "unloaded menu ");
    for (int close = 0; close < 2; ++close) Main.close();  // by the desktop
    EXPECT_EQ(Done, "unloaded menu unloaded ");
    EXPECT_TRUE(Main.isVisible());
    EXPECT_TRUE(Main.isMinimized());
}

TEST_F(frmMainTest, EverythingIsReachedAndWorkedByKeys) {
    StartSite();
    std::string order;
    QWidget *first = &Find(Main, "lblAddress");
    first->setFocus();
    for (QWidget *at = first;;) {
        order += at->objectName().toStdString() + " ";
        do at = at->nextInFocusChain();
        while (at != first && !((at->focusPolicy() & Qt::TabFocus) != 0 && at->isEnabled() && at->isVisible()));
        if (at == first) break;
    }
    EXPECT_EQ(order,
              "lblAddress lblAddressOptions lblAlbumsBrowse lblSeeActive cmdStartStop cmdSetup cmdStatistics cmdAbout "
              "cmdExit imgMin ");
    Owner.ExpectMessage("Are you sure you want to stop your website and exit?", 36, AnswerNo);
    QTest::keyClick(&Find(Main, "cmdExit"), Qt::Key_Return);
    QTest::keyClick(&Main, Qt::Key_Escape);
    EXPECT_EQ(Done, "");
    for (const auto *control : Main.findChildren<QPushButton *>())
        EXPECT_FALSE(control->accessibleName().isEmpty() && control->text().isEmpty()) << FromQt(control->objectName());
}

}  // namespace

}  // namespace pixmora::test
