// Tests of picture delivery.
#include <gtest/gtest.h>

#include "support/Pictures.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ShowPictureTest : public SiteFixture {
protected:
    std::string Picture(const Arguments &args) {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowPicture(socket, args); });
    }
    std::int32_t WidthOf(const std::string &bytes) {
        const std::string path = Program.Write("answer.jpg", bytes);
        PictureEngine engine;
        std::int32_t success = 0;
        engine.Load(ProgramPath(path), 0, success);
        return engine.Width();
    }
    /// What lies in the album's folder.
    std::string Folder() {
        std::vector<std::string> names;
        const Directory folder(gAlbums[0]->Directory);
        for (const DirectoryEntry &entry : folder.Entries()) {
            if (!entry.Name.starts_with('.')) names.push_back(entry.Name);
        }
        return Join(names, "|");
    }

    const std::string imageHead_ = WriteResponseHead("image/jpeg", true);
};

TEST_F(ShowPictureTest, AnswersWhatItCantDeliver) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg");
    AddFile(album, "a.jpeg");
    Program.Write("albums/secret.jpg");
    struct RefusedCase {
        const char *Name;
        Arguments Args;
        std::string Answer;
    };
    const RefusedCase cases[] = {
        {"no path", {"1", "thumb"}, "Bad Request"},
        {"no number", {"one", "thumb", "/a.jpg"}, "Bad Request"},
        {"album 0", {"0", "thumb", "/a.jpg"}, "Bad Request"},
        {"album behind the last", {"2", "thumb", "/a.jpg"}, "Bad Request"},
        {"four letters", {"1", "thumb", "/a.jpeg"}, "Not a Valid Picture!"},
        {"no ending", {"1", "full", ""}, "Not a Valid Picture!"},
        {"no file", {"1", "thumb", "/b.jpg"}, "Picture Not Found!"},
        {"above the album", {"1", "full", "/../secret.jpg"}, "Picture Not Found!"},
        {"NUL", {"1", "full", std::string("/a.jpg\0.jpg", 11)}, "Picture Not Found!"},
    };
    for (const RefusedCase &test : cases) EXPECT_EQ(Picture(test.Args), test.Answer) << test.Name;
    EXPECT_EQ(gThumbsSession, 0);
    EXPECT_EQ(Column("StatsDaily", "Bandwidth"), "");
}

TEST_F(ShowPictureTest, ConvertsToTheSizeOfTheMode) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "wide.BMP", BitmapFile(1000, 40));
    AddFile(album, "small.bmp", BitmapFile(20, 10));
    gThumbQuality = 50 * 4096;
    struct ModeCase {
        std::string Mode;
        std::string File;
        std::int32_t Width;
        int Counted;
    };
    for (const ModeCase &test : {ModeCase{"thumb", "/wide.BMP", 150, 1},
                                 {"slideshow", "/wide.BMP", 300, 1},
                                 {"preview", "/wide.BMP", 375, 0},
                                 {"thumb", "/small.bmp", 20, 1}}) {
        SCOPED_TRACE(test.Mode + test.File);
        gThumbsSession = 0;
        const std::string answer = Picture({"1", test.Mode, test.File});
        EXPECT_TRUE(answer.starts_with(imageHead_ + "\xFF\xD8"));
        EXPECT_EQ(WidthOf(Body(answer)), test.Width);
        EXPECT_EQ(gThumbsSession, test.Counted);
        EXPECT_EQ(Folder(), "small.bmp|wide.BMP");
    }
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + " " + Column("StatsDaily", "Thumbs"), "A 3");

    const std::size_t coarse = Picture({"1", "thumb", "/wide.BMP"}).size();
    gThumbQuality = 95 * 4096;
    EXPECT_GT(Picture({"1", "thumb", "/wide.BMP"}).size(), coarse);
}

