// The main window and the start window.
#include "console/frmMain.h"

#include <QProgressBar>

#include "console/Robot.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"
#include "console/frmStartStatus.h"
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

    ActionHands Hands() {
        ActionHands hands;
        hands.StartWebsite = Noting(Done, "start");
        hands.ShowFigures = Noting(Done, "figures");
        return hands;
    }
    MainWindowHands WindowHands() {
        return {[this] { return HasTray; }, Noting(Done, "unloaded"),
                [this](const QRect &) {
                    Done += "menu|";
                }};
    }

    std::string Done;
    bool HasTray = true;
    OwnerActions Actions{Hands()};
    frmMain Main{Actions, WindowHands()};
};

TEST_F(frmMainTest, FollowsTheStateOfTheSite) {
    EXPECT_EQ(Text("lblAddress"), "Website offline! Click Start Website.");
    EXPECT_FALSE(Control("imgStopServer").isVisible());
    EXPECT_EQ(Main.focusWidget(), &Control("cmdStartStop"));
    for (const char *link : {"lblAddressOptions", "lblSeeActive"}) EXPECT_FALSE(Control(link).isEnabled()) << link;
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start|figures|");
    EXPECT_EQ(MenuOf("lblAlbumsBrowse"), "Add New Album|Edit Album|Holiday|");
    StartSite();
    Owner.ExpectBrowser(gWebsiteAddress);
    Click(Main, "lblAddress");
    EXPECT_EQ(Done, "start|figures|");
    EXPECT_EQ(Text("lblAddress"), gWebsiteAddress);
    EXPECT_EQ(MenuOf("lblSeeActive"), "No Active Users|");
    EXPECT_TRUE(MenuOf("lblAddressOptions").starts_with("View My Website|"));
    EXPECT_TRUE(Control("imgStopServer").isVisible());
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
    StartSite();
    gThumbsSession = 2;
    EXPECT_TRUE(TurnUntil([this] { return Text("lblStatThumbsSession") == "2"; }));
    gRunningTotal = 60 * 24 - 1;  // a minute short of a day
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
    EXPECT_EQ(Done, "unloaded|");
    EXPECT_FALSE(Main.isVisible());
    HasTray = false;
    Main.LookForTray();
    EXPECT_FALSE(Main.isVisible()) << "a tray may come back";
    Main.LookForTray();
    EXPECT_TRUE(Main.IsUp()) << "nothing else brings it back";
    Click(Main, "cmdMenu");
    EXPECT_EQ(Done, "unloaded|menu|");
    for (int close = 0; close < 2; ++close) Main.close();  // by the desktop
    EXPECT_EQ(Done, "unloaded|menu|unloaded|");
    EXPECT_TRUE(Main.isVisible());
    EXPECT_TRUE(Main.isMinimized());
}

class frmStartStatusTest : public RunningSite {
protected:
    /// Runs the window; when its sequence is over, with that status, does what the owner does then.
    void RunWindow(const std::string &status, const std::function<void(QWidget &)> &action) {
        Hands.WhenStartEnds([&](QWidget &form) {
            EXPECT_EQ(TextOf(form, "lblStatus"), status);
            action(form);
        });
        frmStartStatus().Run(nullptr);
    }

    Robot Hands;
};

TEST_F(frmStartStatusTest, ShowsTheStartHeedsACancelAndOffersTheSite) {
    const std::string folder = AddAlbum("Holiday");
    Hands.WhenShown("frmStartStatus", [](QWidget &form) {
        EXPECT_EQ(TextOf(form, "cmdCancel"), "Cancel");
        Click(form, "cmdCancel");
        EXPECT_FALSE(Find(form, "cmdCancel").isEnabled());
        EXPECT_TRUE(form.isVisible());
    });
    RunWindow("Pixmora! Stopped!", [](QWidget &form) {
        EXPECT_FALSE(Find(form, "cmdViewSite").isVisible());
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    std::filesystem::remove(folder);
    Owner.ExpectMessage("Your album 'Holiday' cannot be found!...", CriticalQuestion, AnswerYes);
    RunWindow("Pixmora! Stopped!", [](QWidget &form) {
        EXPECT_EQ(Find<QProgressBar>(form, "prg").value(), 0) << "it failed half way";
        Click(form, "cmdCancel");
    });
    EXPECT_FALSE(gWebsiteStarted);
    std::filesystem::create_directory(folder);
    RunWindow("Your Website is Live!", [](QWidget &form) {
        EXPECT_TRUE(Find(form, "cmdViewSite").isVisible());
        auto &window = dynamic_cast<frmStartStatus &>(form);
        EXPECT_TRUE(window.tmrClose.Enabled());
        window.tmrClose.OnTimer();
    });
    EXPECT_TRUE(gWebsiteStarted);
    RunWindow("Your Website is Live!", [this](QWidget &form) {
        EXPECT_TRUE(Find(form, "cmdCancel").isEnabled() && Find(form, "cmdCancel").hasFocus());
        const auto &bar = Find<QProgressBar>(form, "prg");
        EXPECT_EQ(bar.value(), bar.maximum());
        Owner.ExpectBrowser(gWebsiteAddress);
        Click(form, "cmdViewSite");
    });
}

}  // namespace
}  // namespace pixmora::test
