// The links of a page, as a browser asks for them.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Text.h"

namespace pixmora::test {

/// What a browser makes of a link before it sends it: bytes that no address may hold become escapes.
inline std::string BrowserTarget(std::string_view link) {
    std::string target;
    for (const char c : link) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F && c != '<' && c != '>' && c != '"') {
            target += c;
        } else {
            std::array<char, 4> escape{};
            std::snprintf(escape.data(), escape.size(), "%%%02X", byte);
            target += escape.data();
        }
    }
    return target;
}

/// The values of the page's href and src attributes and of its scripts' location.href, in the page's order.
inline std::vector<std::string> Links(std::string_view page) {
    std::vector<std::string> links;
    for (std::size_t at = 0; at < page.size(); ++at) {
        const std::string_view rest = page.substr(at);
        for (const std::string_view opening : {"href=\"", "src=\""}) {
            if (!rest.starts_with(opening)) continue;
            const std::string_view value = rest.substr(opening.size());
            links.emplace_back(value.substr(0, value.find('"')));
        }
        constexpr std::string_view script = "location.href='";
        if (!rest.starts_with(script)) continue;
        const std::string_view value = rest.substr(script.size());
        links.push_back(Replace(std::string(value.substr(0, value.find("';"))), "\\'", "'"));
    }
    return links;
}

/// The page's first link that begins so; empty without one.
inline std::string LinkTo(std::string_view page, std::string_view start) {
    for (const std::string &link : Links(page)) {
        if (link.starts_with(start)) return link;
    }
    return {};
}

}  // namespace pixmora::test
