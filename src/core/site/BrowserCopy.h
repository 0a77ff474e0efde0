// The copies of pictures and graphics that visitors' browsers keep, where the owner allows it.
#pragma once

#include <string>
#include <string_view>

#include "core/site/Connection.h"

namespace pixmora {

/// One answer that a browser may keep for the minutes of the setting BrowserCache. Without the setting nothing is kept,
/// and no head changes.
class BrowserCopy {
public:
    /// One that is never kept.
    BrowserCopy() = default;
    /// @param path of the file that the answer is made of @param form what else decides its bytes, as a width does
    BrowserCopy(std::string_view path, std::string_view form);

    /// Answers "Not Modified" (RFC 1945, RFC 2616 on ETag) when the browser says that it holds these very bytes.
    /// @return whether it did
    bool AnswerIfHeld(const Connection &socket) const;

    /// The answer's whole head.
    std::string Head(std::string_view contentType) const;

private:
    std::string Lines() const;

    int minutes_ = 0;  ///< 0: nothing is kept
    std::string tag_;  ///< with its quotes
};

}  // namespace pixmora
