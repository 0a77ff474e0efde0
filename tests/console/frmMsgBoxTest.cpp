// The message box and the help balloon.
#include "console/frmMsgBox.h"

#include "console/Robot.h"
#include "console/frmHelpBalloon.h"
#include "core/site/OwnerDialogue.h"
#include "support/Client.h"

namespace pixmora::test {

namespace {

constexpr int question = FlagYesNo;

TEST(frmMsgBox, TheFlagsChooseButtonsAndIcon) {
    const std::tuple<int, bool, const char *> cases[] = {
        {36, true, "imgInfo"}, {16, false, "imgCritical"}, {20, true, "imgCritical"}};
    frmMsgBox box;
    for (const auto &[flags, isQuestion, icon] : cases) {
        SCOPED_TRACE(flags);
        Robot robot;
        robot.WhenShown("frmMsgBox", [isQuestion = isQuestion, icon = icon](QWidget &form) {
            EXPECT_EQ(TextOf(form, "lblMessage"), "One <b>line</b>\n\nand another");
            EXPECT_EQ(Find(form, "imgOk").isVisible(), !isQuestion);
            EXPECT_EQ(Find(form, "imgYes").isVisible(), isQuestion);
            EXPECT_EQ(Find(form, "imgNo").isVisible(), isQuestion);
            EXPECT_TRUE(Find(form, icon).isVisible());
            Click(form, isQuestion ? "imgYes" : "imgOk");
        });
        EXPECT_EQ(box.Ask("One <b>line</b>\r\n\r\nand another", flags, nullptr), isQuestion ? AnswerYes : AnswerOk);
        EXPECT_FALSE(box.isVisible());
    }
}

TEST(frmMsgBox, KeysAnswer) {
    const std::tuple<int, QList<Qt::Key>, int> cases[] = {
        {0, {Qt::Key_Escape}, AnswerOk},
        {0, {Qt::Key_Space}, AnswerOk},
        {question, {Qt::Key_A, Qt::Key_Enter}, AnswerYes},
        {question, {Qt::Key_Space}, AnswerYes},
        {question, {Qt::Key_Tab, Qt::Key_Return}, AnswerNo},
        {question, {Qt::Key_Right, Qt::Key_Space}, AnswerNo},
        {question, {Qt::Key_Tab, Qt::Key_Left, Qt::Key_Enter}, AnswerYes},
        {question, {Qt::Key_Escape}, AnswerNo}};
    frmMsgBox box;
    for (const auto &[flags, keys, answer] : cases) {
        Robot robot;
        robot.WhenShown("frmMsgBox", [&keys = keys](QWidget &form) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
            for (const Qt::Key key : keys) {
                ASSERT_NE(QApplication::focusWidget(), nullptr) << "no button tells its focus";
                QTest::keyClick(QApplication::focusWidget(), key);
            }
        });
        EXPECT_EQ(box.Ask("?", flags, nullptr), answer) << flags << " " << keys.last();
    }
}

TEST(frmMsgBox, ASecondQuestionWaitsForTheFirstAndEachKeepsItsAnswer) {
    frmMsgBox box;
    std::string order;
    Robot robot;
    bool isAsked = false;
    QTimer::singleShot(0, [&] {
        isAsked = true;
        order += box.Ask("second", question, nullptr) == AnswerNo ? "second No " : "? ";
    });
    robot.When(
        "the second question waits", [&isAsked] { return isAsked; },
        [] { EXPECT_EQ(TextOf(*ShownWindow("frmMsgBox"), "lblMessage"), "first"); });
    robot.WhenAsked("first", "imgYes");
    robot.WhenAsked("second", "imgNo");
    order += box.Ask("first", question, nullptr) == AnswerYes ? "first Yes" : "?";
    EXPECT_EQ(order, "second No first Yes");
}

TEST(frmHelpBalloon, StandsBesideThePointerOnTheScreen) {
    const QRect screen(0, 0, 1000, 800);
    EXPECT_EQ(BalloonPlace({100, 100}, {300, 120}, screen), QPoint(110, 110));
    EXPECT_EQ(BalloonPlace({700, 100}, {300, 120}, screen), QPoint(390, 110)) << "past the right edge";
    EXPECT_EQ(BalloonPlace({690, 790}, {300, 120}, screen), QPoint(700, 680)) << "past the lower edge";
}

TEST(frmHelpBalloon, EndsByTimeAtAnyKeyOrItsExitAndLinksToTheSupport) {
    int opened = 0;
    frmHelpBalloon balloon([&opened] { ++opened; });
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    const std::string text(200, 'x');
    balloon.Show("Title", text, true);
    Click(balloon, "lblOnlineSupport");
    EXPECT_EQ(opened, 1);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(balloon.isVisible());
    EXPECT_TRUE(dialog.isVisible()) << "Escape was meant for the balloon";
    balloon.Show("Title", text, true);
    QDialog above;
    above.setModal(true);
    above.show();
    EXPECT_FALSE(balloon.isVisible()) << "it lay dead over the box that opens";
    above.hide();
    balloon.Show("Title", text, true);
    dialog.hide();
    EXPECT_FALSE(balloon.isVisible()) << "it belongs to its dialog";
    balloon.Show("Another", text, false);
    EXPECT_EQ(TextOf(balloon, "lblHelpBalloonTitle"), "Another");
    EXPECT_FALSE(Find(balloon, "lblOnlineSupport").isVisible());
    Click(balloon, "imgHelpBallonExit");
    EXPECT_FALSE(balloon.isVisible());
    balloon.Show("Title", "", true);
    EXPECT_FALSE(balloon.isVisible());
    EXPECT_EQ(BalloonTime(QStringLiteral("\u00e9x")), 120);
    balloon.Show("Title", "abc", true);
    EXPECT_TRUE(balloon.isVisible());
    EXPECT_TRUE(TurnUntil([&balloon] { return !balloon.isVisible(); }));
}

}  // namespace

}  // namespace pixmora::test
