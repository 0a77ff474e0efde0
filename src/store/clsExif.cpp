// The Exif reader: finding the block, walking its two directories, and the words of exif.ini.
#include "store/clsExif.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/ExifBytes.h"
#include "store/ExifStart.h"
#include "store/ExifTags.h"
#include "store/ExifText.h"
#include "store/IniFile.h"

namespace pixmora {

namespace {

constexpr std::size_t bytesRead = 4096;

std::string WordsFile() {
    const std::string &folder = App::Path();
    return folder + (folder.ends_with('\\') ? "" : "\\") + "exif.ini";
}

/// The profile call of the words' file fills a buffer of 1024 bytes; the character that its caller drops from the end
/// is the closing zero, so that words come out whole.
std::string Words(const IniFile &words, std::string_view section, std::string_view key) {
    constexpr std::size_t longest = 1023;
    return Trim(words.Value(section, key).substr(0, longest));
}

std::string InWords(const IniFile &words, std::string_view section, std::string text) {
    if (!text.empty()) {
        std::string instead = Words(words, section, text);
        if (!instead.empty()) text = std::move(instead);
    }
    const std::string pattern = Words(words, section, "Format");
    return pattern.empty() ? text : Replace(pattern, "@X", text);
}

/// The bytes of the value that an entry gives: its own last four when they are enough, else those that it points at, as
/// far as they were read.
std::string ValueOf(const ExifBytes &file, std::int64_t block, std::int64_t entry) {
    const auto format = static_cast<std::int64_t>(file.Unsigned(entry + 2, 2));
    const auto components = static_cast<std::int64_t>(file.Unsigned(entry + 4, 4));
    const std::int64_t length = ExifComponentSize(format) * components;
    if (length > 4)
        return std::string(file.Part(block + static_cast<std::int64_t>(file.Unsigned(entry + 8, 4)), length));
    std::string value(file.Part(entry + 8, 4));
    value.resize(4, '\0');
    return value;
}

}  // namespace

clsExif::clsExif() : wordsFile_(WordsFile()) {}

void clsExif::ImageFile(std::string_view path) {
    imageFile_ = path;
    status_ = ReadStatus::Success;
    isLittleEndian_ = false;
    exposureSeconds_ = 0;
    tags_.clear();
    if (!Try([&] { Load(); })) status_ = ReadStatus::Unreadable;
}

void clsExif::Load() {
    const std::string bytes = ReadExifStart(imageFile_, bytesRead);
    if (bytes.empty()) return;
    const std::size_t block = ExifBlock(bytes);
    if (block == std::string::npos) {
        status_ = ReadStatus::NoExif;
        return;
    }
    isLittleEndian_ = bytes.compare(block, 2, "II") == 0;
    const ExifBytes file(bytes, isLittleEndian_);
    const IniFile words(wordsFile_);
    const auto start = static_cast<std::int64_t>(block);
    // Deliberate: without a camera's directory its offset is 0, and the block's head is read as one.
    const double offset = ReadDirectory(file, start, file.Unsigned(start + 4, 4), ExifTag("ExifOffset"), words);
    ReadDirectory(file, start, offset, ExifTag("ExifInteroperabilityOffset"), words);
}

/// Adds the directory's entries. Entries behind the bytes read would be all zeros and are left out, so that a count
/// means no more than the bytes that back it. @return the number in the text of the tag to follow; 0 without it
double clsExif::ReadDirectory(const ExifBytes &file, std::int64_t block, double offset, std::int64_t tagToFollow,
                              const IniFile &words) {
    double followed = 0;
    if (!(std::abs(offset) <= 4294967295.0)) return followed;
    std::int64_t position = block + std::llround(offset);
    const auto count = static_cast<std::int64_t>(file.Unsigned(position, 2));
    position += 2;
    for (std::int64_t i = 0; i < count && position < file.Size(); ++i, position += 12) {
        Tag entry;
        entry.Tag = static_cast<std::int64_t>(file.Unsigned(position, 2));
        entry.Name = GetTagName(entry.Tag);
        entry.Format = static_cast<std::int64_t>(file.Unsigned(position + 2, 2));
        entry.Components = static_cast<std::int64_t>(file.Unsigned(position + 4, 4));
        entry.Raw = static_cast<std::uint32_t>(file.Unsigned(position + 8, 4));
        const std::string value = ValueOf(file, block, position);
        const std::string text = ExifText(entry.Tag, entry.Format, entry.Components, ExifBytes(value, isLittleEndian_));
        entry.HasValue = !text.empty();
        entry.Text = InWords(words, entry.Name, text);
        if (entry.Tag == ExifTag("ExposureTime")) exposureSeconds_ = ExifQuotient(ExifBytes(value, isLittleEndian_));
        if (entry.Tag == tagToFollow) followed = Val(entry.Text);
        tags_.push_back(std::move(entry));
    }
    return followed;
}

std::uint32_t clsExif::MetaInfo(std::int32_t tag, std::string &text) const {
    if (status_ != ReadStatus::Success) return 0;
    const Tag *found = Find(tag);
    text = found == nullptr ? "Tag " + std::to_string(tag) + " not found." : found->Text;
    return found == nullptr ? 0 : found->Raw;
}

std::string clsExif::GetTagName(std::int64_t tag) {
    const auto found = std::ranges::find(ExifTagNames, tag, &ExifTagName::Tag);
    return found == std::end(ExifTagNames) ? "Tag #" + std::to_string(tag) : std::string(found->Name);
}

std::string clsExif::GetTagData(std::int32_t tag) const {
    const Tag *found = Find(tag);
    return found == nullptr ? "N/A" : found->Text;
}

std::string clsExif::Fact(std::int32_t tag) const {
    const Tag *found = Find(tag);
    return found == nullptr || !found->HasValue ? std::string() : found->Text;
}

std::string clsExif::ListInfo() const {
    if (status_ == ReadStatus::NoExif) return "File is not in EXIF format.";
    if (status_ == ReadStatus::Unreadable) return "Could not open the file.";
    std::string list;
    for (const Tag &tag : tags_) list += tag.Name + ": " + tag.Text + "\r\n";
    return list;
}

const clsExif::Tag *clsExif::Find(std::int32_t tag) const {
    const auto found = std::find_if(tags_.begin(), tags_.end(), [tag](const Tag &entry) { return entry.Tag == tag; });
    return found == tags_.end() ? nullptr : &*found;
}

}  // namespace pixmora
