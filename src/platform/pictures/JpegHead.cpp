// The walk over a JPEG file's markers.
#include "platform/pictures/JpegHead.h"

#include <cstring>
#include <vector>

namespace pixmora {

namespace {

enum Marker : int { EndOfFile = -1, EndOfImage = 0xD9, StartOfScan = 0xDA };

/// SOF0 to SOF15 but for the tables' and the extension's numbers among them.
bool IsStartOfFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// SOF2, 6, 10 and 14.
bool IsProgressive(int marker) {
    return (marker & 3) == 2;
}

/// Zeros stuffed behind a data byte FF, restart marks and fill bytes are part of the data.
bool IsData(int second) {
    return second == 0x00 || second == 0x01 || second == 0xFF || (second >= 0xD0 && second <= 0xD7);
}

class MarkerReader {
public:
    explicit MarkerReader(const BinaryFile &file) : file_(file) {}

    int Byte() {
        if (next_ == end_ && !Fill()) return EndOfFile;
        return buffer_[next_++];
    }

    /// The next marker's second byte.
    int NextMarker() {
        for (;;) {
            if (next_ == end_ && !Fill()) return EndOfFile;
            const void *found = std::memchr(buffer_.data() + next_, 0xFF, end_ - next_);
            if (found == nullptr) {
                next_ = end_;
                continue;
            }
            next_ = static_cast<std::size_t>(static_cast<const unsigned char *>(found) - buffer_.data()) + 1;
            const int second = Byte();
            if (second == 0xFF) --next_;  // it may itself begin the marker
            if (!IsData(second)) return second;
        }
    }

    /// Enters the segment behind a marker. @return the length of what it holds; EndOfFile when the length itself is cut
    int SegmentLength() {
        const int high = Byte();
        const int low = Byte();
        if (high < 0 || low < 0) return EndOfFile;
        const int length = high * 256 + low - 2;
        return length < 0 ? 0 : length;
    }

    void Skip(int count) {
        const std::size_t inBuffer = end_ - next_;
        if (static_cast<std::size_t>(count) <= inBuffer) {
            next_ += static_cast<std::size_t>(count);
            return;
        }
        offset_ += count - static_cast<std::int64_t>(inBuffer);
        next_ = end_ = 0;
    }

    /// No JPEG below the limits of size has so many bytes: the rest of a file is not looked at.
    bool IsTired() const { return offset_ > std::int64_t{256} << 20; }

private:
    bool Fill() {
        next_ = end_ = 0;
        if (!IsTired()) end_ = file_.ReadAt(offset_, buffer_.data(), buffer_.size());
        offset_ += static_cast<std::int64_t>(end_);
        return end_ > 0;
    }

    const BinaryFile &file_;
    std::vector<unsigned char> buffer_ = std::vector<unsigned char>(65536);
    std::int64_t offset_ = 0;  ///< of what follows the buffer
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

struct Frame {
    bool IsProgressive = false;
    int Components = 0;
};

/// @param marker the start of frame @return none when the file ends within
std::optional<Frame> ReadFrame(MarkerReader &reader, int marker) {
    const int length = reader.SegmentLength();
    constexpr int componentsAt = 5;  // behind precision, height and width
    if (length <= componentsAt) return std::nullopt;
    reader.Skip(componentsAt);
    const int components = reader.Byte();
    if (components < 1) return std::nullopt;
    reader.Skip(length - componentsAt - 1);
    return Frame{IsProgressive(marker), components};
}

/// @return the number of components in the scan; none when no data follows its head
std::optional<int> ReadFirstScan(MarkerReader &reader) {
    const int length = reader.SegmentLength();
    if (length < 1) return std::nullopt;
    const int components = reader.Byte();
    reader.Skip(length - 1);
    const int first = reader.Byte();
    const int second = reader.Byte();
    if (first < 0 || (first == 0xFF && !IsData(second))) return std::nullopt;
    return components;
}

/// Behind the first.
void CountScans(MarkerReader &reader, JpegHead &head) {
    while (head.Scans <= MaximumJpegScans) {
        const int marker = reader.NextMarker();
        if (reader.IsTired()) head.Scans = MaximumJpegScans + 1;
        if (marker == EndOfFile || marker == EndOfImage) break;
        if (marker == StartOfScan) ++head.Scans;
        const int length = reader.SegmentLength();
        if (length > 0) reader.Skip(length);
    }
}

}  // namespace

std::optional<JpegHead> ReadJpegHead(const BinaryFile &file) {
    MarkerReader reader(file);
    reader.Skip(2);
    std::optional<Frame> frame;
    for (;;) {
        const int marker = reader.NextMarker();
        if (marker == EndOfFile || marker == EndOfImage) return std::nullopt;
        if (IsStartOfFrame(marker)) {
            frame = ReadFrame(reader, marker);
            if (!frame) return std::nullopt;
        } else if (marker == StartOfScan) {
            break;
        } else {
            const int length = reader.SegmentLength();
            if (length > 0) reader.Skip(length);
        }
    }
    const std::optional<int> componentsInScan = ReadFirstScan(reader);
    if (!frame || !componentsInScan) return std::nullopt;
    JpegHead head;
    head.HoldsWholePicture = frame->IsProgressive || *componentsInScan < frame->Components;
    if (head.HoldsWholePicture) CountScans(reader, head);
    return head;
}

}  // namespace pixmora
