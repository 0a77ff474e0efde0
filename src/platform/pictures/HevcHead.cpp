#include "platform/pictures/HevcHead.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace pixmora {

namespace {

using Bytes = std::span<const unsigned char>;

/// The bits of a unit, without the bytes that keep start codes out of it (7.3.1.1); zeros behind its end.
class Bits {
public:
    explicit Bits(Bytes unit) {
        int zeros = 0;
        for (const unsigned char byte : unit) {
            const bool isData = zeros < 2 || byte != 3;
            if (isData) bytes_.push_back(byte);
            zeros = byte == 0 ? zeros + 1 : 0;
        }
    }

    bool IsOver() const { return next_ > 8 * bytes_.size(); }
    void Skip(std::size_t count) { next_ += count; }

    std::uint32_t Take(int count) {
        std::uint32_t value = 0;
        for (; count > 0; --count, ++next_) {
            const std::size_t byte = next_ / 8;
            value = value << 1 | (byte < bytes_.size() ? bytes_[byte] >> (7 - next_ % 8) & 1U : 0U);
        }
        return value;
    }

    /// An Exp-Golomb code, ue(v).
    std::uint32_t TakeNumber() {
        int zeros = 0;
        while (zeros < 31 && Take(1) == 0) ++zeros;
        return (std::uint32_t{1} << zeros) - 1 + Take(zeros);
    }

private:
    std::vector<unsigned char> bytes_;
    std::size_t next_ = 0;
};

/// @param unit a sequence parameter set @return 0 when it is cut
std::int64_t PixelsOf(Bytes unit) {
    constexpr std::size_t profile = 88;
    constexpr std::size_t level = 8;
    Bits bits(unit);
    bits.Skip(16 + 4);  // the unit's head, and the number of a video parameter set
    const std::uint32_t subLayers = bits.Take(3);
    bits.Skip(1 + profile + level);
    std::size_t more = subLayers > 0 ? 2 * (8 - subLayers) : 0;
    for (std::uint32_t i = 0; i < subLayers; ++i) {
        if (bits.Take(1) != 0) more += profile;
        if (bits.Take(1) != 0) more += level;
    }
    bits.Skip(more);
    bits.TakeNumber();                             // its own number
    if (bits.TakeNumber() == 3) bits.Skip(1);      // whether the planes of 4:4:4 are apart
    const std::int64_t width = bits.TakeNumber();  // below 2^32
    const std::int64_t height = bits.TakeNumber();
    return bits.IsOver() ? 0 : std::min<std::int64_t>(width, 1 << 30) * std::min<std::int64_t>(height, 1 << 30);
}

/// Bytes from the front, big-endian numbers; zeros behind the end.
class Record {
public:
    explicit Record(Bytes bytes) : bytes_(bytes) {}

    Bytes Take(std::size_t count) {
        const Bytes taken = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }
    unsigned TakeNumber(std::size_t size) {
        unsigned number = 0;
        for (const unsigned char byte : Take(size)) number = number << 8 | byte;
        return number;
    }

private:
    Bytes bytes_;
};

/// @param content of an hvcC box
std::int64_t MostPixelsOf(Bytes content) {
    constexpr std::size_t fixedPart = 22;
    constexpr unsigned sequenceParameterSet = 33;
    constexpr std::size_t shortest = 15;
    Record record(content);
    record.Take(fixedPart);
    std::int64_t most = 0;
    for (unsigned arrays = record.TakeNumber(1); arrays > 0; --arrays) {
        const unsigned type = record.TakeNumber(1) & 0x3F;
        for (unsigned units = record.TakeNumber(2); units > 0; --units) {
            const Bytes unit = record.Take(record.TakeNumber(2));
            if (type == sequenceParameterSet && unit.size() >= shortest) most = std::max(most, PixelsOf(unit));
        }
    }
    return most;
}

}  // namespace

std::int64_t MostCodedPixels(Bytes file) {
    constexpr std::size_t looksAt = 1 << 20;  // where cameras have the boxes
    constexpr std::string_view name = "hvcC";
    file = file.first(std::min(file.size(), looksAt));
    const std::string_view text(reinterpret_cast<const char *>(file.data()), file.size());
    std::int64_t most = 0;
    for (std::size_t at = text.find(name, 4); at != std::string_view::npos;) {
        const std::size_t length = Record(file.subspan(at - 4)).TakeNumber(4);
        const std::size_t content = at + name.size();
        const std::size_t end = std::clamp(at - 4 + length, content, file.size());
        most = std::max(most, MostPixelsOf(file.subspan(content, end - content)));
        at = text.find(name, end);
    }
    return most;
}

}  // namespace pixmora
