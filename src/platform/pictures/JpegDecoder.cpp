// libjpeg-turbo over a device.
#include "platform/pictures/JpegDecoder.h"

#include <cstdio>
#include <cstdlib>
// libjpeg's header needs the standard ones before it.
#include <jpeglib.h>

#include <QColorSpace>
#include <cstdint>
#include <memory>
#include <vector>

namespace pixmora {

namespace {

/// Raised out of the library, which leaves it to us how its errors end a decode.
struct Failure {};

/// The device's bytes for the library.
struct Source : jpeg_source_mgr {
    explicit Source(QIODevice &file) : jpeg_source_mgr{}, file_(file) {
        init_source = [](j_decompress_ptr) {
        };
        term_source = [](j_decompress_ptr) {
        };
        resync_to_restart = jpeg_resync_to_restart;
        fill_input_buffer = [](j_decompress_ptr decoder) {
            static_cast<Source *>(decoder->src)->Fill();
            return boolean{TRUE};
        };
        skip_input_data = [](j_decompress_ptr decoder, long count) {
            static_cast<Source *>(decoder->src)->Skip(count);
        };
    }

private:
    /// Behind the file's end stands an end of image, so that a cut picture shows what there is.
    void Fill() {
        const qint64 got = file_.read(reinterpret_cast<char *>(buffer_.data()), static_cast<qint64>(buffer_.size()));
        bytes_in_buffer = static_cast<std::size_t>(got);
        if (got <= 0) {
            buffer_[0] = 0xFF;
            buffer_[1] = JPEG_EOI;
            bytes_in_buffer = 2;
        }
        next_input_byte = buffer_.data();
    }

    void Skip(long count) {
        while (count > static_cast<long>(bytes_in_buffer)) {
            count -= static_cast<long>(bytes_in_buffer);
            Fill();
        }
        if (count <= 0) return;
        next_input_byte += count;
        bytes_in_buffer -= static_cast<std::size_t>(count);
    }

    QIODevice &file_;
    std::vector<JOCTET> buffer_ = std::vector<JOCTET>(16384);  // not on the stack: the loop may turn on top of it
};

/// Pauses by the pixels that were passed over. The library tells of each row of blocks in the scans that it reads
/// ahead.
struct Progress : jpeg_progress_mgr {
    explicit Progress(const std::function<void()> &pause) : jpeg_progress_mgr{}, pause_(pause) {
        progress_monitor = [](j_common_ptr common) {
            const auto decoder = reinterpret_cast<j_decompress_ptr>(common);
            const auto rows = static_cast<unsigned>(decoder->max_v_samp_factor) * DCTSIZE;
            static_cast<Progress *>(decoder->progress)->Pass(std::int64_t{decoder->image_width} * rows);
        };
    }

    void Pass(std::int64_t pixels) {
        passed_ += pixels;
        if (passed_ < pixelsBetweenPauses) return;
        passed_ = 0;
        if (pause_) pause_();
    }

private:
    /// 10 to 50 ms of work.
    static constexpr std::int64_t pixelsBetweenPauses = 8'000'000;

    const std::function<void()> &pause_;
    std::int64_t passed_ = 0;
};

class Decoder : public jpeg_decompress_struct {
public:
    explicit Decoder(Source &source) : jpeg_decompress_struct{} {
        err = jpeg_std_error(&errors_);
        errors_.error_exit = [](j_common_ptr) {
            throw Failure();
        };
        errors_.output_message = [](j_common_ptr) {
        };
        jpeg_create_decompress(this);
        src = &source;
        jpeg_save_markers(this, JPEG_APP0 + 2, 0xFFFF);  // the colour profile's
        jpeg_read_header(this, TRUE);
    }
    ~Decoder() { jpeg_destroy_decompress(this); }
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;

    QColorSpace Profile() {
        JOCTET *bytes = nullptr;
        unsigned count = 0;
        if (!jpeg_read_icc_profile(this, &bytes, &count)) return {};
        const std::unique_ptr<JOCTET, decltype(&std::free)> owner(bytes, std::free);
        return QColorSpace::fromIccProfile(QByteArray(reinterpret_cast<const char *>(bytes), static_cast<int>(count)));
    }

private:
    jpeg_error_mgr errors_{};
};

}  // namespace

QImage DecodeJpeg(QIODevice &file, unsigned eighths, const std::function<void()> &pause) try {
    Source source(file);
    Decoder decoder(source);
    const bool isGrey = decoder.jpeg_color_space == JCS_GRAYSCALE;
    if (decoder.num_components > 3) return {};
    decoder.out_color_space = isGrey ? JCS_GRAYSCALE : JCS_EXT_BGRA;
    decoder.scale_num = eighths;
    decoder.scale_denom = 8;
    Progress progress(pause);
    decoder.progress = &progress;
    jpeg_start_decompress(&decoder);
    decoder.progress = nullptr;
    QImage image(static_cast<int>(decoder.output_width), static_cast<int>(decoder.output_height),
                 isGrey ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    if (image.isNull()) return {};
    image.setColorSpace(decoder.Profile());
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = image.scanLine(static_cast<int>(decoder.output_scanline));
        jpeg_read_scanlines(&decoder, &row, 1);
        progress.Pass(std::int64_t{decoder.image_width} * 8 / eighths);
    }
    return image;
} catch (const Failure &) {
    return {};
}

}  // namespace pixmora
