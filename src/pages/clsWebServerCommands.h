// The pages of the site: one operation for each address.
#pragma once

#include <string>
#include <string_view>

#include "core/site/RequestGrammar.h"
#include "core/site/Response.h"

namespace pixmora {

/// Made at website start, when it reads the templates, and dropped at stop. Each operation puts one answer together,
/// hands it to the socket in one send and returns; the closing is the connection's own. An error that comes out of an
/// operation is answered by its caller. Operations may turn the message loop, so all state is in their locals.
class clsWebServerCommands {
public:
    /// Reads the ten templates from htdocs. A missing one is created empty.
    clsWebServerCommands();

    void genIndex(const Connection &socket) const;
    void genShowGraphic(const Connection &socket, const Arguments &args) const;
    void genShowAlbumMedia(const Connection &socket, const Arguments &args) const;
    void genShowPopular(const Connection &socket, const Arguments &args) const;
    void genShowPicture(const Connection &socket, const Arguments &args) const;
    void genFaviconico(const Connection &socket) const;
    void genShowAlbumIcon(const Connection &socket, const Arguments &args) const;
    void genShowMovie(const Connection &socket, const Arguments &args) const;
    void genShowStats(const Connection &socket) const;
    void genShowDetails(const Connection &socket, const Arguments &args) const;
    void genBlank(const Connection &socket) const;
    void genBorder(const Connection &socket, const Arguments &args) const;
    void genShowAlbumDirList(const Connection &socket, const Arguments &args) const;
    void genShowAlbum(const Connection &socket, const Arguments &args) const;
    void genShowAlbumBottom(const Connection &socket) const;
    void genShowAlbumTop(const Connection &socket) const;
    void genShowLogout(const Connection &socket) const;
    void genShowHelp(const Connection &socket) const;
    /// @param message for the visitor, may be empty
    void genShowLogin(const Connection &socket, const Arguments &args, std::string_view message) const;

    /// The answer to a right login: both cookies and the page that goes on to the album.
    void setLoginCookies(const Connection &socket, std::string_view argText, std::string_view username,
                         std::string_view password) const;

private:
    std::string tplIndex;
    std::string tplShowAlbum;
    std::string tplShowAlbumDirList;
    std::string tplShowAlbumMedia;
    std::string tplShowDetails;
    std::string tplShowHelp;
    std::string tplShowLogin;
    std::string tplShowPopular;
    std::string tplShowStats;
    std::string tplSendLogin;
};

}  // namespace pixmora
