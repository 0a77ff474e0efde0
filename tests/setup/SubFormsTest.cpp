// The forms behind the setup dialog: album, users, access, order, webcam.
#include <QComboBox>
#include <QListWidget>
#include <QSlider>

#include "setup/frmSetupAccess.h"
#include "setup/frmSetupAlbum.h"
#include "setup/frmSetupDirOrder.h"
#include "setup/frmSetupUsers.h"
#include "setup/frmSetupWebcam.h"
#include "setup/modTree.h"
#include "setup/rules/UserEditor.h"
#include "support/SetupFixture.h"
#include "support/SetupForm.h"

namespace pixmora {
namespace {

const std::string badName = "Album name cannot contain any of the following characters:\r\n\r\n\\ / : * ? \" ' < > |";

class SubForms : public SetupFixture {
protected:
    /// Choosers that answer these, one after the other.
    Choosers Chooses(std::vector<QUrl> folders, std::string picture = "") {
        folders_ = std::move(folders);
        Choosers choosers;
        choosers.ChooseFolder = [this](QWidget *, const std::string &start) -> std::optional<QUrl> {
            starts += start + "|";
            if (folders_.empty()) return std::nullopt;
            const QUrl folder = folders_.front();
            folders_.erase(folders_.begin());
            return folder;
        };
        choosers.ChoosePicture = [picture = std::move(picture)](QWidget *, const std::string &) {
            return picture;
        };
        return choosers;
    }
    QUrl Local(const std::string &path) const { return QUrl::fromLocalFile(ToQt(path)); }

    std::string starts;

private:
    std::vector<QUrl> folders_;
};

TEST_F(SubForms, AnAlbumIsCreatedOnceItIsValid) {
    const std::string folder = Program.MakeFolder("pictures");
    frmSetupAlbum form(nullptr, std::nullopt, Chooses({Local(folder)}));
    form.show();
    EXPECT_FALSE(Find<QAbstractButton>(form, "cmdDelete").isEnabled());
    EXPECT_EQ(form.focusWidget()->objectName(), "txtAlbumName");
    Owner.ExpectMessage("You must give your album a name!", FlagCritical);
    Click(form, "cmdOK");
    QTest::keyClicks(&Find(form, "txtAlbumName"), "Trips");
    Owner.ExpectMessage("You must choose a directory for this album!", FlagCritical);
    Click(form, "cmdOK");
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), folder) << "the refusal brings the chooser";
    Enter(form, "chkAlbumPictures", "0");
    Enter(form, "chkAlbumMovies", "0");
    Owner.ExpectMessage("You must at least choose to show pictures or show movies!", FlagCritical);
    Click(form, "cmdOK");
    EXPECT_EQ(form.focusWidget()->objectName(), "chkAlbumPictures");
    Enter(form, "chkAlbumMovies", "1");
    Click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Outcome().What, AlbumOutcome::Kind::Saved);
    EXPECT_EQ(Column("Albums", "AlbumName") + Column("Albums", "Pictures") + Column("Albums", "FeaturedImage"),
              "Trips|0|1|");
}

TEST_F(SubForms, RootsAndFoldersOfNoDiskAreRefused) {
    const std::string folder = Program.MakeFolder("pictures");
    frmSetupAlbum form(nullptr, std::nullopt,
                       Chooses({QUrl("smb://server/share"), Local("/"), Local(folder), Local("/")}));
    form.show();
    Owner.ExpectMessage("Invalid directory to share!\r\n\r\nPlease choose a folder on your harddrive to share.",
                        FlagCritical);
    QTest::mouseClick(&Find(form, "txtAlbumPath"), Qt::LeftButton);
    Owner.ExpectMessage(DriveRootQuestion, CriticalQuestion, AnswerYes);
    QTest::mouseClick(&Find(form, "txtAlbumPath"), Qt::LeftButton);
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), folder);
    QTest::mouseClick(&Find(form, "txtAlbumPath"), Qt::LeftButton);
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), folder) << "a good path is left alone";
    Owner.ExpectMessage(DriveRootQuestion, CriticalQuestion, AnswerNo);
    Click(form, "cmdAlbumChangeDir");
    EXPECT_EQ(TextOf(form, "txtAlbumPath"), "");
    EXPECT_TRUE(starts.ends_with("|" + folder + "|")) << starts;
}

TEST_F(SubForms, TheFeaturedPictureIsChosenOrLeft) {
    const std::string small = Program.Write("small.jpg", "x");
    {
        frmSetupAlbum form(nullptr, std::nullopt, Chooses({}));
        form.show();
        Click(form, "optFeaturedImageSpecified");
        EXPECT_TRUE(Find<QAbstractButton>(form, "optFeaturedImageRandom").isChecked()) << "cancelled, with no path";
    }
    frmSetupAlbum form(nullptr, std::nullopt, Chooses({}, small));
    form.show();
    Click(form, "cmdBrowseFeaturedImage");
    EXPECT_TRUE(Find<QAbstractButton>(form, "optFeaturedImageSpecified").isChecked());
    EXPECT_EQ(TextOf(form, "txtFeaturedImagePath"), small);
}

