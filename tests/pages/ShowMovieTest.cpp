// Tests of a movie's transfer from its request to its last chunk.
#include <gtest/gtest.h>

#include "core/site/Transfers.h"
#include "platform/RunTimeError.h"
#include "support/ErrorOf.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ShowMovieTest : public SiteFixture {
protected:
    /// @param chunkSent after each buffer that has left
    std::string Movie(
        const Arguments &args, const std::string &from = "127.0.0.1", const std::function<void()> &chunkSent = [] {},
        int index = 1) {
        return Answer(
            [&](const Connection &socket) {
                socket->Index = index;
                socket->OnSendComplete = [element = socket.get(), index, chunkSent] {
                    const SendState &state = gSendStates[static_cast<std::size_t>(index)];
                    chunkSent();
                    if (state.FileSize > 0 && state.BytesSent != state.FileSize)
                        return SendNextChunk(element->shared_from_this());
                    if (state.FileSize > 0) EndTransfer(index);
                    element->Close();
                };
                gWebServerCommands->genShowMovie(socket, args);
            },
            "", from);
    }
    std::string Views() { return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount"); }
    static std::string MovieBytes(std::size_t size) {
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 7 + i / 1024);
        return bytes;
    }
};

TEST_F(ShowMovieTest, SendsEveryByteAndBooksWholeKilobytes) {
    const clsAlbum &album = AddAlbum("A");
    for (const std::size_t size : {1U, 1023U, 1024U, 1025U, 2048U, 100000U}) {
        SCOPED_TRACE(size);
        gBandwidthSession = 0;
        const std::string bytes = MovieBytes(size);
        AddFile(album, "a b/m.avi", bytes);
        int buffers = 0;
        EXPECT_EQ(Movie({"1", "preview", "/a%20b/m.avi"}, "127.0.0.1", [&] { ++buffers; }),
                  WriteResponseHead("application/octet-stream", false) + "Content-Length: " + std::to_string(size) +
                      "\r\n\r\n" + bytes);
        EXPECT_EQ(buffers, 1 + static_cast<int>((size + 1023) / 1024));
        EXPECT_EQ(gBandwidthSession, static_cast<double>(size / 1024));
        EXPECT_EQ(gSendStates[1].FileSize, 0);
        EXPECT_EQ(gSendStates[1].BytesSent, 0);
        EXPECT_EQ(gSendStates[1].FileNumber, nullptr);
    }
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), " ");
    EXPECT_EQ(Views(), " ");
}

TEST_F(ShowMovieTest, SendsTheHeadOfAnEmptyMovieAlone) {
    AddFile(AddAlbum("A"), "m.avi", "");
    EXPECT_TRUE(Movie({"1", "full", "/m.avi"}).ends_with("Content-Length: 0\r\n\r\n"));
    EXPECT_NE(gSendStates[1].FileNumber, nullptr);
}

TEST_F(ShowMovieTest, CountsADownloadOnceForEachVisitor) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "O'Brien/m 1.avi");
    const std::string link = "/O'Brien/m%201.avi";
    Movie({"1", "full", link});
    Movie({"1", "full", "/./O'Brien//m%201.avi"});
    Movie({"1", "fullnocount", link});
    Movie({"1", "Full", link}, "127.0.0.3");
    EXPECT_EQ(Views(), "\\O%39Brien\\m 1.avi 1");
    Movie({"1", "full", link}, "127.0.0.2");
    EXPECT_EQ(Views(), "\\O%39Brien\\m 1.avi 2");
    EXPECT_EQ(gDownloadCookies.size(), 2U);
    EXPECT_EQ(gDownloadCookies[0].FilePath, album.Directory + "\\O'Brien\\m 1.avi");
}

TEST_F(ShowMovieTest, AnswersWhatItCantSend) {
    const clsAlbum &album = AddAlbum("A");
    AddDirectory(album, "folder.avi");
    Program.Write("albums/secret.avi");
    for (const Arguments &args : {Arguments{}, {"1", "full"}, {"one", "full", "/m.avi"}, {"99999", "full", "/m.avi"}})
        EXPECT_EQ(Movie(args), "Bad Request!") << Join(args, "&");
    const auto errorOf = [&](const Arguments &args) {
        return ErrorOf([&] { Movie(args); });
    };
    EXPECT_EQ(errorOf({"2", "full", "/m.avi"}), CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_EQ(errorOf({"0", "full", "/m.avi"}), CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_EQ(errorOf({"1", "x", "/m.avi"}), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(errorOf({"1", "full", "/../secret.avi"}), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(errorOf({"1", "x", "/folder.avi"}), CodeOf(ErrorNumber::FileNotFound));
    EXPECT_EQ(Views(), " ");
}

TEST_F(ShowMovieTest, RefusesAnIndexBehindTheTable) {
    AddFile(AddAlbum("A"), "m.avi", MovieBytes(5000));
    int error = 0;
    const std::string answer = Answer([&](const Connection &socket) {
        socket->Index = HighestSendIndex + 1;
        error = ErrorOf([&] { gWebServerCommands->genShowMovie(socket, {"1", "full", "/m.avi"}); });
    });
    EXPECT_EQ(answer, "Too many connections! Try again later.");
    EXPECT_EQ(error, CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_TRUE(Movie(
                    {"1", "full", "/m.avi"}, "127.0.0.1", [] {}, HighestSendIndex)
                    .ends_with(MovieBytes(5000)));
}

TEST_F(ShowMovieTest, BreaksOffWhenTheFileShrinks) {
    const clsAlbum &album = AddAlbum("A");
    const std::string path = AddFile(album, "m.avi", MovieBytes(5000));
    int buffers = 0;
    const std::string answer = Movie({"1", "full", "/m.avi"}, "127.0.0.1", [&] {
        if (++buffers == 3) std::filesystem::resize_file(path, 2100);
    });
    EXPECT_EQ(Body(answer), MovieBytes(2048));
    EXPECT_EQ(gSendStates[1].FileSize, 0);
    EXPECT_EQ(gBandwidthSession, 0);
}

TEST_F(ShowMovieTest, KeepsTheTimeOfTheLastChunk) {
    AddFile(AddAlbum("A"), "m.avi", MovieBytes(3000));
    gSendStates[1].LastSendTick = 7;
    std::vector<Tick> ticks;
    Movie({"1", "full", "/m.avi"}, "127.0.0.1", [&] {
        ticks.push_back(gSendStates[1].LastSendTick);
        Clock.Advance(1000);
    });
    EXPECT_EQ(ticks, (std::vector<Tick>{7, 1001000, 1002000, 1003000}));
}

TEST_F(ShowMovieTest, ClearsATransferThatWontEnd) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "m.avi", MovieBytes(3000));
    gSendStates[5].FileNumber = BinaryFile::OpenForRead(album.Directory + "\\m.avi");
    gSendStates[5].FileSize = 3000;
    gSendStates[5].BytesSent = 1024;
    ClearTransfer(5);
    EXPECT_EQ(gSendStates[5].FileNumber, nullptr);
    EXPECT_EQ(gSendStates[5].FileSize + gSendStates[5].BytesSent, 0);
    EXPECT_EQ(gBandwidthSession, 0);
}

}  // namespace
}  // namespace pixmora::test
