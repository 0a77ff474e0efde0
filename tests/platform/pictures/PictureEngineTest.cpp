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
#include <QPainter>
#include <tuple>

#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

QImage Plain(int width, int height, QColor color) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Blue, with its upper left quarter red.
QImage WithRedQuarter(int width, int height) {
    QImage image = Plain(width, height, Qt::blue);
    QPainter(&image).fillRect(0, 0, width / 2, height / 2, Qt::red);
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

/// The path of a file beside these tests.
std::string Sample(const char *name) {
    return (std::filesystem::path(__FILE__).parent_path() / "../media" / name).string();
}

/// Half transparent, half blue, 64 by 32.
std::string Gif() {
    return ReadBinaryFile(Sample("half_transparent.gif"));
}

std::string WithOrientation(const std::string &jpeg, int orientation) {
    std::string block(
        "\xFF\xE1\0\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\0\0\0\0\0\0\0",
        36);
    block[29] = static_cast<char>(orientation);
    return jpeg.substr(0, 2) + block + jpeg.substr(2);
}

/// The same file with another size in its frame header, which is all that a load looks at.
std::string WithJpegSize(std::string jpeg, int width, int height) {
    std::size_t at = jpeg.find("\xFF\xC0");
    if (at == std::string::npos) at = jpeg.find("\xFF\xC2");
    for (const int byte : {height >> 8, height, width >> 8, width}) jpeg[5 + at++] = static_cast<char>(byte);
    return jpeg;
}

std::string WithManyScans(const std::string &progressive, int scans) {
    const std::size_t last = progressive.rfind("\xFF\xDA");
    const std::string scan = progressive.substr(last, progressive.size() - 2 - last);
    std::string jpeg = progressive.substr(0, last);
    for (int i = 0; i < scans; ++i) jpeg += scan;
    return jpeg + "\xFF\xD9";
}

bool IsNear(QColor color, QColor expected) {
    return std::abs(color.red() - expected.red()) < 24 && std::abs(color.green() - expected.green()) < 24 &&
           std::abs(color.blue() - expected.blue()) < 24;
}

class PictureEngineTest : public testing::Test {
protected:
    bool LoadFile(const std::string &path) {
        std::int32_t success = 0;
        engine.Load(path, 0, success);
        return success != 0;
    }
    bool Load(const std::string &bytes) { return LoadFile(folder.Write("picture.jpg", bytes)); }

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
        SaveTo(folder.Path("saved.jpg"), quality);
        return QImage(QString::fromStdString(folder.Path("saved.jpg")), "jpeg");
    }

    /// That the saved picture has the size, and is as red and as blue at these places of its first row.
    void ExpectRedQuarter(QSize size, int red, int blue) {
        const QImage image = Saved(95);
        ASSERT_EQ(image.size(), size);
        if (size.height() == 1) return;
        EXPECT_TRUE(IsNear(image.pixelColor(red, 0), Qt::red));
        EXPECT_TRUE(IsNear(image.pixelColor(blue, 0), Qt::blue));
        EXPECT_TRUE(IsNear(image.pixelColor(red, size.height() - 1), Qt::blue));
    }

    TempFolder folder;
    PictureEngine engine;
};

}  // namespace

TEST_F(PictureEngineTest, TakesTheNewerFormatsWhereTheyAreNamedSo) {
    for (const char *name : {"red_quarter.heic", "red_quarter.avif", "red_quarter.webp"}) {
        SCOPED_TRACE(name);
        const std::string bytes = ReadBinaryFile(Sample(name));
        EXPECT_FALSE(Load(bytes)) << "as picture.jpg";
        ASSERT_TRUE(LoadFile(Sample(name)));
        EXPECT_EQ(QSize(engine.Width(), engine.Height()), QSize(128, 64));
        Resize(64);
        ExpectRedQuarter({64, 32}, 30, 33);  // and not made of a smaller one beside the whole
        EXPECT_FALSE(engine.Encoded(3, [] {}).empty()) << "on a thread of its own";
        for (const std::size_t length : {std::size_t{0}, std::size_t{9}, bytes.size() / 3, bytes.size() * 2 / 3}) {
            if (LoadFile(folder.Write(name, bytes.substr(0, length)))) ErrorOf([&] { SaveTo(folder.Path("out")); });
        }
        EXPECT_TRUE(LoadFile(folder.Write(name, Encoded(WithRedQuarter(64, 32), "jpeg")))) << "the content counts";
    }
}

TEST_F(PictureEngineTest, RefusesNewerPicturesThatAreFarLargerThanTheySay) {
    ASSERT_TRUE(LoadFile(Sample("tiles_beyond_their_picture.heic")));
    Resize(64);
    EXPECT_EQ(ErrorOf([&] { engine.Encoded(3); }), ErrorNumber::PictureError);
    const auto decoderOf60000By40000 = QByteArray::fromHex(
        "0000003f687663430100000000000000000000000000000000000000000001"
        "a10001001b42010101600000030090000003000003005da0001d4c2000271060");
    const std::string bytes = ReadBinaryFile(Sample("red_quarter.heic")) + decoderOf60000By40000.toStdString();
    EXPECT_FALSE(LoadFile(folder.Write("large.heic", bytes)));
}

