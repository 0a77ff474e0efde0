// Tests of a movie's transfer from its request to its last chunk.
#include "core/site/Transfers.h"
#include "support/PageFixture.h"

namespace pixmora::test {
namespace {

class ShowMovieTest : public PageFixture {
protected:
    ShowMovieTest() {
        PrepareSocket = [this](const Connection &socket) {
            socket->OnSendComplete = [this, element = socket.get()] {
                if (BufferLeft) BufferLeft();
                const SendState &state = gSendStates[1];
                if (state.FileSize > 0 && state.BytesSent != state.FileSize)
                    return SendNextChunk(element->shared_from_this());
                if (state.FileSize > 0) EndTransfer(1);
                element->Close();
            };
        };
    }
    std::function<void()> BufferLeft;  ///< runs before the next chunk goes

    static std::string MovieBytes(std::size_t size) {
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 7 + i / 1024);
        return bytes;
    }
};

TEST_F(ShowMovieTest, SendsEveryByteAndBooksWholeKilobytes) {
    const clsAlbum &album = AddAlbum("A");
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 2048U, 100000U}) {
        gBandwidthSession = 0;
        AddFile(album, "a b/m.avi", MovieBytes(size));
        std::size_t buffers = 0;
        BufferLeft = [&] {
            ++buffers;
        };
        EXPECT_EQ(Get("ShowMovie?1&preview&/a%20b/m.avi"), WriteResponseHead("application/octet-stream", false) +
                                                               "Content-Length: " + std::to_string(size) + "\r\n\r\n" +
                                                               MovieBytes(size));
        EXPECT_EQ(buffers, 1 + (size + 1023) / 1024);
        EXPECT_EQ(gBandwidthSession, static_cast<double>(size / 1024));
        EXPECT_EQ(gSendStates[1].FileSize + gSendStates[1].BytesSent, 0);
        EXPECT_EQ(gSendStates[1].FileNumber != nullptr, size == 0);  // nothing ends the transfer of an empty movie
    }
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + Column("PopularFiles", "FilePath"), " ");
}

TEST_F(ShowMovieTest, NotesEachChunksTimeAndBreaksOffWhenTheFileShrinks) {
    const std::string path = AddFile(AddAlbum("A"), "m.avi", MovieBytes(5000));
    gSendStates[1].LastSendTick = 7;
    std::vector<Tick> ticks;
    BufferLeft = [&] {
        ticks.push_back(gSendStates[1].LastSendTick);
        Clock.Advance(1000);
        if (ticks.size() == 3) std::filesystem::resize_file(path, 2100);
    };
    const std::string answer = Get("ShowMovie?1&full&/m.avi");
    EXPECT_EQ(ticks, (std::vector<Tick>{7, 1001000, 1002000}));
    EXPECT_EQ(Body(answer), MovieBytes(2048));
    EXPECT_EQ(gSendStates[1].FileSize + gSendStates[1].BytesSent, 0);
    EXPECT_EQ(gBandwidthSession, 0);
}

}  // namespace
}  // namespace pixmora::test
