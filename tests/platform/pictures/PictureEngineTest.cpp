// The picture engine on pictures that are built here.
#include "platform/pictures/PictureEngine.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <tuple>

#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

constexpr ErrorNumber pictureError = ErrorNumber::PictureError;

QImage Plain(int width, int height, QRgb color) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Blue, with its upper left quarter red.
QImage WithRedQuarter(int width, int height) {
    QImage image = Plain(width, height, qRgb(0, 0, 255));
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width / 2; ++x) image.setPixel(x, y, qRgb(255, 0, 0));
    }
    return image;
}

std::string Encoded(const QImage &image, const char *format, bool isProgressive = false) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(90);
    writer.setProgressiveScanWrite(isProgressive);
    EXPECT_TRUE(writer.write(image));
    return buffer.data().toStdString();
}

std::string BigEndian16(int value) {
    return {static_cast<char>(value >> 8), static_cast<char>(value)};
}

/// The path of a file beside these tests.
std::string Sample(const char *name) {
    return (std::filesystem::path(__FILE__).parent_path() / "../media" / name).string();
}

/// Half transparent, half blue, 64 by 32.
std::string Gif() {
    return ReadBinaryFile(Sample("half_transparent.gif"));
}

std::string WithOrientation(const std::string &jpeg, int orientation) {
    const std::string entry = BigEndian16(0x0112) + BigEndian16(3) + std::string("\0\0\0\1", 4) +
                              BigEndian16(orientation) + std::string("\0\0", 2);
    const std::string block =
        std::string("Exif\0\0MM\0*\0\0\0\x08", 14) + BigEndian16(1) + entry + std::string(4, '\0');
    return jpeg.substr(0, 2) + "\xFF\xE1" + BigEndian16(static_cast<int>(block.size()) + 2) + block + jpeg.substr(2);
}

/// The same file with another size in its frame header, which is all that a load looks at.
std::string WithJpegSize(std::string jpeg, int width, int height) {
    std::size_t at = jpeg.find("\xFF\xC0");
    if (at == std::string::npos) at = jpeg.find("\xFF\xC2");
    return jpeg.replace(at + 5, 4, BigEndian16(height) + BigEndian16(width));
}

std::string WithManyScans(const std::string &progressive, int scans) {
    const std::size_t last = progressive.rfind("\xFF\xDA");
    const std::string scan = progressive.substr(last, progressive.size() - 2 - last);
    std::string jpeg = progressive.substr(0, last);
    for (int i = 0; i < scans; ++i) jpeg += scan;
    return jpeg + "\xFF\xD9";
}

class PictureEngineTest : public testing::Test {
protected:
    bool Load(const std::string &bytes) {
        std::int32_t success = 0;
        std::filesystem::remove(
            folder.Path("picture.jpg"));  // some file systems wait for the disk when a file is replaced
        engine.Load(folder.Write("picture.jpg", bytes), 0, success);
        return success != 0;
    }

    bool Resize(int width) {
        std::int32_t success = 0;
        engine.Resize(width, 0, 0, success);
        return success != 0;
    }

    void SaveTo(const std::string &path, int quality = 75, int type = 3) {
        std::int32_t success = 0;
        engine.Save(path, quality * 4096 + type, success);
        EXPECT_NE(success, 0);
    }

    QImage Saved(int quality = 75) {
        SaveTo(folder.Path("picture.jpg.tmp"), quality);
        return QImage(QString::fromStdString(folder.Path("picture.jpg.tmp")), "jpeg");
    }

    TempFolder folder;
    PictureEngine engine;
};

bool IsNear(QRgb color, QRgb expected) {
    const auto near = [](int left, int right) {
        return std::abs(left - right) < 24;
    };
    return near(qRed(color), qRed(expected)) && near(qGreen(color), qGreen(expected)) &&
           near(qBlue(color), qBlue(expected));
}

const QRgb red = qRgb(255, 0, 0);
const QRgb blue = qRgb(0, 0, 255);
const QRgb white = qRgb(255, 255, 255);
const QRgb black = qRgb(0, 0, 0);

}  // namespace

