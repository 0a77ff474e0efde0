// Finding the video devices, and the stills of a connected one.
#include "platform/capture/V4l2Device.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/capture/CaptureFrame.h"
#include "platform/capture/V4l2Session.h"
#include "platform/runtime/Clock.h"

namespace pixmora {

namespace {

/// A camera's very first frames are often dark.
constexpr std::size_t framesWanted = 8;

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

/// One still under way: the first few frames that are there, of which the last one that can be decoded is taken.
class Still {
public:
    using Done = std::function<void(const std::string &bitmap)>;

    Still(V4l2Calls &calls, const std::string &path) : session_(calls, path) {}

    bool Start(const V4l2Identity &identity, Done done) {
        if (!session_.IsCaptureDevice() || session_.Identity() != identity) return false;
        if (!session_.SetFormat() || !session_.Start()) return false;
        done_ = std::move(done);
        Await();
        return true;
    }

private:
    void Await() {
        const Tick ms = std::max(TicksBetween(GetTickCount(), deadline_), 0);
        wait_ = session_.AwaitInput(ms, [this](bool hasInput) {
            if (hasInput && Collect()) {
                Await();
            } else {
                done_(Bitmap());  // which may be the end of this
            }
        });
    }

    /// @return whether to go on
    bool Collect() {
        V4l2Session::Attempt frame;
        if (!session_.Next(frame)) return false;
        if (!frame) return true;
        const FrameState state = LookAtFrame(session_.Format(), *frame);
        if (state == FrameState::Damaged) return true;
        (state == FrameState::Whole ? whole_ : unended_).push_back(std::move(*frame));
        return whole_.size() + unended_.size() < framesWanted;
    }

    /// A frame with its end is the better one, since without it nobody can tell what is missing.
    std::string Bitmap() const {
        for (const auto *frames : {&whole_, &unended_}) {
            for (std::size_t left = frames->size(); left > 0; --left) {
                std::string bitmap = FrameToBitmap(session_.Format(), frames->at(left - 1));
                if (!bitmap.empty()) return bitmap;
            }
        }
        return {};
    }

    const Tick deadline_ = TickAfter(GetTickCount(), LongestStillMs);
    V4l2Session session_;
    Done done_;
    std::vector<std::string> whole_;
    std::vector<std::string> unended_;
    std::shared_ptr<void> wait_;
};

/// Open only while it takes a still: meanwhile other programs can use the camera, and one that was pulled out and
/// plugged in again goes on. Another camera that has got its number gives no still, as nobody has chosen that one.
class V4l2Device : public CaptureDevice {
public:
    V4l2Device(V4l2Calls &calls, std::string path, V4l2Identity identity)
        : calls_(calls), path_(std::move(path)), identity_(std::move(identity)) {}

    void TakeStill(std::function<void(const std::string &bitmap)> done) override {
        still_.reset();  // closed before it is opened again
        still_ = std::make_unique<Still>(calls_, path_);
        const auto finish = [this, done](const std::string &bitmap) {
            const auto copy = done;  // what follows ends this function's own life
            still_.reset();
            copy(bitmap);
        };
        if (!still_->Start(identity_, finish)) finish({});
    }

private:
    V4l2Calls &calls_;
    const std::string path_;
    const V4l2Identity identity_;
    std::unique_ptr<Still> still_;
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
