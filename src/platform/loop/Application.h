// The loop's application object for programs without windows, and the signals that ask a program to end.
#pragma once

#include <functional>
#include <memory>

namespace pixmora {

/// Made first thing in main() and kept to its end; the message loop needs it. A desktop makes its own instead.
class Application {
public:
    Application(int &argc, char **argv);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

/// Runs the handler on the message loop when SIGTERM or SIGINT comes, however deep in nested loops. Call once, with the
/// application made.
void OnTerminationSignal(std::function<void()> handler);

}  // namespace pixmora
