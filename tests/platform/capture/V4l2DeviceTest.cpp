// Capture devices on a played kernel: which is found, what becomes of its frames, and how it can fail.
#include "platform/capture/V4l2Device.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QImage>

#include "platform/files/Files.h"
#include "support/PlayedKernel.h"
#include "support/TempFolder.h"

namespace pixmora {

using testing::ElementsAre;
using testing::IsNull;
using testing::Le;
using testing::NotNull;

namespace {

/// A frame of 4 by 2 pixels, all alike.
std::string Yuyv(int y, int u, int v) {
    std::string bytes;
    for (int pair = 0; pair < 4; ++pair) {
        for (const int part : {y, u, y, v}) bytes += static_cast<char>(part);
    }
    return bytes;
}

std::string Jpeg(const QColor &colour) {
    QImage image(16, 8, QImage::Format_RGB888);
    image.fill(colour);
    QBuffer buffer;
    image.save(&buffer, "JPEG", 95);
    return buffer.data().toStdString();
}

/// Many cameras leave the tables out of their frames, as they are always the same.
std::string WithoutHuffmanTables(const std::string &jpeg) {
    std::string bytes = jpeg.substr(0, 2);
    for (std::size_t at = 2; at < jpeg.size();) {
        const auto marker = static_cast<unsigned char>(jpeg[at + 1]);
        const std::size_t length =
            static_cast<unsigned char>(jpeg[at + 2]) * 256U + static_cast<unsigned char>(jpeg[at + 3]);
        if (marker == 0xDA) return bytes + jpeg.substr(at);
        if (marker != 0xC4) bytes += jpeg.substr(at, length + 2);
        at += length + 2;
    }
    return bytes;
}

const std::string white = Yuyv(235, 128, 128);
const std::string black = Yuyv(16, 128, 128);
constexpr const char *node = "/dev/video0";

}  // namespace

class V4l2Device : public testing::Test {
protected:
    ~V4l2Device() override { EXPECT_TRUE(kernel.IsAtRest()); }

    Camera &AddCamera(const std::string &path, Camera camera = {}) { return kernel.Cameras[path] = std::move(camera); }
    /// Asks the camera at the node for a still, which goes to still.bmp.
    bool Save() {
        const auto device = drivers.Connect(0);
        return device && device->SaveStill(still);
    }
    QColor ColourOfStill() const { return QImage(QString::fromStdString(folder.Path("still.bmp"))).pixelColor(0, 0); }

    TempFolder folder;
    const std::string still = ProgramPath(folder.Path("still.bmp"));
    PlayedKernel kernel;
    V4l2Drivers drivers{kernel};
};

TEST_F(V4l2Device, CountsOnlyNodesThatCapture) {
    AddCamera("/dev/video0", {.Card = "Metadata", .Capabilities = V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING});
    AddCamera("/dev/video1", {.Card = "Garden"});
    AddCamera("/dev/video2", {.Card = "Encoder", .Capabilities = V4L2_CAP_VIDEO_M2M | V4L2_CAP_STREAMING});
    AddCamera("/dev/video3", {.Card = "Gone", .HasVanished = true});
    AddCamera("/dev/video4", {.Card = "Porch"});
    ASSERT_TRUE(drivers.Describe(0));
    EXPECT_EQ(drivers.Describe(0)->Name, "Garden");
    EXPECT_EQ(drivers.Describe(0)->Version, "6.1.99");
    EXPECT_EQ(drivers.Describe(1)->Name, "Porch");
    EXPECT_FALSE(drivers.Describe(2));
    EXPECT_THAT(drivers.Connect(2), IsNull());
    EXPECT_THAT(drivers.Connect(-1), IsNull());
}

TEST_F(V4l2Device, TurnsFramesIntoBitmaps) {
    const Format yuyv{V4L2_PIX_FMT_YUYV, 4, 2};
    const Format mjpeg{V4L2_PIX_FMT_MJPEG, 16, 8};
    const std::tuple<const char *, Format, std::string, QColor> cases[] = {
        {"white", yuyv, white, Qt::white},
        {"black", yuyv, black, Qt::black},
        {"red", yuyv, Yuyv(82, 90, 240), Qt::red},
        {"green", yuyv, Yuyv(145, 54, 34), Qt::green},
        {"blue", yuyv, Yuyv(41, 240, 110), Qt::blue},
        {"jpeg without tables", mjpeg, WithoutHuffmanTables(Jpeg(Qt::blue)), Qt::blue},
        {"jpeg filled up with zeros", mjpeg, Jpeg(Qt::red) + std::string(100, '\0'), Qt::red},
    };
    for (const auto &[name, format, frame, wanted] : cases) {
        AddCamera(node, {.Formats = {{V4L2_PIX_FMT_GREY}, format}, .Frames = {{frame}}});
        ASSERT_TRUE(Save()) << name;
        const QColor colour = ColourOfStill();
        EXPECT_NEAR(colour.red(), wanted.red(), 3) << name;
        EXPECT_NEAR(colour.green(), wanted.green(), 3) << name;
        EXPECT_NEAR(colour.blue(), wanted.blue(), 3) << name;
        EXPECT_EQ(folder.Read("still.bmp").substr(0, 2), "BM") << name;
    }
}

TEST_F(V4l2Device, PutsEachPixelInItsPlace) {
    // Light and dark columns, in lines that the driver makes longer than the picture.
    const std::string line = std::string("\xEB\x80\x10\x80\xEB\x80\x10\x80", 8);
    AddCamera(node, {.Frames = {{line + line}}});
    ASSERT_TRUE(Save());
    const QImage image(QString::fromStdString(folder.Path("still.bmp")));
    ASSERT_EQ(image.size(), QSize(4, 2));
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x) EXPECT_EQ(image.pixelColor(x, y).red(), x % 2 == 0 ? 255 : 0) << x << "," << y;
    }
}

