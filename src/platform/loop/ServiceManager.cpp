// Word to the service manager that started the program.
#include "platform/loop/ServiceManager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace pixmora {

void NotifyServiceManager(const std::string &lines) {
    const char *variable = std::getenv("NOTIFY_SOCKET");
    const std::string_view name = variable != nullptr ? variable : "";
    sockaddr_un address{};
    if (name.size() < 2 || name.size() >= sizeof address.sun_path) return;
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), address.sun_path);
    if (name.front() == '@') address.sun_path[0] = '\0';

    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return;
    // An abstract name is as long as it is given, with no NUL behind it.
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    sendto(descriptor, lines.data(), lines.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
           reinterpret_cast<const sockaddr *>(&address), length);
    close(descriptor);
}

}  // namespace pixmora
