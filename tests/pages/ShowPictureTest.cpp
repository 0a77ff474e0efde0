// Tests of picture delivery.
#include "support/PageSite.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowPictureTest : public PageSite {
protected:
    std::string Picture(std::string_view args) { return Get("ShowPicture?" + std::string(args)); }
    std::int32_t WidthOf(const std::string &answer) {
        const std::string path = Program.Write("answer.jpg", Body(answer));
        PictureEngine engine;
        std::int32_t success = 0;
        engine.Load(ProgramPath(path), 0, success);
        return engine.Width();
    }
    const std::string imageHead_ = WriteResponseHead("image/jpeg", true);
};

TEST_F(ShowPictureTest, ConvertsToTheSizeAndQualityOfTheMode) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "wide.BMP", BitmapFile(1000, 40));
    AddFile(album, "small.bmp", BitmapFile(20, 10));
    gThumbQuality = 50 * 4096;
    const std::string coarse = Picture("1&thumb&/wide.BMP");
    EXPECT_TRUE(coarse.starts_with(imageHead_ + "\xFF\xD8"));
    EXPECT_EQ(WidthOf(coarse), 150);
    EXPECT_EQ(WidthOf(Picture("1&slideshow&/wide.BMP")), 300);
    EXPECT_EQ(WidthOf(Picture("1&preview&/wide.BMP")), 375);
    EXPECT_EQ(WidthOf(Picture("1&thumb&/small.bmp")), 20);
    EXPECT_EQ(gThumbsSession, 3);
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + Column("StatsDaily", "Thumbs"), "A3");
    gThumbQuality = 95 * 4096;
    EXPECT_GT(Picture("1&thumb&/wide.BMP").size(), coarse.size());
}

TEST_F(ShowPictureTest, SendsTheStoredFileUntouched) {
    const std::string bitmap = BitmapFile(50, 20);
    AddFile(AddAlbum("A"), "a.bmp", bitmap);
    for (const std::string mode : {"full", "thumbs", ""})
        EXPECT_EQ(Picture("1&" + mode + "&/a.bmp"), imageHead_ + bitmap);
    EXPECT_EQ(gThumbsSession, 0);
    EXPECT_EQ(gBandwidthSession, 3 * static_cast<double>(bitmap.size() / 1024));
}

TEST_F(ShowPictureTest, LeavesTheOwnersFolderAlone) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg", "no picture at all");
    AddFile(album, "b.bmp", BitmapFile(20, 10));
    std::string colourless = BitmapFile(20, 10).replace(28, 1, 1, '\x08');
    AddFile(album, "c.bmp", colourless.substr(0, 60));
    const auto folder = std::filesystem::path(SystemPath(album.Directory));
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::days(40);
    std::filesystem::last_write_time(folder, longAgo);
    EXPECT_EQ(Picture("1&thumb&/a.jpg"), imageHead_);
    EXPECT_EQ(WidthOf(Picture("1&preview&/b.bmp")), 20);
    EXPECT_EQ(Picture("1&slideshow&/c.bmp"), WriteResponseHead("text/html", true) + "Picture Conversion Error");
    EXPECT_EQ(gThumbsSession, 2);
    EXPECT_EQ(std::filesystem::last_write_time(folder), longAgo);
}

TEST_F(ShowPictureTest, KeepsConversionsApart) {
    AddFile(AddAlbum("A"), "a.bmp", BitmapFile(20, 10));
    gLastConversionTick = GetTickCount() - 100;
    Picture("1&full&/a.bmp");
    EXPECT_EQ(gLastConversionTick, 1000401);
    Picture("1&thumb&/missing.bmp");
    EXPECT_EQ(gLastConversionTick, 1000902);
    SaveSetting("Setup", "ConversionSpacing", "2000");
    Picture("1&thumb&/a.bmp");
    EXPECT_EQ(gLastConversionTick, 1002903);
}

TEST_F(ShowPictureTest, HoldsPicturesThatComeDuringAConversionUntilItsEnd) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "big.bmp", BitmapFile(1000, 700));
    AddFile(album, "small.bmp", BitmapFile(160, 10));
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
    EXPECT_EQ(WidthOf(Picture("1&slideshow&/big.bmp")), 300);
    EXPECT_EQ(wasHeld, true);
    EXPECT_FALSE(gHeldPictures);
    EXPECT_EQ(WidthOf(visitor.ReceiveAll()), 150);
    EXPECT_EQ(gThumbsSession, 2);
}

TEST_F(ShowPictureTest, FinishesTheLastOfTheWaitingFirstUnlessItsVisitorGoes) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"outer.bmp", "inner.bmp"}) AddFile(album, name, BitmapFile(300, 10));
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

}  // namespace
}  // namespace pixmora::test
