// Tests of the delivery of pictures and movies, and of what browsers may keep.
#include <chrono>
#include <filesystem>
#include <optional>

#include "pages/PageTest.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/Clock.h"
#include "store/MediaTypes.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowPictureTest : public PageTest {
protected:
    std::string Picture(const std::string &args) const { return Get("/ShowPicture?1&" + args); }
    std::int32_t WidthOf(const std::string &answer) const {
        const std::string path = Program.Write("answer.jpg", Body(answer));
        PictureEngine engine;
        std::int32_t success = 0;
        engine.Load(ProgramPath(path), 0, success);
        return engine.Width();
    }
    const std::string imageHead_ = WriteResponseHead("image/jpeg", true);
};

TEST_F(ShowPictureTest, ConvertsToTheSizeAndQualityOfTheMode) {
    const std::string wide = BitmapFile(1000, 40);
    AddFile("wide.BMP", wide);
    AddFile("small.bmp", BitmapFile(20, 10));
    StartAlbum();
    gThumbQuality = 50 * 4096;
    const std::string coarse = Picture("thumb&/wide.BMP");
    EXPECT_TRUE(coarse.starts_with(imageHead_ + "\xFF\xD8"));
    const std::pair<const char *, int> widths[] = {
        {"thumb&/wide.BMP", 150}, {"slideshow&/wide.BMP", 300}, {"preview&/wide.BMP", 375}, {"thumb&/small.bmp", 20}};
    for (const auto &[args, width] : widths) EXPECT_EQ(WidthOf(Picture(args)), width) << args;
    gBandwidthSession = 0;
    for (const char *mode : {"full", "thumbs", ""}) EXPECT_EQ(Picture(Concat(mode, "&/wide.BMP")), imageHead_ + wide);
    EXPECT_EQ(gBandwidthSession, 3 * static_cast<double>(wide.size() / 1024));
    EXPECT_EQ(gThumbsSession, 4);
    EXPECT_EQ(Ask("SELECT AlbumName, Thumbs FROM StatsDaily WHERE Thumbs > 0"), "A|4\n");
    gThumbQuality = 95 * 4096;
    EXPECT_GT(Picture("thumb&/wide.BMP").size(), coarse.size());
}

TEST_F(ShowPictureTest, LeavesTheOwnersFolderAloneAndKeepsConversionsApart) {
    AddFile("a.jpg", "no picture at all");
    AddFile("c.bmp", BitmapFile(20, 10).replace(28, 1, 1, '\x08').substr(0, 60));
    StartAlbum();
    const auto folder = Program.Path("albums/A");
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::days(40);
    std::filesystem::last_write_time(folder, longAgo);
    SaveSetting("Setup", "BrowserCache", "10");
    const Tick begun = gLastConversionTick = GetTickCount();
    EXPECT_EQ(Picture("thumb&/a.jpg"), imageHead_) << "not kept: it may be readable soon";
    EXPECT_EQ(gLastConversionTick - begun, 501);
    EXPECT_EQ(Picture("slideshow&/c.bmp"), WriteResponseHead("text/html", true) + "Picture Conversion Error");
    EXPECT_EQ(gThumbsSession, 2);
    EXPECT_EQ(std::filesystem::last_write_time(folder), longAgo);
    Picture("full&/a.jpg");
    Picture("thumb&/missing.bmp");
    EXPECT_EQ(gLastConversionTick - begun, 4 * 501) << "each takes its turn";
    SaveSetting("Setup", "ConversionSpacing", "2000");
    Picture("full&/a.jpg");
    EXPECT_EQ(gLastConversionTick - begun, 4 * 501 + 2001);
}

TEST_F(ShowPictureTest, HoldsPicturesThatComeDuringAConversionUntilItsEnd) {
    AddFile("big.bmp", BitmapFile(1000, 700));
    AddFile("small.bmp", BitmapFile(160, 10));
    StartAlbum();
    Client visitor(Port());
    ASSERT_TRUE(TurnUntil([] { return gSystray->wnskConnect.UBound() == 1; }));
    Timer arrival;
    std::optional<bool> wasHeld;
    arrival.OnTimer = [&] {
        if (!gHeldPictures || wasHeld) return;
        visitor.Send("GET /ShowPicture?1&thumb&/small.bmp HTTP/1.0\r\n\r\n");
        visitor.HalfClose();  // a visitor who sends no more waits for the answer all the same
        wasHeld = false;
        TurnUntil([&] { return !gHeldPictures->empty(); }, std::chrono::milliseconds(100));
        wasHeld = !gHeldPictures->empty();
    };
    arrival.SetInterval(1);
    arrival.SetEnabled(true);
    EXPECT_EQ(WidthOf(Picture("slideshow&/big.bmp")), 300);
    EXPECT_EQ(wasHeld, true);
    EXPECT_FALSE(gHeldPictures);
    EXPECT_EQ(WidthOf(visitor.ReceiveAll()), 150);
    EXPECT_EQ(gThumbsSession, 2);
}

