// The picture library over Qt's readers and writers.
#include "platform/pictures/PictureEngine.h"

#include <QBuffer>
#include <QColorSpace>
#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "platform/files/AtomicFile.h"
#include "platform/files/Files.h"
#include "platform/pictures/JpegHead.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::int64_t million = 1'000'000;
/// Decoding time: about a second at the worst.
constexpr std::int64_t maximumPixels = 250 * million;
/// A picture whose coefficients are all held takes up to 8 bytes a pixel, whatever the size wanted.
constexpr std::int64_t maximumPixelsHeldWhole = 50 * million;
/// Formats that can't be scaled while they are decoded take 4 bytes a pixel.
constexpr std::int64_t maximumPixelsUnscaled = 40 * million;
constexpr int allocationLimit = 160;  // megabytes; takes maximumPixelsUnscaled
constexpr int maximumJpegSide = 65500;
constexpr std::int32_t jpegFileType = 3;
constexpr std::int32_t defaultQuality = 75;

/// The reader's name for the format of the content; empty for a file that is no picture of ours. No other reader that
/// may be installed is ever asked.
QByteArray FormatOf(const BinaryFile &file) {
    char head[8] = {};
    const QByteArrayView start(head, static_cast<qsizetype>(file.ReadAt(0, head, sizeof head)));
    if (start.startsWith("\xFF\xD8\xFF")) return "jpeg";
    if (start.startsWith("GIF8")) return "gif";
    if (start.startsWith("BM")) return "bmp";
    if (start.startsWith("\x89PNG\r\n\x1A\n")) return "png";
    return {};
}

