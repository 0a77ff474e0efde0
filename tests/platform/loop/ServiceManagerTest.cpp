// What a service manager hears, by path and by abstract name.
#include "platform/loop/ServiceManager.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "support/TempFolder.h"

namespace pixmora {

TEST(ServiceManager, HearsTheLinesByEitherKindOfNameAndIsNotMissed) {
    const TempFolder folder;
    const std::string names[] = {folder.Path("notify"), "@pixmora-test-" + std::to_string(getpid()),
                                 folder.Path("nobody"), "@", std::string(300, '/')};
    for (const std::string &name : names) {
        const int manager = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const bool isThere = &name < names + 2;
        sockaddr_storage address{AF_UNIX, {}, 0};
        char *const path = reinterpret_cast<char *>(&address) + sizeof address.ss_family;
        if (isThere) std::replace_copy(name.begin(), name.end(), path, '@', '\0');
        const auto length = static_cast<socklen_t>(sizeof address.ss_family + name.size());
        ASSERT_EQ(isThere && bind(manager, reinterpret_cast<sockaddr *>(&address), length) != 0, false) << name;
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        NotifyServiceManager("READY=1\nSTATUS=here");
        char heard[256] = "";
        EXPECT_EQ(recv(manager, heard, sizeof heard, MSG_DONTWAIT), isThere ? 19 : -1) << name;
        EXPECT_STREQ(heard, isThere ? "READY=1\nSTATUS=here" : "") << name;
        close(manager);
    }
    unsetenv("NOTIFY_SOCKET");
    NotifyServiceManager("READY=1");
}

}  // namespace pixmora
