// clsWebServerCommands.h: the small frames around an album: title bar, bottom bar, margins, help and log-out.
#include "core/site/Globals.h"
#include "pages/AlbumAddress.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/loop/App.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

void SendFrame(const Connection &socket, std::string_view body) {
    SendIgnoringErrors(socket, Concat(WriteResponseHead("text/html", true), "<html><head><title></title><style>",
                                      gStyleSheet, "</style></head>", body));
}

/// Sends the frameset's address by mail or message, in the form that survives both, and sizes the frameset to its
/// window.
std::string BottomScript() {
    return Replace(R"(<script language="javascript">
<!--
function SendEmail() { 
var str = new String(parent.location.href);
str = str.replace(/&/g, "*");
str = str.replace(/ /g, "**");
str = str.replace(/%20/g, "**");
location.href = "mailto:?subject=Check%20this%20out!&body=Here's%20the%20link:%20" + escape(str);
}
function SendIM() {
var str = new String(parent.location.href);
str = str.replace(/&/g, "*");
str = str.replace(/ /g, "**");
str = str.replace(/%20/g, "**");
location.href = "aim:goim?screenname=&message=Check+out+" + escape(str);
}
if (parent.bigframe.rows) parent.bigframe.rows='*,' + (parent.myHeight - 200) + ',*';
if (parent.midframe.cols) parent.midframe.cols='*,1,' + (parent.myWidth - 100) + ',1,*';
//-->
</script>
</body></html>
)",
                   "\n", CrLf);
}

}  // namespace

void clsWebServerCommands::genBlank(const Connection &socket) const {
    // Deliberate, as in genBorder: no response head.
    SendIgnoringErrors(socket, R"(<html><head><title></title></head><body bgcolor="white"></body></html>)");
}

void clsWebServerCommands::genBorder(const Connection &socket, const Arguments &args) const {
    SendIgnoringErrors(socket, Concat(R"(<html><head><title></title></head><body bgcolor="#)", Argument(args, 0),
                                      R"("></body></html>)"));
}

void clsWebServerCommands::genShowAlbumTop(const Connection &socket) const {
    SendFrame(socket, Concat("<body topmargin=0 leftmargin=0>",
                             R"(<table border=0 cellspacing=0 cellpadding=4 width="100%" height=33><tr>)",
                             R"(<td class="tdTopText" background="ShowGraphic?titlebg.gif">)", App::Title, "</td>",
                             "</tr></table>", "</body></html>"));
}

void clsWebServerCommands::genShowAlbumBottom(const Connection &socket) const {
    SendFrame(socket,
              Concat("<body topmargin=0 leftmargin=0>",
                     R"(<table border=0 cellspacing=0 cellpadding=2 width="100%" height=27><tr>)",
                     R"(<td class="tdBottomText">&nbsp;<img src="ShowGraphic?digitalcam16.gif" align="absmiddle"> )",
                     MakeFooter(), "</td>", R"(<td class="tdBottomText" align="right" valign="top">)",
                     R"(<a href="javascript:SendEmail();"><img src="ShowGraphic?emaillink.gif" border=0 )"
                     R"(alt="Email Link to Someone"></a>&nbsp;)",
                     R"(<a href="javascript:SendIM();"><img src="ShowGraphic?imlink.gif" border=0 )"
                     R"(alt="IM Link to Someone"></a>)",
                     "</td>", "</tr></table>", BottomScript()));
}

void clsWebServerCommands::genShowLogout(const Connection &socket) const {
    SendFrame(socket, Concat("<body topmargin=10><br><br>",
                             R"(<center><font class="lblPictureList"><b>To logout, simply close this browser window.)"
                             "</b></font></center>",
                             "</body></html>"));
}

void clsWebServerCommands::genShowHelp(const Connection &socket) const {
    BookKilobytes(NoAlbum, SendPage(socket, tplShowHelp, {{"{STYLE_SHEET}", gStyleSheet}}));
}

}  // namespace pixmora
