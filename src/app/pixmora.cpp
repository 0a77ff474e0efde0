// pixmora: the desktop program.
#include <unistd.h>

#include <QApplication>
#include <csignal>
#include <cstdio>
#include <string>

#include "console/Desktop.h"
#include "core/modMain.h"
#include "platform/loop/Application.h"
#include "platform/loop/MessageLoop.h"
#include "setup/MakeSetupForms.h"

namespace {

/// The desktop's own threads are to inherit this, so that only the message loop takes the signals. A file at the size
/// that the system allows is a full disk, and no reason to end.
void PrepareSignals() {
    std::signal(SIGXFSZ, SIG_IGN);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
}

/// The whole of the command line, less what the toolkit has taken for itself.
std::string CommandLine(int argc, char **argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) line += (i > 1 ? " " : "") + std::string(argv[i]);
    return line;
}

}  // namespace

int main(int argc, char **argv) {
    PrepareSignals();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pixmora"));
    QApplication::setDesktopFileName(QStringLiteral("pixmora"));
    pixmora::Desktop desktop(pixmora::MakeSetupForms());
    pixmora::SetUnhandledErrorHandler([&desktop](const pixmora::RunTimeError &error) {
        if (!desktop.ShowUnhandledError(error)) return;
        std::fflush(stdout);
        _exit(pixmora::UnhandledErrorStatus);
    });
    int status = 1;
    pixmora::RunEventHandler([&] {
        pixmora::OnTerminationSignal([&desktop] { desktop.EndWithoutQuestion(); });
        if (desktop.Main(CommandLine(argc, argv))) status = pixmora::RunMessageLoop();
    });
    pixmora::ReleaseProgram();
    return status;
}
