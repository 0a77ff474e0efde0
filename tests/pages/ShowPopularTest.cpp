// Tests of the most popular page.
#include "platform/runtime/Text.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

class ShowPopularTest : public PageSite {
protected:
    std::string Page(const std::string &args) { return Get("ShowPopular?" + args); }
    void AddFileRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularFiles", {{"AlbumName", album}, {"FilePath", path}, {"FileCount", count}});
    }
    void AddDirRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularDirs", {{"AlbumName", album}, {"DirPath", path}, {"DirCount", count}});
    }
};

TEST_F(ShowPopularTest, LimitsWhatItShows) {
    AddAlbum("A");
    for (int i = 0; i < 7; ++i) AddDirRow("A", Concat("\\d", i), 10 - i);
    for (int i = 0; i < 30; ++i) AddFileRow("A", Concat("\\f", 100 + i, ".jpg"), 1000);
    const std::tuple<int, int, int, int> cases[] = {
        {12, 4, 12, 12}, {40, 4, 30, 30}, {0, 4, 21, 21}, {0, 7, 36, 30}};  // per page, per row, entries, files of them
    for (const auto &[perPage, perRow, entries, files] : cases) {
        gFilesPerPage = perPage;
        gFilesPerRow = perRow;
        const std::string list = Filled(Page("thumbs"), "PIC_LIST");
        EXPECT_EQ(Count(list, "lblPopularSubDir"), 5);
        EXPECT_EQ(Count(list, "id=\"pic_"), entries);
        EXPECT_EQ(Count(list, "ShowPicture?1"), files);
        EXPECT_EQ(Count(list, Concat(" colspan=", perRow, ">")), 7);
        EXPECT_TRUE(Contains(Links(list)[5], "/f129.jpg"));  // of equal counts the later path first
        EXPECT_TRUE(Contains(Filled(Page("slideshow&play&99&5"), "PIC_PAGE"), Concat("File 1 of ", entries)));
    }
}

}  // namespace
}  // namespace pixmora::test
