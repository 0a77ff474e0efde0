// The movie transfers under way: how each goes on, and its end.
#pragma once

#include "core/site/Connection.h"

namespace pixmora {

/// Sends the next 1024 bytes, or what is left. When the file holds fewer than it did at the start, or can't be read any
/// more, the transfer is broken off and the element closed: the visitor is to see that the movie is not whole.
/// @param socket of a running transfer
void SendNextChunk(const Connection &socket);

/// After the last chunk: closes the file and books its kilobytes. @param socket of a running transfer
void EndTransfer(VisitorSocket &socket);

/// Drops a transfer that won't come to its end: closes the file and books nothing.
void ClearTransfer(VisitorSocket &socket);

}  // namespace pixmora
