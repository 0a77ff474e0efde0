// What a service manager hears, by path and by abstract name.
#include "platform/loop/ServiceManager.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

#include "support/TempFolder.h"

namespace pixmora {

TEST(ServiceManager, HearsTheLinesByEitherKindOfNameAndIsNotMissed) {
    const TempFolder folder;
    for (const std::string &name : {folder.Path("notify"), "@pixmora-test-" + std::to_string(getpid())}) {
        const int manager = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), address.sun_path);
        if (name.front() == '@') address.sun_path[0] = '\0';
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        ASSERT_EQ(bind(manager, reinterpret_cast<const sockaddr *>(&address), length), 0) << name;
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        NotifyServiceManager("READY=1\nSTATUS=here");
        std::array<char, 256> heard{};
        EXPECT_GT(recv(manager, heard.data(), heard.size(), MSG_DONTWAIT), 0) << name;
        EXPECT_STREQ(heard.data(), "READY=1\nSTATUS=here") << name;
        close(manager);
    }
    for (const std::string &name : {folder.Path("nobody"), std::string("@"), std::string(300, '/')}) {
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        NotifyServiceManager("READY=1");
    }
    unsetenv("NOTIFY_SOCKET");
    NotifyServiceManager("READY=1");
}

}  // namespace pixmora