TEST_F(PictureEngineTest, KeepsTheProportionsAndThePictureWhenItScales) {
    const std::pair<QSize, QSize> sizes[] = {
        {{640, 480}, {150, 113}}, {{643, 481}, {150, 112}}, {{400, 30}, {4, 1}}, {{40, 30}, {200, 150}}};
    for (const auto &[given, wanted] : sizes) {
        for (const char *format : {"jpeg", "bmp", "png"}) {
            SCOPED_TRACE(format + std::to_string(given.width()));
            ASSERT_TRUE(Load(Encoded(WithRedQuarter(given.width(), given.height()), format)));
            ASSERT_TRUE(Resize(wanted.width()));
            EXPECT_EQ(QSize(engine.Width(), engine.Height()), wanted);
            ExpectRedQuarter(wanted, 0, wanted.width() - 1);
        }
    }
    ASSERT_TRUE(Load(Encoded(WithRedQuarter(640, 480), "jpeg")));
    Resize(320);
    ExpectRedQuarter({320, 240}, 158, 161);  // and not made of too coarse a fraction
}

TEST_F(PictureEngineTest, SetsPhotographsUpright) {
    const std::string jpeg = Encoded(WithRedQuarter(640, 320), "jpeg");
    const QPoint corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};  // the red one, by orientation
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        ASSERT_TRUE(Load(WithOrientation(jpeg, orientation)));
        const QSize whole = orientation >= 5 ? QSize(320, 640) : QSize(640, 320);
        EXPECT_EQ(QSize(engine.Width(), engine.Height()), whole);
        Resize(100);
        const QImage image = Saved();
        ASSERT_EQ(image.width() * whole.height(), image.height() * whole.width());
        for (const QPoint corner : corners) {
            const QColor color = image.pixelColor(corner.x() * 99, corner.y() * (image.height() - 1));
            const QPoint red = corners[(orientation - 1) % 4];
            EXPECT_TRUE(IsNear(color, corner == red ? Qt::red : Qt::blue)) << corner.x() << corner.y();
        }
    }
}

TEST_F(PictureEngineTest, ReadsColoursOfOtherKinds) {
    QImage wide = Plain(64, 32, QColor(150, 200, 150));
    wide.setColorSpace(QColorSpace::AdobeRgb);
    const QImage grey = Plain(64, 32, QColor(90, 90, 90)).convertToFormat(QImage::Format_Grayscale8);
    const std::pair<std::string, QColor> cases[] = {
        {Gif(), Qt::white},  // of its transparent half
        {ReadBinaryFile(Sample("printers_red.jpg")), Qt::red},
        {Encoded(wide, "jpeg"), QColor(122, 201, 147)},  // 150 by the wide space's red is less of ours
        {Encoded(grey, "jpeg"), QColor(90, 90, 90)},
    };
    for (const auto &[bytes, colour] : cases) {
        ASSERT_TRUE(Load(bytes));
        EXPECT_TRUE(IsNear(Saved(95).pixelColor(5, 5), colour)) << bytes.substr(0, 4) << colour.red();
    }
    Resize(32);
    EXPECT_EQ(Saved().format(), QImage::Format_Grayscale8);
}

TEST_F(PictureEngineTest, WritesAPlainJpegOfTheQualityAskedOrNothing) {
    QImage image = WithRedQuarter(200, 200);
    image.setText("Comment", "taken at home");
    image.setColorSpace(QColorSpace::SRgb);
    ASSERT_TRUE(Load(Encoded(image, "jpeg", true)));
    SaveTo(folder.Path("fine"), 75);
    SaveTo(folder.Path("coarse"), 30);
    const std::string jpeg = folder.Read("fine");
    for (const char *part : {"at home", "ICC_PROFILE"}) EXPECT_EQ(jpeg.find(part), std::string::npos) << part;
    EXPECT_NE(jpeg.find("\xFF\xC0"), std::string::npos) << "every browser shows it from the top down";
    EXPECT_LT(folder.Read("coarse").size(), jpeg.size());
    Resize(70000);
    EXPECT_EQ(ErrorOf([&] { SaveTo(folder.Path("wide")); }), ErrorNumber::PictureError) << "wider than a JPEG can be";
    EXPECT_FALSE(FileExists(folder.Path("wide")));
}

