// The picture library: load, measure, scale and JPEG save, one picture at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pixmora {

/// One picture in memory. JPEG, GIF (its first image) and BMP, told by content. Load reads the header only; the decode
/// happens once, in Save, at the size wanted. A photograph's Exif orientation is applied, so that it stands upright.
class PictureEngine {
public:
    PictureEngine();
    ~PictureEngine();
    PictureEngine(const PictureEngine &) = delete;
    PictureEngine &operator=(const PictureEngine &) = delete;

    std::int32_t Width() const;   ///< pixels; 0 with no picture
    std::int32_t Height() const;  ///< pixels; 0 with no picture

    /// Replaces what is held. `success` is non-zero when the file is a picture that can be read. A header that shows
    /// more than 250 megapixels, or more than 50 in a progressive JPEG, counts as unreadable. @param zero not used
    void Load(std::string_view path, std::int32_t zero, std::int32_t &success);

    /// Writes a JPEG, replacing the file as a whole. @param flags low bits the file type, 3 (or 0) meaning JPEG; bits
    /// from 12 up the quality in percent, 0 the default of 75. @throws RunTimeError PictureError when it can't be
    /// decoded or written
    void Save(std::string_view path, std::int32_t flags, std::int32_t &success);

    /// The same JPEG in memory. @param pause called between the pieces in which the file is read and decoded, some
    /// hundredths of a second apart; it may use the engine. @throws RunTimeError PictureError
    std::string Encoded(std::int32_t flags, const std::function<void()> &pause = {});

    /// Scales to the width, keeping the proportions. @param height and @param mode always 0
    void Resize(std::int32_t width, std::int32_t height, std::int32_t mode, std::int32_t &success);

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace pixmora
