// The conversion library itself over a played kernel: whatever format a device has, a still comes of it.
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

/// The library's calls on the one node.
class NodeCalls : public V4l2Calls {
public:
    std::vector<std::string> Devices() override { return {node}; }
    int Open(const std::string &path) override { return SystemV4l2Calls().Open(path); }
    int Ioctl(int descriptor, unsigned long request, void *argument) override {
        return SystemV4l2Calls().Ioctl(descriptor, request, argument);
    }
    void *Map(int descriptor, std::size_t length, off_t offset) override {
        return SystemV4l2Calls().Map(descriptor, length, offset);
    }
    void Unmap(void *start, std::size_t length) override { SystemV4l2Calls().Unmap(start, length); }
    std::shared_ptr<void> AwaitInput(int descriptor, int ms, std::function<void(bool hasInput)> done) override {
        return SystemV4l2Calls().AwaitInput(descriptor, ms, std::move(done));
    }
    ssize_t Read(int descriptor, void *buffer, std::size_t count) override {
        return SystemV4l2Calls().Read(descriptor, buffer, count);
    }
    void Close(int descriptor) override { SystemV4l2Calls().Close(descriptor); }
};

/// A device that knows its formats and buffers in planes only, if in a single one.
class MultiPlanarKernel : public PlayedKernel {
public:
    int Ioctl(int descriptor, unsigned long request, void *argument) override {
        switch (request) {
            case VIDIOC_QUERYCAP: {
                auto &facts = *static_cast<v4l2_capability *>(argument);
                const int result = PlayedKernel::Ioctl(descriptor, request, argument);
                facts.device_caps = V4L2_CAP_VIDEO_CAPTURE_MPLANE | V4L2_CAP_STREAMING;
                facts.capabilities = facts.device_caps | V4L2_CAP_DEVICE_CAPS;
                return result;
            }
            case VIDIOC_G_FMT:
            case VIDIOC_TRY_FMT:
            case VIDIOC_S_FMT:
                return Format(descriptor, request, *static_cast<v4l2_format *>(argument));
            case VIDIOC_QUERYBUF:
            case VIDIOC_DQBUF:
                return Buffer(descriptor, request, *static_cast<v4l2_buffer *>(argument));
            default:
                return PlayedKernel::Ioctl(descriptor, request, argument);
        }
    }

private:
    int Format(int descriptor, unsigned long request, v4l2_format &format) {
        if (format.type != V4L2_BUF_TYPE_VIDEO_CAPTURE_MPLANE) return Failed(EINVAL);
        v4l2_format single{};
        single.fmt.pix.pixelformat = format.fmt.pix_mp.pixelformat;
        const int result = PlayedKernel::Ioctl(descriptor, request, &single);
        format.fmt.pix_mp = {};
        format.fmt.pix_mp.pixelformat = single.fmt.pix.pixelformat;
        format.fmt.pix_mp.width = single.fmt.pix.width;
        format.fmt.pix_mp.height = single.fmt.pix.height;
        format.fmt.pix_mp.num_planes = 1;
        format.fmt.pix_mp.plane_fmt[0].sizeimage = single.fmt.pix.sizeimage;
        return result;
    }
    int Buffer(int descriptor, unsigned long request, v4l2_buffer &buffer) {
        if (buffer.type != V4L2_BUF_TYPE_VIDEO_CAPTURE_MPLANE) return Failed(EINVAL);
        v4l2_buffer single = buffer;
        const int result = PlayedKernel::Ioctl(descriptor, request, &single);
        v4l2_plane &plane = buffer.m.planes[0];
        plane.length = single.length;
        plane.bytesused = single.bytesused;
        if (request == VIDIOC_QUERYBUF) plane.m.mem_offset = single.m.offset;
        buffer.index = single.index;
        buffer.flags = single.flags;
        return result;
    }
};

std::string Repeated(std::string_view bytes, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += bytes;
    return text;
}

}  // namespace

class V4l2Library : public testing::Test {
protected:
    ~V4l2Library() override {
        DoEvents();  // what has waited for input goes with the loop's next turn
        kernel = nullptr;
    }

    /// The still of a device that has one format, 32 by 16 pixels.
    static QImage Take(PlayedKernel &played, std::uint32_t format, const std::string &frame) {
        kernel = &played;
        played.Cameras[node] = {.Formats = {{format, 32, 16}}, .Frames = std::deque<Frame>(8, {frame})};
        played.Open(node);  // chooses the camera
        NodeCalls calls;
        V4l2Drivers drivers(calls);
        const auto device = drivers.Connect(0);
        std::optional<std::string> bitmap;
        if (device) device->TakeStill([&bitmap](const std::string &bytes) { bitmap = bytes; });
        for (int turn = 0; device && !bitmap && turn < 1000; ++turn) WaitUntilTick(TickAfter(GetTickCount(), 1));
        return QImage::fromData(QByteArray::fromStdString(bitmap.value_or("")), "BMP");
    }
    static void ExpectRed(const QImage &image, const char *name) {
        ASSERT_EQ(image.size(), QSize(32, 16)) << name;
        EXPECT_NEAR(image.pixelColor(9, 9).red(), 255, 20) << name;
        EXPECT_NEAR(image.pixelColor(9, 9).green(), 0, 20) << name;
        EXPECT_NEAR(image.pixelColor(9, 9).blue(), 0, 20) << name;
    }

    static constexpr int pixels = 32 * 16;
    const std::string light = std::string(pixels, '\x52');  // red is Y 82, U 90, V 240 (ITU-R BT.601)
    const std::string nv12 = light + Repeated("\x5A\xF0", pixels / 4);
};

TEST_F(V4l2Library, MakesAStillOfWhateverTheDeviceHas) {
    const std::tuple<const char *, std::uint32_t, std::string> cases[] = {
        {"RGB3", V4L2_PIX_FMT_RGB24, Repeated({"\xFF\0\0", 3}, pixels)},
        {"BGR3", V4L2_PIX_FMT_BGR24, Repeated({"\0\0\xFF", 3}, pixels)},
        {"YUYV", V4L2_PIX_FMT_YUYV, Repeated("\x52\x5A\x52\xF0", pixels / 2)},
        {"NV12", V4L2_PIX_FMT_NV12, nv12},
        {"YU12", V4L2_PIX_FMT_YUV420, light + std::string(pixels / 4, '\x5A') + std::string(pixels / 4, '\xF0')},
    };
    for (const auto &[name, format, frame] : cases) {
        PlayedKernel played;
        ExpectRed(Take(played, format, frame), name);
    }
}

TEST_F(V4l2Library, FindsAMultiPlanarDevice) {
    MultiPlanarKernel played;
    ExpectRed(Take(played, V4L2_PIX_FMT_NV12, nv12), "NV12 in one plane");
}

}  // namespace pixmora
