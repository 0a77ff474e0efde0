// The loop's application object for programs without windows, and the signals that ask a program to end.
#include "platform/loop/Application.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <utility>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

sigset_t TerminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
    return signals;
}

}  // namespace

Application::Application(int &argc, char **argv) : application_(std::make_unique<QCoreApplication>(argc, argv)) {
    IgnoreHarmlessSignals();
}

Application::~Application() = default;

void IgnoreHarmlessSignals() {
    for (const int signal : {SIGXFSZ, SIGPIPE}) std::signal(signal, SIG_IGN);
}

void HoldTerminationSignals() {
    const sigset_t signals = TerminationSignals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
}

void OnTerminationSignal(std::function<void()> handler) {
    HoldTerminationSignals();
    const sigset_t signals = TerminationSignals();
    const int descriptor = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor < 0) throw RunTimeError(ErrorNumber::DeviceIOError);
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, [descriptor, handler = std::move(handler)] {
        signalfd_siginfo signal;
        if (read(descriptor, &signal, sizeof signal) == sizeof signal) RunEventHandler(handler);
    });
}

}  // namespace pixmora
