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
    /// What lies in the album's folder.
    static std::string Folder() {
        std::vector<std::string> names;
        const Directory folder(gAlbums[0]->Directory);
        for (const DirectoryEntry &entry : folder.Entries()) {
            if (!entry.Name.starts_with('.')) names.push_back(entry.Name);
        }
        return Join(names, "|");
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
    EXPECT_EQ(Folder(), "small.bmp|wide.BMP");
    EXPECT_EQ(Program.Read("albums/A/small.bmp"), BitmapFile(20, 10));
    gThumbQuality = 95 * 4096;
    EXPECT_GT(Picture("1&thumb&/wide.BMP").size(), coarse.size());
}

TEST_F(ShowPictureTest, SendsTheStoredFileUntouched) {
    const clsAlbum &album = AddAlbum("A");
    const std::string bitmap = BitmapFile(50, 20);
    AddFile(album, "a.bmp", bitmap);
    for (const std::string mode : {"full", "thumbs", ""})
        EXPECT_EQ(Picture("1&" + mode + "&/a.bmp"), imageHead_ + bitmap);
    EXPECT_EQ(gThumbsSession, 0);
    EXPECT_EQ(gBandwidthSession, 3 * static_cast<double>(bitmap.size() / 1024));
    AddDirectory(album, "folder.jpg");
    EXPECT_EQ(Picture("1&full&/folder.jpg"), imageHead_);
    EXPECT_EQ(Folder(), "a.bmp|folder.jpg");
}

TEST_F(ShowPictureTest, LeavesTheOwnersFolderAlone) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg", "no picture at all");
    AddFile(album, "b.bmp", BitmapFile(20, 10));
    AddFile(album, "b.bmp.tmp", "the owner's own");
    std::string colourless = BitmapFile(20, 10).replace(28, 1, 1, '\x08');
    AddFile(album, "c.bmp", colourless.substr(0, 60));
    const auto folder = std::filesystem::path(SystemPath(album.Directory));
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::days(40);
    std::filesystem::last_write_time(folder, longAgo);
    EXPECT_EQ(Picture("1&thumb&/a.jpg"), imageHead_);
    EXPECT_EQ(WidthOf(Picture("1&preview&/b.bmp")), 20);
    EXPECT_EQ(Picture("1&slideshow&/c.bmp"), WriteResponseHead("text/html", true) + "Picture Conversion Error");
    EXPECT_EQ(gThumbsSession, 2);
    EXPECT_EQ(Program.Read("albums/A/b.bmp.tmp"), "the owner's own");
    EXPECT_EQ(Folder(), "a.jpg|b.bmp|b.bmp.tmp|c.bmp");
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
    const Connection held = VisitorSocket::Create();
    held->OnDataArrival = [&](std::size_t) {
        gWebServerCommands->genShowPicture(held, {"1", "thumb", "/small.bmp"});
    };
    held->OnClose = held->OnSendComplete = [&] {
        held->Close();
    };
    const std::shared_ptr<Winsock> listener = Winsock::Create();
    listener->OnConnectionRequest = [&](int requestId) {
        held->Accept(requestId);
    };
    listener->Listen();
    Client visitor(listener->LocalPort);
    ASSERT_TRUE(TurnUntil([&] { return held->State() == SocketState::Connected; }));
    Timer arrival;
    bool hasCome = false;
    arrival.OnTimer = [&] {
        if (!gHeldPictures || hasCome) return;
        visitor.Send("GET");
        visitor.HalfClose();  // a visitor who sends no more waits for the answer all the same
        hasCome = true;
    };
    arrival.SetInterval(1);
    arrival.SetEnabled(true);
    EXPECT_EQ(WidthOf(Picture("1&slideshow&/big.bmp")), 300);
    EXPECT_TRUE(hasCome);
    EXPECT_FALSE(gHeldPictures);
    EXPECT_EQ(WidthOf(visitor.ReceiveAll()), 150);
    EXPECT_EQ(gThumbsSession, 2);
}

TEST_F(ShowPictureTest, FinishesTheLastOfTheWaitingFirstUnlessItsVisitorGoes) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"outer.bmp", "inner.bmp"}) AddFile(album, name, BitmapFile(300, 10));
    for (const bool goes : {false, true}) {
        SCOPED_TRACE(goes);
        const Tick begun = GetTickCount();
        gLastConversionTick = begun;

        // The inner request arrives while the outer one waits.
        const std::shared_ptr<Winsock> listener = Winsock::Create();
        std::vector<Connection> connections;
        listener->OnConnectionRequest = [&](int requestId) {
            connections.push_back(VisitorSocket::Create());
            connections.back()->Accept(requestId);
        };
        listener->Listen();
        Client first(listener->LocalPort);
        Client visitor(listener->LocalPort);
        ASSERT_TRUE(TurnUntil([&] { return connections.size() == 2; }));
        const Connection outer = connections[0];
        const Connection inner = connections[1];
        outer->OnSendComplete = [&outer] {
            outer->Close();
        };
        Tick innerDone = 0;
        inner->OnDataArrival = [&](std::size_t) {
            if (goes) {
                visitor.Reset();
                TurnUntil([&] { return inner->State() != SocketState::Connected; });
            }
            gWebServerCommands->genShowPicture(inner, {"1", "thumb", "/inner.bmp"});
            innerDone = GetTickCount();
        };
        visitor.Send("GET");
        gWebServerCommands->genShowPicture(outer, {"1", "thumb", "/outer.bmp"});
        const std::string answer = first.ReceiveAll();
        EXPECT_EQ(WidthOf(answer), 150);
        EXPECT_EQ(innerDone - begun, goes ? 0 : 501) << "nobody's picture is not waited for";
        EXPECT_EQ(GetTickCount() - begun, goes ? 501 : 1002);
        EXPECT_EQ(Folder(), "inner.bmp|outer.bmp");
    }
    EXPECT_EQ(gThumbsSession, 3);
}

}  // namespace
}  // namespace pixmora::test
