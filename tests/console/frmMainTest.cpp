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
    std::string Text(const char *name) const { return TextOf(Main, name); }
    QWidget &Control(const char *name) const { return Find(Main, name); }
    /// The texts of the items of the menu that a link opens.
    std::string MenuOf(const char *link) const {
        Click(Main, link);
        QWidget *menu = ShownWindow("frmXPMenu");
        if (menu == nullptr) return "(no menu)";
        std::string texts;
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
    EXPECT_EQ(Text("lblAddress"), "Website offline! Click Start Website.");
    EXPECT_FALSE(Control("imgStopServer").isVisible());
    EXPECT_EQ(Control("lblSeeActive").toolTip(), QStringLiteral("Start your website first."));
    EXPECT_EQ(Main.focusWidget(), &Control("cmdStartStop"));
    for (const char *link : {"lblAddressOptions", "lblSeeActive"}) EXPECT_FALSE(Control(link).isEnabled()) << link;
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start ");
    EXPECT_EQ(MenuOf("lblAlbumsBrowse"), "Add New Album|Edit Album|Holiday|");
    StartSite();
    Owner.ExpectBrowser(gWebsiteAddress);
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start ");
    EXPECT_EQ(Text("lblAddress"), gWebsiteAddress);
    EXPECT_EQ(MenuOf("lblSeeActive"), "No Active Users|");
    EXPECT_TRUE(MenuOf("lblAddressOptions").starts_with("View My Website|"));
    EXPECT_TRUE(Control("imgStopServer").isVisible());
    Control("cmdStartStop").resize(300, 50);  // as a long address makes it
    EXPECT_EQ(Control("imgStopServer").geometry(), QRect(0, 0, 300, 50));
    EXPECT_EQ(Control("lblSeeActive").toolTip(), QString());
    EXPECT_EQ(Control("cmdStartStop").accessibleName(), QStringLiteral("Stop Website"));
    EXPECT_EQ(Text("lblStatAlbums") + Text("lblAlbumsBrowse"), "1Browse");
    AlbumEditor("Holiday").Delete();
    Main.UpdateStatus();
    EXPECT_EQ(Text("lblStatAlbums") + Text("lblAlbumsBrowse"), "0Create");
}

TEST_F(frmMainTest, ShowsFiguresEachSecondAndOnLoading) {
    const auto figures = [this](const std::string &column) {
        std::string texts;
        for (const char *figure : {"RunningTime", "Connections", "Thumbs", "Downloads", "Bandwidth"})
            texts += Text(("lblStat" + (figure + column)).c_str()) + "|";
        return texts;
    };
    gRunningTotal = 60 * 24 - 1;  // a minute short of a day
    gConnectionsTotal = 1000;
    gThumbsTotal = 20;
    gDownloadsTotal = 3;
    gBandwidthTotal = 1;
    Main.Load();
    EXPECT_EQ(figures("Total"), "0d 23h|1000|20|3|1.00 KB|");
    Clock.Advance(3600000);
    gOnlineTimer->StopTimer();  // a start that failed before its first step
    Main.ShowFigures();
    EXPECT_EQ(Text("lblStatRunningTimeSession"), "0h 0m");
    Main.Load();  // while a question of the start is open
    StartSite();
    gThumbsSession = 2;
    EXPECT_TRUE(TurnUntil([this] { return Text("lblStatThumbsSession") == "2"; }));
    Main.Unload();
    gRunningTotal = 60 * 24 - 1;
    gConnectionsTotal = 1000;
    gBandwidthTotal = 1;
    gVisitorsActive = gConnectionsSession = 4;
    gBandwidthSession = 3;
    gOnlineTimer->StartTimer();
    Clock.Advance(86400000);
    Main.Load();
    EXPECT_EQ(Text("lblStatActiveSession"), "4");
    EXPECT_EQ(figures("Session"), "24h 0m|4|2|0|3.00 KB|");
    EXPECT_EQ(figures("Total"), "1d 23h|1004|2|0|4.00 KB|");
    Clock.Advance(60000);
    gBandwidthSession = 2000000001.0 / 1024;
    Main.Load();
    EXPECT_EQ(figures("Session"), "1d 0h|4|2|0|1.86 GB|");
    EXPECT_EQ(Text("lblStatRunningTimeTotal"), "2d 0h");
    gOnlineTimer->StopTimer();
    Clock.Advance(3600000);
    EXPECT_EQ(gOnlineTimer->Elapsed(), 86460000);
}

TEST_F(frmMainTest, GoesToTheTrayOrIsMinimised) {
    EXPECT_FALSE(Control("cmdMenu").isVisible());
    Click(Main, "imgMin");
    EXPECT_EQ(Done, "unloaded ");
    EXPECT_FALSE(Main.isVisible());
    HasTray = false;
    Main.LookForTray();
    EXPECT_FALSE(Main.isVisible()) << "a tray may come back";
    Main.LookForTray();
    EXPECT_TRUE(Main.IsUp()) << "nothing else brings it back";
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
    QWidget *first = &Control("lblAddress");
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
    QTest::keyClick(&Control("cmdExit"), Qt::Key_Return);
    QTest::keyClick(&Main, Qt::Key_Escape);
    EXPECT_EQ(Done, "");
    for (const auto *control : Main.findChildren<QPushButton *>())
        EXPECT_FALSE(control->accessibleName().isEmpty() && control->text().isEmpty()) << FromQt(control->objectName());
}

}  // namespace
}  // namespace pixmora::test
