// Tests of the media page.
#include "platform/runtime/Text.h"
#include "support/PageSite.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowAlbumMediaTest : public PageSite {
protected:
    std::string List(const std::string &args) { return Filled(Get("ShowAlbumMedia?" + args), "PIC_LIST"); }
};

TEST_F(ShowAlbumMediaTest, MayShowAllFilesOnOnePageAndNoSubdirectories) {
    clsAlbum &album = AddAlbum("A");
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg", "sub/x.jpg"}) AddFile(album, name);
    gFilesPerPage = 0;
    const std::string page = Get("ShowAlbumMedia?1&thumbs&0");
    EXPECT_EQ(Count(Filled(page, "PIC_LIST"), "id=\"pic_"), 4);
    EXPECT_EQ(Count(Filled(page, "PIC_LIST"), "<tr>\r\n"), 2);
    EXPECT_TRUE(Contains(Filled(page, "PIC_PAGE"), "Page 0 of 1"));
    gFilesPerPage = 4;
    EXPECT_EQ(Filled(Get("ShowAlbumMedia?1&thumbs&1"), "PIC_NAV_RIGHT").find("next.gif"), std::string::npos);
    EXPECT_TRUE(Contains(List("1&thumbs&1&sub"), "/x.jpg"));
    album.SubDirectories = 0;
    EXPECT_TRUE(Contains(List("1&thumbs&1&gone"), "No files here.<"));
    EXPECT_TRUE(Contains(List("1&thumbs&1"), "/a.jpg")) << "those in the root stay";
    gFilesPerRow = 0;
    EXPECT_EQ(Get("ShowAlbumMedia?1&thumbs&1"), "Bad Request");
}

TEST_F(ShowAlbumMediaTest, CarriesAnyNameThroughItsLinks) {
    const clsAlbum &album = AddAlbum("A");
    const std::string directory = "R&B + 50% #1 O'Brien d\xC3\xA9j\xC3\xA0 <amp>and<amp>";
    const std::string stem = "a & b+c #1 100%25 off's *\"<\xE9>";
    AddFile(album, directory + "/sub dir/deep.jpg");
    const auto framed = [](const std::string &link) {
        return Replace(link, "ShowAlbum?", "ShowAlbumMedia?");
    };
    const std::string way = framed(Links(List("1&thumbs&1"))[0]);
    EXPECT_TRUE(Contains(Get(way), "sub dir</a>"));
    AddFile(album, directory + "/" + stem + ".bmp", BitmapFile(20, 10));
    AddFile(album, directory + "/" + stem + ".mpg", "movie");
    for (const char *view : {"&thumbs&1&", "&list&1&", "&slideshow&1&play&0&5&"}) {
        const std::string page = Get(Replace(way, "&thumbs&1&", view));
        EXPECT_EQ(Filled(page, "DIR_TITLE"), directory);
        for (const std::string &link : Links(page)) {
            const bool isPicture = link.starts_with("ShowPicture");
            EXPECT_TRUE(Contains(Get(framed(link)), isPicture ? "\r\n\r\n\xFF\xD8" : stem + "</")) << link;
        }
    }
}

}  // namespace
}  // namespace pixmora::test
