// The conversion library itself over a played kernel: a still comes of a format that is none of ours.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QImage>
#include <cstdarg>

#include "platform/capture/V4l2Device.h"
#include "platform/loop/MessageLoop.h"
#include "support/PlayedKernel.h"

namespace {

pixmora::PlayedKernel *kernel = nullptr;   ///< of the running test
constexpr const char *node = "/dev/zero";  ///< stands for a device: it can be opened, and always has input

bool IsNode(long descriptor) {
    char name[64] = "";
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    return kernel != nullptr && readlink(link.c_str(), name, sizeof name - 1) > 0 && std::string_view(name) == node;
}

}  // namespace

/// The library makes its system calls by this function of the C library's.
extern "C" long syscall(long number, ...) noexcept {
    static const auto real = reinterpret_cast<long (*)(long, ...)>(dlsym(RTLD_NEXT, "syscall"));
    va_list list;
    va_start(list, number);
    long a[6];
    for (long &argument : a) argument = va_arg(list, long);
    va_end(list);
    if (number == SYS_ioctl && IsNode(a[0]))
        return kernel->Ioctl(static_cast<int>(a[0]), static_cast<unsigned long>(a[1]), reinterpret_cast<void *>(a[2]));
    if (number == SYS_mmap && IsNode(a[4]))
        return reinterpret_cast<long>(kernel->Map(0, static_cast<std::size_t>(a[1]), a[5]));
    if (number == SYS_munmap && kernel != nullptr && kernel->Mapped.contains(static_cast<std::size_t>(a[1]))) {
        kernel->Unmap(reinterpret_cast<void *>(a[0]), static_cast<std::size_t>(a[1]));
        return 0;
    }
    return real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}

namespace pixmora {

namespace {

/// The system's calls, on the one node.
class NodeCalls : public V4l2Calls {
public:
    std::vector<std::string> Devices() override { return {node}; }
    int Open(const std::string &path) override { return system_.Open(path); }
    int Ioctl(int number, unsigned long request, void *argument) override {
        return system_.Ioctl(number, request, argument);
    }
    void *Map(int number, std::size_t length, off_t offset) override { return system_.Map(number, length, offset); }
    void Unmap(void *start, std::size_t length) override { system_.Unmap(start, length); }
    std::shared_ptr<void> AwaitInput(int number, int ms, std::function<void(bool hasInput)> done) override {
        return system_.AwaitInput(number, ms, std::move(done));
    }
    ssize_t Read(int number, void *buffer, std::size_t count) override { return system_.Read(number, buffer, count); }
    void Close(int number) override { system_.Close(number); }

private:
    V4l2Calls &system_ = SystemV4l2Calls();
};

/// The still of a device that has one format, 32 by 16 pixels.
QImage StillOf(std::uint32_t format, const std::string &frame) {
    PlayedKernel played;
    kernel = &played;
    played.Cameras[node] = {.Formats = {{format, 32, 16}}, .Frames = std::deque<Frame>(8, {frame})};
    played.Open(node);  // chooses the camera
    NodeCalls calls;
    V4l2Drivers drivers(calls);
    auto device = drivers.Connect(0);
    std::optional<std::string> bitmap;
    if (device) device->TakeStill([&bitmap](const std::string &bytes) { bitmap = bytes; });
    for (int turn = 0; device && !bitmap && turn < 1000; ++turn) WaitUntilTick(TickAfter(GetTickCount(), 1));
    device.reset();
    DoEvents();  // what has waited for input goes with the loop's next turn
    kernel = nullptr;
    return QImage::fromData(QByteArray::fromStdString(bitmap.value_or("")), "BMP");
}

}  // namespace

TEST(V4l2Library, MakesAStillOfWhatMostCamerasHave) {
    std::string frame;
    for (int pair = 0; pair < 16 * 16; ++pair) frame += "\x52\x5A\x52\xF0";  // red is Y 82, U 90, V 240 (ITU-R BT.601)
    const QImage still = StillOf(V4L2_PIX_FMT_YUYV, frame);
    ASSERT_EQ(still.size(), QSize(32, 16));
    const QColor colour = still.pixelColor(9, 9);
    EXPECT_TRUE(colour.red() > 235 && colour.green() < 20 && colour.blue() < 20);
}

}  // namespace pixmora