TEST_F(ShowPictureTest, SendsTheStoredFileUntouched) {
    const clsAlbum &album = AddAlbum("A");
    const std::string bitmap = BitmapFile(50, 20);
    AddFile(album, "a.bmp", bitmap);
    for (const std::string mode : {"full", "thumbs", ""})
        EXPECT_EQ(Picture({"1", mode, "/a.bmp"}), imageHead_ + bitmap) << mode;
    EXPECT_EQ(gThumbsSession, 0);
    EXPECT_EQ(gBandwidthSession, 3 * static_cast<double>(bitmap.size() / 1024));
    AddDirectory(album, "folder.jpg");
    EXPECT_EQ(Picture({"1", "full", "/folder.jpg"}), imageHead_);
    EXPECT_EQ(Folder(), "a.bmp|folder.jpg");
}

TEST_F(ShowPictureTest, SendsNothingOfAFileThatIsNoPicture) {
    AddFile(AddAlbum("A"), "a.jpg", "no picture at all");
    EXPECT_EQ(Picture({"1", "thumb", "/a.jpg"}), imageHead_);
    EXPECT_EQ(gThumbsSession, 1);
    EXPECT_EQ(Folder(), "a.jpg");
}

TEST_F(ShowPictureTest, TellsOfAConversionThatFails) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.bmp", BitmapFile(20, 10));
    AddFile(album, "a.bmp.tmp/in the way");
    EXPECT_EQ(Picture({"1", "slideshow", "/a.bmp"}), WriteResponseHead("text/html", true) + "Picture Conversion Error");
    EXPECT_EQ(gThumbsSession, 1);
    EXPECT_EQ(Program.Read("albums/A/a.bmp"), BitmapFile(20, 10));
}

TEST_F(ShowPictureTest, KeepsConversionsApart) {
    AddFile(AddAlbum("A"), "a.bmp", BitmapFile(20, 10));
    gLastConversionTick = GetTickCount() - 100;
    Picture({"1", "full", "/a.bmp"});
    EXPECT_EQ(GetTickCount(), 1000401);
    EXPECT_EQ(gLastConversionTick, 1000401);
    Picture({"1", "thumb", "/missing.bmp"});
    EXPECT_EQ(gLastConversionTick, 1000902);
    SaveSetting("Setup", "ConversionSpacing", "2000");
    Picture({"1", "thumb", "/a.bmp"});
    EXPECT_EQ(GetTickCount(), 1002903);
    SaveSetting("Setup", "ConversionSpacing", "0");
    Picture({"1", "thumb", "/a.bmp"});
    EXPECT_EQ(GetTickCount(), 1002904);
}

TEST_F(ShowPictureTest, FinishesTheLastOfTheWaitingFirstAndSurvivesALostVisitor) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "outer.bmp", BitmapFile(300, 10));
    AddFile(album, "inner.bmp", BitmapFile(300, 10));
    gLastConversionTick = GetTickCount();

    // The inner request arrives while the outer one waits; its visitor is gone before the answer.
    const std::shared_ptr<Winsock> listener = Winsock::Create();
    const Connection inner = Winsock::Create();
    listener->OnConnectionRequest = [&](int requestId) {
        inner->Accept(requestId);
    };
    listener->SetLocalPort(0);
    listener->Listen();
    Client visitor(listener->LocalPort());
    ASSERT_TRUE(TurnUntil([&] { return inner->State() == SocketState::Connected; }));
    Tick innerDone = 0;
    inner->OnDataArrival = [&](std::size_t) {
        visitor.Reset();
        gWebServerCommands->genShowPicture(inner, {"1", "thumb", "/inner.bmp"});
        innerDone = GetTickCount();
    };

    const std::string answer = Answer([&](const Connection &socket) {
        visitor.Send("GET");
        gWebServerCommands->genShowPicture(socket, {"1", "thumb", "/outer.bmp"});
    });
    EXPECT_EQ(WidthOf(Body(answer)), 150);
    EXPECT_EQ(innerDone, 1000501);
    EXPECT_EQ(GetTickCount(), 1001002);
    EXPECT_EQ(gThumbsSession, 2);
    EXPECT_EQ(Folder(), "inner.bmp|outer.bmp");
}

}  // namespace
}  // namespace pixmora::test
