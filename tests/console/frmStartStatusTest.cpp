// The start window.
#include "console/frmStartStatus.h"

#include <QProgressBar>

#include "console/Robot.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

class frmStartStatusTest : public RunningSite {
protected:
    /// Runs the window; when its sequence is over with that status, does what the owner does then.
    void RunWindow(const std::string &status, const std::function<void(frmStartStatus &)> &action) {
        const auto window = [] {
            return dynamic_cast<frmStartStatus *>(ShownWindow("frmStartStatus"));
        };
        Hands.When(
            status,
            [=] {
                return window() != nullptr && TextOf(*window(), "lblStatus") == status &&
                       TextOf(*window(), "cmdCancel") == "Close";
            },
            [=] { action(*window()); });
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
    RunWindow("Pixmora! Stopped!", [](frmStartStatus &form) {
        EXPECT_FALSE(Find(form, "cmdViewSite").isVisible());
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    std::filesystem::remove(folder);
    Owner.ExpectMessage("Your album 'Holiday' cannot be found!...", CriticalQuestion, AnswerYes);
    RunWindow("Pixmora! Stopped!", [](frmStartStatus &form) {
        EXPECT_EQ(Find<QProgressBar>(form, "prg").value(), 0) << "it failed half way";
        Click(form, "cmdCancel");
    });
    EXPECT_FALSE(gWebsiteStarted);
    std::filesystem::create_directory(folder);
    RunWindow("Your Website is Live!", [](frmStartStatus &form) {
        EXPECT_TRUE(form.tmrClose.Enabled() && Find(form, "cmdViewSite").isVisible());
        EXPECT_EQ(form.tmrClose.Interval(), 5000);
        form.tmrClose.OnTimer();
    });
    EXPECT_TRUE(gWebsiteStarted);
    RunWindow("Your Website is Live!", [this](frmStartStatus &form) {
        EXPECT_TRUE(Find(form, "cmdCancel").isEnabled() && Find(form, "cmdCancel").hasFocus());
        const auto &bar = Find<QProgressBar>(form, "prg");
        EXPECT_EQ(bar.value(), bar.maximum());
        Owner.ExpectBrowser(gWebsiteAddress);
        Click(form, "cmdViewSite");
    });
}

}  // namespace
}  // namespace pixmora::test