TEST_F(SubForms, AUserIsAddedAndEdited) {
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
        Owner.ExpectMessage("User Added!", FlagInformation);
        Click(form, "cmdOK");
    }
    frmSetupUsers form(nullptr, "Ann");
    form.show();
    EXPECT_EQ(TextOf(form, "txtConfirm"), "one");
    Enter(form, "chkAdmin", "1");
    Owner.ExpectMessage("User Information Saved!", FlagInformation);
    QTest::keyClick(&Find(form, "txtUsername"), Qt::Key_Return);
    EXPECT_TRUE(LoadUser("Ann").Admin);
}

QTreeWidgetItem *Node(const QWidget &form, const char *tree, std::initializer_list<int> path) {
    QTreeWidgetItem *node = Find<QTreeWidget>(form, tree).topLevelItem(0);
    for (const int child : path) {
        node->setExpanded(true);
        node = node->child(child);
    }
    return node;
}

TEST_F(SubForms, TicksGiveAndTakeRights) {
    Program.MakeFolder("albums/Trips/O'Brien/deep");
    MakeAlbum("Trips");
    SaveUser({"Ann", "a", "a", false}, "");
    SaveUser({"Bob", "b", "b", false}, "");
    frmSetupAccess form(nullptr);
    form.show();
    auto *users = &Find<QListWidget>(form, "lstUsers");
    auto *tree = &Find<QTreeWidget>(form, "tvAccess");
    EXPECT_FALSE(users->isEnabled());
    tree->setCurrentItem(Node(form, "tvAccess", {0, 0}));
    EXPECT_EQ(TextOf(form, "lblParentAlbum") + TextOf(form, "lblAccessDir"), "TripsO'Brien");
    users->item(0)->setCheckState(Qt::Checked);
    users->item(1)->setCheckState(Qt::Checked);
    EXPECT_EQ(Column("PrivateDirs", "SubDir") + Column("PrivateDirs", "Username"), "\\O%34Brien|\\O%34Brien|Ann|Bob|");
    tree->setCurrentItem(Node(form, "tvAccess", {0}));
    EXPECT_EQ(TextOf(form, "lblAccessDir"), "Trips");
    EXPECT_EQ(users->item(0)->checkState(), Qt::Unchecked);
    tree->setCurrentItem(Node(form, "tvAccess", {0, 0}));
    EXPECT_EQ(users->item(0)->checkState(), Qt::Checked) << "found again, and not written twice";
    EXPECT_EQ(TextOf(form, "chkRestrictAccess"), "1");
    users->item(0)->setCheckState(Qt::Unchecked);
    users->setCurrentRow(1);
    Owner.ExpectMessage("Are you sure you want to delete 'Bob' ?", CriticalQuestion, AnswerYes);
    Click(form, "cmdUserDelete");
    EXPECT_EQ(Column("PrivateDirs", "Username"), "");
    EXPECT_EQ(TextOf(form, "chkRestrictAccess"), "0");
    Find<QPlainTextEdit>(form, "txtRestrictWords").setPlainText("Secret*\nMine\n");
    Click(form, "cmdOK");
    EXPECT_EQ(Program.Read("restrictwords.txt"), "Secret*\r\nMine\r\n");
}

TEST_F(SubForms, WithNoUsersOneIsOffered) {
    MakeAlbum("Trips");
    Owner.ExpectMessage(
        "You have not created any users! You will not be able to restrict any directories until you do so.\r\n\r\n"
        "Would you like to add a user now?\r\n\r\nIt is recommended that you create a user account for yourself and "
        "allow yourself to view all directories.",
        CriticalQuestion, AnswerYes);
    Owner.ExpectMessage("User Added!", FlagInformation);
    Robot hands;
    hands.WhenShown("frmSetupUsers", [](QWidget &users) {
        Enter(users, "txtUsername", "Ann");
        Enter(users, "txtPassword", "a");
        Enter(users, "txtConfirm", "a");
        Click(users, "cmdOK");
    });
    frmSetupAccess form(nullptr);
    hands.When(
        "the new user", [&form] { return Find<QListWidget>(form, "lstUsers").count() == 1; },
        [&form] { QTest::keyClick(&form, Qt::Key_Escape); });
    form.Run();
    EXPECT_EQ(Column("Users", "Username"), "Ann|");
}

