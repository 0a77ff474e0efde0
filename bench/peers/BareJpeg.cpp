// A smaller JPEG by libjpeg-turbo alone: as little work as the format allows.
#include <cstdio>
#include <cstdlib>
// libjpeg's header needs the standard ones before it.
#include <jpeglib.h>

#include <memory>
#include <stdexcept>
#include <vector>

#include "peers/Peers.h"

namespace pixmora::bench {

namespace {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

[[noreturn]] void RaiseError(j_common_ptr) {
    throw std::runtime_error("libjpeg can't read the picture");
}

jpeg_error_mgr *Errors() {
    static jpeg_error_mgr errors = [] {
        jpeg_error_mgr manager{};
        jpeg_std_error(&manager);
        manager.error_exit = RaiseError;
        return manager;
    }();
    return &errors;
}

struct Pixels {
    std::size_t Width = 0;
    std::size_t Height = 0;
    int Channels = 0;
    std::vector<JSAMPLE> Samples;
};

unsigned EighthsFor(unsigned width, unsigned wanted) {
    for (const unsigned eighths : {1U, 2U, 4U}) {
        if (width * eighths / 8 >= 2 * wanted) return eighths;
    }
    return 8;
}

/// The decoded fraction's pixels nearest to those of the size wanted.
Pixels Decode(const std::string &path, unsigned wantedWidth) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file) throw std::runtime_error("no picture");
    jpeg_decompress_struct decoder{};
    decoder.err = Errors();
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file.get());
    jpeg_read_header(&decoder, TRUE);
    decoder.scale_num = EighthsFor(decoder.image_width, wantedWidth);
    decoder.scale_denom = 8;
    jpeg_start_decompress(&decoder);

    Pixels pixels;
    pixels.Channels = decoder.output_components;
    pixels.Width = std::min(wantedWidth, decoder.image_width);
    pixels.Height = std::size_t{decoder.image_height} * pixels.Width / decoder.image_width;
    const auto channels = static_cast<std::size_t>(pixels.Channels);
    std::vector<JSAMPLE> row(decoder.output_width * channels);
    std::size_t made = 0;
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPLE *rows[] = {row.data()};
        const std::size_t at = decoder.output_scanline;
        jpeg_read_scanlines(&decoder, rows, 1);
        if (made == pixels.Height || at < made * decoder.output_height / pixels.Height) continue;
        for (std::size_t x = 0; x < pixels.Width; ++x) {
            const JSAMPLE *pixel = row.data() + x * decoder.output_width / pixels.Width * channels;
            pixels.Samples.insert(pixels.Samples.end(), pixel, pixel + channels);
        }
        ++made;
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    return pixels;
}

std::size_t Encode(Pixels &pixels, int quality) {
    jpeg_compress_struct encoder{};
    encoder.err = Errors();
    jpeg_create_compress(&encoder);
    unsigned char *bytes = nullptr;
    unsigned long count = 0;
    jpeg_mem_dest(&encoder, &bytes, &count);
    encoder.image_width = static_cast<JDIMENSION>(pixels.Width);
    encoder.image_height = static_cast<JDIMENSION>(pixels.Height);
    encoder.input_components = pixels.Channels;
    encoder.in_color_space = pixels.Channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, quality, TRUE);
    encoder.optimize_coding = TRUE;
    jpeg_start_compress(&encoder, TRUE);
    const std::size_t rowSize = pixels.Width * static_cast<std::size_t>(pixels.Channels);
    while (encoder.next_scanline < encoder.image_height) {
        JSAMPLE *rows[] = {pixels.Samples.data() + encoder.next_scanline * rowSize};
        jpeg_write_scanlines(&encoder, rows, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::free(bytes);
    return count;
}

}  // namespace

std::size_t BareDecode(const std::string &path, WantedPicture wanted) {
    return Decode(path, static_cast<unsigned>(wanted.Width)).Samples.size();
}

std::size_t BareJpeg(const std::string &path, WantedPicture wanted) {
    Pixels pixels = Decode(path, static_cast<unsigned>(wanted.Width));
    return Encode(pixels, wanted.Quality);
}

}  // namespace pixmora::bench
