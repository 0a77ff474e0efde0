// The bytes that the Exif reader looks at.
#include "store/ExifStart.h"

#include <algorithm>

#include "platform/files/Files.h"
#include "platform/pictures/HeifExif.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::string_view mark("Exif\0\0", 6);

}  // namespace

std::string ReadExifStart(std::string_view path, std::size_t count) {
    try {
        if (const std::string block = ReadHeifExif(path); !block.empty())
            return std::string(mark) + block.substr(0, count);
        return BinaryFile::OpenForRead(path)->Read(count);
    } catch (const RunTimeError &error) {
        if (error.Number() == ErrorNumber::FileNotFound) return {};
        throw;
    }
}

std::size_t ExifBlock(std::string_view bytes) {
    const std::size_t found = bytes.find(mark.substr(0, 5));
    return found == std::string_view::npos ? found : std::min(found + mark.size(), bytes.size());
}

}  // namespace pixmora
