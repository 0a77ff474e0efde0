// Tests of a movie's transfer from its request to its last chunk.
#include <gtest/gtest.h>

#include "core/site/Transfers.h"
#include "platform/RunTimeError.h"
#include "support/ErrorOf.h"
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
    std::string Views() { return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount"); }
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
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + Views(), "  ");
}

TEST_F(ShowMovieTest, CountsADownloadOnceForEachVisitor) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "O'Brien/m 1.avi");
    for (const std::string mode : {"full", "full", "fullnocount", "Full"})
        Get("ShowMovie?1&" + mode + "&/O'Brien/m%201.avi");
    EXPECT_EQ(Views(), "\\O%39Brien\\m 1.avi 1");
    Get("ShowMovie?1&full&/./O'Brien//m%201.avi", "", "127.0.0.2");
    EXPECT_EQ(Views(), "\\O%39Brien\\m 1.avi 2");
    EXPECT_EQ(gDownloadCookies.at(1).FilePath, album.Directory + "\\O'Brien\\m 1.avi");
}

TEST_F(ShowMovieTest, AnswersWhatItCantSend) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "folder.avi/../../secret.avi");
    for (const std::string args : {"", "1&full", "one&full&/m.avi", "99999&full&/m.avi"})
        EXPECT_EQ(Get("ShowMovie?" + args), "Bad Request!") << args;
    const auto errorOf = [&](const std::string &args) {
        return ErrorOf([&] { Get("ShowMovie?" + args); });
    };
    EXPECT_EQ(errorOf("2&full&/m.avi"), CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_EQ(errorOf("1&x&/m.avi"), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(errorOf("1&full&/../secret.avi"), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(errorOf("1&x&/folder.avi"), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(Views(), " ");
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
