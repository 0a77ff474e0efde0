// Exif blocks for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pixmora {

/// An entry of a directory.
struct Entry {
    int tag;
    int format;
    std::uint32_t components;
    int width;  ///< bytes of each number; 0 for the text
    std::vector<std::uint32_t> numbers;
    std::string text = {};
};

/// Builds in the one byte order or the other.
class BlockBuilder {
public:
    explicit BlockBuilder(bool isLittleEndian) : isLittleEndian_(isLittleEndian) {}

    std::string Number(std::uint32_t value, int width) const {
        std::string bytes;
        for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> 8 * (isLittleEndian_ ? i : width - 1 - i));
        return bytes;
    }

    /// A directory at the offset, with the values that don't fit their entries right behind it.
    std::string Directory(std::uint32_t offset, const std::vector<Entry> &entries) const {
        std::string directory = Number(static_cast<std::uint32_t>(entries.size()), 2);
        std::string values;
        const auto behind = offset + 2 + 12 * static_cast<std::uint32_t>(entries.size());
        for (const Entry &entry : entries) {
            std::string value = entry.text;
            for (const std::uint32_t number : entry.numbers) value += Number(number, entry.width);
            if (value.size() > 4) {
                const std::string place = Number(behind + static_cast<std::uint32_t>(values.size()), 4);
                values += value;
                value = place;
            }
            value.resize(4, '\0');
            directory += Number(static_cast<std::uint32_t>(entry.tag), 2) +
                         Number(static_cast<std::uint32_t>(entry.format), 2) + Number(entry.components, 4) + value;
        }
        return directory + values;
    }

    /// The start of a JPEG file with an Exif block of these directories.
    std::string File(const std::vector<Entry> &first, const std::vector<Entry> &camera) const {
        std::vector<Entry> entries = first;
        entries.push_back({34665, 4, 1, 4, {0}});
        entries.back().numbers[0] = 8 + static_cast<std::uint32_t>(Directory(8, entries).size());
        const std::string directory = Directory(8, entries);
        return Head() + directory + Directory(8 + static_cast<std::uint32_t>(directory.size()), camera);
    }

    std::string Head() const {
        const std::string order = isLittleEndian_ ? "II" : "MM";
        return std::string("\xFF\xD8\xFF\xE1\1\0Exif\0\0", 12) + order + Number(42, 2) + Number(8, 4);
    }

private:
    bool isLittleEndian_;
};

}  // namespace pixmora
