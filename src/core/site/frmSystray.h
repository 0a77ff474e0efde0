// The hidden form: it owns all sockets and the server's timers.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "core/site/Connection.h"
#include "platform/loop/MessageLoop.h"
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

struct frmSystray {
    std::shared_ptr<Winsock> wnskListen = Winsock::Create();
    ConnectionArray wnskConnect;
    std::shared_ptr<Winsock> wnskDownload = Winsock::Create();  ///< the outbound requests' one socket
    Timer tmrIdle;                                              ///< 1000 ms; enabled only while connections are open
    std::int32_t IdleTimeout = 0;                               ///< ms; 0: connections may idle for ever
    Timer tmrConnections;                                       ///< 60000 ms; Tag counts down to the report
    Timer tmrWebCam;                                            ///< 5000 ms; enabled exactly while the webcam is live
};

}  // namespace pixmora
