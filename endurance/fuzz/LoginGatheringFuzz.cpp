// A login that arrives in pieces: when its gathering ends, wherever the pieces begin.
#include <algorithm>

#include "Fuzz.h"
#include "core/site/RequestGrammar.h"

namespace pixmora {
namespace {

/// What has been gathered when the pieces, of that many bytes each behind the first, suffice; all of it when they never
/// do.
std::string_view Gathered(std::string_view request, std::size_t first, std::size_t piece) {
    std::size_t length = first;
    do {
        length = std::min(length + piece, request.size());
    } while (length < request.size() && IsUnfinishedLogin(request.substr(0, length)));
    return request.substr(0, length);
}

void Check(std::string_view start, std::string_view body, std::size_t piece) {
    const std::string head = "POST /SendLogin HTTP/1.0" + std::string(start.substr(0, start.find("\r\n\r\n")));
    const std::string request = head + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    const std::string whole = request + std::string(body);
    if (GetRequestTarget(head) != "SendLogin") return;  // the rest of the first line made another address of it
    for (std::size_t length = head.size(); length < request.size(); ++length) {
        REQUIRE(IsUnfinishedLogin(whole.substr(0, length)));
    }
    const std::string_view gathered = Gathered(whole, head.size(), piece);
    REQUIRE(gathered.size() >= request.size());
    // A length announced before ours is the one that counts, and any text may stand there.
    if (HeaderValue(head + "\r\n\r\n", "Content-Length")) return;
    REQUIRE(gathered == whole && !IsUnfinishedLogin(whole));
    REQUIRE(body.empty() || IsUnfinishedLogin(std::string_view(whole).substr(0, whole.size() - 1)));
}

}  // namespace

void CheckInput(std::string_view text) {
    if (text.empty()) return;
    const auto [head, body] = FirstLineAndRest(text.substr(1));
    Check(head, body, std::size_t{static_cast<unsigned char>(text[0])} + 1);
    IsUnfinishedLogin(text);
}

}  // namespace pixmora