TEST_F(PictureEngineTest, RefusesBeforeItDecodes) {
    const std::string baseline = Encoded(WithRedQuarter(64, 64), "jpeg");
    const std::string progressive = Encoded(WithRedQuarter(64, 64), "jpeg", true);
    std::string bitmap = Encoded(WithRedQuarter(64, 64), "bmp");
    const std::size_t scan = baseline.find("\xFF\xDA");
    const std::tuple<const char *, bool, std::string> cases[] = {
        {"baseline of 249 megapixels", true, WithJpegSize(baseline, 15780, 15780)},
        {"baseline of 251 megapixels", false, WithJpegSize(baseline, 15850, 15850)},
        {"progressive of 49 megapixels with 20 scans", true, WithJpegSize(WithManyScans(progressive, 11), 7000, 7000)},
        {"the same with 21", false, WithJpegSize(WithManyScans(progressive, 12), 7000, 7000)},
        {"progressive of 51 megapixels", false, WithJpegSize(progressive, 7150, 7150)},
        {"progressive with 60 scans", true, WithManyScans(progressive, 60)},
        {"progressive with 200 scans", false, WithManyScans(progressive, 200)},
        {"progressive of 25 megapixels with 60 scans", false, WithJpegSize(WithManyScans(progressive, 60), 5000, 5000)},
        {"a component a scan is held whole too", false,
         WithJpegSize(baseline, 7150, 7150).replace(scan, 14, "\xFF\xDA\0\x8\1\1\0\0\x3F\0", 10)},
        {"jpeg without data", false, baseline.substr(0, scan + 14)},
        {"jpeg cut in its tables", false, baseline.substr(0, scan - 10)},
        {"jpeg that ends before its data", false, baseline.substr(0, scan + 14) + "\xFF\xD9"},
        {"bitmap of 3600 megapixels", false, bitmap.replace(18, 8, std::string("\x60\xEA\0\0\x60\xEA\0\0", 8))},
        {"bitmap of 42 megapixels", false, bitmap.replace(18, 8, std::string("\x64\x19\0\0\x64\x19\0\0", 8))},
        {"gif of 4295 megapixels", false, Gif().replace(6, 4, 4, '\xFF').replace(32, 4, 4, '\xFF')},
        {"nothing", false, ""},
        {"vector graphics", false, "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
    };
    for (const auto &[name, isTaken, bytes] : cases) {
        ASSERT_TRUE(Load(baseline));
        EXPECT_EQ(Load(bytes), isTaken) << name;
        EXPECT_EQ(engine.Width() > 0 && engine.Height() > 0, isTaken) << name;
    }
    ASSERT_EQ(mkfifo(folder.Path("pipe.jpg").c_str(), 0600), 0);
    for (const std::string &path : {folder.Path("pipe.jpg"), folder.Path("missing.jpg"), folder.Path()})
        EXPECT_FALSE(LoadFile(path)) << path;
}

TEST_F(PictureEngineTest, ShowsWhatThereIsOfACutPicture) {
    mallopt(M_PERTURB, 0x5A);  // fresh memory is never black by chance
    const QImage image = WithRedQuarter(200, 200);
    const std::string jpeg = Encoded(image, "jpeg");
    ASSERT_TRUE(Load(jpeg.substr(0, jpeg.size() * 6 / 10)));
    EXPECT_TRUE(IsNear(Saved().pixelColor(10, 10), Qt::red));

    const std::string bitmap = Encoded(image, "bmp");  // stored from the bottom up
    ASSERT_TRUE(Load(bitmap.substr(0, bitmap.size() / 2 - 1000)));
    const QImage cut = Saved();
    EXPECT_TRUE(IsNear(cut.pixelColor(10, 190), Qt::blue));
    for (int y = 0; y < 90; ++y) ASSERT_TRUE(IsNear(cut.pixelColor(100, y), Qt::black)) << y;
    mallopt(M_PERTURB, 0);
}

TEST_F(PictureEngineTest, LetsOthersUseItBetweenThePiecesOfALargePicture) {
    const std::string other = folder.Write("other.bmp", Encoded(WithRedQuarter(30, 20), "bmp"));
    const std::tuple<const char *, std::string, int> cases[] = {
        {"of 600 kilobytes", Encoded(WithRedQuarter(640, 320), "bmp"), 8},
        {"of 20 scans of 2 megapixels in few bytes",
         WithManyScans(Encoded(WithRedQuarter(2000, 1000), "jpeg", true), 11), 4},
    };
    for (const auto &[name, bytes, fewest] : cases) {
        ASSERT_TRUE(Load(bytes)) << name;
        Resize(100);
        const std::string undisturbed = engine.Encoded(75 * 4096 + 3);
        int pauses = 0;
        const std::string jpeg = engine.Encoded(75 * 4096 + 3, [&] {
            ++pauses;
            EXPECT_TRUE(LoadFile(other));
        });
        EXPECT_GE(pauses, fewest) << name;
        EXPECT_EQ(jpeg, undisturbed) << name;
    }
}

}  // namespace pixmora
