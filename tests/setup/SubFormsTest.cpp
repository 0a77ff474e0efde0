// The forms behind the setup dialog: album, users, access, order, webcam.
#include <QComboBox>
#include <QFrame>
#include <QListWidget>

#include "setup/Forms.h"
#include "setup/frmSetupAccess.h"
#include "setup/frmSetupAlbum.h"
#include "setup/frmSetupDirOrder.h"
#include "setup/frmSetupUsers.h"
#include "setup/frmSetupWebcam.h"
#include "setup/modTree.h"
#include "setup/rules/HelpTexts.h"
#include "setup/rules/UserEditor.h"
#include "setup/rules/WebcamEditor.h"
#include "support/Pictures.h"

namespace pixmora {
namespace {

using SubForms = SetupFixture;

TEST_F(SubForms, AnAlbumIsCreatedOnceItIsValid) {
    const std::string folder = Program.MakeFolder("pictures");
    std::deque<QUrl> chosen = {QUrl("smb://server/share")};
    for (const std::string &path : {std::string("/"), folder, std::string("/"), folder})
        chosen.push_back(QUrl::fromLocalFile(ToQt(path)));
    Choosers choosers;
    choosers.ChooseFolder = [&chosen](QWidget *, const std::string &) {
        const QUrl next = chosen.front();
        chosen.pop_front();
        return next;
    };
    choosers.ChoosePicture = [](QWidget *, const std::string &) {
        return std::string();
    };
    frmSetupAlbum form(nullptr, std::nullopt, choosers);
    form.show();
    EXPECT_FALSE(IsEnabled(form, "cmdDelete"));
    EXPECT_EQ(form.focusWidget()->objectName(), "txtAlbumName");
    Owner.ExpectMessage("Album name cannot contain...", FlagCritical);
    QTest::keyClicks(&Find(form, "txtAlbumName"), "Trips:");
    EXPECT_EQ(TextOf(form, "txtAlbumName"), "Trips");
    Owner.ExpectMessage("Invalid directory to share!\r\n\r\nPlease choose a folder on your harddrive to share.",
                        FlagCritical);
    QTest::mouseClick(&Find(form, "txtAlbumPath"), Qt::LeftButton);
    Owner.ExpectMessage(DriveRootQuestion, CriticalQuestion, AnswerYes);
    for (int click = 0; click < 2; ++click) QTest::mouseClick(&Find(form, "txtAlbumPath"), Qt::LeftButton);
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), folder) << "a good path is left alone";
    Owner.ExpectMessage(DriveRootQuestion, CriticalQuestion, AnswerNo);
    Click(form, "cmdAlbumChangeDir");
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), "");
    Owner.ExpectMessage("You must choose a directory for this album!", FlagCritical);
    Click(form, "cmdOK");
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), folder) << "the refusal brings the chooser";
    Click(form, "optFeaturedImageSpecified");
    EXPECT_TRUE(Find<QAbstractButton>(form, "optFeaturedImageRandom").isChecked()) << "no picture was chosen";
    for (const char *box : {"chkAlbumPictures", "chkAlbumMovies"}) Click(form, box);
    Owner.ExpectMessage("You must at least choose...", FlagCritical);
    Click(form, "cmdOK");
    EXPECT_EQ(form.focusWidget()->objectName(), "chkAlbumPictures");
    Click(form, "chkAlbumMovies");
    Click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Outcome().What, AlbumOutcome::Kind::Saved);
    EXPECT_EQ(Column("Albums", "AlbumName") + Column("Albums", "Pictures") + Column("Albums", "FeaturedImage"),
              "Trips|0|1|");
}

TEST_F(SubForms, AUserIsAddedAndEdited) {
    const QPalette usual = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    {
        frmSetupUsers form(nullptr, "");
        form.show();
        Enter(form, "txtUsername", "Ann");
        Enter(form, "txtPassword", "one");
        Owner.ExpectMessage("Passwords don't match!", FlagCritical);
        Click(form, "cmdOK");
        EXPECT_EQ(form.focusWidget()->objectName(), "txtConfirm");
        Enter(form, "txtConfirm", "one");
        EXPECT_EQ(Find<QLineEdit>(form, "txtPassword").displayText(), "***");
        EXPECT_EQ(Find<QLineEdit>(form, "txtPassword").palette().base(), form.palette().base()) << "on a dark desktop";
        Owner.ExpectMessage("User Added!", FlagInformation);
        Click(form, "cmdOK");
    }
    frmSetupUsers form(nullptr, "Ann");
    form.show();
    Click(form, "chkAdmin");
    Owner.ExpectMessage("User Information Saved!", FlagInformation);
    QTest::keyClick(&Find(form, "txtUsername"), Qt::Key_Return);
    EXPECT_TRUE(LoadUser("Ann").Admin);
    form.show();
    DeleteUser("Ann");
    Owner.ExpectMessage("The user 'Ann' is there no more! It has been deleted meanwhile.", FlagCritical);
    Click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    QApplication::setPalette(usual);
}

