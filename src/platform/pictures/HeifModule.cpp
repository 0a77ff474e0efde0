// HEIC and AVIF pictures over libheif.
#include "platform/pictures/HeifModule.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>

namespace pixmora {

namespace {

template <auto Release>
struct Releaser {
    template <class T>
    void operator()(T *resource) const {
        Release(resource);
    }
};
using Context = std::unique_ptr<heif_context, Releaser<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Releaser<heif_image_handle_release>>;
using Image = std::unique_ptr<heif_image, Releaser<heif_image_release>>;
using Options = std::unique_ptr<heif_decoding_options, Releaser<heif_decoding_options_free>>;

bool HasWorked(const heif_error &error) {
    return error.code == heif_error_Ok;
}

/// An open file and the picture that it is about.
struct OpenFile {
    Context File;
    Handle Primary;  ///< null when there is nothing to be read

    explicit OpenFile(const std::vector<unsigned char> &bytes) : File(heif_context_alloc()) {
        if (!File ||
            !HasWorked(heif_context_read_from_memory_without_copy(File.get(), bytes.data(), bytes.size(), nullptr)))
            return;
        heif_image_handle *handle = nullptr;
        if (HasWorked(heif_context_get_primary_image_handle(File.get(), &handle))) Primary.reset(handle);
    }
};

/// Whether a picture shows the same as the whole one does, by the shape: some cameras put theirs on black.
bool IsOfShape(const heif_image_handle *small, const heif_image_handle *whole) {
    const auto product = [](int left, int right) {
        return std::int64_t{left} * right;
    };
    const std::int64_t across = product(heif_image_handle_get_width(small), heif_image_handle_get_height(whole));
    const std::int64_t down = product(heif_image_handle_get_height(small), heif_image_handle_get_width(whole));
    return std::abs(across - down) * 50 <= across;
}

/// The stored small picture that will do; null without one.
Handle SmallPicture(const heif_image_handle *whole, int wantedWidth) {
    heif_item_id ids[8] = {};
    const int count = heif_image_handle_get_list_of_thumbnail_IDs(whole, ids, static_cast<int>(std::size(ids)));
    for (int i = 0; i < count; ++i) {
        heif_image_handle *handle = nullptr;
        if (!HasWorked(heif_image_handle_get_thumbnail(whole, ids[i], &handle))) continue;
        Handle small(handle);
        const int width = heif_image_handle_get_width(handle);
        // One that says to be larger than the whole picture could take any memory.
        const bool willDo = width >= wantedWidth && width <= heif_image_handle_get_width(whole);
        if (willDo && IsOfShape(handle, whole)) return small;
    }
    return nullptr;
}

std::vector<unsigned char> ProfileOf(const heif_image_handle *handle) {
    const heif_color_profile_type type = heif_image_handle_get_color_profile_type(handle);
    if (type != heif_color_profile_type_prof && type != heif_color_profile_type_rICC) return {};
    std::vector<unsigned char> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (!HasWorked(heif_image_handle_get_raw_color_profile(handle, profile.data()))) profile.clear();
    return profile;
}

/// Four bytes a pixel, also without transparency: scaling takes them as they are, where three would first become four.
Image DecodeImage(const heif_image_handle *handle) {
    const Options options(heif_decoding_options_alloc());
    options->convert_hdr_to_8bit = 1;
    heif_image *image = nullptr;
    const heif_error error =
        heif_decode_image(handle, &image, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, options.get());
    return Image(HasWorked(error) ? image : nullptr);
}

bool Size(const std::vector<unsigned char> &file, int &width, int &height) {
    const OpenFile open(file);
    if (!open.Primary) return false;
    width = heif_image_handle_get_width(open.Primary.get());
    height = heif_image_handle_get_height(open.Primary.get());
    return true;
}

std::vector<unsigned char> Exif(const std::vector<unsigned char> &file) {
    const OpenFile open(file);
    heif_item_id id = 0;
    constexpr std::size_t offsetSize = 4;  // in front: how far behind it the block begins
    if (!open.Primary || heif_image_handle_get_list_of_metadata_block_IDs(open.Primary.get(), "Exif", &id, 1) != 1)
        return {};
    std::vector<unsigned char> data(heif_image_handle_get_metadata_size(open.Primary.get(), id));
    if (data.size() < offsetSize || !HasWorked(heif_image_handle_get_metadata(open.Primary.get(), id, data.data())))
        return {};
    std::size_t begin = 0;
    for (std::size_t i = 0; i < offsetSize; ++i) begin = begin << 8 | data[i];
    begin += offsetSize;
    if (begin >= data.size()) return {};
    data.erase(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(begin));
    return data;
}

bool Decode(const std::vector<unsigned char> &file, int wantedWidth, HeifPixels &pixels) {
    const OpenFile open(file);
    if (!open.Primary) return false;
    const Handle small = SmallPicture(open.Primary.get(), wantedWidth);
    const heif_image_handle *handle = small ? small.get() : open.Primary.get();
    // Tiles may be said to make a far larger picture than the file's head says.
    heif_context_set_maximum_image_size_limit(
        open.File.get(), std::max(heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)));
    pixels.HasAlpha = heif_image_handle_has_alpha_channel(handle) != 0;
    pixels.Profile = ProfileOf(open.Primary.get());
    const std::shared_ptr<const heif_image> image = DecodeImage(handle);
    if (!image) return false;
    pixels.Owner = image;
    pixels.Samples = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &pixels.Stride);
    pixels.Width = heif_image_get_width(image.get(), heif_channel_interleaved);
    pixels.Height = heif_image_get_height(image.get(), heif_channel_interleaved);
    return pixels.Samples != nullptr && pixels.Width > 0 && pixels.Height > 0;
}

}  // namespace

const HeifReader PixmoraHeifReader = {Size, Exif, Decode};

}  // namespace pixmora
