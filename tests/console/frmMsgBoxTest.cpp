// The message box and the help balloon.
#include "console/frmMsgBox.h"

#include "console/Robot.h"
#include "console/frmHelpBalloon.h"
#include "core/site/OwnerDialogue.h"
#include "support/Client.h"

namespace pixmora::test {
namespace {

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
