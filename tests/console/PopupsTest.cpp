// What pops up over windows: menus, the message box and the help balloon.
#include <algorithm>

#include "console/Robot.h"
#include "console/TrayIcon.h"
#include "console/clsXPMenu.h"
#include "console/frmHelpBalloon.h"
#include "console/frmMsgBox.h"
#include "console/frmXPMenu.h"
#include "support/Client.h"

namespace pixmora::test {
namespace {

const MenuItems people = {{"Me", {{"Page: Home Page", {}, {}}, {"Wave", {}, {}}}, "0Visit"},
                          {"10.0.0.9", {{"Page: Login", {}, {}}}, "1Visit"}};
const MenuItems commands = {{"First", {}, {}}, {}, {"Second & third", {}, {}}, {"People", people, "People"}};

class clsXPMenuTest : public testing::Test {
protected:
    /// A menu closes when the keys go elsewhere, as they do while an earlier test's window is still on its way out.
    clsXPMenuTest() {
        desk_.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&desk_));
    }
    ~clsXPMenuTest() override { clsXPMenu::KillAllMenus(); }

    std::shared_ptr<clsXPMenu> Show() {
        const auto menu = clsXPMenu::Create("Menu", commands, [this](const std::string &name, const std::string &text) {
            clicked_ += name + ":" + text + " ";
        });
        menu->ShowMenu({100, 100});
        return menu;
    }
    static QList<frmXPMenu *> Windows() {
        QList<frmXPMenu *> windows;
        for (QWidget *form : QApplication::topLevelWidgets())
            if (auto *window = dynamic_cast<frmXPMenu *>(form)) windows << window;
        return windows;
    }
    static frmXPMenu *WindowOf(const clsXPMenu &menu) {
        for (frmXPMenu *window : Windows())
            if (window->XPMenuClass.get() == &menu) return window;
        return nullptr;
    }
    static auto OpenMenus() {
        return std::ranges::count_if(Windows(), [](const frmXPMenu *window) { return window->isVisible(); });
    }
    static QPoint Middle(const clsXPMenu &menu, int item) { return menu.ItemRect(item).center(); }
    static void Press(const clsXPMenu &menu, const QList<Qt::Key> &keys) {
        // As the desktop does, the last menu opened gets them.
        for (const Qt::Key key : keys) {
            QWidget *window = QApplication::activePopupWidget();
            QTest::keyClick(window == nullptr ? WindowOf(menu) : window, key);
        }
    }
    std::string Clicked() { return std::exchange(clicked_, ""); }

private:
    QWidget desk_;
    std::string clicked_;
};

TEST_F(clsXPMenuTest, RowsFollowTheItemsAndOnlyAClickOnACommandReachesTheHandler) {
    const auto before = Show();
    QTest::mousePress(QApplication::activePopupWidget(), Qt::LeftButton, {}, QPoint(-500, -50));
    EXPECT_EQ(OpenMenus(), 0);
    const auto menu = Show();
    EXPECT_EQ(WindowOf(*menu)->height(), menu->GetHeight());
    QTest::mouseRelease(WindowOf(*menu), Qt::RightButton, {}, Middle(*menu, 1));  // of the press that opened it
    for (const int item : {2, 4}) QTest::mouseClick(WindowOf(*menu), Qt::LeftButton, {}, Middle(*menu, item));
    EXPECT_EQ(Clicked(), "");
    EXPECT_TRUE(menu->IsVisible() && menu->PopupShown());
    QTest::mouseClick(WindowOf(*menu), Qt::LeftButton, {}, Middle(*menu, 3));
    EXPECT_EQ(Clicked(), "Menu:Second & third ");
    EXPECT_EQ(OpenMenus(), 0);
}

TEST_F(clsXPMenuTest, KeysWalkTheItemsAndTheSubmenus) {
    const auto menu = Show();
    Press(*menu, {Qt::Key_Down, Qt::Key_Down});
    EXPECT_EQ(menu->GetHilightNum(), 3);  // over the separator
    Press(*menu, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up});
    EXPECT_EQ(menu->GetHilightNum(), 4);  // round the end and back; its submenu leaves the keys to this menu
    Press(*menu, {Qt::Key_Right, Qt::Key_Down});
    EXPECT_EQ(menu->OpenSubMenu()->GetHilightNum(), 2);
    Press(*menu, {Qt::Key_Left, Qt::Key_Up});
    EXPECT_EQ(menu->GetHilightNum(), 3);
    Press(*menu, {Qt::Key_Down, Qt::Key_Return, Qt::Key_Return, Qt::Key_Down, Qt::Key_Return});
    EXPECT_EQ(Clicked(), "0Visit:Wave ");
    EXPECT_EQ(OpenMenus(), 0);
    const auto again = Show();
    Press(*again, {Qt::Key_Down, Qt::Key_Space});
    EXPECT_EQ(Clicked(), "Menu:First ");
    const auto last = Show();
    Press(*last, {Qt::Key_End, Qt::Key_Right, Qt::Key_Escape});
    EXPECT_FALSE(last->PopupShown());
    EXPECT_EQ(OpenMenus(), 1) << "Escape in a submenu closes it alone";
    Press(*last, {Qt::Key_Right, Qt::Key_Left, Qt::Key_End, Qt::Key_Escape});
    EXPECT_EQ(OpenMenus(), 0) << "Escape in a menu whose submenu is open closes both";
    EXPECT_EQ(Clicked(), "");
}

