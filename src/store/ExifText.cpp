// How each format and tag of an Exif directory prints.
#include "store/ExifText.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/runtime/Numbers.h"
#include "store/ExifTags.h"

namespace pixmora {

namespace {

enum Format : std::int64_t {
    Ascii = 2,
    Rational = 5,
    SignedByte = 6,
    Undefined = 7,
    SignedShort = 8,
    SignedLong = 9,
    SignedRational = 10,
};

constexpr std::array<int, 13> componentSizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};

/// The longest list of numbers in the standard has six. Each costs a damaged file's reader time.
constexpr std::int64_t maximumRationals = 12;

struct Quotient {
    double Numerator = 0;
    double Denominator = 0;

    /// A denominator of 0 makes no value, which counts as 0.
    double Value() const { return Denominator == 0 ? 0 : Numerator / Denominator; }
};

Quotient ReadQuotient(const ExifBytes &data, std::int64_t index, bool isSigned) {
    const auto read = [&](std::int64_t position) {
        return isSigned ? data.Signed(position, 4) : data.Unsigned(position, 4);
    };
    return {read(index * 8), read(index * 8 + 4)};
}

/// Powers of what a damaged file says can leave every range; they have no text.
std::string Fixed(double value, int decimals) {
    return std::isfinite(value) ? FormatFixed(value, decimals) : std::string();
}

std::string QuotientsText(std::int64_t components, const ExifBytes &data, bool isSigned) {
    if (components == 1) {
        const Quotient only = ReadQuotient(data, 0, isSigned);
        return NumberText(only.Numerator) + "/" + NumberText(only.Denominator);
    }
    std::string text;
    for (std::int64_t i = 0; i < std::min(components, maximumRationals); ++i) {
        if (i > 0) text += "/";
        text += Fixed(ReadQuotient(data, i, isSigned).Value(), 3);
    }
    return text;
}

std::string RationalText(std::int64_t tag, std::int64_t components, const ExifBytes &data) {
    const double value = ReadQuotient(data, 0, false).Value();
    switch (tag) {
        case ExifTag("ExposureTime"):
            return value == 0 ? "0" : Fixed(1 / value, 0);
        case ExifTag("ApertureValue"):
        case ExifTag("MaxApertureValue"):
            return Fixed(std::sqrt(std::exp2(value)), 1);
        case ExifTag("XResolution"):
        case ExifTag("YResolution"):
        case ExifTag("FNumber"):
        case ExifTag("SubjectDistance"):
        case ExifTag("FocalLength"):
        case ExifTag("FocalPlaneXResolution"):
        case ExifTag("FocalPlaneYResolution"):
            return Fixed(value, 1);
        default:
            return QuotientsText(components, data, false);
    }
}

std::string SignedRationalText(std::int64_t tag, std::int64_t components, const ExifBytes &data) {
    const double value = ReadQuotient(data, 0, true).Value();
    switch (tag) {
        case ExifTag("ShutterSpeedValue"):
            return Fixed(std::exp2(value), 0);
        case ExifTag("ExposureBiasValue"):
            return Fixed(value, 1);
        default:
            return QuotientsText(components, data, true);
    }
}

/// "0210" is "2.10".
std::string VersionText(std::string_view data) {
    constexpr std::size_t half = 2;
    const std::string_view end = data.size() < half ? data : data.substr(data.size() - half);
    return NumberText(Val(data.substr(0, half))) + "." + std::string(end);
}

std::string ComponentsText(std::string_view data) {
    constexpr std::array<std::string_view, 7> names = {"", "Y", "Cb", "Cr", "R", "G", "B"};
    std::string text;
    for (const char component : data.substr(0, 4)) {
        const auto index = static_cast<unsigned char>(component);
        if (index < names.size()) text += names[index];
    }
    return text;
}

bool IsPrintable(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 31 && byte < 128;
}

std::string UndefinedText(std::int64_t tag, const ExifBytes &data) {
    std::string text(data.Text());
    switch (tag) {
        case ExifTag("ExifVersion"):
        case ExifTag("FlashPixVersion"):
            return VersionText(text);
        case ExifTag("ComponentsConfiguration"):
            return ComponentsText(text);
        case ExifTag("MakerNote"):
            std::erase_if(text, [](char c) { return !IsPrintable(c); });
            return text;
        case ExifTag("FileSource"):
        case ExifTag("SceneType"):
            return NumberText(data.Unsigned(0, 1));
        default:
            return text;
    }
}

std::string TextByFormat(std::int64_t tag, std::int64_t format, std::int64_t components, const ExifBytes &data) {
    switch (format) {
        case Ascii:
            return std::string(data.Text());
        case Rational:
            return RationalText(tag, components, data);
        case SignedByte:
        case SignedShort:
        case SignedLong:
            return NumberText(data.Signed(0, ExifComponentSize(format)));
        case Undefined:
            return UndefinedText(tag, data);
        case SignedRational:
            return SignedRationalText(tag, components, data);
        default:
            return NumberText(data.Unsigned(0, ExifComponentSize(format)));
    }
}

}  // namespace

int ExifComponentSize(std::int64_t format) {
    const bool isKnown = format >= 0 && format < static_cast<std::int64_t>(componentSizes.size());
    return isKnown ? componentSizes[static_cast<std::size_t>(format)] : 0;
}

double ExifQuotient(const ExifBytes &data) {
    return ReadQuotient(data, 0, false).Value();
}

std::string ExifText(std::int64_t tag, std::int64_t format, std::int64_t components, const ExifBytes &data) {
    if (data.Size() == 0) return {};
    std::string text = TextByFormat(tag, format, components, data);
    std::erase(text, '\0');
    return text;
}

}  // namespace pixmora
