// The program's own requests to the outside: HTTP/1.0 GET on the hidden form's outbound sockets.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pixmora {

/// More of an answer is not held; what comes after it is dropped with the connection.
inline constexpr std::size_t LongestAnswer = 1024 * 1024;

/// Asks for a page ("http://host:port/path?query", RFC 1945; with "https://" over TLS) and waits for the whole answer,
/// turning the message loop meanwhile. The body, whatever the status; empty when nothing could be had: no host in the
/// address (at once), no connection within 15 s, or nothing said. An answer ends with its connection, with 5 s of
/// silence, or 20 s after the call. A call made while another waits ends that one, empty.
std::string GetWebPage(std::string_view url);

/// Ends the call that waits, if one does; it comes back empty.
void EndWebPageRequest();

/// Sends the request that GetWebPage sends, by the loop's events and with nobody waiting; the answer is not looked at.
/// Over after 20 s, or when the next one is sent.
void SendWebRequest(std::string_view url);

}  // namespace pixmora
