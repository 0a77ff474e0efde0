// The templates behind the pages.
#include "pages/clsWebServerCommands.h"

#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

std::string ReadTemplate(std::string_view page) {
    return ReadBinaryFile(App::HtdocsPath(Concat(page, ".tpl")));
}

}  // namespace

clsWebServerCommands::clsWebServerCommands() {
    tplIndex = ReadTemplate("Index");
    tplShowAlbum = ReadTemplate("ShowAlbum");
    tplShowAlbumDirList = ReadTemplate("ShowAlbumDirList");
    tplShowAlbumMedia = ReadTemplate("ShowAlbumMedia");
    tplShowDetails = ReadTemplate("ShowDetails");
    tplShowHelp = ReadTemplate("ShowHelp");
    tplShowPopular = ReadTemplate("ShowPopular");
    tplShowLogin = ReadTemplate("ShowLogin");
    tplShowStats = ReadTemplate("ShowStats");
    tplSendLogin = ReadTemplate("SendLogin");
}

}  // namespace pixmora
