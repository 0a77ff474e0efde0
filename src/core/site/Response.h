// What every answer is made with: the head, the send that ignores a vanished visitor, the booking of its kilobytes.
#pragma once

#include <string>
#include <string_view>

#include "core/site/Connection.h"
#include "store/Statistics.h"  // NoAlbum, which callers of BookKilobytes pass

namespace pixmora {

/// The head of an answer (RFC 1945): status 200, server, type, no-cache, each line ended by CR LF.
/// @param endHead whether the blank line that ends the head follows
std::string WriteResponseHead(std::string_view contentType, bool endHead);
/// The head of an answer beside the usual one. @param contentType empty: none @param lines behind server and type, each
/// ended by CR LF, in the place of "Pragma: no-cache"
std::string WriteResponseHead(std::string_view status, std::string_view contentType, std::string_view lines);

/// SendData with errors ignored: the visitor may have gone.
void SendIgnoringErrors(const Connection &socket, std::string_view bytes);

/// The same with a head and behind it a file as it is, which is read only as the visitor takes it. A file that is cut
/// short meanwhile ends the connection. @return the file's length in bytes
std::size_t SendFileIgnoringErrors(const Connection &socket, std::string head, const std::shared_ptr<BinaryFile> &file);

/// Whole kilobytes of an answer, added to gBandwidthSession and recorded.
/// @param album the album's name, or NoAlbum
void BookKilobytes(std::string_view album, std::size_t bytes);

}  // namespace pixmora
