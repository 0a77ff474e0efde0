// The grammar of requests and links: pure functions of text.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

/// Arguments of an address, 0-based.
using Arguments = std::vector<std::string>;

/// @throws RunTimeError SubscriptOutOfRange for an argument that isn't there
const std::string &Argument(const Arguments &args, std::size_t index);

/// Percent decoder with the program's own symbols, in this order: "%XX" until no "%" is left (so a decoded "%" is
/// decoded again), "+" and "**" to a blank, "*" to "&".
/// @throws RunTimeError TypeMismatch for an escape that isn't hexadecimal
std::string DecodeQuery(std::string text);

/// What stands for a "%" in a link.
inline constexpr std::string_view PercentToken = "<percent>num<percent>";

/// A name made fit for a link, so that any comes back whole: "&", "+", "#" and "%" as tokens that survive the query's
/// decoding, a blank as "%20", and as "<byte>2A<byte>" what browsers would change. Nothing else changes.
std::string EncodeLinkPart(std::string_view text);

/// The reverse, for each name that came in an address. @throws RunTimeError as DecodeQuery
std::string DecodeLinkPart(std::string_view text);

/// The tokens of EncodeLinkPart turned back, without any other decoding.
std::string DecodeLinkTokens(std::string_view text);

/// A text for the central service, which knows the tokens of "&", "+" and "#" only, and "%20".
std::string EncodeServiceText(std::string text);

/// A file's name for visitors: "_" as a blank, cut before the last ".".
std::string FileDisplayName(std::string_view name);

/// What stands behind the header's name in the head, without regard to the name's case (RFC 1945), blanks at both ends
/// cut; nothing when the head has no such line.
std::optional<std::string> HeaderValue(std::string_view head, std::string_view name);

/// The user name of the "ms_username" cookie as it stands, empty when there is none.
/// @throws RunTimeError SubscriptOutOfRange for that cookie without "="
std::string GetCookieUsername(std::string_view head);

/// The last entry of the last "X-Forwarded-For" header, which is the one that the peer itself has written; empty
/// without that header. The header's name may be in any case.
std::string GetForwardedAddress(std::string_view head);

/// The text before the first blank, empty without one.
std::string GetRequestMethod(std::string_view head);

/// What stands between the first two blanks, less its first character (the "/"), trimmed; nothing without both blanks.
/// Words that social networks append to shared links ("&fbclid=...") are left out.
std::optional<std::string> GetRequestTarget(std::string_view head);

/// An album's name by its number. @throws RunTimeError for a number that no album has
using AlbumNames = std::function<std::string(std::int32_t number)>;

/// The page's name for the visitor list, empty for pictures, frames and everything else that is no page of its own.
/// @param nameOf asked for an album's page alone
std::string GetVisitorPageName(std::string_view head, const AlbumNames &nameOf);

/// A request's target taken apart.
struct Target {
    std::string Name;       ///< operation's name without "gen"
    bool HasQuery = false;  ///< a "?" was there: the operation takes arguments
    Arguments Args;
};

/// @param target as GetRequestTarget gives it; empty means "Index". @throws RunTimeError as DecodeQuery
Target ParseTarget(std::string target);

/// The index of the first directory in an album address: 6 in a slide show, else 3.
std::size_t FirstDirectoryIndex(std::string_view view);

/// The fields of a login form, read from the request's body.
struct LoginForm {
    std::string Username;  ///< as it stands, undecoded
    std::string Password;  ///< as it stands, undecoded
    std::string ArgText;   ///< arguments of the address to go on to, "&" between them, names still in link form
    Arguments Args;        ///< ArgText with "+" as "%20", split
};

/// Whether the request is a login with less of a body than its head announces (any at all, where it doesn't say how
/// much), or with an unfinished head.
bool IsUnfinishedLogin(std::string_view request);

/// @throws RunTimeError SubscriptOutOfRange when the argument text has fewer than two pieces or a field has no "="
LoginForm ParseLoginForm(std::string_view request);

/// Whether the arguments are those of a login page's address: album number, view, page, and directories.
bool IsLoginAddress(const Arguments &args);

}  // namespace pixmora
