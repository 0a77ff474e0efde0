// Tests of the files that go out as they are.
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using PlainFilesTest = PageSite;

TEST_F(PlainFilesTest, LetsBrowsersKeepWhatTheOwnerAllows) {
    Program.Write("htdocs/a.gif", "graphic");
    Program.Write("htdocs/capture.jpg", "still");
    AddFile(AddAlbum("A"), "a.jpg", "picture");
    const auto ask = [this](const std::string &target, const std::string &held) {
        return RunningSite::Get(target, "if-none-match: " + held + "\r\n");
    };
    EXPECT_EQ(ask("/ShowGraphic?a.gif", "*"), WriteResponseHead("image/gif", true) + "graphic") << "not by itself";
    SaveSetting("Setup", "BrowserCache", "10");
    for (const std::string target : {"/ShowGraphic?a.gif", "/ShowPicture?1&full&/a.jpg"}) {
        const std::string answer = ask(target, "\"another\"");
        EXPECT_NE(answer.find("\r\nCache-Control: private, max-age=600\r\nETag: "), std::string::npos) << answer;
        EXPECT_EQ(answer.find("Pragma"), std::string::npos) << "browsers keep nothing that has it";
        const std::size_t tag = answer.find("ETag: ") + 6;
        const std::string held = "W/" + answer.substr(tag, answer.find("\r\n", tag) - tag);
        const Tick before = gLastConversionTick;
        const std::string word = ask(target, "\"x\", " + held);
        EXPECT_TRUE(word.starts_with("HTTP/1.0 304 Not Modified\r\n")) << word;
        EXPECT_EQ(Body(word), "");
        EXPECT_EQ(gLastConversionTick, before) << "it takes no turn";
        const std::string changed = "changed: " + target;
        for (const char *file : {"htdocs/a.gif", "albums/A/a.jpg"}) Program.Write(file, changed);
        EXPECT_EQ(Body(ask(target, held)), changed);
    }
    EXPECT_EQ(ask("/ShowGraphic?capture.jpg", "*"), WriteResponseHead("image/gif", true) + "still");
}

TEST_F(PlainFilesTest, SendsTheAlbumsIcons) {
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImagePath = ProgramPath(AddFile(album, "a.jpg.pixmoraicon", "small"));
    EXPECT_EQ(Get("ShowAlbumIcon?1"), WriteResponseHead("image/jpeg", true) + "small");
    album.FeaturedImagePath = album.Directory + "\\gone.pixmoraicon";
    EXPECT_EQ(Get("ShowAlbumIcon?1"), "Bad Request!");
}

}  // namespace
}  // namespace pixmora::test