QTreeWidgetItem *Node(const QWidget &form, const char *tree, std::initializer_list<int> path) {
    QTreeWidgetItem *node = Find<QTreeWidget>(form, tree).topLevelItem(0);
    for (const int child : path) {
        node->setExpanded(true);
        node = node->child(child);
    }
    return node;
}

TEST_F(SubForms, AUserIsOfferedAndTicksGiveAndTakeRights) {
    Program.MakeFolder("albums/Trips/O'Brien/deep");
    MakeAlbum("Trips");
    Owner.ExpectMessage("You have not created any users!...", CriticalQuestion, AnswerYes);
    Owner.ExpectMessage("User Added!", FlagInformation);
    Robot hands;
    hands.WhenShown("frmSetupUsers", [](QWidget &user) {
        for (const char *box : {"txtUsername", "txtPassword", "txtConfirm"}) Enter(user, box, "Ann");
        Click(user, "cmdOK");
    });
    frmSetupAccess first(nullptr);
    hands.When(
        "the new user", [&first] { return Find<QListWidget>(first, "lstUsers").count() == 1; },
        [&first] { QTest::keyClick(&first, Qt::Key_Escape); });
    first.Run();
    SaveUser({"Bob", "b", "b", false}, "");
    frmSetupAccess form(nullptr);
    form.show();
    auto *users = &Find<QListWidget>(form, "lstUsers");
    auto *tree = &Find<QTreeWidget>(form, "tvAccess");
    EXPECT_TRUE(users->isEnabled()) << "the first album is chosen already";
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    users->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(IsEnabled(form, "cmdUserDelete")) << "the keys alone select nobody";
    tree->setCurrentItem(Node(form, "tvAccess", {0, 0}));
    EXPECT_EQ(TextOf(form, "lblParentAlbum") + TextOf(form, "lblAccessDir"), "TripsO'Brien");
    for (const bool isOpen : {false, true}) Node(form, "tvAccess", {0})->setExpanded(isOpen);
    EXPECT_EQ(Node(form, "tvAccess", {0})->childCount(), 1) << "read once";
    users->item(0)->setCheckState(Qt::Checked);
    users->item(1)->setCheckState(Qt::Checked);
    EXPECT_EQ(Column("PrivateDirs", "SubDir") + Column("PrivateDirs", "Username"), "\\O%34Brien|\\O%34Brien|Ann|Bob|");
    tree->setCurrentItem(Node(form, "tvAccess", {0}));
    EXPECT_EQ(users->item(0)->checkState(), Qt::Unchecked);
    tree->setCurrentItem(Node(form, "tvAccess", {0, 0}));
    EXPECT_EQ(users->item(0)->checkState(), Qt::Checked) << "found again, and not written twice";
    EXPECT_EQ(TextOf(form, "chkRestrictAccess"), "1");
    Click(form, "chkRestrictAccess");
    EXPECT_EQ(Column("PrivateDirs", "Username"), "") << "unticked, it lets everybody in";
    Owner.ExpectBalloon("User Access", HelpTextOf("lblHelpUserAccess").Text);
    Click(form, "chkRestrictAccess");
    users->item(1)->setCheckState(Qt::Checked);
    users->setCurrentRow(1);
    Owner.ExpectMessage("Are you sure you want to delete 'Bob' ?", CriticalQuestion, AnswerYes);
    Click(form, "cmdUserDelete");
    EXPECT_EQ(Column("PrivateDirs", "Username"), "");
    EXPECT_FALSE(IsEnabled(form, "cmdUserDelete"));
    Click(form, "chkRestrictAccess");
    EXPECT_EQ(Column("PrivateDirs", "Username"), "Ann|") << "the only user there is";
    users->item(0)->setCheckState(Qt::Unchecked);
    EXPECT_EQ(TextOf(form, "chkRestrictAccess"), "0");
    Find<QPlainTextEdit>(form, "txtRestrictWords").setPlainText("Secret*\nMine\n");
    Click(form, "cmdOK");
    EXPECT_EQ(Program.Read("restrictwords.txt"), "Secret*\r\nMine\r\n");
}

