// Tests of a movie's transfer from its request to its last chunk.
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using ShowMovieTest = PageSite;

TEST_F(ShowMovieTest, SendsEveryByteAndBooksWholeKilobytes) {
    const clsAlbum &album = AddAlbum("A");
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 2048U, 100000U}) {
        std::string movie;
        for (std::size_t i = 0; i < size; ++i) movie += static_cast<char>(i * 7 + i / 1024);
        gBandwidthSession = 0;
        AddFile(album, "a b/m.avi", movie);
        EXPECT_EQ(Get("ShowMovie?1&preview&/a%20b/m.avi"), WriteResponseHead("application/octet-stream", false) +
                                                               "Content-Length: " + std::to_string(size) + "\r\n\r\n" +
                                                               movie);
        EXPECT_EQ(gBandwidthSession, static_cast<double>(size / 1024));
        EXPECT_EQ(gSendStates[1].FileSize + gSendStates[1].BytesSent, 0);
    }
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + Column("PopularFiles", "FilePath"), " ");
}

}  // namespace
}  // namespace pixmora::test
