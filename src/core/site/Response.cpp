// What every answer is made with.
#include "core/site/Response.h"

#include "core/site/Globals.h"
#include "platform/loop/App.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

std::string WriteResponseHead(std::string_view contentType, bool endHead) {
    std::string head = "HTTP/1.0 200 OK\r\nServer: " + App::Title + " v" + std::to_string(App::Major) + "." +
                       std::to_string(App::Minor) + "\r\nContent-Type: ";
    head += contentType;
    head += "\r\nPragma: no-cache\r\n";
    if (endHead) head += "\r\n";
    return head;
}

void SendIgnoringErrors(const Connection &socket, std::string_view bytes) {
    try {
        socket->SendData(bytes);
    } catch (const RunTimeError &) {
        // The visitor has gone; there is nobody to tell.
    }
}

void BookKilobytes(std::string_view album, std::size_t bytes) {
    const auto kilobytes = static_cast<std::int32_t>(bytes / 1024);
    gBandwidthSession += kilobytes;
    RecordStat(Stat::Bandwidth, album, kilobytes);
}

}  // namespace pixmora
