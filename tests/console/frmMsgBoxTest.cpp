// The message box, the help balloon and the captioned frame.
#include "console/frmMsgBox.h"

#include <QMouseEvent>

#include "console/Robot.h"
#include "console/SContainer.h"
#include "console/frmHelpBalloon.h"
#include "core/site/OwnerDialogue.h"
#include "support/Client.h"

namespace pixmora::test {

namespace {

constexpr int question = FlagYesNo;

TEST(frmMsgBox, TheFlagsChooseButtonsAndIcon) {
    struct Case {
        int flags;
        bool isQuestion;
        const char *icon;
    };
    const Case cases[] = {{0, false, "imgInfo"}, {64, false, "imgInfo"},     {4, true, "imgInfo"},
                          {36, true, "imgInfo"}, {16, false, "imgCritical"}, {20, true, "imgCritical"}};
    frmMsgBox box;
    for (const Case &row : cases) {
        SCOPED_TRACE(row.flags);
        Robot robot;
        robot.WhenShown("frmMsgBox", [&row](QWidget &form) {
            EXPECT_EQ(TextOf(form, "lblMessage"), "One <b>line</b>\n\nand another");
            EXPECT_EQ(Find(form, "imgOk").isVisible(), !row.isQuestion);
            EXPECT_EQ(Find(form, "imgYes").isVisible(), row.isQuestion);
            EXPECT_EQ(Find(form, "imgNo").isVisible(), row.isQuestion);
            EXPECT_TRUE(Find(form, row.icon).isVisible());
            Click(form, row.isQuestion ? "imgYes" : "imgOk");
        });
        EXPECT_EQ(box.Ask("One <b>line</b>\r\n\r\nand another", row.flags, nullptr),
                  row.isQuestion ? AnswerYes : AnswerOk);
        EXPECT_FALSE(box.isVisible());
    }
}

TEST(frmMsgBox, KeysAnswer) {
    struct Case {
        int flags;
        Qt::Key key;
        int answer;
    };
    const Case cases[] = {{0, Qt::Key_Return, AnswerOk},        {0, Qt::Key_Space, AnswerOk},
                          {0, Qt::Key_Escape, AnswerOk},        {question, Qt::Key_Enter, AnswerYes},
                          {question, Qt::Key_Space, AnswerYes}, {question, Qt::Key_Escape, AnswerNo}};
    frmMsgBox box;
    for (const Case &row : cases) {
        Robot robot;
        robot.WhenShown("frmMsgBox", [&row](QWidget &form) {
            QTest::keyClick(&form, Qt::Key_Tab);  // the keys keep their meaning
            QTest::keyClick(&form, Qt::Key_A);
            EXPECT_TRUE(form.isVisible());
            QTest::keyClick(&form, row.key);
        });
        EXPECT_EQ(box.Ask("?", row.flags, nullptr), row.answer) << row.flags << " " << row.key;
    }
}

TEST(frmMsgBox, AReleaseOutsideTheButtonIsNoAnswer) {
    frmMsgBox box;
    Robot robot;
    robot.WhenShown("frmMsgBox", [](QWidget &form) {
        QWidget &yes = Find(form, "imgYes");
        QTest::mousePress(&yes, Qt::LeftButton);
        QTest::mouseMove(&yes, QPoint(-30, -30));
        QTest::mouseRelease(&yes, Qt::LeftButton, {}, QPoint(-30, -30));
        EXPECT_TRUE(form.isVisible());
        form.close();  // the desktop's own closing answers as Escape does
    });
    EXPECT_EQ(box.Ask("?", question, nullptr), AnswerNo);
}

TEST(frmMsgBox, ASecondQuestionWaitsForTheFirstAndEachKeepsItsAnswer) {
    frmMsgBox box;
    std::string order;
    Robot robot;
    QTimer::singleShot(20, [&] { order += box.Ask("second", question, nullptr) == AnswerNo ? "second No " : "? "; });
    int waited = 0;
    Timer timer;
    timer.SetInterval(5);
    timer.OnTimer = [&waited] {
        ++waited;
    };
    timer.SetEnabled(true);
    robot.When(
        "the timers have run", [&waited] { return waited > 20; },
        [] { EXPECT_EQ(TextOf(*ShownWindow("frmMsgBox"), "lblMessage"), "first"); });
    robot.WhenAsked("first", "imgYes");
    robot.WhenAsked("second", "imgNo");
    order += box.Ask("first", question, nullptr) == AnswerYes ? "first Yes" : "?";
    EXPECT_EQ(order, "second No first Yes");
}

TEST(frmMsgBox, IsMovedByItsTitleArea) {
    frmMsgBox box;
    Robot robot;
    robot.WhenShown("frmMsgBox", [](QWidget &form) {
        const QPoint start = form.pos();
        QWidget &title = Find(form, "imgTitleArea");
        QTest::mousePress(&title, Qt::LeftButton, {}, QPoint(40, 10));
        QTest::mouseMove(&title, QPoint(60, 25));
        QTest::mouseRelease(&title, Qt::LeftButton, {}, QPoint(40, 10));
        EXPECT_NE(form.pos(), start);
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    box.Ask("!", 0, nullptr);
}

TEST(frmHelpBalloon, StaysByTheLengthOfItsText) {
    EXPECT_EQ(BalloonTime(QString(100, QLatin1Char('x'))), 6000);
    EXPECT_EQ(BalloonTime(QStringLiteral("é")), 60);
    frmHelpBalloon balloon([] {});
    balloon.Show("Title", "", true);
    EXPECT_FALSE(balloon.isVisible());
    balloon.Show("Title", "abc", true);
    EXPECT_TRUE(balloon.isVisible());
    EXPECT_TRUE(TurnUntil([&balloon] { return !balloon.isVisible(); }, std::chrono::milliseconds(3000)));
}

TEST(frmHelpBalloon, StandsBesideThePointerOnTheScreen) {
    const QRect screen(0, 0, 1000, 800);
    EXPECT_EQ(BalloonPlace({100, 100}, {300, 120}, screen), QPoint(110, 110));
    EXPECT_EQ(BalloonPlace({700, 100}, {300, 120}, screen), QPoint(390, 110)) << "past the right edge";
    EXPECT_EQ(BalloonPlace({690, 790}, {300, 120}, screen), QPoint(700, 680)) << "past the lower edge";
}

TEST(frmHelpBalloon, EndsAtAnyKeyOrItsExitAndLinksToTheSupport) {
    int opened = 0;
    frmHelpBalloon balloon([&opened] { ++opened; });
    QWidget dialog;
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    const std::string text(200, 'x');
    balloon.Show("Title", text, true);
    Click(balloon, "lblOnlineSupport");
    EXPECT_EQ(opened, 1);
    QTest::keyClick(&dialog, Qt::Key_A);
    EXPECT_FALSE(balloon.isVisible());
    balloon.Show("Another", text, false);
    EXPECT_EQ(TextOf(balloon, "lblHelpBalloonTitle"), "Another");
    EXPECT_FALSE(Find(balloon, "lblOnlineSupport").isVisible());
    Click(balloon, "imgHelpBallonExit");
    EXPECT_FALSE(balloon.isVisible());
}

TEST(SContainer, HoldsControlsAndHearsItsCaption) {
    SContainer frame(QStringLiteral("Create Album"));
    frame.resize(300, 200);
    QWidget control(&frame);
    EXPECT_EQ(frame.ControlsContained(), QList<QWidget *>{&control});
    std::string heard;
    frame.OnCaptionMouseDown = [&heard](const QMouseEvent &) {
        heard += "down ";
    };
    frame.OnCaptionMouseUp = [&heard](const QMouseEvent &) {
        heard += "up ";
    };
    QTest::mouseClick(&frame, Qt::LeftButton, {}, QPoint(25, 5));
    EXPECT_EQ(heard, "down up ");
    frame.SetAlignment(Qt::AlignRight);
    QTest::mouseClick(&frame, Qt::LeftButton, {}, QPoint(25, 5));
    EXPECT_EQ(heard, "down up ");
    frame.SetCaption(QStringLiteral("Edit User"));
    EXPECT_EQ(frame.accessibleName(), QStringLiteral("Edit User"));
}

}  // namespace

}  // namespace pixmora::test
