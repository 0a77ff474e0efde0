// A whole site in the test's process: program folder with the shipped htdocs, an album on real files, started and
// listening.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "core/WebsiteStart.h"
#include "core/WebsiteStop.h"
#include "core/modMain.h"
#include "core/site/frmSystray.h"
#include "setup/rules/UserEditor.h"
#include "support/Client.h"
#include "support/SetupFixture.h"

namespace pixmora::test {

/// The start sequence's status texts; cancels where it is told to.
class RecordedStart : public StartView {
public:
    void ShowStatus(const std::string &text) override { Texts.push_back(text); }
    void AdvanceProgress() override {}
    bool Cancelled() override { return !CancelAt.empty() && !Texts.empty() && Texts.back() == CancelAt; }

    std::vector<std::string> Texts;
    std::string CancelAt;  ///< the status text from which on the owner has cancelled
};

/// The clock stands still. Albums are made on folders below "albums"; Start opens a free port.
class RunningSite : public testing::Test {
protected:
    RunningSite() {
        SaveSetting("Setup", "ListenPort", "0");
        EXPECT_EQ(BeginProgram(""), ProgramStart::Ready);
        LoadSystray();
    }
    ~RunningSite() override {
        if (gWebsiteStarted) StopWebsite(true);
        gVisitorsActive = 0;  // a site that was never started stops nothing
        ReleaseProgram();
    }

    std::string AddAlbum(const std::string &name) const { return SaveAlbum(Program, name); }

    const std::vector<std::string> &Start() {
        view_ = {};
        RunStartSequence(view_);
        return view_.Texts;
    }
    int Port() const { return gSystray->wnskListen->LocalPort; }

    std::string Get(const std::string &target, const std::string &headers = "",
                    const std::string &from = "127.0.0.1") const {
        return Fetch(Port(), "GET " + target + " HTTP/1.0\r\n" + headers + "\r\n", from);
    }
    /// A field of the first row of a statement as text; "(none)" without one.
    static std::string FirstValue(const std::string &statement, std::string_view field) {
        const auto rows = gDatabase->OpenRecordset(statement, RecordsetType::Snapshot);
        return rows->Eof() ? "(none)" : AsText(rows->Value(field));
    }

    ProgramFolder Program;
    ClockSetForTest Clock{1000000, MakeDate(2004, 3, 10, 12, 0, 0)};
    ScriptedOwner Owner;

private:
    RecordedStart view_;
};

inline std::string Head(const std::string &type) {
    return "HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: " + type +
           "\r\nPragma: no-cache\r\n";
}

}  // namespace pixmora::test
