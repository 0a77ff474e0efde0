// What every answer is made with.
#include "core/site/Response.h"

#include "core/site/Globals.h"
#include "platform/loop/App.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

/// Bytes of a file that go out with their head in one piece, since waiting for their turns would cost more than memory.
constexpr std::int64_t longestInOne = 65536;

}  // namespace

std::string WriteResponseHead(std::string_view contentType, bool endHead) {
    return WriteResponseHead("200 OK", contentType, endHead ? "Pragma: no-cache\r\n\r\n" : "Pragma: no-cache\r\n");
}

std::string WriteResponseHead(std::string_view status, std::string_view contentType, std::string_view lines) {
    std::string head =
        Concat("HTTP/1.0 ", status, "\r\nServer: ", App::Title, " v", App::Major, ".", App::Minor, "\r\n");
    if (!contentType.empty()) Append(head, "Content-Type: ", contentType, "\r\n");
    return head.append(lines);
}

void SendIgnoringErrors(const Connection &socket, std::string_view bytes) {
    Try([&] { socket->SendData(bytes); });  // else the visitor has gone, and there is nobody to tell
}

std::size_t SendFileIgnoringErrors(const Connection &socket, std::string head,
                                   const std::shared_ptr<BinaryFile> &file) {
    const std::int64_t length = file->Length();
    if (length <= longestInOne) {
        SendIgnoringErrors(socket, head += file->ReadAll());
        return static_cast<std::size_t>(length);
    }
    const auto read = [file](std::int64_t offset, void *bytes, std::size_t count) {
        return file->ReadAt(offset, bytes, count);
    };
    Try([&] { socket->SendData(head, {read, length}); });
    return static_cast<std::size_t>(length);
}

void BookKilobytes(std::string_view album, std::size_t bytes) {
    const auto kilobytes = static_cast<std::int32_t>(bytes / 1024);
    gBandwidthSession += kilobytes;
    RecordStat(Stat::Bandwidth, album, kilobytes);
}

}  // namespace pixmora
