// The targets that take what visitors and proxies send.
#include <algorithm>

#include "Fuzz.h"
#include "core/site/RequestGrammar.h"
#include "platform/database/Database.h"
#include "platform/database/StatementTranslator.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "platform/sockets/SocketAddress.h"

namespace pixmora {
namespace {

/// The decoder as its description reads, with no thought of speed.
std::string DecodeSlowly(std::string text) {
    std::size_t position = 0;
    while ((position = text.find('%')) != std::string::npos) {
        const std::string escape = text.substr(position, 3);
        const std::string digits = escape.substr(1);
        if (digits.empty() || !HoldsOnly(digits, "0123456789abcdefABCDEF"))
            throw RunTimeError(ErrorNumber::TypeMismatch);
        text = Replace(text, escape, std::string(1, static_cast<char>(std::stoi(digits, nullptr, 16))));
    }
    return Replace(Replace(Replace(text, "+", " "), "**", " "), "*", "&");
}

void CheckDecoding(std::string_view text) {
    const auto decoded = ResultOf([&] { return DecodeQuery(std::string(text)); });
    constexpr std::size_t slowIsFastEnough = 128;
    if (text.size() <= slowIsFastEnough) {
        REQUIRE(decoded == ResultOf([&] { return DecodeSlowly(std::string(text)); }));
    }
    if (!decoded) return;
    REQUIRE(HoldsNone(*decoded, "%+*"));
    REQUIRE(decoded->size() <= text.size());
}

void CheckLinks(std::string_view name) {
    const std::string link = EncodeLinkPart(name);
    REQUIRE(HoldsNone(link, "&+# "));
    REQUIRE(std::ranges::count(link, '%') == std::ranges::count(name, ' '));
    REQUIRE(link.size() <= name.size() * std::string_view("<percent>num<percent>").size());
    // A star has no token, and a name with a piece of one in it can't be told from the token itself.
    if (name.empty() || !HoldsNone(name, "<*")) return;
    REQUIRE(DecodeLinkPart(link) == name);
    const Target target = ParseTarget("ShowPicture?1&thumb&" + link);
    REQUIRE(target.Args.size() == 3 && DecodeLinkPart(target.Args[2]) == name);
}

void CheckTarget(std::string_view text) {
    const auto target = ResultOf([&] { return ParseTarget(std::string(text)); });
    if (!target) return;
    REQUIRE(target->HasQuery == Contains(text, "?"));
    REQUIRE(HoldsNone(target->Name, target->HasQuery ? "?" : "?."));
    REQUIRE(target->HasQuery || target->Args.empty());
    for (const std::string &argument : target->Args) REQUIRE(HoldsNone(argument, "&%+*"));
}

void CheckFirstLine(std::string_view head) {
    const std::string method = GetRequestMethod(head);
    REQUIRE(HoldsNone(method, " ") && head.starts_with(method));
    const std::optional<std::string> target = GetRequestTarget(head);
    REQUIRE(target.has_value() == (std::ranges::count(head, ' ') >= 2));
    const std::string page =
        GetVisitorPageName(head, [](std::int32_t number) { return "Album " + std::to_string(number); });
    if (!target) {
        REQUIRE(page.empty());
        return;
    }
    REQUIRE(HoldsNone(*target, " ") && Contains(head, *target));
    REQUIRE(page.size() <= 4 * target->size() + 30);
    CheckTarget(*target);
}

/// Requests and links: the first line's parts, the query's decoding, names on their way through links.
void CheckRequestGrammar(std::string_view text) {
    CheckFirstLine(text);
    CheckTarget(text);
    CheckDecoding(text);
    CheckLinks(text);
    REQUIRE(HoldsNone(FileDisplayName(text), "_"));
}

void CheckCookie(std::string_view request) {
    const auto username = ResultOf([&] { return GetCookieUsername(request); });
    if (!username) return;
    REQUIRE(HoldsNone(*username, ";=") && Contains(request, *username));
    REQUIRE(!Contains(*username, "\r\n\r\n"));
}

/// What the login asks: whatever was sent, it is two compares with two literals, or no statement at all.
void CheckStatement(const LoginForm &form) {
    const auto statement = ResultOf([&] {
        return TranslateSelect("SELECT * FROM Users WHERE Username=" + QuotedText(form.Username) +
                               " and Password=" + QuotedText(form.Password));
    });
    const std::string both = form.Username + form.Password;
    REQUIRE(statement.has_value() == HoldsNone(both, std::string_view("'\0", 2)));
    if (!statement) return;
    REQUIRE(statement->Where.Sql == R"("Username" COLLATE TEXTS = ? AND "Password" COLLATE TEXTS = ? )");
    REQUIRE(statement->Where.Literals == (std::vector<FieldValue>{form.Username, form.Password}));
}

void CheckForm(std::string_view request) {
    const auto form = ResultOf([&] { return ParseLoginForm(request); });
    if (!form) return;
    // Both go into the answer's head as they are.
    REQUIRE(HoldsNone(form->Username, "&=\r\n") && HoldsNone(form->Password, "&=\r\n"));
    REQUIRE(form->Args.size() >= 2 && Join(form->Args, "&").size() >= form->ArgText.size());
    for (const std::string &argument : form->Args) {
        REQUIRE(HoldsNone(argument, "&+"));
        ResultOf([&] { return DecodeLinkPart(argument); });
    }
    IsLoginAddress(form->Args);
    CheckStatement(*form);
}

/// The cookie and the login's body, and the statement that a login asks the database with.
void CheckLogin(std::string_view text) {
    CheckCookie(text);
    CheckForm(text);
    CheckForm("POST /SendLogin HTTP/1.0\r\n\r\nargs=1%26thumbs%261&" + std::string(text));
}

/// What has been gathered when the pieces, of that many bytes each behind the first, suffice; all of it when they never
/// do.
std::string_view Gathered(std::string_view request, std::size_t first, std::size_t piece) {
    std::size_t length = first;
    do {
        length = std::min(length + piece, request.size());
    } while (length < request.size() && IsUnfinishedLogin(request.substr(0, length)));
    return request.substr(0, length);
}

void CheckGathering(std::string_view start, std::string_view body, std::size_t piece) {
    const std::string head = "POST /SendLogin HTTP/1.0" + std::string(start.substr(0, start.find("\r\n\r\n")));
    const std::string request = head + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    const std::string whole = request + std::string(body);
    if (GetRequestTarget(head) != "SendLogin") return;  // the rest of the first line made another address of it
    for (std::size_t length = head.size(); length < request.size(); ++length)
        REQUIRE(IsUnfinishedLogin(whole.substr(0, length)));
    const std::string_view gathered = Gathered(whole, head.size(), piece);
    REQUIRE(gathered.size() >= request.size());
    // A length announced before ours is the one that counts, and any text may stand there.
    if (HeaderValue(head + "\r\n\r\n", "Content-Length")) return;
    REQUIRE(gathered == whole && !IsUnfinishedLogin(whole));
    REQUIRE(body.empty() || IsUnfinishedLogin(std::string_view(whole).substr(0, whole.size() - 1)));
}

/// A login that arrives in pieces: when its gathering ends, wherever the pieces begin.
void CheckLoginGathering(std::string_view text) {
    if (text.empty()) return;
    const auto [head, body] = FirstLineAndRest(text.substr(1));
    CheckGathering(head, body, std::size_t{static_cast<unsigned char>(text[0])} + 1);
    IsUnfinishedLogin(text);
}

/// Whatever a visitor sends, what the proxy writes behind it is what counts.
void CheckForwarding(std::string_view text) {
    GetForwardedAddress(text);
    std::string visitors = "GET / HTTP/1.0\r\nCookie: " + std::string(text.substr(0, text.find("\r\n\r\n")));
    while (visitors.ends_with("\r\n")) visitors.erase(visitors.size() - 2);
    REQUIRE(GetForwardedAddress(visitors + "\r\nX-Forwarded-For: 203.0.113.7\r\n\r\n") == "203.0.113.7");
    if (Contains(text, "\r\n")) return;
    REQUIRE(GetForwardedAddress("GET / HTTP/1.0\r\nX-Forwarded-For: " + std::string(text) + ", ::1\r\n\r\n") == "::1");
}

void CheckAddress(const std::string &text) {
    const auto address = SocketAddress::From(text, 80);
    IsPrivateAddress(text);
    if (!address) return;
    const std::string plain = address->Text();
    REQUIRE(IsIpAddress(plain) && HoldsOnly(plain, "0123456789abcdef.:"));
    REQUIRE(IsInNetwork(plain, plain));
    const auto again = SocketAddress::From(plain, 80);
    REQUIRE(again && again->Text() == plain);
}

void CheckHosts(std::string_view text) {
    const std::string host = HostIn(text);
    REQUIRE(host.empty() || (IsHost(host) && Contains(text, host)));
    const std::string address = WebAddressFrom(text, 8080);
    REQUIRE(address.empty() || EqualsIgnoreCase(address.substr(0, 7), "http://") ||
            EqualsIgnoreCase(address.substr(0, 8), "https://"));
    REQUIRE(HoldsNone(address, " \r\n\"<>"));
}

/// The address that a proxy forwards, and the texts that are addresses, networks and hosts.
void CheckForwardedAddress(std::string_view text) {
    CheckForwarding(text);
    CheckAddress(std::string(text));
    CheckHosts(text);
    const auto [address, network] = FirstLineAndRest(text);
    IsInNetwork(std::string(address), std::string(network));
}

}  // namespace

const Targets targets = {
    {"fuzz_RequestGrammar", CheckRequestGrammar},
    {"fuzz_Login", CheckLogin},
    {"fuzz_LoginGathering", CheckLoginGathering},
    {"fuzz_ForwardedAddress", CheckForwardedAddress},
};

}  // namespace pixmora
