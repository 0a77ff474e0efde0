// The movie transfers under way.
#include "core/site/Transfers.h"

#include <algorithm>

#include "core/site/Globals.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::int64_t chunkSize = 1024;

SendState &StateOf(int index) {
    return gSendStates.at(static_cast<std::size_t>(index));
}

/// Fewer bytes when the file has become shorter or can't be read.
std::string ReadChunk(const SendState &state, std::int64_t size) {
    if (size <= 0 || !state.FileNumber) return {};
    try {
        return state.FileNumber->Read(static_cast<std::size_t>(size));
    } catch (const RunTimeError &) {
        return {};
    }
}

}  // namespace

void SendNextChunk(const Connection &socket) {
    SendState &state = StateOf(socket->Index);
    state.LastSendTick = GetTickCount();
    const std::int64_t size = std::min(chunkSize, state.FileSize - state.BytesSent);
    const std::string chunk = ReadChunk(state, size);
    if (size <= 0 || chunk.size() != static_cast<std::size_t>(size)) {
        ClearTransfer(socket->Index);
        socket->Close();
        return;
    }
    state.BytesSent += size;
    SendIgnoringErrors(socket, chunk);
}

void EndTransfer(int index) {
    SendState &state = StateOf(index);
    state.FileNumber.reset();
    BookKilobytes(NoAlbum, static_cast<std::size_t>(state.FileSize));
    ClearTransfer(index);
}

void ClearTransfer(int index) {
    SendState &state = StateOf(index);
    state.FileNumber.reset();
    state.BytesSent = 0;
    state.FileSize = 0;
}

}  // namespace pixmora
