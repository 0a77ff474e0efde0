// The grammar of requests and links.
#include "core/site/RequestGrammar.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "platform/runtime/Encoding.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

struct LinkToken {
    char Character;
    std::string_view Token;
};

constexpr LinkToken linkTokens[] = {
    {'&', "<amp>and<amp>"},
    {'+', "<plus>and<plus>"},
    {'#', "<pound>num<pound>"},
    // As an escape it would not survive the decoding of the query, which leaves no "%" at all.
    {'%', PercentToken},
};
constexpr std::span<const LinkToken> serviceTokens(linkTokens, 3);

// Around two hexadecimal digits: a byte that no browser carries as it is.
constexpr std::string_view byteMark = "<byte>";

/// Whether the byte comes as it is from a link to the decoded query. A "*" separates, a quote ends the attribute, "<"
/// begins a token; browsers take line ends and tabs out of addresses and blanks off their end, and replace what isn't
/// UTF-8.
bool IsCarried(char byte, bool isUtf8) {
    const auto code = static_cast<unsigned char>(byte);
    return code > ' ' && (code <= 0x7F || isUtf8) && std::string_view("&+#%*\"<>").find(byte) == std::string_view::npos;
}

/// Whether a piece of a query is one that social networks and mailing services append to addresses.
bool IsAppended(std::string_view piece) {
    constexpr std::string_view words[] = {"fbclid=", "gclid=", "igsh=", "mc_eid="};
    return (piece.starts_with("utm_") && piece.find('=') != std::string_view::npos) ||
           std::ranges::any_of(words, [&](std::string_view word) { return piece.starts_with(word); });
}

std::string ByteToken(char byte) {
    return Concat(byteMark, DigitsOfByte(byte), byteMark);
}

/// The character of an escape: one or two digits, the second missing only at the text's end.
char EscapedCharacter(std::string_view digits) {
    const std::optional<char> character = ByteOfDigits(digits);
    if (!character) throw RunTimeError(ErrorNumber::TypeMismatch);
    return *character;
}

/// Replaces what stands at the position, and everything like it behind.
void ReplaceFrom(std::string &text, std::size_t position, const std::string &from, char to) {
    text.replace(position, std::string::npos, Replace(text.substr(position), from, std::string(1, to)));
}

/// How many times in a row "25" stands at the position, at most `limit`.
std::size_t CountPercentCodes(std::string_view text, std::size_t position, std::size_t limit) {
    std::size_t count = 0;
    while (count < limit && text.substr(position + 2 * count, 2) == "25") ++count;
    return count;
}

/// All the rounds in which the "%" at the position is an escaped "%" again, at once: each would take one "25" away
/// behind every "%". Round by round, 64 KB of "%252525" and other escapes would hold the loop for seconds.
void DecodePercents(std::string &text, std::size_t position) {
    const std::size_t rounds = CountPercentCodes(text, position + 1, text.size());
    std::string decoded;
    decoded.reserve(text.size() - position);
    for (std::size_t i = position; i < text.size(); ++i) {
        decoded += text[i];
        if (text[i] == '%') i += 2 * CountPercentCodes(text, i + 1, rounds);
    }
    text.replace(position, std::string::npos, decoded);
}

struct DecodedCharacter {
    char Character;
    std::size_t Length;  ///< of its text, bytes
};

/// What the "<" at the text's head begins: a token, or nothing but itself.
DecodedCharacter CharacterAt(std::string_view text) {
    for (const LinkToken &token : linkTokens) {
        if (text.starts_with(token.Token)) return {token.Character, token.Token.size()};
    }
    constexpr std::size_t start = byteMark.size();
    constexpr std::size_t length = 2 * start + 2;
    const bool isMarked =
        text.size() >= length && text.starts_with(byteMark) && text.substr(start + 2, start) == byteMark;
    const std::optional<char> byte = isMarked ? ByteOfDigits(text.substr(start, 2)) : std::nullopt;
    return byte ? DecodedCharacter{*byte, length} : DecodedCharacter{'<', 1};
}

/// The target without the appended pieces at its end, and without a "?" that nothing is left behind.
std::string WithoutAppendedPieces(std::string target) {
    const std::size_t query = target.find('?');
    while (target.size() > query) {
        const std::size_t separator = target.find_last_of("?&");
        if (!IsAppended(std::string_view(target).substr(separator + 1))) break;
        target.resize(separator);
    }
    return target;
}

