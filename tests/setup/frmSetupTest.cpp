// The setup dialog's form: opening, wizard, lists, Finish and Cancel.
#include "setup/frmSetup.h"

#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QTabWidget>

#include "core/site/frmSystray.h"
#include "setup/Forms.h"
#include "setup/rules/UserEditor.h"
#include "support/PlayedService.h"

namespace pixmora {
namespace {

const std::string discardQuestion = "Are you sure you wish to cancel...";

class SetupForm : public SetupFixture {
protected:
    SetupForm() {
        gSystray = std::make_unique<frmSystray>();
        for (const char *style : {"Default", "Garden"})
            Program.Write(std::string("htdocs/StyleSheet_") + style + ".tpl");
        SaveSetting("Setup", "RunSetup", "1");
        SaveSetting("Setup", "RunFirewallCheck", "1");
    }
    ~SetupForm() override { gSystray.reset(); }

    std::unique_ptr<frmSetup> Open(const SetupOpening &opening = {}) {
        SetupSurroundings surroundings;
        surroundings.Choosers.ChooseFolder = [this](QWidget *, const std::string &) {
            return QUrl::fromLocalFile(ToQt(Program.MakeFolder("pictures")));
        };
        surroundings.IsConnectedToInternet = [] {
            return true;
        };
        surroundings.Program = "/opt/pixmora";
        auto form = std::make_unique<frmSetup>(opening, surroundings);
        form->show();
        return form;
    }
    static QTabWidget &Tabs(const QWidget &form) { return Find<QTabWidget>(form, "SSTab1"); }
    static std::string Tab(const QWidget &form) { return FromQt(Tabs(form).tabText(Tabs(form).currentIndex())); }
    static void ClickRow(const QTreeWidget &list, bool isTwice) {
        const QPoint place = list.visualItemRect(list.topLevelItem(0)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        if (isTwice) QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }

    Robot Hands;
};

TEST_F(SetupForm, TheWizardWalksTheTabs) {
    const auto form = Open();
    auto *finish = &Find<QAbstractButton>(*form, "cmdOK");
    std::string walked = Tab(*form);
    EXPECT_FALSE(IsEnabled(*form, "cmdPrevious"));
    EXPECT_EQ(TextOf(*form, "lblStep"), "") << "this is not the first run";
    while (IsEnabled(*form, "cmdNext")) {
        EXPECT_FALSE(finish->font().bold());
        Click(*form, "cmdNext");
        walked += ", " + Tab(*form);
    }
    EXPECT_EQ(walked,
              "Introduction, General, Albums, Firewall Check, Layout, Online Identity, Access Control, Port Setup");
    EXPECT_TRUE(finish->font().bold());
    EXPECT_EQ(form->focusWidget(), finish);
    Click(*form, "cmdPrevious");
    EXPECT_FALSE(finish->font().bold());
    EXPECT_TRUE(IsEnabled(*form, "cmdNext"));
    Tabs(*form).setCurrentIndex(0);
    EXPECT_FALSE(IsEnabled(*form, "cmdPrevious"));

    DeleteSetting("Setup", "RunSetup");
    const auto first = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(first.get()));
    Click(*first, "cmdNext");
    EXPECT_EQ(TextOf(*first, "lblStep"), "Step 2 of 8 (may be skipped)");
    EXPECT_EQ(first->focusWidget()->objectName(), "txtServerTitle");
    QTest::keyClick(first->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(TextOf(*first, "lblStep"), "Step 3 of 8") << "Enter goes on";
}

TEST_F(SetupForm, OpensWithDefaultsAndKeepsWhatFinishSaves) {
    MakeAlbum("Trips");
    {
        const auto form = Open();
        EXPECT_EQ(TextsOf(*form, {"txtServerTitle", "txtAuthor", "chkRunOnStart", "cboListenPort", "cboStyle",
                                  "cboFilesPerRow", "cboFilesPerPage", "sldImageSize", "sldImageQuality", "chkWebcam",
                                  "optDirSortMethod", "optDirSortOrder", "chkListOnline", "lblThumbSize",
                                  "lblPreviewSize", "lblSlideshowSize"}),
                  "Life Through My Eyes||0|80|Default|3|12|3|3|0|0|0|0|150x150|375x375|300x300|");
        Enter(*form, "cboFilesPerPage", "All");
        Enter(*form, "cboFilesPerRow", "5");
        EXPECT_EQ(TextOf(*form, "cboFilesPerPage"), "20") << "a new row size resets the page";
        for (const auto &[control, text] : {std::pair{"cboFilesPerPage", "All"},
                                            {"sldImageQuality", "5"},
                                            {"optDirSortMethod", "1"},
                                            {"optDirSortOrder", "1"},
                                            {"cboStyle", "Garden"},
                                            {"txtDesc", "Our <i>trips</i>"}})
            Enter(*form, control, text);
        EXPECT_EQ(TextsOf(*form, {"lblThumbQuality", "lblPreviewQuality"}), "70%|90%|");
        Click(*form, "cmdOK");
        EXPECT_FALSE(form->isVisible());
    }
    EXPECT_EQ(GetSetting("Setup", "FilesPerPage"), "0");
    EXPECT_EQ(Program.Read("sitedesc.txt"), "Our trips");
    EXPECT_EQ(Program.Read("welcome.txt"), "I hope you enjoy my collection of \r\nalbums!\r\n");
    EXPECT_EQ(TextsOf(*Open(), {"cboFilesPerRow", "cboFilesPerPage", "sldImageQuality", "optDirSortMethod",
                                "optDirSortOrder", "cboStyle", "txtDesc"}),
              "5|All|5|1|1|Garden|Our trips|");
}

TEST_F(SetupForm, CancelAsksOnlyAfterAChange) {
    const auto unchanged = Open();
    Click(*unchanged, "cmdCancel");
    EXPECT_FALSE(unchanged->isVisible());
    for (const char *control :
         {"txtAuthor", "sldImageSize", "chkListOnline", "chkPortMapping", "cboListenPort", "cboBrowserCache"}) {
        const auto form = Open();
        Enter(*form, control, "1");
        Owner.ExpectMessage(discardQuestion, CriticalQuestion, AnswerNo);
        QTest::keyClick(form.get(), Qt::Key_Escape);
        EXPECT_TRUE(form->isVisible()) << control;
        Owner.ExpectMessage(discardQuestion, CriticalQuestion, AnswerYes);
        form->close();
        EXPECT_FALSE(form->isVisible()) << control;
    }
}

TEST_F(SetupForm, AlbumsComeChangeAndGoInTheList) {
    const auto form = Open({true, false});
    EXPECT_EQ(Tab(*form), "Albums");
    Hands.WhenShown("frmSetupAlbum", [](QWidget &album) {
        Enter(album, "txtAlbumName", "Trips");
        Click(album, "cmdAlbumChangeDir");
        Click(album, "cmdOK");
    });
    Click(*form, "cmdAlbumAdd");
    const std::string path = AbbreviatedDir(Program.Path("pictures"));
    EXPECT_EQ(RowsOf(*form, "lstAlbums"), "Trips|" + path + "|\n");
    AddRight("Trips", "\\", "Ann");
    const auto &list = Find<QTreeWidget>(*form, "lstAlbums");
    Hands.WhenShown("frmSetupAlbum", [](QWidget &album) {
        Enter(album, "txtAlbumName", "Journeys");
        Click(album, "cmdOK");
    });
    ClickRow(list, true);
    EXPECT_EQ(RowsOf(*form, "lstAlbums"), "Journeys|" + path + "|\n");
    EXPECT_TRUE(list.topLevelItem(0)->isSelected());
    EXPECT_EQ(RowsOf(*form, "lvwRestricted"), "Journeys|Root Folder|Ann|\n");
    for (const int answer : {AnswerNo, AnswerYes})
        Owner.ExpectMessage("Are you sure you want to delete this album?", CriticalQuestion, answer);
    Hands.WhenShown("frmSetupAlbum", [](QWidget &album) {
        Click(album, "cmdDelete");
        EXPECT_TRUE(album.isVisible());
        Click(album, "cmdDelete");
    });
    ClickRow(list, true);
    EXPECT_EQ(RowsOf(*form, "lstAlbums") + Column("Albums", "AlbumName") + RowsOf(*form, "lvwRestricted"), "");
}

TEST_F(SetupForm, AClickTakesARightAway) {
    for (const char *folder : {"\\a", "\\b"}) AddRight("Trips", folder, "Ann");
    const auto form = Open();
    Tabs(*form).setCurrentIndex(6);
    auto *list = &Find<QTreeWidget>(*form, "lvwRestricted");
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    Owner.ExpectMessage("Important Note: By doing this...", CriticalQuestion, AnswerYes);
    ClickRow(*list, false);
    EXPECT_TRUE(list->hasFocus());
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(RowsOf(*form, "lvwRestricted"), "Trips|b|Ann|\n") << "the next key takes no other away";
}

TEST_F(SetupForm, APortNeedsNumbers) {
    const auto form = Open();
    Tabs(*form).setCurrentIndex(7);
    auto *port = &Find<QComboBox>(*form, "cboListenPort");
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    port->setFocus();
    port->lineEdit()->selectAll();
    QTest::keyClicks(QApplication::focusWidget(), "8080x");
    EXPECT_EQ(port->currentText(), "8080x");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(port->currentText(), "8080");
}

TEST_F(SetupForm, EveryControlHasAName) {
    const auto form = Open();
    for (QWidget *control : form->findChildren<QWidget *>()) {
        if (control->focusPolicy() == Qt::NoFocus || control->focusProxy() != nullptr) continue;
        if (control->window() != form.get()) continue;  // the lists that drop down speak for their boxes
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(control);
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty() && spoken->relations(QAccessible::Label).isEmpty())
            << control->metaObject()->className() << " " << FromQt(control->objectName());
    }
}

TEST_F(SetupForm, AnAlbumsRowHasAMenuAndTellsWhatIsGone) {
    std::filesystem::remove(MakeAlbum("Gone"));
    for (const char *name : {"Home", "Late", "Trips"}) MakeAlbum(name);
    const std::string folder = MakeAlbum("Trips");
    const auto form = Open({true, false});
    auto *list = &Find<QTreeWidget>(*form, "lstAlbums");
    const auto told = [list](int row) {
        return FromQt(list->topLevelItem(row)->data(1, Qt::AccessibleDescriptionRole).toString());
    };
    EXPECT_EQ(told(0), "This directory cannot be found: " + Program.Path("albums/Gone"));
    EXPECT_EQ(told(1), "");
    const QList<QAction *> menu = list->actions();
    EXPECT_FALSE(menu[2]->isEnabled()) << "no row is selected";
    const auto choose = [list, &menu](const char *name, int action) {
        list->setCurrentItem(list->findItems(QLatin1String(name), Qt::MatchExactly)[0]);
        menu[action]->trigger();
        return list->topLevelItemCount();
    };
    Owner.ExpectBrowser("file://" + folder);
    EXPECT_EQ(choose("Trips", 2), 5);
    for (const auto &[name, rows] : {std::pair{"Trips", 3}, {"Gone", 2}}) {
        Owner.ExpectMessage("Are you sure you want to delete this album?", CriticalQuestion, AnswerYes);
        EXPECT_EQ(choose(name, 1), rows) << "those of one name go together";
    }
    AlbumEditor("Home").Delete();
    Owner.ExpectMessage("The album 'Home' is there no more! It has been deleted meanwhile.", FlagCritical);
    EXPECT_EQ(choose("Home", 0), 1);
    Owner.ExpectMessage("The album 'Late' is there no more! It has been deleted meanwhile.", FlagCritical);
    Hands.WhenShown("frmSetupAlbum", [](QWidget &album) {
        AlbumEditor("Late").Delete();
        Click(album, "cmdOK");
    });
    EXPECT_EQ(choose("Late", 0), 0);
    EXPECT_EQ(Column("Albums", "AlbumName"), "");
}

TEST_F(SetupForm, ChecksAskTheCentralService) {
    PlayedService service;
    service.Answer = "127.0.0.1";
    SaveSetting("Setup", "ServiceBase", service.Base());
    SaveSetting("Setup", "AccountName", "ann b");
    const auto form = Open();
    EXPECT_EQ(Find<QAbstractButton>(*form, "lblURLRedirecting").text(), ToQt(service.Base() + "?ann%20b"));
    const auto free = Winsock::Create();
    free->LocalPort = 0;
    free->Listen();
    Enter(*form, "cboListenPort", std::to_string(free->LocalPort));
    free->Close();
    Tabs(*form).setCurrentIndex(3);
    Owner.ExpectMessage("Congratulations! Your computer has...", FlagInformation);
    Click(*form, "cmdCheckFirewall");
    EXPECT_EQ(TextOf(*form, "lblPublicIP"), "127.0.0.1");
    EXPECT_TRUE(IsEnabled(*form, "cmdCheckFirewall"));
    Owner.ExpectBrowser(service.Base() + "/support_ip.php");
    Click(*form, "lblLinkIP");

    service.OnRequest = [this, &form](Winsock &, const std::string &) {
        EXPECT_FALSE(IsEnabled(*form, "cmdCheckFirewall"));
        Owner.ExpectMessage(discardQuestion, CriticalQuestion, AnswerYes);
        Click(*form, "cmdCancel");
    };
    Click(*form, "cmdCheckFirewall");
    EXPECT_FALSE(form->isVisible()) << "closed while it waits, the check ends without a word";
}

}  // namespace
}  // namespace pixmora
