// Finding the video devices, and the stills of a connected one.
#include "platform/capture/V4l2Device.h"

#include <utility>

#include "platform/capture/V4l2Session.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

/// Less than the two seconds that a still may hold the loop: starting and stopping a device takes its time too.
constexpr std::int32_t stillLimit = 1500;

struct Found {
    std::string Path;
    std::unique_ptr<V4l2Session> Session;
};

std::optional<Found> Find(V4l2Calls &calls, int index) {
    for (const std::string &path : calls.Devices()) {
        auto session = std::make_unique<V4l2Session>(calls, path);
        if (session->IsCaptureDevice() && index-- == 0) return Found{path, std::move(session)};
    }
    return std::nullopt;
}

/// Open only while it takes a still: meanwhile other programs can use the camera, and one that was pulled out and
/// plugged in again goes on. Another camera that has got its number gives no still, as nobody has chosen that one.
class V4l2Device : public CaptureDevice {
public:
    V4l2Device(V4l2Calls &calls, std::string path, V4l2Identity identity)
        : calls_(calls), path_(std::move(path)), identity_(std::move(identity)) {}

    bool SaveStill(std::string_view path) override {
        const Tick deadline = TickAfter(GetTickCount(), stillLimit);
        V4l2Session session(calls_, path_);
        if (!session.IsCaptureDevice() || session.Identity() != identity_ || !session.SetFormat()) return false;
        const std::string frame = session.TakeFrame(deadline);
        if (frame.empty()) return false;
        const std::string bitmap = FrameToBitmap(session.Format(), frame);
        return !bitmap.empty() && Write(path, bitmap);
    }

private:
    static bool Write(std::string_view path, const std::string &bitmap) {
        try {
            WriteFileAtomically(path, bitmap);
            return true;
        } catch (const RunTimeError &) {
            return false;  // a full disk costs the still, not the website
        }
    }

    V4l2Calls &calls_;
    const std::string path_;
    const V4l2Identity identity_;
};

}  // namespace

std::optional<CaptureDescription> V4l2Drivers::Describe(int index) {
    const std::optional<Found> found = Find(calls_, index);
    if (!found) return std::nullopt;
    return CaptureDescription{found->Session->Identity().Card, found->Session->Version()};
}

std::unique_ptr<CaptureDevice> V4l2Drivers::Connect(int index) {
    const std::optional<Found> found = Find(calls_, index);
    if (!found || !found->Session->SetFormat()) return nullptr;
    return std::make_unique<V4l2Device>(calls_, found->Path, found->Session->Identity());
}

CaptureDrivers &SystemCaptureDrivers() {
    static V4l2Drivers drivers(SystemV4l2Calls());
    return drivers;
}

}  // namespace pixmora
