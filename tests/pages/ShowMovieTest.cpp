// Tests of a movie's transfer from its request to its last chunk.
#include "store/MediaTypes.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using ShowMovieTest = PageSite;

TEST_F(ShowMovieTest, SendsEveryByteAndBooksWholeKilobytes) {
    const clsAlbum &album = AddAlbum("A");
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 300000U}) {
        std::string movie;
        for (std::size_t i = 0; i < size; ++i) movie += static_cast<char>(i * 7 + i / 1024);
        gBandwidthSession = 0;
        AddFile(album, "a b/m.avi", movie);
        EXPECT_EQ(Get("ShowMovie?1&preview&/a%20b/m.avi"), WriteResponseHead("application/octet-stream", false) +
                                                               "Content-Length: " + std::to_string(size) + "\r\n\r\n" +
                                                               movie);
        EXPECT_EQ(gBandwidthSession, static_cast<double>(size / 1024));
    }
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + Column("PopularFiles", "FilePath"), " ");
}

TEST_F(ShowMovieTest, CountsAVisitorOnceForEachFile) {
    AddFile(AddAlbum("A"), "sub/m.avi", "movie");
    const auto counts = [this] {
        return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount");
    };
    for (const std::string mode : {"full", "full", "fullnocount", "Full"}) Get("ShowMovie?1&" + mode + "&/sub/m.avi");
    EXPECT_EQ(counts(), "\\sub\\m.avi 1");
    Get("ShowMovie?1&full&/./sub//m.avi", "", "127.0.0.3");
    EXPECT_EQ(counts(), "\\sub\\m.avi 2");
    EXPECT_EQ(gSystray->wnskConnect.UBound(), 0) << "all connections are trimmed";
}

TEST_F(ShowMovieTest, SendsPlayersThePartThatTheyAskForWithItsType) {
    std::string movie;
    for (int i = 0; i < 5000; ++i) movie += static_cast<char>(i * 7 + i / 1024);
    AddFile(AddAlbum("A"), "m.mp4", movie);
    const auto ask = [this](const std::string &mode, const std::string &range) {
        return RunningSite::Get("/ShowMovie?1&" + mode + "&/m.mp4", "range: bytes=" + range + "\r\n");
    };
    EXPECT_EQ(Body(ask("preview", "4000-")), movie) << "without the setting";
    SaveSetting("Setup", "MoreTypes", "1");
    LoadMediaTypes();
    const std::string lines = "\r\nPragma: no-cache\r\nAccept-Ranges: bytes\r\n";
    const std::string part = ask("preview", "4000-");
    EXPECT_TRUE(part.starts_with("HTTP/1.0 206 Partial Content\r\n"));
    EXPECT_NE(part.find("Content-Type: video/mp4" + lines +
                        "Content-Range: bytes 4000-4999/5000\r\nContent-Length: 1000\r\n\r\n"),
              std::string::npos);
    EXPECT_EQ(Body(part), movie.substr(4000));
    EXPECT_EQ(Body(ask("full", "1-3000")), movie.substr(1, 3000));
    EXPECT_EQ(Column("PopularFiles", "FileCount"), "") << "a part behind the start is no download";
    ask("full", "0-");
    EXPECT_EQ(Column("PopularFiles", "FileCount"), "1");
    const std::string beyond = ask("preview", "5000-");
    EXPECT_TRUE(beyond.starts_with("HTTP/1.0 416 Range Not Satisfiable\r\n"));
    EXPECT_TRUE(beyond.ends_with(lines + "Content-Range: bytes */5000\r\nContent-Length: 0\r\n\r\n"));
    DeleteSetting("Setup", "MoreTypes");
    LoadMediaTypes();
}

}  // namespace
}  // namespace pixmora::test
