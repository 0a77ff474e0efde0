// Word to the service manager that started the program.
#pragma once

#include <string>

namespace pixmora {

/// Sends lines such as "READY=1" or "STATUS=Loading Albums..." (the protocol of sd_notify(3)) to the socket that
/// $NOTIFY_SOCKET names, a path or "@" and an abstract name. Without one, or with nobody there, nothing happens.
void NotifyServiceManager(const std::string &lines);

}  // namespace pixmora
