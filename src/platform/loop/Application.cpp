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

struct Application::Implementation {
    Implementation(int &argc, char **argv) : application(argc, argv) {}
    QCoreApplication application;
};

Application::Application(int &argc, char **argv) : implementation_(std::make_unique<Implementation>(argc, argv)) {
    // A file at the size that the system allows is a full disk, and no reason to end.
    std::signal(SIGXFSZ, SIG_IGN);
}

Application::~Application() = default;

void OnTerminationSignal(std::function<void()> handler) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    const int descriptor = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor < 0) throw RunTimeError(ErrorNumber::DeviceIOError);
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, [descriptor, handler = std::move(handler)] {
        signalfd_siginfo signal;
        if (read(descriptor, &signal, sizeof signal) == sizeof signal) RunEventHandler(handler);
    });
}

}  // namespace pixmora
