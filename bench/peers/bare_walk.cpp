// The bare walk that a page's listing can't do without: bare_walk SECONDS [-s|-d] FOLDER ... prints the processor
// microseconds of one walk, its best of ten tenths of that time. Each FOLDER's names are read; behind -s each entry's
// facts too; behind -d the folders in it are read as well, with the facts of each.
#include <dirent.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Walk {
    std::string Folder;
    bool AsksFacts = false;
    bool ReadsFolders = false;
};

long entriesSeen = 0;

void Read(const Walk &walk) {
    DIR *listing = opendir(walk.Folder.c_str());
    if (listing == nullptr) {
        std::fprintf(stderr, "bare_walk: can't read %s\n", walk.Folder.c_str());
        std::exit(1);
    }
    while (const dirent *entry = readdir(listing)) {
        ++entriesSeen;
        if (entry->d_name[0] == '.') continue;
        const bool isFolder = entry->d_type == DT_DIR;
        struct stat facts {};
        if (walk.AsksFacts || (walk.ReadsFolders && isFolder)) fstatat(dirfd(listing), entry->d_name, &facts, 0);
        if (walk.ReadsFolders && isFolder) Read({walk.Folder + "/" + entry->d_name});
    }
    closedir(listing);
}

/// Of the processor.
double Seconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Microseconds of one round of all walks, over about so many seconds.
double MicrosecondsOfARound(const std::vector<Walk> &walks, double seconds) {
    const double start = Seconds();
    long rounds = 0;
    do {
        for (const Walk &walk : walks) Read(walk);
        ++rounds;
    } while (Seconds() < start + seconds);
    return (Seconds() - start) / static_cast<double>(rounds) * 1e6;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 3) return 1;
    const double seconds = std::atof(argv[1]) / 10;
    std::vector<Walk> walks;
    Walk next;
    for (int i = 2; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "-s") {
            next.AsksFacts = true;
        } else if (word == "-d") {
            next.ReadsFolders = true;
        } else {
            next.Folder = word;
            walks.push_back(next);
            next = {};
        }
    }
    double best = MicrosecondsOfARound(walks, seconds);
    for (int i = 1; i < 10; ++i) best = std::min(best, MicrosecondsOfARound(walks, seconds));
    std::printf("%.2f\n", best);
    return entriesSeen > 0 ? 0 : 1;
}
