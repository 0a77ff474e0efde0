// clsWebServerCommands.h: the login page, and the answer to a right login.
#include "core/site/Globals.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/Text.h"

namespace pixmora {

void clsWebServerCommands::genShowLogin(const Connection &socket, const Arguments &args,
                                        std::string_view message) const {
    std::string page = WriteResponseHead("text/html", true) + tplShowLogin;
    Fill(page, "{FORM_ARGS}", Join(args, "&"));
    Fill(page, "{MESSAGE_TO_VISITOR}", message);
    Fill(page, "{STYLE_SHEET}", gStyleSheet);
    Fill(page, "{SERVER_TITLE}", gServerTitle);
    Fill(page, "{AUTHOR}", gAuthor);
    Fill(page, "{FOOTER}", MakeFooter());
    SendIgnoringErrors(socket, page);
}

void clsWebServerCommands::setLoginCookies(const Connection &socket, std::string_view argText,
                                           std::string_view username, std::string_view password) const {
    std::string body = tplSendLogin;
    Fill(body, "{STYLE_SHEET}", gStyleSheet);
    Fill(body, "{SERVER_TITLE}", gServerTitle);
    Fill(body, "{FORM_ARGS}", argText);
    // Without path and expiry, so that closing the browser is what logs a visitor out.
    SendIgnoringErrors(socket, Concat(WriteResponseHead("text/html", false), "Set-Cookie: ms_username=", username, CrLf,
                                      "Set-Cookie: password=", password, CrLf, CrLf, body));
}

}  // namespace pixmora