TEST_F(V4l2Device, TakesTheFormatNearestToItsSize) {
    const Format small{V4L2_PIX_FMT_YUYV, 4, 2};
    const Format large{V4L2_PIX_FMT_MJPEG, 16, 8};
    AddCamera(node, {.Formats = {small, large}, .Frames = {{Jpeg(Qt::red)}}});
    EXPECT_TRUE(Save()) << "the larger, though it must be decoded";
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_MJPEG, 4, 2}, small}, .Frames = {{white}}});
    EXPECT_TRUE(Save()) << "of two alike the one that needs no decoding";
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_GREY}, {V4L2_PIX_FMT_YUYV, 40000, 40000}}});
    EXPECT_THAT(drivers.Connect(0), IsNull()) << "none that is known";
    AddCamera(node, {.Errors = {{VIDIOC_S_FMT, EBUSY}}});
    EXPECT_THAT(drivers.Connect(0), IsNull()) << "another program has it";
}

TEST_F(V4l2Device, KeepsTheLastOfAFewFrames) {
    Camera &camera = AddCamera(node);
    for (int i = 0; i < 7; ++i) camera.Frames.push_back({black});
    camera.Frames.push_back({black, V4L2_BUF_FLAG_ERROR});
    camera.Frames.push_back({black.substr(1)});
    camera.Frames.push_back({white});
    for (int i = 0; i < 90; ++i) camera.Frames.push_back({black});
    ASSERT_TRUE(Save());
    EXPECT_EQ(ColourOfStill(), QColor(255, 255, 255));
    EXPECT_EQ(camera.FramesGiven, 10U);

    AddCamera(node, {.Frames = {{black, 0, 700}, {white, 0, 700}, {black, 0, 700}}});
    const Tick start = GetTickCount();
    ASSERT_TRUE(Save()) << "a slow camera";
    EXPECT_EQ(ColourOfStill(), QColor(255, 255, 255));
    EXPECT_THAT(GetTickCount() - start, Le(2000));
}

TEST_F(V4l2Device, ReadsWhereItCannotStream) {
    AddCamera(node,
              {.Capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_READWRITE, .Frames = {{black.substr(3)}, {white}}});
    ASSERT_TRUE(Save());
    EXPECT_EQ(ColourOfStill(), QColor(255, 255, 255));
}

TEST_F(V4l2Device, LeavesTheFormerStillWhenItFailsAndGoesOnOnceMended) {
    const std::deque<Frame> good = {{white}, {white}};
    const std::pair<const char *, Camera> faults[] = {
        {"another program streams", {.Frames = good, .Errors = {{VIDIOC_STREAMON, EBUSY}}}},
        {"no memory for buffers", {.Frames = good, .Errors = {{VIDIOC_REQBUFS, ENOMEM}}}},
        {"no way to its memory", {.Frames = good, .CanMap = false}},
        {"pulled out", {.Frames = good, .HasVanished = true}},
        {"pulled out while it streams", {.Frames = good, .Errors = {{VIDIOC_DQBUF, ENODEV}}}},
        {"error reported by poll", {.Frames = good, .PollEvents = POLLERR}},
        {"never a frame", {}},
        {"frames too late", {.Frames = {{white, 0, 5000}}}},
        {"damaged frames", {.Frames = std::deque<Frame>(100, {white, V4L2_BUF_FLAG_ERROR})}},
        {"cut frames", {.Frames = std::deque<Frame>(100, {white.substr(1)})}},
        {"another camera in its place", {.Card = "Bedroom", .Frames = good}},
    };
    for (const auto &[name, fault] : faults) {
        AddCamera(node, {.Frames = good});
        const auto device = drivers.Connect(0);
        ASSERT_THAT(device, NotNull()) << name;
        folder.Write("still.bmp", "former");
        AddCamera(node, fault);
        const Tick start = GetTickCount();
        EXPECT_FALSE(device->SaveStill(still)) << name;
        EXPECT_THAT(GetTickCount() - start, Le(2000)) << name;
        EXPECT_EQ(folder.Read("still.bmp"), "former") << name;
        AddCamera(node, {.Frames = good});
        EXPECT_TRUE(device->SaveStill(still)) << name;
    }
}

TEST_F(V4l2Device, FailsOnWhatCannotBeDecodedOrWritten) {
    AddCamera(node, {.Formats = {{V4L2_PIX_FMT_MJPEG, 16, 8}}, .Frames = {{"\xFF\xD8\xFF no picture \xFF\xD9"}}});
    EXPECT_FALSE(Save());
    EXPECT_FALSE(FileExists(still));
    AddCamera(node, {.Frames = {{white}}});
    EXPECT_FALSE(drivers.Connect(0)->SaveStill(ProgramPath(folder.Path("no/such/folder.bmp"))));
}

TEST(V4l2Calls, FindNodesByNumber) {
    const TempFolder folder;
    for (const char *name : {"video10", "video2", "video0", "video", "videoX", "video1x", "v4l-subdev0"})
        folder.Write(name);
    EXPECT_THAT(FindVideoNodes(folder.Path()),
                ElementsAre(folder.Path("video0"), folder.Path("video2"), folder.Path("video10")));
}

}  // namespace pixmora
