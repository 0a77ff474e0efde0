// The movie transfers under way.
#include "core/site/Transfers.h"

#include <algorithm>

#include "core/site/Response.h"
#include "platform/runtime/Clock.h"

namespace pixmora {

namespace {

constexpr std::int64_t chunkSize = 1024;

/// Fewer bytes when the file has become shorter or can't be read.
std::string ReadChunk(const SendState &state, std::int64_t size) {
    if (size <= 0 || !state.FileNumber) return {};
    std::string chunk(static_cast<std::size_t>(size), '\0');
    chunk.resize(state.FileNumber->ReadAt(state.FirstByte + state.BytesSent, chunk.data(), chunk.size()));
    return chunk;
}

}  // namespace

void SendNextChunk(const Connection &socket) {
    SendState &state = socket->Transfer;
    state.LastSendTick = GetTickCount();
    const std::int64_t size = std::min(chunkSize, state.FileSize - state.BytesSent);
    const std::string chunk = ReadChunk(state, size);
    if (size <= 0 || chunk.size() != static_cast<std::size_t>(size)) {
        ClearTransfer(*socket);
        socket->Close();
        return;
    }
    state.BytesSent += size;
    SendIgnoringErrors(socket, chunk);
}

void EndTransfer(VisitorSocket &socket) {
    BookKilobytes(NoAlbum, static_cast<std::size_t>(socket.Transfer.FileSize));
    ClearTransfer(socket);
}

void ClearTransfer(VisitorSocket &socket) {
    socket.Transfer = {};
}

}  // namespace pixmora
