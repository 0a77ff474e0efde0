// The conversion library itself over a played kernel: a still comes of a format that is none of ours.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QImage>
#include <cstdarg>

#include "platform/capture/CaptureFrame.h"
#include "platform/capture/V4l2Session.h"
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

TEST(V4l2Library, MakesFramesOfWhatMostCamerasHave) {
    std::string red;  // Y 82, U 90, V 240 (ITU-R BT.601)
    for (int pair = 0; pair < 16 * 16; ++pair) red += "\x52\x5A\x52\xF0";
    PlayedKernel played;
    kernel = &played;
    played.Cameras[node] = {.Formats = {{V4L2_PIX_FMT_YUYV, 32, 16}}, .Frames = std::deque<Frame>(8, {red})};
    played.Open(node);  // chooses the camera
    std::string bitmap;
    {
        V4l2Session session(SystemV4l2Calls(), node);
        ASSERT_TRUE(session.IsCaptureDevice() && session.SetFormat() && session.Start());
        bool hasInput = false;
        const auto wait = session.AwaitInput(1000, [&](bool has) { hasInput = has; });
        for (int turn = 0; !hasInput && turn < 1000; ++turn) WaitUntilTick(TickAfter(GetTickCount(), 1));
        EXPECT_TRUE(hasInput);
        V4l2Session::Attempt frame;
        ASSERT_TRUE(session.Next(frame) && frame);
        bitmap = FrameToBitmap(session.Format(), *frame);
    }
    kernel = nullptr;
    const QImage still = QImage::fromData(QByteArray::fromStdString(bitmap), "BMP");
    ASSERT_EQ(still.size(), QSize(32, 16));
    const QColor colour = still.pixelColor(9, 9);
    EXPECT_TRUE(colour.red() > 235 && colour.green() < 20 && colour.blue() < 20);
}

}  // namespace pixmora