TEST_F(SubForms, DirectoriesAreMovedDraggedAndSaved) {
    for (const char *name : {"a", "b", "c"}) Program.MakeFolder(std::string("albums/Trips/") + name);
    MakeAlbum("Trips");
    frmSetupDirOrder form(nullptr);
    form.show();
    auto *tree = &Find<QTreeWidget>(form, "tvAlbums");
    auto *list = &Find<QTreeWidget>(form, "lvwDirs");
    EXPECT_TRUE(Node(form, "tvAlbums", {0})->isExpanded()) << "a single album is open at once";
    EXPECT_FALSE(Find<QAbstractButton>(form, "cmdSave").isEnabled());
    tree->setCurrentItem(Node(form, "tvAlbums", {0}));
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "a|\nb|\nc|\n");
    EXPECT_TRUE(Find<QAbstractButton>(form, "cmdSave").isEnabled());
    list->setCurrentItem(list->topLevelItem(0));
    EXPECT_FALSE(Find<QAbstractButton>(form, "cmdMoveUp").isEnabled());
    Click(form, "cmdMoveDown");
    Click(form, "cmdMoveDown");
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "b|\nc|\na|\n");
    EXPECT_FALSE(Find<QAbstractButton>(form, "cmdMoveDown").isEnabled());
    const QPoint from = list->visualItemRect(list->topLevelItem(1)).center();
    const QPoint to = list->visualItemRect(list->topLevelItem(0)).center();
    QTest::mousePress(list->viewport(), Qt::LeftButton, {}, from);
    QTest::mouseMove(list->viewport(), to);
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, to);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "c|\nb|\na|\n");
    Owner.ExpectMessage("Do you want to save changes to the current directory structure?", 36, AnswerYes);
    tree->setCurrentItem(Node(form, "tvAlbums", {0, 1}));
    EXPECT_EQ(Column("DBOrder", "SubDir"), "\\\\c|\\\\b|\\\\a|") << "of the node that was left";
    tree->setCurrentItem(Node(form, "tvAlbums", {0}));
    auto *sort = &Find<QComboBox>(form, "cboPreSort");
    sort->setCurrentIndex(2);
    Q_EMIT sort->activated(2);
    EXPECT_EQ(RowsOf(form, "lvwDirs"), "a|\nb|\nc|\n");
    EXPECT_EQ(sort->currentText(), "- Sort By -");
    Owner.ExpectMessage("Do you want to save changes to the current directory structure?", 36, AnswerNo);
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_EQ(Column("DBOrder", "SeqPos"), "1|2|3|");
}

TEST_F(SubForms, TheWebcamFormFollowsItsSource) {
    int opened = -1;
    bool delivers = true;
    WebcamHands hands;
    hands.GetDriverDescription = [](int device) -> std::optional<CaptureDescription> {
        return device < 3 ? std::optional(CaptureDescription{"Camera", std::to_string(device)}) : std::nullopt;
    };
    hands.OpenWebcam = [&opened](int device) {
        opened = device;
        return true;
    };
    hands.CloseWebcam = [&opened] {
        opened = -1;
    };
    hands.GetDriverDialogs = [&opened]() -> std::optional<WebcamHands::Dialogs> {
        if (opened == 2) return std::nullopt;
        return WebcamHands::Dialogs{opened == 1, false};
    };
    hands.TestCapture = Give(delivers);
    SaveSetting("Setup", "WebcamSource", "1");
    const auto accept = [&](const char *source, const char *interval) {
        frmSetupWebcam form(nullptr, hands);
        form.show();
        EXPECT_EQ(TextOf(form, "cboSource") + TextOf(form, "lblCaptureInterval"), "Camera 10m 30s");
        EXPECT_TRUE(Find<QAbstractButton>(form, "cmdDeviceSource").isEnabled());
        Enter(form, "cboSource", source);
        EXPECT_FALSE(Find<QAbstractButton>(form, "cmdDeviceSource").isEnabled());
        Enter(form, "sldCaptureInterval", interval);
        const std::string shown = TextOf(form, "lblCaptureInterval");
        Click(form, "cmdOK");
        return shown + (form.IsWebcamUsable() ? " usable" : "");
    };
    EXPECT_EQ(accept("Camera 0", "6"), "0m 30s usable");
    EXPECT_EQ(opened, -1) << "the form gives the device up";
    SaveSetting("Setup", "WebcamSource", "1");
    delivers = false;
    Owner.ExpectMessage("Unable to get driver capabilities!", FlagCritical);
    EXPECT_EQ(accept("Camera 2", "25"), "2m 5s");
    EXPECT_EQ(GetSetting("Setup", "CaptureInterval") + GetSetting("Setup", "WebcamSource"), "252")
        << "the index stands over the mark of the failed test";
    EXPECT_EQ(WebcamEditor::FirstSource(2), 0) << "a device that is there no more";
}

TEST_F(SubForms, NothingIsCutInLargeText) {
    MakeAlbum("Trips");
    InEachTextSize([this] {
        frmSetupAlbum album(nullptr, std::nullopt, Chooses({}));
        frmSetupUsers users(nullptr, "");
        frmSetupAccess access(nullptr);
        frmSetupDirOrder order(nullptr);
        for (QDialog *form : std::initializer_list<QDialog *>{&album, &users, &access, &order}) {
            form->show();
            QTest::qWait(1);
            ExpectNothingIsCut(*form);
            form->hide();
        }
    });
}

}  // namespace
}  // namespace pixmora
