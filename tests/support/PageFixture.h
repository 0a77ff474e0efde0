// A running site whose pages are asked for by their addresses, as a browser does it.
#pragma once

#include <array>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/site/RequestGrammar.h"
#include "support/SiteFixture.h"

namespace pixmora::test {

/// The values of the page's href and src attributes and of its scripts' location.href, in the page's order. Graphics of
/// htdocs are left out.
inline std::vector<std::string> Links(std::string_view page) {
    std::vector<std::string> links;
    for (std::size_t at = 0; at < page.size(); ++at) {
        for (const std::string_view opening : {"href=\"", "src=\"", "location.href='"}) {
            if (!page.substr(at).starts_with(opening)) continue;
            const std::string_view value = page.substr(at + opening.size());
            const std::string_view end = opening.ends_with('"') ? "\"" : "';";
            links.push_back(Replace(std::string(value.substr(0, value.find(end))), "\\'", "'"));
        }
    }
    std::erase_if(links, [](const std::string &link) { return link.starts_with("ShowGraphic"); });
    return links;
}

class PageFixture : public SiteFixture {
protected:
    /// The answer to an address. An album's frameset is passed over: its media page answers.
    std::string Get(std::string_view address, const std::string &user = "", const std::string &from = "127.0.0.1") {
        using Pages = clsWebServerCommands;
        static const std::map<std::string, void (Pages::*)(const Connection &, const Arguments &) const> pages = {
            {"ShowAlbum", &Pages::genShowAlbumMedia},    {"ShowAlbumMedia", &Pages::genShowAlbumMedia},
            {"ShowAlbumIcon", &Pages::genShowAlbumIcon}, {"ShowDetails", &Pages::genShowDetails},
            {"ShowGraphic", &Pages::genShowGraphic},     {"ShowMovie", &Pages::genShowMovie},
            {"ShowPicture", &Pages::genShowPicture},     {"ShowPopular", &Pages::genShowPopular},
        };
        const Target target = ParseTarget(Escaped(address));
        return Answer(
            [&](const Connection &socket) {
                if (PrepareSocket) PrepareSocket(socket);
                (*gWebServerCommands.*pages.at(target.Name))(socket, target.Args);
            },
            user, from);
    }

    std::function<void(const Connection &)> PrepareSocket;  ///< before a page is asked

private:
    /// The bytes that no address may hold as the escapes that a browser makes of them.
    static std::string Escaped(std::string_view address) {
        std::string escaped;
        for (const char c : address) {
            std::array<char, 4> escape{c};
            const auto byte = static_cast<unsigned char>(c);
            if (byte <= 0x20 || byte >= 0x7F || c == '<' || c == '>')
                std::snprintf(escape.data(), escape.size(), "%%%02X", byte);
            escaped += escape.data();
        }
        return escaped;
    }
};

}  // namespace pixmora::test
