// The loop's application object for programs without windows, and the signals that ask a program to end.
#pragma once

#include <functional>
#include <memory>

class QCoreApplication;

namespace pixmora {

/// Keeps what is no reason to end from ending the process: a file at the size that the system allows (a full disk), and
/// a reader of our messages who has gone. For a main() that makes its own application object; before any thread.
void IgnoreHarmlessSignals();

/// Made first thing in main() and kept to its end; the message loop needs it. A desktop makes its own instead.
class Application {
public:
    Application(int &argc, char **argv);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

private:
    std::unique_ptr<QCoreApplication> application_;
};

/// Holds SIGTERM, SIGINT and SIGHUP back for OnTerminationSignal, which does this too. Threads inherit it.
void HoldTerminationSignals();

/// Runs the handler on the message loop when one of them comes, however deep in nested loops. Call once, with the
/// application made.
void OnTerminationSignal(std::function<void()> handler);

}  // namespace pixmora