TEST_F(ShowPictureTest, FinishesTheLastOfTheWaitingFirstUnlessItsVisitorGoes) {
    for (const char *name : {"outer.bmp", "inner.bmp"}) AddFile(name, BitmapFile(300, 10));
    StartAlbum();
    for (const bool goes : {false, true}) {
        SCOPED_TRACE(goes);
        Client first(Port());
        Client visitor(Port());
        ASSERT_TRUE(TurnUntil([] { return gSystray->wnskConnect.UBound() == 2; }));
        const Tick begun = GetTickCount();
        gLastConversionTick = begun;
        const Connection inner = gSystray->wnskConnect.Item(2);
        Tick innerDone = 0;
        inner->OnDataArrival = [&](std::size_t) {
            if (goes) {
                visitor.Reset();
                TurnUntil([&] { return inner->State() != SocketState::Connected; });
            }
            gWebServerCommands->genShowPicture(inner, {"1", "thumb", "/inner.bmp"});
            innerDone = GetTickCount();
        };
        visitor.Send("GET");  // arrives while the outer one waits
        gWebServerCommands->genShowPicture(gSystray->wnskConnect.Item(1), {"1", "thumb", "/outer.bmp"});
        EXPECT_EQ(WidthOf(first.ReceiveAll()), 150);
        EXPECT_EQ(innerDone - begun, goes ? 0 : 501) << "nobody's picture is not waited for";
        EXPECT_EQ(GetTickCount() - begun, goes ? 501 : 1002);
        TurnUntil([] { return gSystray->wnskConnect.UBound() == 0; });
    }
    EXPECT_EQ(gThumbsSession, 3);
}

TEST_F(ShowPictureTest, BrowsersKeepWhatTheOwnerAllowsUntilItChanges) {
    AddFile("a.jpg", "picture");
    clsAlbum &album = StartAlbum();
    for (const char *name : {"a.gif", "capture.jpg"}) Program.Write(std::string("htdocs/") + name, "graphic");
    const auto ask = [this](const std::string &target, const std::string &held) {
        return Get(target, "if-none-match: " + held + "\r\n");
    };
    const std::string graphic = WriteResponseHead("image/gif", true) + "graphic";
    EXPECT_EQ(ask("/ShowGraphic?a.gif", "*"), graphic) << "not by itself";
    SaveSetting("Setup", "BrowserCache", "10");
    EXPECT_EQ(ask("/ShowGraphic?capture.jpg", "*"), graphic) << "the webcam's is another one soon";
    for (const std::string target : {"/ShowGraphic?a.gif", "/ShowPicture?1&full&/a.jpg"}) {
        const std::string answer = ask(target, "\"another\"");
        ExpectParts(answer, {"\r\nCache-Control: private, max-age=600\r\nETag: ", "!Pragma"});
        const std::size_t tag = answer.find("ETag: ") + 6;
        const std::string held = "W/" + answer.substr(tag, answer.find("\r\n", tag) - tag);
        const Tick before = gLastConversionTick;
        const std::string word = ask(target, "\"x\", " + held);
        EXPECT_TRUE(word.starts_with("HTTP/1.0 304 Not Modified\r\n")) << word;
        EXPECT_EQ(Body(word), "");
        EXPECT_EQ(gLastConversionTick, before) << "it takes no turn";
        ExpectParts(ask("/ShowPicture?1&thumb&/a.jpg", held), {"!304 Not Modified"});  // another form of the picture
        const std::string changed = "changed: " + target;
        Program.Write("htdocs/a.gif", changed);
        AddFile("a.jpg", changed);
        EXPECT_EQ(Body(ask(target, held)), changed);
    }
    album.FeaturedImagePath = ProgramPath(Program.Write("albums/A/a.jpg.pixmoraicon", "small"));
    EXPECT_EQ(Body(Get("/ShowAlbumIcon?1")), "small");
    album.FeaturedImagePath = album.Directory + "\\gone.pixmoraicon";
    EXPECT_EQ(Get("/ShowAlbumIcon?1"), "Bad Request!");
}

std::string Movie(std::size_t size) {
    std::string movie;
    for (std::size_t i = 0; i < size; ++i) movie += static_cast<char>(i * 7 + i / 1024);
    return movie;
}

using ShowMovieTest = PageTest;

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
    const std::string downloads = "SELECT FilePath, FileCount FROM PopularFiles";
    EXPECT_EQ(Ask(downloads), "") << "a part behind the start is no download";
    ask("full", "0-");
    EXPECT_EQ(Ask(downloads), "\\m.mp4|1\n");
    const std::string beyond = ask("preview", "5000-");
    EXPECT_TRUE(beyond.starts_with("HTTP/1.0 416 Range Not Satisfiable\r\n"));
    EXPECT_TRUE(beyond.ends_with(lines + "Content-Range: bytes */5000\r\nContent-Length: 0\r\n\r\n"));
    DeleteSetting("Setup", "MoreTypes");
    LoadMediaTypes();
}

}  // namespace
}  // namespace pixmora::test
