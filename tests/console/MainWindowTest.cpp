// The main window with the menus and the owner's actions behind it, and the start window.
#include "console/frmMain.h"

#include <QProgressBar>

#include "console/MainStatus.h"
#include "console/MenuItems.h"
#include "console/OwnerActions.h"
#include "console/Robot.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"
#include "console/frmStartStatus.h"
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
    std::string Done() { return std::exchange(Notes, ""); }
    std::string Choose(const std::string &menu, const std::string &item) {
        Actions.HandleClick(menu, item);
        return Done();
    }
    ActionHands Hands() {
        const auto start = [this] {
            Notes += "start|";
            if (CanStart) Start();
        };
        const auto setUp = [this](const SetupOpening &opening) {
            Notes += Concat("setup", opening.ShowAlbumsTab ? " albums" : "", opening.AddAlbumOnOpen ? " add|" : "|");
        };
        return {start,
                Noting(Notes, "figures"),
                Noting(Notes, "toggle"),
                setUp,
                Noting(Notes, "copy "),
                Noting(Notes, "qr "),
                Noting(Notes, "folder "),
                Noting(Notes, "end")};
    }

    std::string Notes;
    std::string Directory;
    bool CanStart = true;
    OwnerActions Actions{Hands()};
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
    EXPECT_EQ(Choose(SystrayMenu, "Setup"), "setup|");
    CanStart = false;
    for (const int answer : {AnswerYes, AnswerNo})
        Owner.ExpectMessage("You must start your website before viewing your statistics...", FlagYesNo, answer);
    Actions.Statistics();
    EXPECT_EQ(Done(), "start|figures|");
    CanStart = true;
    const int changes = Owner.StatusChanges();
    EXPECT_EQ(Choose(SystrayMenu, "Start Website"), "start|figures|");
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
        const std::string done = Choose(AlbumMenu, "Edit Album");
        EXPECT_TRUE(gWebsiteStarted);
        return done;
    };
    EXPECT_EQ(setUp(0, AnswerNo), "");
    EXPECT_EQ(setUp(1, AnswerYes), "");
    EXPECT_EQ(setUp(0, AnswerYes), "setup albums|start|figures|");
    EXPECT_EQ(Choose(SystrayMenu, "Stop Website"), "");
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
            EXPECT_EQ(Choose(SystrayMenu, "Exit"), answer == AnswerNo ? "" : "end|");
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
    for (const auto &[menu, item, done] : cases) EXPECT_EQ(Choose(menu, item), done) << item;
    const std::pair<const char *, std::string> links[] = {
        {"View My Website", gWebsiteAddress},
        {"Email Link to Someone", EmailLink(gWebsiteAddress)},
        {"IM Link to Someone", InstantMessageLink(gWebsiteAddress)},
        {"Put Link in AIM Away Message", AwayLink(gWebsiteAddress, "")},
    };
    for (const auto &[item, link] : links) {
        Owner.ExpectBrowser(link);
        EXPECT_EQ(Choose(AddressOptsMenu, item), "");
    }
    std::filesystem::remove(Directory);
    Owner.ExpectMessage("Album directory cannot be found! Please run Setup and fix this album!", FlagCritical);
    EXPECT_EQ(Choose(AlbumMenu, "Holiday"), "");
    AddAlbum("Exit");
    Owner.ExpectMessage("Are you sure you want to exit?", 36, AnswerNo);
    EXPECT_EQ(Choose(AlbumMenu, "Exit"), "") << "an album may be named like a command";
}

class frmMainTest : public OwnerActionsTest {
protected:
    frmMainTest() { Main.Load(); }
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

    bool HasTray = true;
    frmMain Main{Actions,
                 {[this] { return HasTray; }, Noting(Notes, "unloaded"),
                  [this](const QRect &) {
                      Notes += "menu|";
                  }}};
};

TEST_F(frmMainTest, FollowsTheStateOfTheSite) {
    EXPECT_EQ(Text("lblAddress"), "Website offline! Click Start Website.");
    EXPECT_FALSE(Control("imgStopServer").isVisible());
    EXPECT_EQ(Main.focusWidget(), &Control("cmdStartStop"));
    for (const char *link : {"lblAddressOptions", "lblSeeActive"}) EXPECT_FALSE(Control(link).isEnabled()) << link;
    CanStart = false;
    Click(Main, "lblAddress");
    EXPECT_EQ(Done(), "start|figures|");
    EXPECT_EQ(MenuOf("lblAlbumsBrowse"), "Add New Album|Edit Album|Holiday|");
    StartSite();
    Owner.ExpectBrowser(gWebsiteAddress);
    Click(Main, "lblAddress");
    EXPECT_EQ(Done(), "");
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
    EXPECT_EQ(Done(), "");
    for (const auto *control : Main.findChildren<QPushButton *>())
        EXPECT_FALSE(control->accessibleName().isEmpty() && control->text().isEmpty()) << FromQt(control->objectName());
}

TEST_F(frmMainTest, GoesToTheTrayOrIsMinimised) {
    EXPECT_FALSE(Control("cmdMenu").isVisible());
    Click(Main, "imgMin");
    EXPECT_EQ(Done(), "unloaded|");
    EXPECT_FALSE(Main.isVisible());
    HasTray = false;
    Main.LookForTray();
    EXPECT_FALSE(Main.isVisible()) << "a tray may come back";
    Main.LookForTray();
    EXPECT_TRUE(Main.IsUp()) << "nothing else brings it back";
    Click(Main, "cmdMenu");
    EXPECT_EQ(Done(), "menu|");
    for (int close = 0; close < 2; ++close) Main.close();  // by the desktop
    EXPECT_EQ(Done(), "unloaded|");
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