TEST(MenuPlace, StaysClearOfWhatOpensItAndOnTheScreen) {
    const QRect screen(0, 0, 1000, 800);
    const QSize menu(200, 150);
    const QRect barBelow(0, 0, 1000, 770);
    EXPECT_EQ(TrayMenuPlace({990, 780}, menu, screen, barBelow), QPoint(790, 620)) << "past the right edge";
    EXPECT_EQ(TrayMenuPlace({500, 10}, menu, screen, {0, 30, 1000, 770}), QPoint(500, 30)) << "a bar above";
    EXPECT_EQ(TrayMenuPlace({500, 400}, menu, screen, barBelow), QPoint(500, 250)) << "no bar known";
    EXPECT_EQ(TrayMenuPlace({500, 100}, menu, screen, barBelow), QPoint(500, 100)) << "no room above the pointer";
    EXPECT_EQ(MenuPlaceAt({100, 100, 28, 24}, menu, screen), QPoint(100, 124)) << "below a button";
    EXPECT_EQ(MenuPlaceAt({100, 700, 28, 24}, menu, screen), QPoint(100, 550)) << "no room below it";
}

TEST(frmMsgBox, ShowsWhatItsFlagsSayAndTakesKeys) {
    const std::tuple<int, QList<Qt::Key>, int, const char *> cases[] = {
        {FlagCritical, {Qt::Key_Escape}, AnswerOk, "imgCritical"},
        {0, {Qt::Key_Space}, AnswerOk, "imgInfo"},
        {CriticalQuestion, {Qt::Key_A, Qt::Key_Enter}, AnswerYes, "imgCritical"},
        {FlagYesNo, {Qt::Key_Tab, Qt::Key_Return}, AnswerNo, "imgInfo"},
        {FlagYesNo, {Qt::Key_Tab, Qt::Key_Left, Qt::Key_Enter}, AnswerYes, "imgInfo"},
        {FlagYesNo, {Qt::Key_Escape}, AnswerNo, "imgInfo"}};
    frmMsgBox box;
    for (const auto &[flags, keys, answer, icon] : cases) {
        Robot robot;
        robot.WhenShown("frmMsgBox", [&, flags = flags, &keys = keys, icon = icon](QWidget &form) {
            EXPECT_EQ(TextOf(form, "lblMessage"), "One <b>line</b>\n\nand another");
            for (const char *button : {"imgYes", "imgNo"})
                EXPECT_EQ(Find(form, button).isVisible(), (flags & FlagYesNo) != 0) << flags;
            EXPECT_NE(Find(form, "imgOk").isVisible(), Find(form, "imgNo").isVisible());
            EXPECT_TRUE(Find(form, icon).isVisible()) << flags;
            ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
            for (const Qt::Key key : keys) {
                ASSERT_NE(QApplication::focusWidget(), nullptr) << "no button tells its focus";
                QTest::keyClick(QApplication::focusWidget(), key);
            }
        });
        EXPECT_EQ(box.Ask("One <b>line</b>\r\n\r\nand another", flags, nullptr), answer) << flags << " " << keys.last();
        EXPECT_FALSE(box.isVisible());
    }
}

TEST(frmMsgBox, ASecondQuestionWaitsForTheFirstAndEachKeepsItsAnswer) {
    frmMsgBox box;
    std::string order;
    Robot robot;
    bool isAsked = false;
    QTimer::singleShot(0, [&] {
        isAsked = true;
        order += box.Ask("second", FlagYesNo, nullptr) == AnswerNo ? "second No " : "? ";
    });
    robot.When(
        "the second question waits", [&isAsked] { return isAsked; },
        [] { EXPECT_EQ(TextOf(*ShownWindow("frmMsgBox"), "lblMessage"), "first"); });
    robot.WhenAsked("first", "imgYes");
    robot.WhenAsked("second", "imgNo");
    order += box.Ask("first", FlagYesNo, nullptr) == AnswerYes ? "first Yes" : "?";
    EXPECT_EQ(order, "second No first Yes");
}

TEST(frmHelpBalloon, EndsByTimeAtAnyKeyOrItsExitAndLinksToTheSupport) {
    int opened = 0;
    frmHelpBalloon balloon([&opened] { ++opened; });
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    const auto endsBy = [&](const std::function<void()> &action) {
        balloon.Show("Title", std::string(200, 'x'), true);
        action();
        return !balloon.isVisible();
    };
    EXPECT_FALSE(endsBy([&] { Click(balloon, "lblOnlineSupport"); }));
    EXPECT_EQ(opened, 1);
    EXPECT_TRUE(endsBy([&] { QTest::keyClick(&dialog, Qt::Key_Escape); }));
    EXPECT_TRUE(dialog.isVisible()) << "Escape was meant for the balloon";
    QDialog above;
    above.setModal(true);
    EXPECT_TRUE(endsBy([&] { above.show(); })) << "it lay dead over the box that opens";
    above.hide();
    EXPECT_TRUE(endsBy([&] { dialog.hide(); })) << "it belongs to its dialog";
    balloon.Show("Another", "text", false);
    EXPECT_EQ(TextOf(balloon, "lblHelpBalloonTitle"), "Another");
    EXPECT_FALSE(Find(balloon, "lblOnlineSupport").isVisible());
    EXPECT_TRUE(endsBy([&] { Click(balloon, "imgHelpBallonExit"); }));
    EXPECT_EQ(BalloonTime(QStringLiteral("\u00e9x")), 120);
    balloon.Show("Title", "abc", true);
    EXPECT_TRUE(balloon.isVisible());
    EXPECT_TRUE(TurnUntil([&balloon] { return !balloon.isVisible(); }));
}

}  // namespace
}  // namespace pixmora::test
