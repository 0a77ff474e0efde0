// pixmora: the desktop program.
#include <unistd.h>

#include <QApplication>
#include <cstdio>
#include <string>

#include "app/CommandLine.h"
#include "console/Desktop.h"
#include "core/modMain.h"
#include "platform/files/Files.h"
#include "platform/loop/Application.h"
#include "platform/loop/MessageLoop.h"
#include "setup/MakeSetupForms.h"

namespace {

constexpr const char *usage =
    "usage: pixmora                   opens the program's window\n"
    "       pixmora start             starts the website; on success only the tray icon stays\n"
    "       pixmora startopensite     the same, and opens the site in the browser\n"
    "       pixmora DIRECTORY         first makes a new album of the directory\n"
    "       pixmora --help | --version\n";

/// The whole of the command line, less what the toolkit has taken for itself.
std::string CommandLine(int argc, char **argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) line += (i > 1 ? " " : "") + std::string(argv[i]);
    return line;
}

/// Deliberate: "START" is no command, but may be a folder.
bool IsKnown(const std::string &line) {
    return line.empty() || line == "start" || line == "startopensite" ||
           pixmora::IsDirectory(pixmora::ProgramPath(line));
}

}  // namespace

int main(int argc, char **argv) {
    pixmora::IgnoreHarmlessSignals();
    pixmora::HoldTerminationSignals();  // before the toolkit has threads
    if (const auto status = pixmora::AnswerQuestion(argc, argv, usage)) return *status;
    QApplication application(argc, argv);
    if (!IsKnown(CommandLine(argc, argv))) return pixmora::RefuseWords(usage);
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
