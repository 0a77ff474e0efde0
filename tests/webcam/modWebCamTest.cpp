// The webcam on played devices: start, count-down, stills and their failures.
#include "webcam/modWebCam.h"

#include <gtest/gtest.h>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/runtime/Clock.h"
#include "store/Settings.h"
#include "support/Pictures.h"
#include "support/ProgramFolder.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

namespace {

struct PlayedDevice {
    std::string Still = test::BitmapFile(4, 2);  ///< none when empty
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
    std::optional<PlayedDevice> Device;  ///< none: nothing is connected
    std::optional<CaptureDescription> Describe(int) override { return std::nullopt; }
    std::unique_ptr<CaptureDevice> Connect(int) override {
        return Device ? std::make_unique<Connected>(*Device) : nullptr;
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
        const int before = drivers.Device->StillsAsked;
        int ticks = 0;
        for (; drivers.Device->StillsAsked == before && ticks < 200; ++ticks) {
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
    drivers.Device.emplace();
    SaveSetting("Setup", "CaptureInterval", "120");
    StartWebcam();
    EXPECT_EQ(gLastCaptureTick, 500000);
    std::int32_t success = 0;
    gPictureEngine->Load(App::Path() + "\\htdocs\\capture.jpg", 0, success);
    EXPECT_EQ(gPictureEngine->Width(), 150) << "also a smaller still is scaled";
    EXPECT_EQ(TicksToTheNextStill(), 120);
    StopWebcam();
    EXPECT_FALSE(gSystray->tmrWebCam.Enabled());
    EXPECT_EQ(gCaptureDevice, nullptr);
}

TEST_F(Webcam, ShowsTheNewestStillOrTheFormerWhenACaptureFails) {
    drivers.Device.emplace();
    StartWebcam();
    const std::string first = Jpeg();
    drivers.Device->Still = test::BitmapFile(4, 4);
    TicksToTheNextStill();
    EXPECT_EQ(gLastCaptureTick, 530000);
    const std::string former = Jpeg();
    EXPECT_NE(former, first);
    for (const std::string still : {"", "no picture"}) {
        drivers.Device->Still = still;
        TicksToTheNextStill();
        EXPECT_EQ(Jpeg(), former);
        EXPECT_EQ(gLastCaptureTick, still.empty() ? 530000 : 590000) << "a file has come or not";
    }
}

TEST_F(Webcam, HoldsNobodyWhileAFrameIsAwaited) {
    PlayedDevice &device = drivers.Device.emplace();
    StartWebcam();
    device.IsSlow = true;
    device.Still = test::BitmapFile(4, 4);
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
    drivers.Device.emplace();
    ASSERT_TRUE(OpenWebcam(1));
    EXPECT_TRUE(SaveCaptureFile("not used", true));
    EXPECT_FALSE(FileExists(App::Path() + "\\testcapture.bmp"));
    drivers.Device->Still = "";
    owner.ExpectMessage("Device Error! Either your webcam is not supported or...", FlagCritical);
    EXPECT_FALSE(SaveCaptureFile("not used", true));
}

}  // namespace pixmora
