// pixmorad: the server with no windows, in the foreground.
#include <cstdio>
#include <string>

#include "core/WebsiteStart.h"
#include "core/WebsiteStop.h"
#include "core/modMain.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/Application.h"
#include "platform/MessageLoop.h"
#include "platform/Text.h"

namespace {

void PrintLine(std::FILE *stream, const std::string &text) {
    std::fprintf(stream, "%s\n", text.c_str());
    std::fflush(stream);
}

/// The owner's messages as lines on standard error; a question takes its No.
class LineDialogue : public pixmora::OwnerDialogue {
public:
    int ShowMessageBox(const std::string &text, int flags) override {
        PrintLine(stderr, pixmora::Replace(pixmora::Replace(text, "\r\n", "\n"), "\n", " | "));
        return (flags & pixmora::FlagYesNo) != 0 ? pixmora::AnswerNo : pixmora::AnswerOk;
    }
    void ShowHelpBalloon(const std::string &title, const std::string &text) override {
        ShowMessageBox(title + "\n" + text, pixmora::FlagInformation);
    }
    void OpenInBrowser(const std::string &) override {}
    void WebsiteStatusChanged() override {}
    void ShowSetup() override {}
};

/// The start sequence's status texts as lines on standard output, the site's address behind the last.
class LineView : public pixmora::StartView {
public:
    void ShowStatus(const std::string &text) override { PrintLine(stdout, text); }
    void ShowLive() override { PrintLine(stdout, pixmora::gWebsiteAddress); }
};

void EndProgram() {
    pixmora::StopWebsite(true);
    pixmora::ShutDownProgram();
}

/// @return whether the website is live
bool Start() {
    if (pixmora::BeginProgram("") != pixmora::ProgramStart::Ready) return false;
    pixmora::NoteInstallTime();
    pixmora::LoadSystray();
    pixmora::OnTerminationSignal(EndProgram);
    LineView view;
    pixmora::RunStartSequence(view);
    return pixmora::gWebsiteStarted;
}

}  // namespace

int main(int argc, char **argv) {
    const pixmora::Application application(argc, argv);
    LineDialogue dialogue;
    pixmora::SetOwnerDialogue(&dialogue);
    int status = 1;
    pixmora::RunEventHandler([&status] {
        if (Start()) status = pixmora::RunMessageLoop();
    });
    pixmora::ReleaseProgram();
    return status;
}
