// The Exif reader on blocks that are built here, in both byte orders.
#include <gtest/gtest.h>

#include "store/clsExif.h"
#include "support/ExifBlock.h"
#include "support/ProgramFolder.h"

namespace pixmora {

namespace {

const std::vector<Entry> usual = {{272, 2, 9, 0, {}, "Acme Snap"}, {282, 5, 1, 4, {72, 1}}};
const std::vector<Entry> usualCamera = {{36867, 2, 19, 0, {}, "2004:03:01 14:05:09"}, {40962, 3, 1, 2, {1600}}};

const std::tuple<const char *, Entry, std::string> textCases[] = {
    {"byte", {5001, 1, 1, 1, {200}}, "200"},
    {"short", {274, 3, 1, 2, {60000}}, "60000"},
    {"long", {5001, 4, 1, 4, {4000000000}}, "4000000000"},
    {"text in the entry", {5001, 2, 3, 0, {}, "R98"}, "R98"},
    {"text elsewhere, zeros inside", {270, 2, 7, 0, {}, std::string("to\0night", 8)}, "tonigh"},
    {"exposure time", {33434, 5, 1, 4, {1, 250}}, "250"},
    {"exposure time of nothing", {33434, 5, 1, 4, {0, 250}}, "0"},
    {"aperture", {37378, 5, 1, 4, {3, 1}}, "2.8"},
    {"largest aperture", {37381, 5, 1, 4, {2, 1}}, "2.0"},
    {"aperture beyond every number", {37378, 5, 1, 4, {4000000000, 1}}, ""},
    {"resolution", {282, 5, 1, 4, {72, 1}}, "72.0"},
    {"f-number", {33437, 5, 1, 4, {28, 10}}, "2.8"},
    {"value without a denominator", {37386, 5, 1, 4, {50, 0}}, "0.0"},
    {"any rational", {37122, 5, 1, 4, {6, 4}}, "6/4"},
    {"any rationals", {318, 5, 2, 4, {313, 1000, 2, 3}}, "0.313/0.667"},
    {"signed byte, lowest", {5001, 6, 1, 1, {0x80}}, "-1"},
    {"signed byte, minus one", {5001, 6, 1, 1, {0xFF}}, "-128"},
    {"signed short", {5001, 8, 1, 2, {0x7FFF}}, "32767"},
    {"signed long, minus one", {5001, 9, 1, 4, {0xFFFFFFFF}}, "-2147483648"},
    {"version", {36864, 7, 4, 0, {}, "0210"}, "2.10"},
    {"components", {37121, 7, 4, 0, {}, std::string("\1\2\3\0", 4)}, "YCbCr"},
    {"components of unknown kind", {37121, 7, 4, 0, {}, "\x04\x63\x06\x07"}, "RB"},
    {"maker's note", {37500, 7, 6, 0, {}, "a\x1F\x80 b\x7F"}, "a b\x7F"},
    {"file source", {41728, 7, 1, 1, {3}}, "3"},
    {"any undefined", {37510, 7, 10, 0, {}, std::string("ASCII\0\0\0hi", 10)}, "ASCIIhi"},
    {"shutter speed", {37377, 10, 1, 4, {7, 1}}, "128"},
    {"exposure bias", {37380, 10, 1, 4, {1, 3}}, "0.3"},
    {"negative exposure bias", {37380, 10, 1, 4, {0xFFFFFFFF, 3}}, "-715827882.7"},
    {"any signed rational", {37379, 10, 1, 4, {0x80000000, 2}}, "-1/2"},
    {"floating point", {5001, 11, 1, 4, {7}}, "7"},
    {"unknown format", {5001, 99, 1, 4, {7}}, "0"},
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
        for (const auto &[name, entry, text] : textCases) {
            const clsExif exif = Read(BlockBuilder(isLittleEndian).File({}, {entry}));
            EXPECT_EQ(exif.IntelByteAlignment(), isLittleEndian);
            EXPECT_EQ(exif.GetTagData(entry.tag), text) << name << isLittleEndian;
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

TEST_F(ExifTest, ShipsWordsForTheFormsOfText) {
    const auto shipped = std::filesystem::path(__FILE__).parent_path() / "../../share/exif.ini";
    std::filesystem::copy_file(shipped, folder.Path("exif.ini"));
    const clsExif exif = Read(BlockBuilder(false).File(usual, {{33434, 5, 1, 4, {1, 250}},
                                                               {33437, 5, 1, 4, {28, 10}},
                                                               {37385, 3, 1, 2, {16}},
                                                               {36867, 2, 19, 0, {}, "2004:03:01 14:05:09"},
                                                               {40962, 3, 1, 2, {1600}}}));
    EXPECT_EQ(exif.GetTagData(33434), "1/250 s");
    EXPECT_EQ(exif.GetTagData(33437), "f/2.8");
    EXPECT_EQ(exif.GetTagData(37385), "switched off");
    EXPECT_EQ(exif.GetTagData(272), "Acme Snap");
    EXPECT_EQ(exif.GetTagData(36867), "2004:03:01 14:05:09");
    EXPECT_EQ(exif.GetTagData(40962), "1600");
}

}  // namespace pixmora
