// The Exif reader on blocks that are built here, in both byte orders, and the words that it puts them into.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/clsExif.h"
#include "support/ExifBlock.h"
#include "support/ProgramFolder.h"

namespace pixmora {

namespace {

const std::vector<Entry> usual = {{272, 2, 9, 0, {}, "Acme Snap"}, {282, 5, 1, 4, {72, 1}}};
const std::vector<Entry> usualCamera = {{36867, 2, 19, 0, {}, "2004:03:01 14:05:09"}, {40962, 3, 1, 2, {1600}}};

class ExifTest : public testing::Test {
protected:
    clsExif Read(const std::string &bytes) const {
        std::filesystem::remove(folder.Path("a.jpg"));
        clsExif exif;
        exif.ImageFile(folder.Write("a.jpg", bytes));
        return exif;
    }

    ProgramFolder folder;
};

}  // namespace

TEST_F(ExifTest, TurnsEachFormatIntoText) {
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "exif.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line); ++rows) {
        if (line.starts_with('#')) continue;
        const std::vector<std::string> row = Split(line, "\t");
        ASSERT_EQ(row.size(), 6U) << line;
        Entry entry{CLng(row[0]), CLng(row[1]), static_cast<std::uint32_t>(CLng(row[2])), CLng(row[3]), {}, {}};
        for (const std::string &value : Split(row[4], " ")) {
            if (entry.width > 0) entry.numbers.push_back(static_cast<std::uint32_t>(CDbl(value)));
            if (entry.width == 0) entry.text += *ByteOfDigits(value);
        }
        for (const bool isLittleEndian : {false, true})
            EXPECT_EQ(Read(BlockBuilder(isLittleEndian).File({}, {entry})).GetTagData(entry.tag), row[5]) << line;
    }
    EXPECT_GT(rows, 25);
}

TEST_F(ExifTest, ListsBothDirectories) {
    const clsExif exif = Read("junk" + BlockBuilder(false).File(usual, usualCamera));
    EXPECT_EQ(exif.Status(), clsExif::ReadStatus::Success);
    EXPECT_EQ(exif.ListInfo(),
              "Model: Acme Snap\r\nXResolution: 72.0\r\nExifOffset: 63\r\n"
              "DateTimeOriginal: 2004:03:01 14:05:09\r\nExifImageWidth: 1600\r\n");
    std::string text;
    EXPECT_EQ(exif.MetaInfo(40962, text), 1600u << 16);
    EXPECT_EQ(text, "1600");
    EXPECT_EQ(exif.MetaInfo(7, text), 0u);
    EXPECT_EQ(text, "Tag 7 not found.");
    EXPECT_EQ(clsExif::GetTagName(7), "Tag #7");
    // Without a camera's directory "MM" is a count, and the first entry begins with the mark 42.
    const BlockBuilder builder(false);
    EXPECT_EQ(Read(builder.Head() + builder.Directory(8, usual)).GetTagData(42), "0");
    // In a phone's picture a number in front says how far behind it the block begins.
    clsExif phone;
    phone.ImageFile((std::filesystem::path(__FILE__).parent_path() / "../platform/media/red_quarter.heic").string());
    EXPECT_EQ(phone.GetTagData(272), "Acme Snap");
}

TEST_F(ExifTest, PutsValuesIntoWords) {
    folder.Write("exif.ini",
                 "\xEF\xBB\xBFnowhere=1\n; remark\n[Flash] \r\n  1=fired  \r\n1=second\r\n[FocalLength]\r\n"
                 "Format=@X mm (@X)\r\n[Broken\nkey=value\n[LIGHTSOURCE]\r\n9=\"  a=b;c\"\r\nformat=<@X>\r\n"
                 "=nameless\n\xFF\xFE=\n[Model]\r\nFormat=A @X.");
    const clsExif exif = Read(BlockBuilder(true).File(
        {{272, 2, 60, 0, {}, std::string(60, 'x')}},
        {{37385, 3, 1, 2, {1}}, {37384, 3, 1, 2, {9}}, {37386, 5, 1, 4, {35, 1}}, {37383, 3, 1, 2, {1}}}));
    EXPECT_EQ(exif.GetTagData(37385), "fired") << "the first of two counts";
    EXPECT_EQ(exif.GetTagData(37384), "<a=b;c>");
    EXPECT_EQ(exif.GetTagData(37386), "35.0 mm (35.0)");
    EXPECT_EQ(exif.GetTagData(37383), "1");
    // A value behind the bytes read is empty, in its pattern too.
    const BlockBuilder builder(true);
    std::string far = builder.Head() + builder.Directory(8, {{272, 2, 60, 0, {}, std::string(60, 'x')}});
    far.replace(far.size() - 64, 4, builder.Number(5000, 4));
    EXPECT_EQ(Read(far + std::string(6000, 'y')).GetTagData(272), "A .");
}

}  // namespace pixmora
