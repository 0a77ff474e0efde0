// The webcam on played devices: start, count-down, stills and their failures.
#include "webcam/modWebCam.h"

#include <gmock/gmock.h>

#include <map>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/runtime/Clock.h"
#include "store/Settings.h"
#include "support/Pictures.h"
#include "support/ProgramFolder.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

namespace {

/// 4 by 2 pixels, dark or light.
std::string Bitmap(char shade) {
    return test::BitmapFile(4, 2).substr(0, 54) + std::string(24, shade);
}

struct PlayedDevice {
    std::string Still = Bitmap('\x40');  ///< none when empty
    int StillsAsked = 0;
    bool IsSlow = false;                                  ///< answers only by Done
    std::function<void(const std::string &bitmap)> Done;  ///< of the still that is awaited
};

class Connected : public CaptureDevice {
public:
    explicit Connected(PlayedDevice &device) : device_(device) {}
    void TakeStill(std::function<void(const std::string &bitmap)> done) override {
        ++device_.StillsAsked;
        device_.Done = std::move(done);
        if (!device_.IsSlow) device_.Done(device_.Still);
    }

private:
    PlayedDevice &device_;
};

class PlayedDrivers : public CaptureDrivers {
public:
    std::map<int, PlayedDevice> Devices;
    std::optional<CaptureDescription> Describe(int) override { return std::nullopt; }
    std::unique_ptr<CaptureDevice> Connect(int index) override {
        return Devices.contains(index) ? std::make_unique<Connected>(Devices[index]) : nullptr;
    }
};

}  // namespace

class Webcam : public testing::Test {
protected:
    Webcam() {
        folder.MakeFolder("htdocs");
        SaveSetting("Setup", "Webcam", "1");
        gSystray = std::make_unique<frmSystray>();
        gPictureEngine = std::make_unique<PictureEngine>();
        gThumbSize = 150;
        gLastCaptureTick = 0;
        SetCaptureDrivers(&drivers);
    }
    ~Webcam() override {
        CloseWebcam();
        SetCaptureDrivers(nullptr);
        gPictureEngine.reset();
        gSystray.reset();
    }

    /// Ticks until the device is asked for a still, at most 200.
    int TicksToTheNextStill() {
        const int before = drivers.Devices[0].StillsAsked;
        int ticks = 0;
        for (; drivers.Devices[0].StillsAsked == before && ticks < 200; ++ticks) {
            clock.Advance(WebcamIntervalMs);
            WebcamTick();
        }
        return ticks;
    }
    std::string Jpeg() const { return folder.Read("htdocs/capture.jpg"); }

    ProgramFolder folder;
    ClockSetForTest clock{500000, MakeDate(2004, 3, 1)};
    PlayedDrivers drivers;
    ScriptedOwner owner;
};

TEST_F(Webcam, StaysOffUnlessWantedAndThere) {
    for (const char *setting : {"0", "2", "1"}) {
        SaveSetting("Setup", "Webcam", setting);
        if (setting == std::string("1")) owner.ExpectMessage("Unable to connect to capture driver!...", FlagCritical);
        StartWebcam();
        EXPECT_FALSE(gSystray->tmrWebCam.Enabled()) << setting;
        EXPECT_EQ(gCaptureDevice, nullptr) << setting;
    }
}

TEST_F(Webcam, HasItsFirstStillAtTheStartAndCountsDownToTheNext) {
    drivers.Devices[0];
    drivers.Devices[1];
    SaveSetting("Setup", "WebcamSource", "1");
    StartWebcam();
    EXPECT_EQ(drivers.Devices[1].StillsAsked, 0) << "the choice in setup is for the test there";
    EXPECT_EQ(gLastCaptureTick, 500000);
    EXPECT_EQ(folder.Read("htdocs/capture.bmp"), Bitmap('\x40'));
    std::int32_t success = 0;
    gPictureEngine->Load(App::Path() + "\\htdocs\\capture.jpg", 0, success);
    EXPECT_EQ(gPictureEngine->Width(), 150) << "also a smaller still is scaled";
    EXPECT_EQ(TicksToTheNextStill(), 6);
    SaveSetting("Setup", "CaptureInterval", "120");
    EXPECT_EQ(TicksToTheNextStill(), 6) << "the round that has begun ends first";
    EXPECT_EQ(TicksToTheNextStill(), 120);
    StopWebcam();
    EXPECT_FALSE(gSystray->tmrWebCam.Enabled());
    EXPECT_EQ(gCaptureDevice, nullptr);
}

TEST_F(Webcam, ShowsTheNewestStillOrTheFormerWhenACaptureFails) {
    drivers.Devices[0];
    StartWebcam();
    const std::string first = Jpeg();
    drivers.Devices[0].Still = Bitmap('\xC0');
    TicksToTheNextStill();
    EXPECT_EQ(gLastCaptureTick, 530000);
    const std::string former = Jpeg();
    EXPECT_NE(former, first);
    for (const std::string still : {"", "no picture"}) {
        drivers.Devices[0].Still = still;
        TicksToTheNextStill();
        EXPECT_EQ(Jpeg(), former);
        EXPECT_EQ(gLastCaptureTick, still.empty() ? 530000 : 590000) << "a file has come or not";
    }
    // A folder in the bitmap's place can be neither removed nor replaced.
    std::filesystem::remove(folder.Path("htdocs/capture.bmp"));
    folder.Write("htdocs/capture.bmp/x");
    EXPECT_EQ(TicksToTheNextStill(), 200) << "the device isn't asked";
    EXPECT_EQ(Jpeg(), former);
}

TEST_F(Webcam, HoldsNobodyWhileAFrameIsAwaited) {
    PlayedDevice &device = drivers.Devices[0];
    StartWebcam();
    device.IsSlow = true;
    device.Still = Bitmap('\xC0');
    EXPECT_EQ(TicksToTheNextStill(), 6);
    EXPECT_FALSE(FileExists(App::Path() + "\\htdocs\\capture.bmp")) << "so that no former still can pass for it";
    clock.Advance(900);
    device.Done(device.Still);
    EXPECT_EQ(gLastCaptureTick, 530900);
    EXPECT_EQ(folder.Read("htdocs/capture.bmp"), device.Still);
    const Tick asked = GetTickCount();
    EXPECT_FALSE(SaveCaptureFile("not used", false)) << "a device that never answers";
    EXPECT_LE(GetTickCount() - asked, 2 * LongestStillMs);
}

TEST_F(Webcam, IsTestedWithAStillThatDoesNotStay) {
    drivers.Devices[1];
    ASSERT_TRUE(OpenWebcam(1));
    for (const bool isThere : {true, false}) {
        if (!isThere) drivers.Devices[1].Still = "";
        if (!isThere) owner.ExpectMessage("Device Error! Either your webcam is not supported or...", FlagCritical);
        EXPECT_EQ(SaveCaptureFile("not used", true), isThere);
        EXPECT_FALSE(FileExists(App::Path() + "\\testcapture.bmp"));
        folder.Write("testcapture.bmp", "of another time");
    }
    EXPECT_FALSE(SaveCaptureFile(App::Path() + "\\htdocs\\capture.bmp", false)) << "silent";
}

}  // namespace pixmora