TEST_F(PictureEngineTest, TellsEachFormatByItsContent) {
    const QImage image = WithRedQuarter(64, 32);
    for (const std::string &bytes :
         {Encoded(image, "jpeg"), Encoded(image, "jpeg", true), Encoded(image, "bmp"), Encoded(image, "png"), Gif()}) {
        ASSERT_TRUE(Load(bytes));
        EXPECT_EQ(engine.Width(), 64);
        EXPECT_EQ(engine.Height(), 32);
        EXPECT_EQ(Saved().size(), QSize(64, 32));
    }
}

TEST_F(PictureEngineTest, TakesTheNewerFormatsWhereTheyAreNamedSo) {
    for (const char *name : {"red_quarter.heic", "red_quarter.avif", "red_quarter.webp"}) {
        SCOPED_TRACE(name);
        const std::string bytes = ReadBinaryFile(Sample(name));
        EXPECT_FALSE(Load(bytes)) << "as picture.jpg";
        std::int32_t success = 0;
        engine.Load(Sample(name), 0, success);
        ASSERT_NE(success, 0);
        EXPECT_EQ(QSize(engine.Width(), engine.Height()), QSize(128, 64));
        Resize(64);
        const QImage image = Saved();
        ASSERT_EQ(image.size(), QSize(64, 32));
        EXPECT_TRUE(IsNear(image.pixel(10, 5), red) && IsNear(image.pixel(50, 5), blue));
        int pauses = 0;
        EXPECT_FALSE(engine.Encoded(3, [&] { ++pauses; }).empty());
        for (const std::size_t length : {std::size_t{0}, std::size_t{9}, bytes.size() / 3, bytes.size() * 2 / 3}) {
            engine.Load(folder.Write(name, bytes.substr(0, length)), 0, success);
            if (success != 0) ErrorOf([&] { SaveTo(folder.Path("out")); });
        }
        engine.Load(folder.Write(name, Encoded(WithRedQuarter(64, 32), "jpeg")), 0, success);
        EXPECT_NE(success, 0) << "the content counts";
    }
}

TEST_F(PictureEngineTest, KeepsTheProportionsAndThePictureWhenItScales) {
    const std::pair<QSize, QSize> sizes[] = {
        {{640, 480}, {150, 113}}, {{643, 481}, {150, 112}}, {{400, 30}, {4, 1}}, {{40, 30}, {200, 150}}};
    for (const auto &[given, wanted] : sizes) {
        for (const char *format : {"jpeg", "bmp"}) {
            SCOPED_TRACE(given.width());
            ASSERT_TRUE(Load(Encoded(WithRedQuarter(given.width(), given.height()), format)));
            ASSERT_TRUE(Resize(wanted.width()));
            EXPECT_EQ(QSize(engine.Width(), engine.Height()), wanted);
            const QImage image = Saved();
            ASSERT_EQ(image.size(), wanted);
            EXPECT_TRUE(wanted.height() == 1 || (IsNear(image.pixel(0, 0), red) &&
                                                 IsNear(image.pixel(wanted.width() - 1, wanted.height() - 1), blue)));
        }
    }
}

TEST_F(PictureEngineTest, SetsPhotographsUpright) {
    const std::string jpeg = Encoded(WithRedQuarter(640, 320), "jpeg");
    const QPoint corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1},
                              {0, 0}, {1, 0}, {1, 1}, {0, 1}};  // the red one, by orientation
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        ASSERT_TRUE(Load(WithOrientation(jpeg, orientation)));
        const bool isTurned = orientation >= 5;
        EXPECT_EQ(engine.Width(), isTurned ? 320 : 640);
        EXPECT_EQ(engine.Height(), isTurned ? 640 : 320);
        Resize(100);
        const QImage image = Saved();
        ASSERT_EQ(image.size(), QSize(100, isTurned ? 200 : 50));
        for (const QPoint corner : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
            const QRgb color = image.pixel(corner.x() * 99, corner.y() * (image.height() - 1));
            EXPECT_TRUE(IsNear(color, corner == corners[orientation - 1] ? red : blue)) << corner.x() << corner.y();
        }
    }
}

