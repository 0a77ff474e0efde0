// The calls of the conversion library, and the loop's watch over a device.
#include "platform/capture/V4l2Calls.h"

#include <sys/mman.h>

#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <utility>

#include "platform/capture/CameraModule.h"
#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Modules.h"
#include "platform/runtime/Numbers.h"

namespace pixmora {

namespace {

constexpr std::string_view nodeName = "video";

bool IsVideoNode(std::string_view name) {
    return name.size() > nodeName.size() && name.starts_with(nodeName) &&
           std::all_of(name.begin() + nodeName.size(), name.end(),
                       [](unsigned char character) { return std::isdigit(character) != 0; });
}

/// One wait for a device's input.
class InputWait {
public:
    InputWait(int descriptor, int ms, std::function<void(bool)> done)
        : notifier_(descriptor, QSocketNotifier::Read), done_(std::move(done)) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { End(true); });
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { End(false); });
        timer_.setSingleShot(true);
        timer_.start(ms);
    }

    /// It may be in the midst of its own event, and its descriptor may be closed before that is over.
    static void Drop(InputWait *wait) {
        wait->notifier_.setEnabled(false);
        wait->timer_.stop();
        QTimer::singleShot(0, [wait] { delete wait; });
    }

private:
    void End(bool hasInput) {
        notifier_.setEnabled(false);
        timer_.stop();
        RunEventHandler([&] { std::exchange(done_, nullptr)(hasInput); });
    }

    QSocketNotifier notifier_;
    QTimer timer_;
    std::function<void(bool)> done_;
};

class SystemCalls : public V4l2Calls {
public:
    /// None where the module is not installed; so no other call is made then.
    std::vector<std::string> Devices() override {
        return library_ != nullptr ? FindVideoNodes("/dev") : std::vector<std::string>();
    }

    int Open(const std::string &path) override { return library_->Open(path.c_str()); }

    int Ioctl(int descriptor, unsigned long request, void *argument) override {
        int result = 0;
        do {
            result = library_->Ioctl(descriptor, request, argument);
        } while (result < 0 && errno == EINTR);
        return result;
    }

    void *Map(int descriptor, std::size_t length, off_t offset) override {
        return library_->Map(nullptr, length, PROT_READ, MAP_SHARED, descriptor, offset);
    }
    void Unmap(void *start, std::size_t length) override { library_->Unmap(start, length); }

    std::shared_ptr<void> AwaitInput(int descriptor, int ms, std::function<void(bool hasInput)> done) override {
        return {new InputWait(descriptor, ms, std::move(done)), InputWait::Drop};
    }

    ssize_t Read(int descriptor, void *buffer, std::size_t count) override {
        return library_->Read(descriptor, buffer, count);
    }
    void Close(int descriptor) override { library_->Close(descriptor); }

private:
    const CameraLibrary *const library_ =
        static_cast<const CameraLibrary *>(LoadModule("camera", "PixmoraCameraLibrary"));
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