std::string WithoutLineEnds(std::string_view text) {
    return Replace(Replace(std::string(text), "\r", ""), "\n", "");
}

constexpr std::string_view blankLine = "\r\n\r\n";

/// Where the name of a header begins; npos without one. Names compare without regard to case, as some proxies send them
/// in lower case.
std::size_t FindHeader(std::string_view head, std::string_view name) {
    const auto found = std::search(head.begin(), head.end(), name.begin(), name.end(),
                                   [](char a, char b) { return LowerOf(a) == LowerOf(b); });
    return found == head.end() ? std::string_view::npos : static_cast<std::size_t>(found - head.begin());
}

std::string AlbumPageName(const std::string &target, const AlbumNames &nameOf) {
    const Arguments pieces = Split(std::string_view(target).substr(target.find('?') + 1), "&");
    if (pieces.size() < 3) return {};
    std::string name = "Album: " + nameOf(CInt(pieces[0]));
    const std::size_t start = FirstDirectoryIndex(pieces[1]);
    if (pieces.size() <= start) return name;
    name += ", Dir: ";
    for (std::size_t i = start; i < pieces.size(); ++i) {
        if (!pieces[i].empty()) name += DecodeQuery(pieces[i]) + " > ";
    }
    if (name.ends_with(" > ")) name.resize(name.size() - 3);
    return name;
}

bool IsPartOfAPage(const std::string &target) {
    constexpr std::string_view parts[] = {"ShowGraphic",     "ShowPicture",    "Border",          "ShowAlbumTop",
                                          "ShowAlbumBottom", "ShowAlbumMedia", "ShowAlbumDirList"};
    return target == "Blank" ||
           std::ranges::any_of(parts, [&](std::string_view part) { return Contains(target, part); });
}

}  // namespace