bool IsWorthReading(const BinaryFile &file, const QByteArray &format, QSize size) {
    const std::int64_t pixels = std::int64_t{size.width()} * size.height();
    if (size.width() <= 0 || size.height() <= 0 || pixels > maximumPixels) return false;
    if (format != "jpeg") return pixels <= maximumPixelsUnscaled;
    const std::optional<JpegHead> head = ReadJpegHead(file);
    if (!head) return false;
    return !head->HoldsWholePicture || (pixels <= maximumPixelsHeldWhole && head->Scans <= MaximumJpegScans);
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
class Source {
public:
    /// @throws RunTimeError when the file can't be opened
    explicit Source(std::string_view path) : device_(path), format_(FormatOf(device_.Bytes())) {
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
    QSize UprightSize() const { return IsTurned() ? size_.transposed() : size_; }

    /// Upright, at the size wanted. A file that is cut or damaged on its way gives what there is of it.
    QImage Decode(QSize wanted, const std::function<void()> &pause) {
        device_.Pause = pause;
        if (format_ == "jpeg") AskForFraction(IsTurned() ? wanted.transposed() : wanted);
        QImage decoded;
        if (format_ == "bmp") decoded = Blank();
        if (!reader_.read(&decoded)) return {};
        if (decoded.size() == wanted) return decoded;
        const QImage scaled = decoded.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return decoded.format() == QImage::Format_Grayscale8 ? scaled.convertToFormat(decoded.format()) : scaled;
    }

private:
    /// The bitmap reader leaves the rows that a cut file lacks as they are: they must hold nothing of ours.
    QImage Blank() const {
        QImage blank(size_, reader_.imageFormat());
        blank.fill(0);
        return blank;
    }

    bool IsTurned() const { return reader_.transformation().testFlag(QImageIOHandler::TransformationRotate90); }

    /// Decodes an eighth, a quarter or a half of each side when that leaves at least twice the size wanted, of which
    /// averaging then makes a clean picture. The eighth is the decoder's cheapest; other eighths are slower than they
    /// save.
    void AskForFraction(QSize wanted) {
        for (const int eighths : {1, 2, 4}) {
            // Rounded down: a pixel more and the reader would take the next fraction up.
            const QSize fraction(size_.width() * eighths / 8, size_.height() * eighths / 8);
            if (fraction.width() < 2 * wanted.width() || fraction.height() < 2 * wanted.height()) continue;
            reader_.setScaledSize(fraction);
            return;
        }
    }

    PictureFile device_;
    QByteArray format_;
    QImageReader reader_;
    QSize size_;  ///< as stored, before it is set upright
    bool isReadable_ = false;
};

QImage OnWhite(const QImage &image) {
    QImage canvas(image.size(), QImage::Format_RGB32);
    canvas.fill(Qt::white);
    QPainter(&canvas).drawImage(0, 0, image);
    return canvas;
}

/// What browsers show alike: opaque, 8 bits a channel, in the common colour space.
QImage ForTheWeb(QImage image) {
    const QColorSpace common(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != common) image.convertToColorSpace(common);
    if (image.hasAlphaChannel()) return OnWhite(image);
    if (image.format() == QImage::Format_Grayscale8) return image;
    return std::move(image).convertToFormat(QImage::Format_RGB32);
}

/// Baseline, colour at half the resolution. The camera's comments and colour profile stay behind: a profile weighs more
/// than a thumbnail.
QByteArray ToJpeg(const QImage &image, int quality) {
    const QImage bare(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.setOptimizedWrite(true);
    return buffer.open(QIODevice::WriteOnly) && writer.write(bare) ? buffer.data() : QByteArray();
}

bool CanBeMade(QSize size) {
    return std::max(size.width(), size.height()) <= maximumJpegSide &&
           std::int64_t{size.width()} * size.height() <= maximumPixelsUnscaled;
}

}  // namespace

struct PictureEngine::Implementation {
    std::string Path;  ///< empty with no picture
    QSize Size{0, 0};  ///< upright, after the last Resize
};

PictureEngine::PictureEngine() : implementation_(std::make_unique<Implementation>()) {
    QImageReader::setAllocationLimit(allocationLimit);
    // What the readers have to say about strangers' pictures is for nobody, and standard error is the owner's.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\nqt.gui.icc*=false");
}

PictureEngine::~PictureEngine() = default;

std::int32_t PictureEngine::Width() const {
    return implementation_->Size.width();
}

std::int32_t PictureEngine::Height() const {
    return implementation_->Size.height();
}

void PictureEngine::Load(std::string_view path, [[maybe_unused]] std::int32_t zero, std::int32_t &success) {
    *implementation_ = {{}, QSize(0, 0)};
    success = 0;
    try {
        const Source source(path);
        if (!source.IsReadable()) return;
        *implementation_ = {std::string(path), source.UprightSize()};
        success = 1;
    } catch (const RunTimeError &) {
        // a file that can't be opened is no picture
    }
}

std::string PictureEngine::Encoded(std::int32_t flags, const std::function<void()> &pause) {
    const std::int32_t fileType = flags & 0xFFF;
    const std::int32_t quality = flags >> 12;
    const bool isJpegAsked = fileType == jpegFileType || fileType == 0;
    const auto [path, size] = *implementation_;  // as they are now: a pause may load another picture
    if (path.empty() || !isJpegAsked || !CanBeMade(size)) throw RunTimeError(ErrorNumber::PictureError);
    QByteArray jpeg;
    try {
        Source source(path);
        const QImage image = source.IsReadable() ? source.Decode(size, pause) : QImage();
        if (!image.isNull()) jpeg = ToJpeg(ForTheWeb(image), quality <= 0 ? defaultQuality : std::min(quality, 100));
    } catch (const RunTimeError &) {
        throw RunTimeError(ErrorNumber::PictureError);
    }
    if (jpeg.isEmpty()) throw RunTimeError(ErrorNumber::PictureError);
    return jpeg.toStdString();
}

void PictureEngine::Save(std::string_view path, std::int32_t flags, std::int32_t &success) {
    success = 0;
    const std::string jpeg = Encoded(flags);
    try {
        AtomicFile file(path);
        file.Write(jpeg);
        file.CommitUnflushed();
    } catch (const RunTimeError &) {
        throw RunTimeError(ErrorNumber::PictureError);
    }
    success = 1;
}

void PictureEngine::Resize(std::int32_t width, [[maybe_unused]] std::int32_t height, [[maybe_unused]] std::int32_t mode,
                           std::int32_t &success) {
    success = 0;
    QSize &size = implementation_->Size;
    if (size.width() <= 0 || width <= 0) return;
    const double proportional = std::round(double(size.height()) * width / size.width());
    size = QSize(width, static_cast<int>(std::clamp(proportional, 1.0, 1e9)));
    success = 1;
}

}  // namespace pixmora
