// Pictures through Qt's readers, and the limits of what is decoded at all.
#include "platform/pictures/PictureSource.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>
#include <QTransform>
#include <cmath>
#include <optional>

#include "platform/files/Files.h"
#include "platform/pictures/HeifPicture.h"
#include "platform/pictures/JpegDecoder.h"
#include "platform/pictures/JpegHead.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr std::int64_t maximumPixels = 250'000'000;
/// A scan passes over the whole held picture, some 1 ns a pixel, even where it holds nothing.
constexpr std::int64_t maximumPixelsInScans = 1'000'000'000;

/// The reader's name for the format of the content; empty for a file that is no picture of ours. No other reader that
/// may be installed is ever asked.
QByteArray FormatOf(const BinaryFile &file, std::string_view path) {
    char head[12] = {};
    const QByteArrayView start(head, static_cast<qsizetype>(file.ReadAt(0, head, sizeof head)));
    if (start.startsWith("\xFF\xD8\xFF")) return "jpeg";
    if (start.startsWith("GIF8")) return "gif";
    if (start.startsWith("BM")) return "bmp";
    if (start.startsWith("\x89PNG\r\n\x1A\n")) return "png";
    // By its name too: a site without such pictures never loads their reader.
    const bool isWebP = start.size() == 12 && start.startsWith("RIFF") && start.sliced(8) == "WEBP";
    if (isWebP && PathMatchSpec(path, "*.webp")) return "webp";
    return {};
}

bool IsWorthReading(const BinaryFile &file, const QByteArray &format, QSize size) {
    const std::int64_t pixels = std::int64_t{size.width()} * size.height();
    if (size.width() <= 0 || size.height() <= 0 || pixels > maximumPixels) return false;
    if (format != "jpeg") return pixels <= MaximumPixelsUnscaled;
    const std::optional<JpegHead> head = ReadJpegHead(file);
    if (!head) return false;
    return !head->HoldsWholePicture || (pixels <= MaximumPixelsHeldWhole && head->Scans <= MaximumJpegScans &&
                                        pixels * head->Scans <= maximumPixelsInScans);
}

/// The file as a reader draws on it, who may be kept waiting between two pieces.
class PictureFile : public QIODevice {
public:
    /// @throws RunTimeError when the file can't be opened
    explicit PictureFile(std::string_view path) : file_(BinaryFile::OpenForRead(path)), size_(file_->Length()) {
        open(ReadOnly);
    }

    std::function<void()> Pause;

    const BinaryFile &Bytes() const { return *file_; }
    qint64 size() const override { return size_; }
    bool seek(qint64 position) override {
        position_ = position;
        return QIODevice::seek(position);
    }

protected:
    qint64 readData(char *bytes, qint64 count) override {
        if (Pause && untilPause_ <= 0) {
            Pause();
            untilPause_ = pieceSize;
        }
        const auto got = static_cast<qint64>(file_->ReadAt(position_, bytes, static_cast<std::size_t>(count)));
        position_ += got;
        untilPause_ -= got;
        return got;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    /// Of the plainest picture some megapixels; decoded in less than a tenth of a second.
    static constexpr qint64 pieceSize = 65536;

    std::unique_ptr<BinaryFile> file_;
    qint64 size_;
    qint64 position_ = 0;
    qint64 untilPause_ = pieceSize;
};

/// A picture's file from its opening to its decoding.
class StoredPicture : public PictureSource {
public:
    /// @throws RunTimeError when the file can't be opened
    explicit StoredPicture(std::string_view path) : device_(path), format_(FormatOf(device_.Bytes(), path)) {
        if (format_.isEmpty()) return;
        reader_.setAutoDetectImageFormat(false);
        reader_.setFormat(format_);
        reader_.setDevice(&device_);
        reader_.setAutoTransform(true);
        const QSize size = reader_.size();
        size_ =
            QSize(size.width(), std::abs(size.height()));  // a bitmap stored from the top down has a negative height
        isReadable_ = IsWorthReading(device_.Bytes(), format_, size_);
    }

    bool IsReadable() const { return isReadable_; }
    QSize UprightSize() const override { return IsTurned() ? size_.transposed() : size_; }

    /// A file that is cut or damaged on its way gives what there is of it.
    QImage Decode(QSize wanted, const std::function<void()> &pause) override {
        const auto read = [&] {
            QImage decoded;
            if (format_ == "bmp") decoded = Blank();
            return reader_.read(&decoded) ? Scaled(decoded, wanted) : QImage();
        };
        if (format_ == "webp") return RunAside(read, pause);
        device_.Pause = pause;
        const QImage picture = format_ == "jpeg" ? DecodeUpright(wanted) : QImage();
        return picture.isNull() ? read() : picture;
    }

private:
    /// The bitmap reader leaves the rows that a cut file lacks as they are: they must hold nothing of ours.
    QImage Blank() const {
        QImage blank(size_, reader_.imageFormat());
        blank.fill(0);
        return blank;
    }

    bool IsTurned() const { return reader_.transformation().testFlag(QImageIOHandler::TransformationRotate90); }

    /// An eighth, a quarter or a half of each side where that leaves at least twice the size wanted, of which averaging
    /// then makes a clean picture. The eighth is the decoder's cheapest; other eighths are slower than they save.
    int EighthsFor(QSize wanted) const {
        for (const int eighths : {1, 2, 4}) {
            const QSize fraction = Fraction(eighths);
            if (fraction.width() >= 2 * wanted.width() && fraction.height() >= 2 * wanted.height()) return eighths;
        }
        return 8;
    }

    /// Rounded down: a pixel more and the reader would take the next fraction up.
    QSize Fraction(int eighths) const { return {size_.width() * eighths / 8, size_.height() * eighths / 8}; }

    /// Null for what the reader has to look at: printers' colours.
    QImage DecodeUpright(QSize wanted) {
        const QSize asStored = IsTurned() ? wanted.transposed() : wanted;
        const auto turns = reader_.transformation();
        const qint64 readersPlace = device_.pos();
        device_.seek(0);
        const int eighths = EighthsFor(asStored);
        QImage image = DecodeJpeg(device_, static_cast<unsigned>(eighths), device_.Pause);
        device_.seek(readersPlace);
        if (image.isNull()) {
            reader_.setScaledSize(Fraction(eighths));
            return {};
        }
        image = Scaled(image, asStored);
        image = image.mirrored(turns.testFlag(QImageIOHandler::TransformationMirror),
                               turns.testFlag(QImageIOHandler::TransformationFlip));
        return IsTurned() ? image.transformed(QTransform().rotate(90)) : image;
    }

    PictureFile device_;
    QByteArray format_;
    QImageReader reader_;
    QSize size_;  ///< as stored, before it is set upright
    bool isReadable_ = false;
};

}  // namespace

QImage Scaled(const QImage &image, QSize size) {
    if (image.size() == size) return image;
    const QImage scaled = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.format() == QImage::Format_Grayscale8 ? scaled.convertToFormat(image.format()) : scaled;
}

std::unique_ptr<PictureSource> PictureSource::Open(std::string_view path) {
    if (IsHeifName(path)) {
        if (auto picture = OpenHeif(path)) return picture;
    }
    auto picture = std::make_unique<StoredPicture>(path);
    return picture->IsReadable() ? std::move(picture) : nullptr;
}

}  // namespace pixmora
