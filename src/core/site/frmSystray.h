// The hidden form: it owns all sockets and the server's timers.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/site/Connection.h"
#include "platform/loop/MessageLoop.h"
#include "platform/router/Router.h"
#include "platform/runtime/Clock.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// The highest index that a connection's answer may have: the accepted ceiling of the design.
inline constexpr int HighestSendIndex = 256;

/// The loadable array of connections. Element 0 exists from the start and is never used for one.
class ConnectionArray {
public:
    ConnectionArray();
    /// The highest index loaded; 0 when there is no connection.
    int UBound() const;
    /// Loads a new element behind the highest; holes lower down are not reused.
    Connection Load();
    /// Loads a new element at the lowest index that has none or a closed one.
    Connection LoadInHole();
    /// Closes and drops the element; one that isn't loaded is no error.
    void Unload(int index);
    /// The element, or null when it isn't loaded.
    Connection Item(int index) const;
    /// Those that are loaded now, by index, less element 0.
    std::vector<Connection> Items() const;
    /// Unloads closed elements from the top down to the first that is open.
    void Trim();

private:
    Connection LoadAt(int index);

    std::map<int, Connection> elements_;
};

/// What is known of the port that the home's router leads here.
struct RouterFacts {
    std::shared_ptr<Router> Way;  ///< null where the owner doesn't want it, or the site was never started
    bool IsAsked = false;         ///< its reply has not come yet
    Tick AskedTick = 0;
    std::string AskedFrom;  ///< the machine's address then
    std::string Address;    ///< the site's, by the router's outer one; empty for none
    std::string Trouble;    ///< what the owner was told last
};

struct frmSystray {
    std::shared_ptr<Winsock> wnskListen = Winsock::Create();
    ConnectionArray wnskConnect;
    std::shared_ptr<Winsock> wnskDownload = Winsock::Create();  ///< of the outbound request that is waited for
    std::shared_ptr<Winsock> wnskReport = Winsock::Create();    ///< of the one that nobody waits for
    Timer tmrReport;                                            ///< its limit
    std::string TrustedProxy;  ///< address or network of those who ask in a visitor's place; empty for none
    RouterFacts RouterPort;
    std::string ServiceAddress;    ///< the site's address as the central service has it; empty for none
    Timer tmrIdle;                 ///< 1000 ms; enabled only while connections are open
    std::int32_t IdleTimeout = 0;  ///< ms; 0: connections may idle for ever
    Timer tmrConnections;          ///< 60000 ms; Tag counts down to the report
    Timer tmrWebCam;               ///< 5000 ms; enabled exactly while the webcam is live
};

}  // namespace pixmora
