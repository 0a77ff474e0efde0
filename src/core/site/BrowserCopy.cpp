#include "core/site/BrowserCopy.h"

#include <algorithm>
#include <functional>

#include "core/site/RequestGrammar.h"
#include "core/site/Response.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr int longestMinutes = 525600;  // a year, the most that RFC 2616 wants told

/// Val, since a slip in the setting must not keep pictures from visitors.
int CacheMinutes() {
    return RoundToLong(std::clamp<double>(Val(GetSetting("Setup", "BrowserCache")), 0, longestMinutes));
}

/// Changes with the file's bytes; empty when there is none.
std::string EntityTag(std::string_view path, std::string_view form) {
    try {
        const FileFacts facts = GetFileFacts(path);
        const std::string identity = Concat(path, "|", form, "|", facts.Size, "|", facts.Inode, "|",
                                            facts.LastWriteTime.time_since_epoch().count());
        return Concat("\"", std::hash<std::string>()(identity), "\"");
    } catch (const RunTimeError &) {
        return {};
    }
}

}  // namespace

BrowserCopy::BrowserCopy(std::string_view path, std::string_view form) : minutes_(CacheMinutes()) {
    if (minutes_ > 0) tag_ = EntityTag(path, form);
    if (tag_.empty()) minutes_ = 0;
}

bool BrowserCopy::AnswerIfHeld(const Connection &socket) const {
    if (minutes_ == 0) return false;
    const std::string held = HeaderValue(socket->Request, "If-None-Match").value_or("");
    // A proxy that packs answers marks their tags as weak; the tag itself stands in its quotes.
    if (held != "*" && !Contains(held, tag_)) return false;
    SendIgnoringErrors(socket, WriteResponseHead("304 Not Modified", "", Lines()));
    return true;
}

std::string BrowserCopy::Head(std::string_view contentType) const {
    return minutes_ == 0 ? WriteResponseHead(contentType, true) : WriteResponseHead("200 OK", contentType, Lines());
}

std::string BrowserCopy::Lines() const {
    return Concat("Cache-Control: private, max-age=", minutes_ * 60, "\r\nETag: ", tag_, "\r\n\r\n");
}

}  // namespace pixmora
