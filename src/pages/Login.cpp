// clsWebServerCommands.h: the login page, and the answer to a right login.
#include "core/site/Globals.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/Text.h"

namespace pixmora {

void clsWebServerCommands::genShowLogin(const Connection &socket, const Arguments &args,
                                        std::string_view message) const {
    SendPage(socket, tplShowLogin,
             {{"{FORM_ARGS}", Join(args, "&")},
              {"{MESSAGE_TO_VISITOR}", std::string(message)},
              {"{STYLE_SHEET}", gStyleSheet},
              {"{SERVER_TITLE}", gServerTitle},
              {"{AUTHOR}", gAuthor},
              {"{FOOTER}", MakeFooter()}});
}

void clsWebServerCommands::setLoginCookies(const Connection &socket, std::string_view argText,
                                           std::string_view username, std::string_view password) const {
    // Without path and expiry, so that closing the browser is what logs a visitor out.
    std::string head = Concat(WriteResponseHead("text/html", false), "Set-Cookie: ms_username=", username, CrLf,
                              "Set-Cookie: password=", password, CrLf, CrLf);
    SendIgnoringErrors(socket, FillAll(std::move(head), tplSendLogin,
                                       {{"{STYLE_SHEET}", gStyleSheet},
                                        {"{SERVER_TITLE}", gServerTitle},
                                        {"{FORM_ARGS}", std::string(argText)}}));
}

}  // namespace pixmora
