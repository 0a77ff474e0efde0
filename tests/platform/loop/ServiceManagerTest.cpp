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
#include <string>

#include "support/TempFolder.h"

namespace pixmora {

namespace {

/// A datagram socket as a service manager has it, with its name in the environment.
class PlayedManager {
public:
    explicit PlayedManager(const std::string &name) : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), address.sun_path);
        if (name.front() == '@') address.sun_path[0] = '\0';
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        isBound_ = bind(descriptor_, reinterpret_cast<const sockaddr *>(&address), length) == 0;
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
    }
    ~PlayedManager() {
        unsetenv("NOTIFY_SOCKET");
        close(descriptor_);
    }
    PlayedManager(const PlayedManager &) = delete;
    PlayedManager &operator=(const PlayedManager &) = delete;

    bool IsBound() const { return isBound_; }
    std::string Heard() const {
        std::array<char, 256> buffer;
        const ssize_t count = recv(descriptor_, buffer.data(), buffer.size(), MSG_DONTWAIT);
        return count < 0 ? "" : std::string(buffer.data(), static_cast<std::size_t>(count));
    }

private:
    int descriptor_;
    bool isBound_ = false;
};

}  // namespace

TEST(ServiceManager, HearsTheLinesByEitherKindOfName) {
    const TempFolder folder;
    for (const std::string &name : {folder.Path("notify"), "@pixmora-test-" + std::to_string(getpid())}) {
        const PlayedManager manager(name);
        ASSERT_TRUE(manager.IsBound()) << name;
        NotifyServiceManager("READY=1\nSTATUS=here");
        EXPECT_EQ(manager.Heard(), "READY=1\nSTATUS=here") << name;
    }
}

TEST(ServiceManager, IsNotMissed) {
    const TempFolder folder;
    for (const std::string &name : {folder.Path("nobody"), std::string("@"), std::string(300, '/')}) {
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        EXPECT_NO_FATAL_FAILURE(NotifyServiceManager("READY=1")) << name;
    }
    unsetenv("NOTIFY_SOCKET");
    NotifyServiceManager("READY=1");
}

}  // namespace pixmora