TEST_F(SubForms, DirectoriesAreMovedDraggedAndSaved) {
    for (const char *name : {"a", "b", "c"}) Program.MakeFolder(std::string("albums/Trips/") + name);
    MakeAlbum("Trips");
    frmSetupDirOrder form(nullptr);
    form.show();
    auto *tree = &Find<QTreeWidget>(form, "tvAlbums");
    auto *list = &Find<QTreeWidget>(form, "lvwDirs");
    EXPECT_TRUE(Node(form, "tvAlbums", {0})->isExpanded()) << "a single album is open at once";
    EXPECT_FALSE(IsEnabled(form, "cmdSave"));
    tree->setCurrentItem(Node(form, "tvAlbums", {0}));
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "a|\nb|\nc|\n");
    list->setCurrentItem(list->topLevelItem(0));
    EXPECT_FALSE(IsEnabled(form, "cmdMoveUp"));
    for (int click = 0; click < 2; ++click) Click(form, "cmdMoveDown");
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "b|\nc|\na|\n");
    EXPECT_FALSE(IsEnabled(form, "cmdMoveDown"));
    Click(form, "cmdSave");
    EXPECT_FALSE(IsEnabled(form, "cmdSave"));
    const QPoint from = list->visualItemRect(list->topLevelItem(1)).center();
    const QPoint to = list->visualItemRect(list->topLevelItem(0)).center();
    QTest::mousePress(list->viewport(), Qt::LeftButton, {}, from);
    QTest::mouseMove(list->viewport(), to);
    EXPECT_TRUE(list->viewport()->findChild<QFrame *>()->isVisible()) << "the line that shows where it would go";
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, to);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "c|\nb|\na|\n");
    Owner.ExpectMessage("Do you want to save...", 36, AnswerYes);
    tree->setCurrentItem(Node(form, "tvAlbums", {0, 1}));
    EXPECT_EQ(Column("DBOrder", "SubDir") + Column("DBOrder", "SeqPos"), "\\\\b|\\\\c|\\\\a|2|1|3|")
        << "of the node that was left";
    tree->setCurrentItem(Node(form, "tvAlbums", {0}));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    list->setFocus();
    list->setCurrentItem(list->topLevelItem(2));
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "c|\na|\nb|\n");
    auto *sort = &Find<QComboBox>(form, "cboPreSort");
    sort->setFocus();
    QTest::keyClick(sort, Qt::Key_Down);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "c|\na|\nb|\n") << "a step through the choices sorts nothing";
    for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) QTest::keyClick(sort->view(), key);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "a|\nb|\nc|\n");
    EXPECT_EQ(sort->currentText(), "- Sort By -");
    Owner.ExpectMessage("Do you want to save...", 36, AnswerNo);
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_EQ(Column("DBOrder", "SeqPos"), "2|1|3|");
}

/// Three cameras that are played. The first gives pictures, the second has a dialog for its source, the third tells
/// nothing.
struct PlayedCameras {
    int Opened = -1;
    bool Delivers = true;

    WebcamHands Hands() {
        WebcamHands hands;
        hands.GetDriverDescription = [this](int device) -> std::optional<CaptureDescription> {
            return device < 3 ? std::optional(CaptureDescription{"Camera", std::to_string(device)}) : std::nullopt;
        };
        hands.OpenWebcam = [this](int device) {
            Opened = device;
            return true;
        };
        hands.CloseWebcam = [this] {
            Opened = -1;
        };
        hands.GetDriverDialogs = [this]() -> std::optional<WebcamHands::Dialogs> {
            return Opened == 2 ? std::nullopt : std::optional(WebcamHands::Dialogs{Opened == 1, false});
        };
        hands.TestCapture = Give(Delivers);
        hands.TakePreview = [this](const std::function<void(const std::string &)> &show) {
            show(Opened == 0 ? test::BitmapFile(4, 2) : "");
        };
        return hands;
    }
};

TEST_F(SubForms, TheWebcamFormFollowsItsSource) {
    PlayedCameras cameras;
    SaveSetting("Setup", "WebcamSource", "1");
    const auto accept = [&](const char *source, const char *interval) {
        frmSetupWebcam form(nullptr, cameras.Hands());
        form.show();
        EXPECT_EQ(TextOf(form, "cboSource") + TextOf(form, "lblCaptureInterval"), "Camera 10m 30s");
        EXPECT_TRUE(IsEnabled(form, "cmdDeviceSource"));
        Enter(form, "cboSource", source);
        EXPECT_FALSE(IsEnabled(form, "cmdDeviceSource"));
        Enter(form, "sldCaptureInterval", interval);
        const std::string shown = TextOf(form, "lblCaptureInterval");
        EXPECT_EQ(Find<QLabel>(form, "lblPreview").pixmap().isNull(), cameras.Opened != 0) << "what the camera sees";
        Click(form, "cmdOK");
        return shown + (form.IsWebcamUsable() ? " usable" : "");
    };
    EXPECT_EQ(accept("Camera 0", "6"), "0m 30s usable");
    EXPECT_EQ(cameras.Opened, -1) << "the form gives the device up";
    SaveSetting("Setup", "WebcamSource", "1");
    cameras.Delivers = false;
    Owner.ExpectMessage("Unable to get driver capabilities!", FlagCritical);
    EXPECT_EQ(accept("Camera 2", "25"), "2m 5s");
    EXPECT_EQ(GetSetting("Setup", "CaptureInterval") + GetSetting("Setup", "WebcamSource"), "252")
        << "the index stands over the mark of the failed test";
}

}  // namespace
}  // namespace pixmora
