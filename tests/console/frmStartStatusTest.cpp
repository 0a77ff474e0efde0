// The start window.
#include "console/frmStartStatus.h"

#include <QProgressBar>

#include "console/Robot.h"
#include "support/RunningSite.h"

namespace pixmora::test {

namespace {

class frmStartStatusTest : public RunningSite {
protected:
    static bool HasStatus(const char *text) {
        const QWidget *form = ShownWindow("frmStartStatus");
        return form != nullptr && TextOf(*form, "lblStatus") == text;
    }
    /// Whether the sequence is over, with that status.
    static bool HasEnded(const char *text) {
        return HasStatus(text) && TextOf(*ShownWindow("frmStartStatus"), "cmdCancel") == "Close";
    }

    void RunWindow() {
        frmStartStatus form;
        form.Run(nullptr);
    }

    Robot Hands;
};

TEST_F(frmStartStatusTest, ShowsTheStartAndOffersTheSite) {
    AddAlbum("Holiday");
    Hands.WhenShown("frmStartStatus", [](QWidget &form) {
        EXPECT_EQ(TextOf(form, "cmdCancel"), "Cancel");
        EXPECT_FALSE(Find(form, "cmdViewSite").isVisible());
    });
    Hands.When(
        "live", [] { return HasEnded("Your Website is Live!"); },
        [&owner = Owner] {
            QWidget &form = *ShownWindow("frmStartStatus");
            EXPECT_TRUE(Find(form, "cmdCancel").isEnabled());
            EXPECT_TRUE(Find(form, "cmdCancel").hasFocus());
            const auto &bar = Find<QProgressBar>(form, "prg");
            EXPECT_EQ(bar.value(), bar.maximum());
            owner.ExpectBrowser(gWebsiteAddress);
            Click(form, "cmdViewSite");
        });
    RunWindow();
    EXPECT_TRUE(gWebsiteStarted);
}

TEST_F(frmStartStatusTest, ClosesByItselfAfterASuccess) {
    AddAlbum("Holiday");
    Hands.When(
        "live", [] { return HasEnded("Your Website is Live!"); },
        [] {
            const auto &form = dynamic_cast<frmStartStatus &>(*ShownWindow("frmStartStatus"));
            EXPECT_TRUE(form.tmrClose.Enabled());
            EXPECT_EQ(form.tmrClose.Interval(), 5000);
            form.tmrClose.OnTimer();
        });
    RunWindow();
    EXPECT_TRUE(gWebsiteStarted);
}

TEST_F(frmStartStatusTest, AStartThatFailsHalfWayLeavesAnEmptyBar) {
    std::filesystem::remove(AddAlbum("Holiday"));
    Owner.ExpectMessage("Your album 'Holiday' cannot be found!...", CriticalQuestion, AnswerYes);
    Hands.When(
        "stopped", [] { return HasEnded("Pixmora! Stopped!"); },
        [] {
            EXPECT_EQ(Find<QProgressBar>(*ShownWindow("frmStartStatus"), "prg").value(), 0);
            Click(*ShownWindow("frmStartStatus"), "cmdCancel");
        });
    RunWindow();
    EXPECT_FALSE(gWebsiteStarted);
}

TEST_F(frmStartStatusTest, ACancelBeforeTheStartIsHeeded) {
    AddAlbum("Holiday");
    Hands.WhenShown("frmStartStatus", [](QWidget &form) {
        Click(form, "cmdCancel");
        EXPECT_FALSE(Find(form, "cmdCancel").isEnabled());
        EXPECT_TRUE(form.isVisible());
    });
    Hands.When(
        "stopped", [] { return HasEnded("Pixmora! Stopped!"); },
        [] {
            QWidget &form = *ShownWindow("frmStartStatus");
            EXPECT_FALSE(Find(form, "cmdViewSite").isVisible());
            QTest::keyClick(&form, Qt::Key_Escape);
        });
    RunWindow();
    EXPECT_FALSE(gWebsiteStarted);
}

}  // namespace

}  // namespace pixmora::test
