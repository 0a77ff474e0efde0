// The conversions of a picture request, beside other ways to make the same picture in one process. The pictures are the
// files of the folder that PIXMORA_BENCH_PHOTOS names.
#include "platform/pictures/PictureEngine.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "peers/Peers.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora::bench {

namespace {

constexpr std::int32_t jpegType = 3;

struct Mode {
    const char *Name;
    WantedPicture Wanted;
};

// As the program has them when the owner has set nothing.
constexpr Mode modes[] = {{"thumb", {150, 50}}, {"slideshow", {300, 60}}, {"preview", {375, 70}}};

/// The road of a picture request without its connection.
std::size_t ConvertByEngine(PictureEngine &engine, const std::string &path, WantedPicture wanted) {
    std::int32_t success = 0;
    engine.Load(path, 0, success);
    if (success == 0) throw std::runtime_error("the engine can't read the picture");
    if (engine.Width() > wanted.Width) engine.Resize(wanted.Width, 0, 0, success);
    return engine.Encoded(wanted.Quality << 12 | jpegType, DoEvents).size();
}

void Measure(benchmark::State &state, const std::function<std::size_t()> &convert) {
    std::size_t size = 0;
    for (auto _ : state) size = convert();
    if (size < 500) state.SkipWithError("no picture came");
    state.counters["bytes"] = static_cast<double>(size);
}

void Register(const std::string &name, const std::function<std::size_t()> &convert) {
    // All threads' time: libvips has some of its own.
    benchmark::RegisterBenchmark(name.c_str(), Measure, convert)
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime();
}

void RegisterPicture(const std::filesystem::path &file) {
    static PictureEngine engine;
    const std::string path = file.string();
    for (const Mode &mode : modes) {
        const std::string name = file.stem().string() + "/" + mode.Name + "/";
        const WantedPicture wanted = mode.Wanted;
        Register(name + "ours", [path, wanted] { return ConvertByEngine(engine, path, wanted); });
        Register(name + "libvips", [path, wanted] { return VipsThumbnail(path, wanted); });
        if (file.extension() != ".jpg") continue;
        Register(name + "bare", [path, wanted] { return BareJpeg(path, wanted); });
        Register(name + "bare decode", [path, wanted] { return BareDecode(path, wanted); });
    }
}

bool RegisterPictures() {
    const char *folder = std::getenv("PIXMORA_BENCH_PHOTOS");
    if (folder == nullptr) return false;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) RegisterPicture(entry.path());
    return true;
}

[[maybe_unused]] const bool areRegistered = RegisterPictures();

}  // namespace

}  // namespace pixmora::bench
