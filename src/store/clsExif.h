// What a camera recorded in a picture file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

class ExifBytes;
class IniFile;

/// Reads the Exif block in the first 4096 bytes of a file: its first directory and the camera's, each value turned into
/// text for display with the words of exif.ini. No file, however damaged, makes it throw, read outside these bytes or
/// take long. Made for one page and thrown away.
class clsExif {
public:
    enum class ReadStatus { Success = 0, NoExif = 1, Unreadable = 2 };

    clsExif();

    const std::string &ImageFile() const { return imageFile_; }
    /// Loads the file at once. A missing or empty one is a success without tags.
    void ImageFile(std::string_view path);
    ReadStatus Status() const { return status_; }

    bool IntelByteAlignment() const { return isLittleEndian_; }

    /// @param text the tag's text, or that it isn't there; left as it is when the file could not be read
    /// @return the last four bytes of the tag's entry as a number; 0 without it
    std::uint32_t MetaInfo(std::int32_t tag, std::string &text) const;
    /// "Model", or "Tag #" and the number for one without a name.
    static std::string GetTagName(std::int64_t tag);
    /// The tag's text; "N/A" without it.
    std::string GetTagData(std::int32_t tag) const;
    /// The tag's text; empty when the file has no such tag, or the tag no value.
    std::string Fact(std::int32_t tag) const;
    /// 0 when the file doesn't tell.
    double ExposureSeconds() const { return exposureSeconds_; }
    /// All tags, a line each, or why there are none.
    std::string ListInfo() const;

private:
    struct Tag {
        std::int64_t Tag = 0;  ///< number
        std::string Name;
        std::int64_t Format = 0;
        std::int64_t Components = 0;
        std::uint32_t Raw = 0;
        std::string Text;
        bool HasValue = false;  ///< else the text is its words' pattern at most
    };

    void Load();
    double ReadDirectory(const ExifBytes &file, std::int64_t block, double offset, std::int64_t tagToFollow,
                         const IniFile &words);
    const Tag *Find(std::int32_t tag) const;

    std::string imageFile_;
    std::string wordsFile_;  ///< exif.ini
    ReadStatus status_ = ReadStatus::Success;
    bool isLittleEndian_ = false;
    double exposureSeconds_ = 0;
    std::vector<Tag> tags_;  ///< in file order; of two entries for one tag the first counts
};

}  // namespace pixmora
