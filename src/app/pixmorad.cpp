// pixmorad: the server with no windows, in the foreground.
#include <cstdio>
#include <string>

#include "app/CommandLine.h"
#include "app/LineDialogue.h"
#include "core/WebsiteStart.h"
#include "core/WebsiteStop.h"
#include "core/modMain.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/loop/Application.h"
#include "platform/loop/MessageLoop.h"
#include "platform/loop/ServiceManager.h"

namespace {

constexpr const char *usage =
    "usage: pixmorad [--help | --version]\n"
    "Starts the website at once and serves it in the foreground until SIGTERM, SIGINT or SIGHUP.\n"
    "pixmoractl makes its albums and settings.\n";

/// The start sequence's status texts as lines on standard output, the site's address behind the last.
/// A service manager hears the same.
class LineView : public pixmora::StartView {
public:
    void ShowStatus(const std::string &text) override {
        pixmora::PrintLine(stdout, text);
        pixmora::NotifyServiceManager("STATUS=" + text);
    }
    void ShowLive() override {
        pixmora::PrintLine(stdout, pixmora::gWebsiteAddress);
        pixmora::NotifyServiceManager("READY=1\nSTATUS=Serving " + pixmora::gWebsiteAddress);
    }
};

void EndProgram() {
    pixmora::NotifyServiceManager("STOPPING=1");
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
    if (const auto status = pixmora::AnswerQuestion(argc, argv, usage)) return *status;
    if (argc > 1) return pixmora::RefuseWords(usage);
    pixmora::LineDialogue dialogue;
    pixmora::SetOwnerDialogue(&dialogue);
    int status = 1;
    pixmora::RunEventHandler([&status] {
        if (Start()) status = pixmora::RunMessageLoop();
    });
    pixmora::ReleaseProgram();
    return status;
}
