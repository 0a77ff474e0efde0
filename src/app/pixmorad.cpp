// pixmorad: the server with no windows, in the foreground.
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>

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
#include "platform/pictures/QrCode.h"

namespace {

constexpr const char *usage =
    "usage: pixmorad [--help | --version | --qr]\n"
    "Starts the website at once and serves it in the foreground until SIGTERM, SIGINT or SIGHUP.\n"
    "--qr prints the site's address as a QR code too. pixmoractl makes its albums and settings.\n";

/// The start sequence's status texts as lines on standard output, the site's address behind the last.
/// A service manager hears the same.
class LineView : public pixmora::StartView {
public:
    explicit LineView(bool showsQrCode) : showsQrCode_(showsQrCode) {}
    std::string PlaceOfPort() const override { return "Please use \"pixmoractl set Setup ListenPort\" and"; }
    void ShowStatus(const std::string &text) override {
        pixmora::PrintLine(stdout, text);
        pixmora::NotifyServiceManager("STATUS=" + text);
    }
    void ShowLive() override {
        pixmora::PrintLine(stdout, pixmora::gWebsiteAddress);
        if (showsQrCode_) {
            std::fputs(QrText(pixmora::MakeQrCode(pixmora::gWebsiteAddress), isatty(STDOUT_FILENO) != 0).c_str(),
                       stdout);
            std::fflush(stdout);
        }
        pixmora::NotifyServiceManager("READY=1\nSTATUS=Serving " + pixmora::gWebsiteAddress);
    }

private:
    const bool showsQrCode_;
};

/// The address follows the network, also for the service manager.
class ServerDialogue : public pixmora::LineDialogue {
public:
    void WebsiteStatusChanged() override {
        if (pixmora::gWebsiteStarted) pixmora::NotifyServiceManager("STATUS=Serving " + pixmora::gWebsiteAddress);
    }
};

void EndProgram() {
    pixmora::NotifyServiceManager("STOPPING=1");
    pixmora::StopWebsite(true);
    pixmora::ShutDownProgram();
}

/// @return whether the website is live
bool Start(bool showsQrCode) {
    if (pixmora::BeginProgram("") != pixmora::ProgramStart::Ready) return false;
    pixmora::NoteInstallTime();
    pixmora::LoadSystray();
    pixmora::OnTerminationSignal(EndProgram);
    LineView view(showsQrCode);
    pixmora::RunStartSequence(view);
    return pixmora::gWebsiteStarted;
}

}  // namespace

int main(int argc, char **argv) {
    const pixmora::Application application(argc, argv);
    if (const auto status = pixmora::AnswerQuestion(argc, argv, usage)) return *status;
    const bool showsQrCode = argc == 2 && std::string_view(argv[1]) == "--qr";
    if (argc > 1 && !showsQrCode) return pixmora::RefuseWords(usage);
    ServerDialogue dialogue;
    pixmora::SetOwnerDialogue(&dialogue);
    pixmora::SetUnhandledErrorHandler([&dialogue](const pixmora::RunTimeError &error) {
        std::fflush(stdout);
        dialogue.ShowError(error);
        _exit(pixmora::UnhandledErrorStatus);
    });
    int status = 1;
    pixmora::RunEventHandler([&] {
        if (Start(showsQrCode)) status = pixmora::RunMessageLoop();
    });
    pixmora::ReleaseProgram();
    return status;
}