TEST_F(PictureEngineTest, ShowsWhatIsTransparentAsWhite) {
    QImage image(64, 32, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (const std::string &bytes : {Gif(), Encoded(image, "png")}) {
        ASSERT_TRUE(Load(bytes));
        EXPECT_TRUE(IsNear(Saved().pixel(4, 4), white));
    }
    ASSERT_TRUE(Load(Gif()));
    EXPECT_TRUE(IsNear(Saved().pixel(60, 4), blue));
}

TEST_F(PictureEngineTest, ReadsColoursOfOtherKinds) {
    std::int32_t success = 0;
    engine.Load(Sample("printers_red.jpg"), 0, success);
    ASSERT_NE(success, 0);
    EXPECT_TRUE(IsNear(Saved().pixel(5, 5), red));

    ASSERT_TRUE(Load(Encoded(Plain(640, 320, qRgb(90, 90, 90)).convertToFormat(QImage::Format_Grayscale8), "jpeg")));
    Resize(100);
    const QImage grey = Saved();
    EXPECT_EQ(grey.format(), QImage::Format_Grayscale8);
    EXPECT_TRUE(IsNear(grey.pixel(50, 20), qRgb(90, 90, 90)));

    QImage wide = Plain(64, 64, qRgb(150, 200, 150));
    wide.setColorSpace(QColorSpace::AdobeRgb);
    ASSERT_TRUE(Load(Encoded(wide, "jpeg")));
    EXPECT_TRUE(IsNear(Saved(95).pixel(30, 30), qRgb(122, 201, 147)));  // 150 by the wide space's red is less of ours
}

TEST_F(PictureEngineTest, WritesAPlainJpegOfTheQualityAsked) {
    QImage image = WithRedQuarter(200, 200);
    image.setText("Comment", "taken at home");
    image.setColorSpace(QColorSpace::SRgb);
    ASSERT_TRUE(Load(Encoded(image, "jpeg", true)));
    SaveTo(folder.Path("out"), 0, 0);
    const std::string jpeg = folder.Read("out");
    EXPECT_EQ(jpeg.find("at home"), std::string::npos);
    EXPECT_EQ(jpeg.find("ICC_PROFILE"), std::string::npos);
    const std::size_t baseline = jpeg.find("\xFF\xC0");
    ASSERT_NE(baseline, std::string::npos);
    EXPECT_EQ(jpeg.substr(baseline + 9, 3), "\3\1\x22");  // three components, the first at twice the others' sides

    const auto lengthAt = [&](int quality) {
        SaveTo(folder.Path("out"), quality);
        return folder.Read("out").size();
    };
    EXPECT_EQ(lengthAt(75), jpeg.size());
    EXPECT_LT(lengthAt(30), jpeg.size());
    EXPECT_GT(lengthAt(95), jpeg.size());
    EXPECT_EQ(lengthAt(101), lengthAt(100));
    const auto entries = std::filesystem::directory_iterator(folder.Path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2) << "something is left over";
}

TEST_F(PictureEngineTest, RefusesBeforeItDecodes) {
    const std::string baseline = Encoded(WithRedQuarter(64, 64), "jpeg");
    const std::string progressive = Encoded(WithRedQuarter(64, 64), "jpeg", true);
    std::string bitmap = Encoded(WithRedQuarter(64, 64), "bmp");
    const std::size_t scan = baseline.find("\xFF\xDA");
    const std::tuple<const char *, bool, std::string> cases[] = {
        {"baseline of 249 megapixels", true, WithJpegSize(baseline, 15780, 15780)},
        {"baseline of 251 megapixels", false, WithJpegSize(baseline, 15850, 15850)},
        {"progressive of 49 megapixels", true, WithJpegSize(progressive, 7000, 7000)},
        {"progressive of 51 megapixels", false, WithJpegSize(progressive, 7150, 7150)},
        {"progressive with 60 scans", true, WithManyScans(progressive, 60)},
        {"progressive with 200 scans", false, WithManyScans(progressive, 200)},
        {"progressive of 25 megapixels with 60 scans", false, WithJpegSize(WithManyScans(progressive, 60), 5000, 5000)},
        {"a component a scan is held whole too", false,
         WithJpegSize(baseline, 7150, 7150).replace(scan + 4, 1, 1, '\1')},
        {"jpeg without data", false, baseline.substr(0, scan + 14)},
        {"jpeg cut in its tables", false, baseline.substr(0, scan - 10)},
        {"jpeg that ends before its data", false, baseline.substr(0, scan + 14) + "\xFF\xD9"},
        {"bitmap of 3600 megapixels", false, bitmap.replace(18, 8, std::string("\x60\xEA\0\0\x60\xEA\0\0", 8))},
        {"bitmap of 42 megapixels", false, bitmap.replace(18, 8, std::string("\x64\x19\0\0\x64\x19\0\0", 8))},
        {"gif of 4295 megapixels", false, Gif().replace(6, 4, 4, '\xFF').replace(32, 4, 4, '\xFF')},
        {"text", false, "no picture"},
        {"nothing", false, ""},
        {"vector graphics", false, "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
    };
    for (const auto &[name, isTaken, bytes] : cases) {
        ASSERT_TRUE(Load(baseline));
        EXPECT_EQ(Load(bytes), isTaken) << name;
        EXPECT_EQ(engine.Width() > 0 && engine.Height() > 0, isTaken) << name;
    }
    ASSERT_EQ(mkfifo(folder.Path("pipe.jpg").c_str(), 0600), 0);
    for (const std::string &path : {folder.Path("pipe.jpg"), folder.Path("missing.jpg"), folder.Path()}) {
        std::int32_t success = 1;
        engine.Load(path, 0, success);
        EXPECT_EQ(success, 0) << path;
    }
}

TEST_F(PictureEngineTest, ShowsWhatThereIsOfACutPicture) {
    mallopt(M_PERTURB, 0x5A);  // fresh memory is never black by chance
    const QImage image = WithRedQuarter(200, 200);
    const std::string jpeg = Encoded(image, "jpeg");
    ASSERT_TRUE(Load(jpeg.substr(0, jpeg.size() * 6 / 10)));
    EXPECT_TRUE(IsNear(Saved().pixel(10, 10), red));

    const std::string bitmap = Encoded(image, "bmp");  // stored from the bottom up
    ASSERT_TRUE(Load(bitmap.substr(0, bitmap.size() / 2 - 1000)));
    const QImage cut = Saved();
    EXPECT_TRUE(IsNear(cut.pixel(10, 190), blue));
    for (int y = 0; y < 90; ++y) ASSERT_TRUE(IsNear(cut.pixel(100, y), black)) << y;
    mallopt(M_PERTURB, 0);
}

TEST_F(PictureEngineTest, LetsOthersUseItBetweenThePiecesOfALargePicture) {
    const std::string other = folder.Write("other.bmp", Encoded(WithRedQuarter(30, 20), "bmp"));
    ASSERT_TRUE(Load(Encoded(WithRedQuarter(640, 320), "bmp")));  // 600 KB
    Resize(100);
    const std::string undisturbed = engine.Encoded(75 * 4096 + 3);
    int pauses = 0;
    const std::string jpeg = engine.Encoded(75 * 4096 + 3, [&] {
        ++pauses;
        std::int32_t success = 0;
        engine.Load(other, 0, success);
        EXPECT_EQ(engine.Width(), 30);
    });
    EXPECT_GE(pauses, 8);
    EXPECT_EQ(jpeg, undisturbed);
}

TEST_F(PictureEngineTest, FailsWithItsErrorWhereItCannotSave) {
    const auto errorAt = [&](const std::string &path, int type = 3) {
        return ErrorOf([&] { SaveTo(path, 75, type); });
    };
    EXPECT_EQ(errorAt(folder.Path("out")), pictureError) << "no picture";
    EXPECT_FALSE(Resize(100));
    ASSERT_TRUE(Load(Encoded(WithRedQuarter(64, 64), "jpeg")));
    EXPECT_FALSE(Resize(0));
    EXPECT_EQ(errorAt(folder.Path("out"), 2), pictureError) << "another file type";
    EXPECT_EQ(errorAt(folder.Path("missing/out")), pictureError);
    EXPECT_EQ(errorAt(folder.MakeFolder("folder")), pictureError);
    EXPECT_EQ(errorAt("/proc/out"), pictureError) << "a folder that takes no files";
    ASSERT_TRUE(Resize(70000));
    EXPECT_EQ(errorAt(folder.Path("out")), pictureError) << "wider than a JPEG can be";
    ASSERT_TRUE(Load(Encoded(WithRedQuarter(64, 64), "jpeg")));
    std::filesystem::remove(folder.Path("picture.jpg"));
    EXPECT_EQ(errorAt(folder.Path("out")), pictureError) << "gone meanwhile";
    EXPECT_FALSE(std::filesystem::exists(folder.Path("out")));
}

}  // namespace pixmora
