// The system calls as they are.
#include "platform/capture/V4l2Calls.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <utility>

#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"

namespace pixmora {

namespace {

constexpr std::string_view nodeName = "video";

bool IsVideoNode(std::string_view name) {
    return name.size() > nodeName.size() && name.starts_with(nodeName) &&
           std::all_of(name.begin() + nodeName.size(), name.end(),
                       [](unsigned char character) { return std::isdigit(character) != 0; });
}

class SystemCalls : public V4l2Calls {
public:
    std::vector<std::string> Devices() override { return FindVideoNodes("/dev"); }

    int Open(const std::string &path) override { return open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC); }

    int Ioctl(int descriptor, unsigned long request, void *argument) override {
        int result = 0;
        do {
            result = ioctl(descriptor, request, argument);
        } while (result < 0 && errno == EINTR);
        return result;
    }

    void *Map(int descriptor, std::size_t length, off_t offset) override {
        return mmap(nullptr, length, PROT_READ, MAP_SHARED, descriptor, offset);
    }
    void Unmap(void *start, std::size_t length) override { munmap(start, length); }

    short Poll(int descriptor, int ms) override {
        pollfd watched{descriptor, POLLIN, 0};
        return poll(&watched, 1, ms) > 0 ? watched.revents : short{0};
    }

    ssize_t Read(int descriptor, void *buffer, std::size_t count) override { return read(descriptor, buffer, count); }
    void Close(int descriptor) override { close(descriptor); }
};

}  // namespace

V4l2Calls &SystemV4l2Calls() {
    static SystemCalls calls;
    return calls;
}

std::vector<std::string> FindVideoNodes(const std::string &folder) {
    std::vector<std::pair<double, std::string>> nodes;
    const Directory directory(ProgramPath(folder));
    for (const DirectoryEntry &entry : directory.Entries()) {
        if (!IsVideoNode(entry.Name)) continue;
        nodes.emplace_back(Val(std::string_view(entry.Name).substr(nodeName.size())), folder + "/" + entry.Name);
    }
    std::sort(nodes.begin(), nodes.end());
    std::vector<std::string> paths;
    paths.reserve(nodes.size());
    for (auto &[number, path] : nodes) paths.push_back(std::move(path));
    return paths;
}

}  // namespace pixmora
