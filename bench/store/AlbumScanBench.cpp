// The scan of an album at website start, beside `find` that prints the same files' sizes and times.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <map>
#include <stdexcept>
#include <string>

#include "store/Catalogue.h"
#include "support/OpenStore.h"

namespace pixmora::bench {

namespace {

constexpr int filesPerFolder = 500;

/// An album's folder of so many empty pictures. Its names have the length of a camera's.
class Pictures {
public:
    explicit Pictures(std::int64_t count) {
        for (std::int64_t i = 0; i < count; ++i)
            folder_.Write("Folder " + std::to_string(i / filesPerFolder) + "/IMG_" + std::to_string(100000 + i) +
                          ".jpg");
    }
    const std::string &Path() const { return folder_.Path(); }

private:
    TempFolder folder_;
};

/// Made once: most benchmarks run several times.
const Pictures &PicturesOf(std::int64_t count) {
    static std::map<std::int64_t, Pictures> made;
    return made.try_emplace(count, count).first->second;
}

void ScanAlbumOfFiles(benchmark::State &state) {
    const OpenStore store;
    const Pictures &pictures = PicturesOf(state.range(0));
    const auto album = std::make_shared<clsAlbum>();
    album->ID = 1;
    album->Name = "Trips";
    album->Directory = ProgramPath(pictures.Path());
    album->SubDirectories = album->ShowPictures = album->ShowMovies = 1;
    gAlbums = {album};
    for (auto _ : state) ScanAlbum(*album);
    gAlbums.clear();
    if (album->PictureCount != state.range(0)) state.SkipWithError("the scan has missed pictures");
}

void RunFind(const std::string &folder) {
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    std::string program = "find";
    std::string place = folder;
    std::string print = "-printf";
    std::string format = "%s %T@\n";
    char *arguments[] = {program.data(), place.data(), print.data(), format.data(), nullptr};
    pid_t process = 0;
    const int error = posix_spawnp(&process, "find", &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 1;
    if (error != 0 || waitpid(process, &status, 0) != process || status != 0) throw std::runtime_error("find failed");
}

void FindOfFiles(benchmark::State &state) {
    const Pictures &pictures = PicturesOf(state.range(0));
    for (auto _ : state) RunFind(pictures.Path());
}

void FileCounts(benchmark::internal::Benchmark *bench) {
    for (const std::int64_t count : {1'000, 10'000, 100'000}) bench->Arg(count);
    bench->Unit(benchmark::kMillisecond)->UseRealTime();
}
BENCHMARK(ScanAlbumOfFiles)->Apply(FileCounts);
BENCHMARK(FindOfFiles)->Apply(FileCounts);

}  // namespace

}  // namespace pixmora::bench
