// The bytes of an Exif block, and the integers in them.
#pragma once

#include <cmath>
#include <cstdint>
#include <string_view>

namespace pixmora {

/// A view of bytes in one byte order. Every position may be asked for: where there are no bytes it reads zeros.
class ExifBytes {
public:
    ExifBytes(std::string_view bytes, bool isLittleEndian) : bytes_(bytes), isLittleEndian_(isLittleEndian) {}

    std::int64_t Size() const { return static_cast<std::int64_t>(bytes_.size()); }
    std::string_view Text() const { return bytes_; }
    bool IsLittleEndian() const { return isLittleEndian_; }

    /// @param length up to 8 bytes
    double Unsigned(std::int64_t position, int length) const {
        double value = 0;
        for (int i = 0; i < length; ++i) value = value * 256 + At(position + (isLittleEndian_ ? length - 1 - i : i));
        return value;
    }

    /// Deliberate: the negative numbers run the other way from the two's complement. The lowest reads as -1, and -1 as
    /// the lowest.
    double Signed(std::int64_t position, int length) const {
        const double half = std::ldexp(1.0, 8 * length - 1);
        const double value = Unsigned(position, length);
        return value > half - 1 ? -(value - half) - 1 : value;
    }

    /// The part of the bytes that there is.
    std::string_view Part(std::int64_t position, std::int64_t length) const {
        if (position < 0 || position >= Size()) return {};
        return bytes_.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(length));
    }

private:
    double At(std::int64_t position) const {
        const bool isThere = position >= 0 && position < Size();
        return isThere ? static_cast<unsigned char>(bytes_[static_cast<std::size_t>(position)]) : 0;
    }

    std::string_view bytes_;
    bool isLittleEndian_;
};

}  // namespace pixmora
