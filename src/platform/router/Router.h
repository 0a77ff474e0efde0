// The router of the machine's network, asked off the message loop.
#pragma once

#include <functional>
#include <memory>

#include "platform/router/RouterProtocols.h"

class QThreadPool;

namespace pixmora {

/// Works off what it is asked one after the other on a thread of its own, which touches nothing else of the program.
class Router {
public:
    explicit Router(std::unique_ptr<RouterProtocols> protocols);
    /// Waits up to two seconds for what is under way, so that a port that is being taken back is.
    ~Router();
    Router(const Router &) = delete;
    Router &operator=(const Router &) = delete;

    /// @param done comes from the message loop, unless Close was called meanwhile
    void Open(int port, std::function<void(const RouterReply &)> done);
    /// Takes the port back; nobody waits for it.
    void Close();

private:
    std::shared_ptr<RouterProtocols> protocols_;
    QThreadPool *pool_;  ///< given up where its thread doesn't end in time
    std::shared_ptr<const bool> isWanted_;
};

}  // namespace pixmora
