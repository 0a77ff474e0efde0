// Capture devices on a played kernel: which is found, what becomes of its frames, and how it can fail.
#include "platform/capture/V4l2Device.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

#include "platform/loop/MessageLoop.h"
#include "support/PlayedKernel.h"

namespace pixmora {

namespace {

std::string Jpeg(const QColor &colour) {
    QImage image(16, 8, QImage::Format_RGB888);
    image.fill(colour);
    QBuffer buffer;
    image.save(&buffer, "JPEG", 95);
    return buffer.data().toStdString();
}

// Frames of 4 by 2 pixels.
const std::string white(24, '\xFF');
const std::string black(24, '\0');
constexpr const char *node = "/dev/video0";

}  // namespace

class V4l2Device : public testing::Test {
protected:
    ~V4l2Device() override { EXPECT_TRUE(kernel.IsAtRest()); }

    Camera &AddCamera(const std::string &path, Camera camera = {}) { return kernel.Cameras[path] = std::move(camera); }
    /// Asks the device for a still. @return whether there is one
    bool Take(CaptureDevice &device) {
        std::optional<std::string> bitmap;
        device.TakeStill([&bitmap](const std::string &bytes) { bitmap = bytes; });
        for (int turn = 0; !bitmap && turn < 1000; ++turn) DoEvents();
        EXPECT_TRUE(bitmap) << "never called back";
        still = bitmap.value_or("");
        return !still.empty();
    }
    bool TakeFromFirst() {
        const auto device = drivers.Connect(0);
        return device && Take(*device);
    }
    QImage Still() const { return QImage::fromData(QByteArray::fromStdString(still), "BMP"); }
    /// Whether the still has that colour, as near as JPEG keeps it.
    bool IsStill(const QColor &wanted) const {
        const QColor colour = Still().pixelColor(0, 0);
        return std::abs(colour.red() - wanted.red()) < 4 && std::abs(colour.green() - wanted.green()) < 4 &&
               std::abs(colour.blue() - wanted.blue()) < 4;
    }

    std::string still;
    PlayedKernel kernel;
    V4l2Drivers drivers{kernel};
};

TEST_F(V4l2Device, CountsOnlyNodesThatCapture) {
    AddCamera("/dev/video0", {.Card = "Metadata", .Capabilities = V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING});
    AddCamera("/dev/video1", {.Card = "Garden"});
    AddCamera("/dev/video3", {.Card = "Gone", .HasVanished = true});
    AddCamera("/dev/video4", {.Card = "Porch"});
    ASSERT_TRUE(drivers.Describe(1));
    EXPECT_EQ(drivers.Describe(0)->Name + drivers.Describe(0)->Version + drivers.Describe(1)->Name,
              "Garden6.1.99Porch");
    EXPECT_FALSE(drivers.Describe(2));
    for (const int index : {2, -1}) EXPECT_FALSE(drivers.Connect(index)) << index;
}

TEST_F(V4l2Device, TurnsFramesIntoBitmaps) {
    const Format mjpeg{V4L2_PIX_FMT_MJPEG, 16, 8};
    const std::string red = Jpeg(Qt::red);
    const std::string line("\xFF\0\0\0\xFF\0\xFF\0\0\0\xFF\0", 12);  // red, green, red, green
    const std::tuple<const char *, Format, std::string> cases[] = {
        {"jpeg filled up with zeros", mjpeg, red + std::string(100, '\0')},
        {"jpeg with other bytes behind it", mjpeg, red + "of the frame before"},
        {"jpeg without its end mark", mjpeg, red.substr(0, red.size() - 2)},
        {"each pixel in its place", {V4L2_PIX_FMT_RGB24, 4, 2}, line + line},
    };
    for (const auto &[name, format, frame] : cases) {
        AddCamera(node, {.Formats = {{V4L2_PIX_FMT_GREY}, format}, .Frames = {{frame}}});
        ASSERT_TRUE(TakeFromFirst()) << name;
        EXPECT_TRUE(IsStill(Qt::red)) << name;
    }
    ASSERT_EQ(Still().size(), QSize(4, 2));
    for (int x = 0; x < 4; ++x) EXPECT_EQ(Still().pixelColor(x, 1), QColor(x % 2 == 0 ? Qt::red : Qt::green)) << x;
}

TEST_F(V4l2Device, TakesTheFormatNearestToItsSize) {
    const Format small{V4L2_PIX_FMT_MJPEG, 4, 2};
    const Format large{V4L2_PIX_FMT_RGB24, 8, 4};
    AddCamera(node, {.Formats = {small, large}, .Frames = {{std::string(96, '\0')}}});
    EXPECT_TRUE(TakeFromFirst()) << "the larger";
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_RGB24, 4, 2}, small}, .Frames = {{Jpeg(Qt::red)}}});
    EXPECT_TRUE(TakeFromFirst()) << "of two alike the camera's own";
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_GREY}, {V4L2_PIX_FMT_RGB24, 40000, 40000}}});
    EXPECT_FALSE(drivers.Connect(0)) << "none that is known";
    AddCamera(node, {.Errors = {{VIDIOC_S_FMT, EBUSY}}});
    EXPECT_FALSE(drivers.Connect(0)) << "another program has it";
}