const std::string &Argument(const Arguments &args, std::size_t index) {
    if (index >= args.size()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return args[index];
}

std::string DecodeQuery(std::string text) {
    std::size_t position = 0;
    while ((position = text.find('%', position)) != std::string::npos) {
        const std::string escape = text.substr(position, 3);
        const char character = EscapedCharacter(std::string_view(escape).substr(1));
        if (character == '%') {
            DecodePercents(text, position);
        } else {
            ReplaceFrom(text, position, escape, character);
        }
    }
    return Replace(Replace(Replace(std::move(text), "+", " "), "**", " "), "*", "&");
}

std::string EncodeLinkPart(std::string_view text) {
    const bool isUtf8 = IsUtf8(text);
    std::string encoded;
    if (IsAppended(text)) {  // a directory's own name must not be taken for such a piece
        encoded = ByteToken(text.front());
        text.remove_prefix(1);
    }
    for (const char character : text) {
        if (IsCarried(character, isUtf8)) {
            encoded += character;
        } else if (character == ' ') {
            encoded += "%20";
        } else {
            const auto token = std::ranges::find(linkTokens, character, &LinkToken::Character);
            encoded += token == std::end(linkTokens) ? ByteToken(character) : std::string(token->Token);
        }
    }
    return encoded;
}

std::string EncodeServiceText(std::string text) {
    for (const LinkToken &token : serviceTokens) text = Replace(std::move(text), {&token.Character, 1}, token.Token);
    return Replace(std::move(text), " ", "%20");
}

std::string DecodeLinkPart(std::string_view text) {
    return DecodeLinkTokens(DecodeQuery(std::string(text)));
}

std::string DecodeLinkTokens(std::string_view text) {
    std::string decoded;
    for (std::size_t mark = text.find('<'); mark != std::string_view::npos; mark = text.find('<')) {
        decoded += text.substr(0, mark);
        text.remove_prefix(mark);
        const auto [character, length] = CharacterAt(text);
        decoded += character;
        text.remove_prefix(length);
    }
    return decoded.append(text);
}

std::string FileDisplayName(std::string_view name) {
    const std::string text = Replace(std::string(name), "_", " ");
    return text.substr(0, text.rfind('.'));
}

std::optional<std::string> HeaderValue(std::string_view head, std::string_view name) {
    head = head.substr(0, head.find(blankLine));
    const std::string line = "\r\n" + std::string(name) + ":";
    const std::size_t start = FindHeader(head, line);
    if (start == std::string_view::npos) return std::nullopt;
    const std::string_view value = head.substr(start + line.size());
    return std::string(TrimWhitespace(value.substr(0, value.find("\r\n"))));
}

std::string GetCookieUsername(std::string_view head) {
    constexpr std::string_view header = "Cookie: ";
    const std::size_t start = FindHeader(head, header);
    if (start == std::string_view::npos) return {};
    head.remove_prefix(start + header.size());
    // Deliberate: other headers that follow are swallowed into the last piece.
    for (const std::string &cookie : Split(head.substr(0, head.find(blankLine)), ";")) {
        const Arguments sides = Split(cookie, "=");
        if (!sides.empty() && Trim(sides[0]) == "ms_username") return Argument(sides, 1);
    }
    return {};
}

std::string GetForwardedAddress(std::string_view head) {
    constexpr std::string_view header = "X-Forwarded-For:";
    std::string_view entries;
    for (std::size_t line = 0; line != std::string_view::npos; line = head.find("\r\n")) {
        head.remove_prefix(line == 0 ? 0 : line + 2);
        if (head.starts_with("\r\n")) break;
        if (!EqualsIgnoreCase(head.substr(0, header.size()), header)) continue;
        entries = head.substr(header.size(), head.find("\r\n") - header.size());
    }
    return std::string(TrimWhitespace(entries.substr(entries.rfind(',') + 1)));
}

std::string GetRequestMethod(std::string_view head) {
    const std::size_t blank = head.find(' ');
    return blank == std::string_view::npos ? std::string() : std::string(head.substr(0, blank));
}

std::optional<std::string> GetRequestTarget(std::string_view head) {
    const std::size_t first = head.find(' ');
    if (first == std::string_view::npos) return std::nullopt;
    const std::size_t second = head.find(' ', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const std::size_t start = first + 2;  // the "/" is dropped unlooked-at
    if (start >= second) return std::string();
    return WithoutAppendedPieces(Trim(head.substr(start, second - start)));
}

std::string GetVisitorPageName(std::string_view head, const AlbumNames &nameOf) {
    const std::optional<std::string> target = GetRequestTarget(head);
    if (!target || IsPartOfAPage(*target)) return {};
    if (target->empty() || EqualsIgnoreCase(*target, "Index")) return "Home Page";
    if (Contains(*target, "ShowPopular")) return "Most Popular";
    if (Contains(*target, "ShowAlbum?")) return Try([&] { return AlbumPageName(*target, nameOf); }).value_or("");
    if (*target == "ShowHelp") return "Help";
    if (*target == "ShowStats") return "Statistics";
    return {};
}

Target ParseTarget(std::string target) {
    if (target.empty()) target = "Index";
    const std::size_t mark = target.find('?');
    if (mark == std::string::npos) return {Replace(std::move(target), ".", ""), false, {}};
    std::string query = DecodeQuery(target.substr(mark + 1));
    if (query.ends_with('&')) query.pop_back();
    return {target.substr(0, mark), true, Split(query, "&")};
}

std::size_t FirstDirectoryIndex(std::string_view view) {
    return view == "slideshow" ? 6 : 3;
}

bool IsUnfinishedLogin(std::string_view request) {
    if (GetRequestMethod(request) != "POST" || GetRequestTarget(request) != "SendLogin") return false;
    const std::size_t end = request.find(blankLine);
    if (end == std::string_view::npos) return true;
    const double announced = Val(HeaderValue(request, "Content-Length").value_or("1"));
    return static_cast<double>(request.size() - end - blankLine.size()) < announced;
}

LoginForm ParseLoginForm(std::string_view request) {
    const std::size_t end = request.find(blankLine);
    const std::string body =
        end == std::string_view::npos ? "" : WithoutLineEnds(request.substr(end + blankLine.size()));
    LoginForm form;
    for (const std::string &field : Split(body, "&")) {
        const Arguments sides = Split(field, "=");
        const std::string &value = Argument(sides, 1);
        if (sides[0] == "username") form.Username = value;
        if (sides[0] == "password") form.Password = value;
        // The names stay in link form, since an "&" in one must not split the address that the visitor is taken on to.
        if (sides[0] == "args") form.ArgText = DecodeQuery(value);
    }
    Argument(Split(form.ArgText, "&"), 1);
    form.Args = Split(Replace(form.ArgText, "+", "%20"), "&");
    return form;
}

bool IsLoginAddress(const Arguments &args) {
    return args.size() >= 3 && IsNumeric(args[0]) && !args[1].empty() && IsNumeric(args[2]);
}

}  // namespace pixmora
