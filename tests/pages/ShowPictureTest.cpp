// Tests of picture delivery.
#include <gtest/gtest.h>

#include "support/PageFixture.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowPictureTest : public PageFixture {
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

TEST_F(ShowPictureTest, AnswersWhatItCantDeliver) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"a.jpg", "a.jpeg", "../secret.jpg"}) AddFile(album, name);
    for (const char *args : {"", "1&thumb", "one&thumb&/a.jpg", "0&thumb&/a.jpg", "2&thumb&/a.jpg"})
        EXPECT_EQ(Picture(args), "Bad Request") << args;
    for (const char *args : {"1&thumb&/a.jpeg", "1&full&/x"}) EXPECT_EQ(Picture(args), "Not a Valid Picture!") << args;
    for (const char *args : {"1&thumb&/b.jpg", "1&full&/../secret.jpg", "1&full&/a.jpg%00.jpg"})
        EXPECT_EQ(Picture(args), "Picture Not Found!") << args;
    EXPECT_EQ(Column("StatsTotal", "Stat"), "");
}

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

TEST_F(ShowPictureTest, LeavesNothingBehindOfConversionsThatFail) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg", "no picture at all");
    EXPECT_EQ(Picture("1&thumb&/a.jpg"), imageHead_);
    EXPECT_EQ(Folder(), "a.jpg");
    AddFile(album, "b.bmp", BitmapFile(20, 10));
    AddFile(album, "b.bmp.tmp/in the way");
    EXPECT_EQ(Picture("1&slideshow&/b.bmp"), WriteResponseHead("text/html", true) + "Picture Conversion Error");
    EXPECT_EQ(gThumbsSession, 2);
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

TEST_F(ShowPictureTest, FinishesTheLastOfTheWaitingFirstAndSurvivesALostVisitor) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"outer.bmp", "inner.bmp"}) AddFile(album, name, BitmapFile(300, 10));
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
    EXPECT_EQ(WidthOf(answer), 150);
    EXPECT_EQ(innerDone, 1000501);
    EXPECT_EQ(GetTickCount(), 1001002);
    EXPECT_EQ(Folder(), "inner.bmp|outer.bmp");
}

}  // namespace
}  // namespace pixmora::test
