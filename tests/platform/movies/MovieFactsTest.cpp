// Movie facts of the small movies beside this file, and of what only calls itself a movie.
#include "platform/movies/MovieFacts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/files/Files.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

std::string Sample(const std::string &name) {
    return (std::filesystem::path(__FILE__).parent_path() / "../media" / name).string();
}

}  // namespace

TEST(MovieFacts, TellsSizeFramesAndLengthByContent) {
    // As ffprobe has them, but for the movie that its head turns upright.
    const std::tuple<const char *, int, int, std::int64_t, std::int64_t> known[] = {
        // name, width, height, frames, ms
        {"mpeg4.avi", 64, 48, 5, 1000},
        {"mpeg4.mov", 64, 48, 6, 1000},
        {"turned.mov", 48, 64, 6, 1000},
        {"mpeg1_program_stream.mpg", 96, 64, 22, 917},
        {"mpeg2_program_stream.mpeg", 64, 96, 25, 1000},
    };
    const TempFolder folder;
    for (const auto &[name, width, height, frames, ms] : known) {
        const MovieFacts facts = ReadMovieFacts(folder.Write("misnamed.mpg", ReadBinaryFile(Sample(name))));
        EXPECT_TRUE(facts.IsReadable && facts.HasPicture) << name;
        EXPECT_EQ(std::tuple(facts.Width, facts.Height, facts.Frames, facts.LengthMs),
                  std::tuple(width, height, frames, ms))
            << name;
    }
    const MovieFacts sound = ReadMovieFacts(Sample("sound_only.mov"));
    EXPECT_TRUE(sound.IsReadable && !sound.HasPicture);
    EXPECT_EQ(sound.LengthMs, 250);
}

TEST(MovieFacts, ReadsNothingElseInAMoviesPlace) {
    const TempFolder folder;
    folder.Write("good.avi", ReadBinaryFile(Sample("mpeg4.avi")));
    folder.MakeFolder("folder.mov");
    ASSERT_EQ(mkfifo(folder.Path("pipe.mov").c_str(), 0600), 0);
    folder.Write("text.avi", "no movie at all");
    // Followed, each of these lists would give the good movie's facts.
    folder.Write("playlist.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\ngood.avi\n#EXT-X-ENDLIST\n");
    folder.Write("list.mov", "ffconcat version 1.0\nfile good.avi\n");
    folder.Write("reference.avi", "[Reference]\nRef1=" + folder.Path("good.avi") + "\n");
    ASSERT_TRUE(ReadMovieFacts(folder.Path("good.avi")).IsReadable);
    for (const char *name :
         {"folder.mov", "pipe.mov", "text.avi", "playlist.mp4", "list.mov", "reference.avi", "missing.mov"})
        EXPECT_FALSE(ReadMovieFacts(folder.Path(name)).IsReadable) << name;
}

}  // namespace pixmora
