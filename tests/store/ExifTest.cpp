// The Exif reader on blocks that are built here, in both byte orders, and the words that it puts them into.
#include <gtest/gtest.h>

#include "store/IniFile.h"
#include "store/clsExif.h"
#include "support/ExifBlock.h"
#include "support/ProgramFolder.h"

namespace pixmora {

namespace {

const std::vector<Entry> usual = {{272, 2, 9, 0, {}, "Acme Snap"}, {282, 5, 1, 4, {72, 1}}};
const std::vector<Entry> usualCamera = {{36867, 2, 19, 0, {}, "2004:03:01 14:05:09"}, {40962, 3, 1, 2, {1600}}};

const std::pair<Entry, std::string> textCases[] = {
    {{5001, 1, 1, 1, {200}}, "200"},
    {{274, 3, 1, 2, {60000}}, "60000"},
    {{5001, 4, 1, 4, {4000000000}}, "4000000000"},
    {{5001, 2, 3, 0, {}, "R98"}, "R98"},
    {{270, 2, 7, 0, {}, std::string("to\0night", 8)}, "tonigh"},
    {{33434, 5, 1, 4, {1, 250}}, "250"},
    {{33434, 5, 1, 4, {0, 250}}, "0"},
    {{37378, 5, 1, 4, {3, 1}}, "2.8"},
    {{37378, 5, 1, 4, {4000000000, 1}}, ""},  // beyond every number
    {{33437, 5, 1, 4, {28, 10}}, "2.8"},
    {{37386, 5, 1, 4, {50, 0}}, "0.0"},
    {{37122, 5, 1, 4, {6, 4}}, "6/4"},
    {{318, 5, 2, 4, {313, 1000, 2, 3}}, "0.313/0.667"},
    {{5001, 6, 1, 1, {0x80}}, "-1"},
    {{5001, 6, 1, 1, {0xFF}}, "-128"},
    {{5001, 8, 1, 2, {0x7FFF}}, "32767"},
    {{5001, 9, 1, 4, {0xFFFFFFFF}}, "-2147483648"},
    {{36864, 7, 4, 0, {}, "0210"}, "2.10"},
    {{37121, 7, 4, 0, {}, std::string("\1\2\3\0", 4)}, "YCbCr"},
    {{37121, 7, 4, 0, {}, "\x04\x63\x06\x07"}, "RB"},
    {{37500, 7, 6, 0, {}, "a\x1F\x80 b\x7F"}, "a b\x7F"},
    {{41728, 7, 1, 1, {3}}, "3"},
    {{37510, 7, 10, 0, {}, std::string("ASCII\0\0\0hi", 10)}, "ASCIIhi"},
    {{37377, 10, 1, 4, {7, 1}}, "128"},
    {{37380, 10, 1, 4, {1, 3}}, "0.3"},
    {{37379, 10, 1, 4, {0x80000000, 2}}, "-1/2"},
    {{5001, 11, 1, 4, {7}}, "7"},
    {{5001, 99, 1, 4, {7}}, "0"},
};

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
    for (const bool isLittleEndian : {false, true}) {
        for (const auto &[entry, text] : textCases) {
            const clsExif exif = Read(BlockBuilder(isLittleEndian).File({}, {entry}));
            EXPECT_EQ(exif.IntelByteAlignment(), isLittleEndian);
            EXPECT_EQ(exif.GetTagData(entry.tag), text) << entry.tag << " of format " << entry.format << isLittleEndian;
        }
    }
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
}

TEST_F(ExifTest, PutsValuesIntoWords) {
    folder.Write("exif.ini",
                 "[Flash]\r\n1=fired\r\n[FocalLength]\r\nFormat=@X mm (@X)\r\n[LightSource]\r\n9=sun\r\nFormat=<@X>\r\n"
                 "[Model]\r\nFormat=A @X.\r\n");
    const clsExif exif = Read(BlockBuilder(true).File(
        {{272, 2, 60, 0, {}, std::string(60, 'x')}},
        {{37385, 3, 1, 2, {1}}, {37384, 3, 1, 2, {9}}, {37386, 5, 1, 4, {35, 1}}, {37383, 3, 1, 2, {1}}}));
    EXPECT_EQ(exif.GetTagData(37385), "fired");
    EXPECT_EQ(exif.GetTagData(37384), "<sun>");
    EXPECT_EQ(exif.GetTagData(37386), "35.0 mm (35.0)");
    EXPECT_EQ(exif.GetTagData(37383), "1");
    // A value behind the bytes read is empty, in its pattern too.
    const BlockBuilder builder(true);
    std::string far = builder.Head() + builder.Directory(8, {{272, 2, 60, 0, {}, std::string(60, 'x')}});
    far.replace(far.size() - 64, 4, builder.Number(5000, 4));
    EXPECT_EQ(Read(far + std::string(6000, 'y')).GetTagData(272), "A .");
}

TEST(IniFile, FindsValuesWithoutCase) {
    const TempFolder folder;
    const IniFile file(folder.Write("exif.ini",
                                    "\xEF\xBB\xBFnowhere=1\n; remark\n"
                                    "[Flash] \r\n  0 = No flash  \r\n1=\"  Fired  \"\r\n;2=remark\r\n3=a=b;c\r\n"
                                    "[ExposureTime]\nFormat=1/@X s\nformat=second\n"
                                    "[Broken\nkey=value\n[flash]\n9=Auto\n=nameless\n\0\xFF\xFE=\n[Last]\nx=1"));
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"flash", "0", "No flash"}, {"FLASH", "1", "  Fired  "},
        {"Flash", "2", ""},         {"Flash", "3", "a=b;c"},
        {"Flash", "9", "Auto"},     {"Flash", "Format", ""},
        {"Nowhere", "0", ""},       {"ExposureTime", "FORMAT", "1/@X s"}};  // the first of two counts
    for (const auto &[section, key, value] : cases) EXPECT_EQ(file.Value(section, key), value) << section << key;
}

}  // namespace pixmora
