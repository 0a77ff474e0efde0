// The tags of Exif 2.3 that have a name.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace pixmora {

struct ExifTagName {
    std::int32_t Tag;
    std::string_view Name;
};

inline constexpr ExifTagName ExifTagNames[] = {
    {270, "ImageDescription"},
    {271, "Make"},
    {272, "Model"},
    {274, "Orientation"},
    {282, "XResolution"},
    {283, "YResolution"},
    {296, "ResolutionUnit"},
    {305, "Software"},
    {306, "DateTime"},
    {318, "WhitePoint"},
    {319, "PrimaryChromaticities"},
    {529, "YCbCrCoefficients"},
    {531, "YCbCrPositioning"},
    {532, "ReferenceBlackWhite"},
    {33432, "Copyright"},
    {33434, "ExposureTime"},
    {33437, "FNumber"},
    {34665, "ExifOffset"},
    {34850, "ExposureProgram"},
    {34855, "ISOSpeedRatings"},
    {36864, "ExifVersion"},
    {36867, "DateTimeOriginal"},
    {36868, "DateTimeDigitized"},
    {37121, "ComponentsConfiguration"},
    {37122, "CompressedBitsPerPixel"},
    {37377, "ShutterSpeedValue"},
    {37378, "ApertureValue"},
    {37379, "BrightnessValue"},
    {37380, "ExposureBiasValue"},
    {37381, "MaxApertureValue"},
    {37382, "SubjectDistance"},
    {37383, "MeteringMode"},
    {37384, "LightSource"},
    {37385, "Flash"},
    {37386, "FocalLength"},
    {37500, "MakerNote"},
    {37510, "UserComment"},
    {37520, "SubsecTime"},
    {37521, "SubsecTimeOriginal"},
    {37522, "SubsecTimeDigitized"},
    {40960, "FlashPixVersion"},
    {40961, "ColorSpace"},
    {40962, "ExifImageWidth"},
    {40963, "ExifImageHeight"},
    {40964, "RelatedSoundFile"},
    {40965, "ExifInteroperabilityOffset"},
    {41486, "FocalPlaneXResolution"},
    {41487, "FocalPlaneYResolution"},
    {41488, "FocalPlaneResolutionUnit"},
    {41493, "ExposureIndex"},
    {41495, "SensingMethod"},
    {41728, "FileSource"},
    {41729, "SceneType"},
    {41730, "CFAPattern"},
};

/// Newer than the names; "Tag #42036" to the reader.
inline constexpr std::int32_t LensModelTag = 42036;

/// The number of a tag, looked up by the compiler: a name that isn't in the table doesn't compile.
consteval std::int32_t ExifTag(std::string_view name) {
    return std::ranges::find(ExifTagNames, name, &ExifTagName::Name)->Tag;
}

}  // namespace pixmora
