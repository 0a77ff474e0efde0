// The program's own requests to the outside: plain HTTP/1.0 GET on the hidden form's one outbound socket.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pixmora {

/// More of an answer is not held; what comes after it is dropped with the connection.
inline constexpr std::size_t LongestAnswer = 1024 * 1024;

/// Asks for a page ("http://host:port/path?query", RFC 1945) and waits for the whole answer, turning the message loop
/// meanwhile. The body, whatever the status; empty when nothing could be had: no host in the address (at once), no
/// connection within 15 s, or nothing said for 20 s after that. An answer ends with its connection, or with 5 s of
/// silence. A call made while another waits ends that one, empty.
std::string GetWebPage(std::string_view url);

/// Ends the call that waits, if one does; it has what has come so far.
void EndWebPageRequest();

}  // namespace pixmora