TEST_F(V4l2Device, KeepsTheLastOfAFewFrames) {
    Camera &camera = AddCamera(node, {.Frames = std::deque<Frame>(7, {black})});
    for (const Frame &frame : {Frame{black, V4L2_BUF_FLAG_ERROR}, {black.substr(1)}, {white}})
        camera.Frames.push_back(frame);
    camera.Frames.insert(camera.Frames.end(), 90, {black});
    ASSERT_TRUE(TakeFromFirst());
    EXPECT_TRUE(IsStill(Qt::white));
    EXPECT_EQ(camera.FramesGiven, 10U);

    const std::string whole = Jpeg(Qt::red);
    const std::string unended = Jpeg(Qt::blue).substr(0, whole.size() - 9);
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_MJPEG, 16, 8}},
                     .Frames = {{whole}, {unended}, {"\xFF\xD8\xFF no picture \xFF\xD9"}}});
    ASSERT_TRUE(TakeFromFirst());
    EXPECT_TRUE(IsStill(Qt::red)) << "the last one that is whole and can be decoded";

    AddCamera(node, {.Frames = {{black, 0, 700}, {white, 0, 700}, {black, 0, 700}}});
    const Tick start = GetTickCount();
    ASSERT_TRUE(TakeFromFirst()) << "a slow camera";
    EXPECT_TRUE(IsStill(Qt::white));
    EXPECT_LE(GetTickCount() - start, 2000);
}

TEST_F(V4l2Device, GivesNothingWhenItFailsAndGoesOnOnceMended) {
    const std::deque<Frame> good = {{white}, {white}};
    const std::pair<const char *, Camera> faults[] = {
        {"another program streams", {.Frames = good, .Errors = {{VIDIOC_STREAMON, EBUSY}}}},
        {"no memory for buffers", {.Frames = good, .Errors = {{VIDIOC_REQBUFS, ENOMEM}}}},
        {"no way to its memory", {.Frames = good, .CanMap = false}},
        {"pulled out", {.Frames = good, .HasVanished = true}},
        {"pulled out while it streams", {.Frames = good, .Errors = {{VIDIOC_DQBUF, ENODEV}}}},
        {"never a frame", {}},
        {"frames too late", {.Frames = {{white, 0, 5000}}}},
        {"damaged frames", {.Frames = std::deque<Frame>(100, {white, V4L2_BUF_FLAG_ERROR})}},
        {"cut frames", {.Frames = std::deque<Frame>(100, {white.substr(1)})}},
        {"another camera in its place", {.Card = "Bedroom", .Frames = good}},
    };
    for (const auto &[name, fault] : faults) {
        AddCamera(node, {.Frames = good});
        const auto device = drivers.Connect(0);
        ASSERT_TRUE(device) << name;
        AddCamera(node, fault);
        const Tick start = GetTickCount();
        EXPECT_FALSE(Take(*device)) << name;
        EXPECT_LE(GetTickCount() - start, 2000) << name;
        AddCamera(node, {.Frames = good});
        EXPECT_TRUE(Take(*device)) << name;
    }
}

TEST(V4l2Calls, AreThoseOfTheModule) {
    EXPECT_EQ(SystemV4l2Calls().Open("/dev/null"), -1);
    EXPECT_NE(errno, 0) << "which is no camera";
}

}  // namespace pixmora
