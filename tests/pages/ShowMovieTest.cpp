// Tests of a movie's transfer from its request to its last chunk.
#include "pages/PageTest.h"
#include "store/MediaTypes.h"

namespace pixmora::test {
namespace {

class ShowMovieTest : public PageTest {
protected:
    static std::string Movie(std::size_t size) {
        std::string movie;
        for (std::size_t i = 0; i < size; ++i) movie += static_cast<char>(i * 7 + i / 1024);
        return movie;
    }
    static std::string Downloads() { return Ask("SELECT FilePath, FileCount FROM PopularFiles"); }
};

TEST_F(ShowMovieTest, SendsEveryByteAndBooksWholeKilobytes) {
    StartAlbum();
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 300000U}) {
        gBandwidthSession = 0;
        AddFile("a b/m.avi", Movie(size));
        EXPECT_EQ(Get("/ShowMovie?1&preview&/a%20b/m.avi"), Concat(WriteResponseHead("application/octet-stream", false),
                                                                   "Content-Length: ", size, "\r\n\r\n", Movie(size)));
        EXPECT_EQ(gBandwidthSession, static_cast<double>(size / 1024));
    }
    EXPECT_EQ(Ask("SELECT DISTINCT AlbumName FROM StatsDaily"), " \n");
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 0) << "all connections are trimmed";
}

TEST_F(ShowMovieTest, SendsPlayersThePartThatTheyAskForWithItsType) {
    const std::string movie = Movie(5000);
    AddFile("m.mp4", movie);
    StartAlbum();
    const auto ask = [this](const std::string &mode, const std::string &range) {
        return Get("/ShowMovie?1&" + mode + "&/m.mp4", "range: bytes=" + range + "\r\n");
    };
    EXPECT_EQ(Body(ask("preview", "4000-")), movie) << "without the setting";
    SaveSetting("Setup", "MoreTypes", "1");
    LoadMediaTypes();
    const std::string lines = "\r\nPragma: no-cache\r\nAccept-Ranges: bytes\r\n";
    const std::string part = ask("preview", "4000-");
    EXPECT_TRUE(part.starts_with("HTTP/1.0 206 Partial Content\r\n"));
    ExpectParts(part, {"Content-Type: video/mp4" + lines +
                       "Content-Range: bytes 4000-4999/5000\r\nContent-Length: 1000\r\n\r\n"});
    EXPECT_EQ(Body(part), movie.substr(4000));
    EXPECT_EQ(Body(ask("full", "1-3000")), movie.substr(1, 3000));
    EXPECT_EQ(Downloads(), "") << "a part behind the start is no download";
    ask("full", "0-");
    EXPECT_EQ(Downloads(), "\\m.mp4|1\n");
    const std::string beyond = ask("preview", "5000-");
    EXPECT_TRUE(beyond.starts_with("HTTP/1.0 416 Range Not Satisfiable\r\n"));
    EXPECT_TRUE(beyond.ends_with(lines + "Content-Range: bytes */5000\r\nContent-Length: 0\r\n\r\n"));
    DeleteSetting("Setup", "MoreTypes");
    LoadMediaTypes();
}

}  // namespace
}  // namespace pixmora::test
