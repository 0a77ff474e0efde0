// The desktop program: its run modes, and its windows as the owner's dialogue.
#include "console/Desktop.h"

#include "console/Robot.h"
#include "console/RunMode.h"
#include "console/clsXPMenu.h"
#include "core/WebsiteStop.h"
#include "core/modMain.h"
#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/runtime/RunTimeError.h"
#include "support/Client.h"
#include "support/SetupFixture.h"

namespace pixmora::test {
namespace {

class DesktopTest : public testing::Test {
protected:
    DesktopTest() {
        SaveSetting("Setup", "ListenPort", "0");
        SaveSetting("Setup", "RunSetup", "1");
        gWebsiteAddress.clear();
    }
    ~DesktopTest() override {
        if (gWebsiteStarted) StopWebsite(true);
        Program.reset();
        ReleaseProgram();
    }

    /// A new program, whose splash screen is clicked away first of all.
    void Begin() {
        const auto showSetup = [this](const SetupOpening &) {
            Done += "setup|";
            WhileSetupIsOpen();
        };
        const auto open = [this](const std::string &address) {
            Done += "open " + address + "|";
            return CanOpen;
        };
        Program.reset();  // the owner's dialogue is one at a time
        Program = std::make_unique<Desktop>(SetupForms{showSetup, Noting(Done, "album ")},
                                            Shell{open, [] { return true; }, Noting(Done, "end")});
        Done.clear();
        Hands.WhenShown("frmSplash", [this](QWidget &splash) {
            EXPECT_EQ(ShownWindow("frmMain"), nullptr);
            Done += "splash|";
            QTest::mouseClick(&splash, Qt::LeftButton);
        });
    }

    ProgramFolder Folder;
    std::string Done;  ///< what the program asked of its surroundings, "|" behind each
    bool CanOpen = true;
    std::function<void()> WhileSetupIsOpen = [] {
    };
    std::unique_ptr<Desktop> Program;
    Robot Hands;
};

TEST_F(DesktopTest, ANormalStartShowsTheMainWindowWhichTogglesUnderADialogAndOpensAddresses) {
    Begin();
    EXPECT_TRUE(Program->Main(""));
    EXPECT_NE(ShownWindow("frmMain"), nullptr);
    EXPECT_EQ(Done, "splash|");
    EXPECT_EQ(GetSetting("Records", "InstallTime").size(), 10U);
    Hands.WhenShown("frmMsgBox", [this](QWidget &box) {
        Program->ShowTrayMenu({200, 200});
        EXPECT_EQ(ShownWindow("frmXPMenu"), nullptr) << "no menu opens over a dialog";
        Program->ToggleMainWindow();
        EXPECT_EQ(ShownWindow("frmMain"), nullptr);
        EXPECT_EQ(GetSetting("Setup", "MinimizeOnce"), "1");
        EXPECT_TRUE(box.isVisible());
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(ShowMessageBox("?", FlagYesNo), AnswerNo);
    Program->ToggleMainWindow();
    EXPECT_NE(ShownWindow("frmMain"), nullptr);
    Program->ShowTrayMenu({200, 200});
    ASSERT_NE(ShownWindow("frmXPMenu"), nullptr);
    clsXPMenu::KillAllMenus();

    Done.clear();
    for (const char *address : {"http://192.0.2.1:8080", "service.example?anna", "mailto:?subject=x"})
        OpenInBrowser(address);
    EXPECT_EQ(Done, "open http://192.0.2.1:8080|open http://service.example?anna|open mailto:?subject=x|");
    CanOpen = false;
    Hands.WhenAsked("There is no program on this computer that opens 'http://192.0.2.1'.", "imgOk");
    OpenInBrowser("http://192.0.2.1");
}

TEST_F(DesktopTest, AStartServesDuringADialogShowsAnErrorOnceAndEndsWhenToldTo) {
    Begin();
    ASSERT_TRUE(OpenOrCreateDatabase());
    SaveAlbum(Folder, "Holiday");
    gDatabase.reset();
    Hands.WhenStartEnds([](QWidget &window) { Click(window, "cmdCancel"); });
    SaveSetting("Records", "InstallTime", "2004030112");
    EXPECT_TRUE(Program->Main("start"));
    EXPECT_EQ(GetSetting("Records", "InstallTime"), "2004030112");
    EXPECT_TRUE(gWebsiteStarted);
    EXPECT_EQ(ShownWindow("frmMain"), nullptr) << "the icon alone is left";
    EXPECT_FALSE(Program->IsMainWindowShown());
    Hands.WhenShown("frmMsgBox", [port = gSystray->wnskListen->LocalPort](QWidget &box) {
        EXPECT_TRUE(Fetch(port, "GET / HTTP/1.0\r\n\r\n").starts_with("HTTP/1.0 200 OK"));
        QTest::keyClick(&box, Qt::Key_Space);
    });
    EXPECT_EQ(ShowMessageBox("?", FlagYesNo), AnswerYes);
    EXPECT_EQ(gVisitorsActive, 1);

    Hands.WhenShown("frmMsgBox", [this](QWidget &box) {
        EXPECT_TRUE(TextOf(box, "lblMessage").starts_with("Error in database!"));
        EXPECT_EQ(gSystray->wnskListen->State(), SocketState::Closed);
        EXPECT_FALSE(Program->ShowUnhandledError(RunTimeError(ErrorNumber::Overflow)));
        Click(box, "imgOk");
    });
    testing::internal::CaptureStderr();
    EXPECT_TRUE(Program->ShowUnhandledError({ErrorNumber::DatabaseError, "no such table: Albums"}));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("no such table: Albums\n"), std::string::npos);
    Program->EndWithoutQuestion();
    EXPECT_FALSE(gWebsiteStarted);
    EXPECT_EQ(Done, "splash|end|");
}

TEST_F(DesktopTest, ADirectoryAnAddressAndAFirstRunHaveTheirOwnBeginnings) {
    Begin();
    EXPECT_TRUE(Program->Main("/srv/pictures of mine"));
    EXPECT_EQ(Done, "album /srv/pictures of mine|splash|");
    EXPECT_TRUE(NewAlbumDirectory("./").starts_with("/"));
    Begin();
    Hands.WhenAsked("You haven't setup any albums! Would you like to set one up now?", "imgNo");
    Hands.WhenStartEnds([](QWidget &window) { Click(window, "cmdCancel"); });
    EXPECT_TRUE(Program->Main("startopensite"));
    EXPECT_EQ(Done, "splash|open |");
    EXPECT_NE(ShownWindow("frmMain"), nullptr);
    SaveSetting("Setup", "RunSetup", "-1");
    WhileSetupIsOpen = [this] {
        SaveSetting("Setup", "RunSetup", "1");
        SaveSetting("Records", "CreatedAlbum", "1");
        SaveAlbum(Folder, "Holiday");
    };
    Begin();
    Hands.WhenAsked("Welcome to your first time using Pixmora! Digital Media Software!...", "imgOk");
    Hands.WhenAsked("In order for your pictures and movies to appear online, you must start...", "imgNo");
    EXPECT_TRUE(Program->Main(""));
    EXPECT_EQ(Done, "splash|setup|");
    EXPECT_EQ(TextOf(*ShownWindow("frmMain"), "lblStatAlbums"), "1");
    EXPECT_FALSE(gWebsiteStarted);
}

}  // namespace
}  // namespace pixmora::test
