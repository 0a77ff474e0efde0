// The road from a request's target to its page.
#include "core/Dispatch.h"

#include <map>
#include <memory>
#include <variant>

#include "core/site/Globals.h"
#include "pages/clsWebServerCommands.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

using PlainOperation = void (clsWebServerCommands::*)(const Connection &) const;
using QueryOperation = void (clsWebServerCommands::*)(const Connection &, const Arguments &) const;
using Operation = std::variant<PlainOperation, QueryOperation>;

// Every name that an address can reach, in lower case, with its operation.
// A QueryOperation needs a "?", a PlainOperation has none.
const std::map<std::string, Operation, std::less<>> operations = {
    {"index", &clsWebServerCommands::genIndex},
    {"showgraphic", &clsWebServerCommands::genShowGraphic},
    {"showalbummedia", &clsWebServerCommands::genShowAlbumMedia},
    {"showpopular", &clsWebServerCommands::genShowPopular},
    {"showpicture", &clsWebServerCommands::genShowPicture},
    {"faviconico", &clsWebServerCommands::genFaviconico},
    {"showalbumicon", &clsWebServerCommands::genShowAlbumIcon},
    {"showmovie", &clsWebServerCommands::genShowMovie},
    {"showstats", &clsWebServerCommands::genShowStats},
    {"showdetails", &clsWebServerCommands::genShowDetails},
    {"blank", &clsWebServerCommands::genBlank},
    {"border", &clsWebServerCommands::genBorder},
    {"showalbumdirlist", &clsWebServerCommands::genShowAlbumDirList},
    {"showalbum", &clsWebServerCommands::genShowAlbum},
    {"showalbumbottom", &clsWebServerCommands::genShowAlbumBottom},
    {"showalbumtop", &clsWebServerCommands::genShowAlbumTop},
    {"showlogout", &clsWebServerCommands::genShowLogout},
    {"showhelp", &clsWebServerCommands::genShowHelp},
};

/// The pages, kept alive for this request even if the website stops while it waits.
std::shared_ptr<const clsWebServerCommands> Pages() {
    if (!gWebServerCommands) throw RunTimeError(ErrorNumber::ObjectNotSet);
    return gWebServerCommands;
}

bool IsLogin(std::string_view username, std::string_view password) {
    // Either quote character would break the statement or change it: a login with one fails before there is any.
    constexpr std::string_view forbidden("'\"\0", 3);
    const bool isForbidden = Concat(username, password).find_first_of(forbidden) != std::string::npos;
    if (isForbidden) throw RunTimeError(ErrorNumber::SyntaxError);
    const auto users = gDatabase->OpenRecordset("SELECT Password FROM Users WHERE Username=" + QuotedText(username),
                                                RecordsetType::Snapshot);
    for (; !users->Eof(); users->MoveNext()) {
        if (users->Value("Password") == FieldValue(std::string(password))) return true;
    }
    return false;
}

}  // namespace

void CallOperation(const Connection &socket, const Target &target) {
    const auto pages = Pages();
    const std::string name = LCase(target.Name);
    if (name == "showlogin") {
        // The login page has a message too, so an address reaches it only with the arguments of a login address.
        if (!target.HasQuery || !IsLoginAddress(target.Args)) throw RunTimeError(ErrorNumber::WrongNumberOfArguments);
        pages->genShowLogin(socket, target.Args, "");
        return;
    }
    const auto found = operations.find(name);
    if (found == operations.end()) throw RunTimeError(ErrorNumber::MethodNotFound);
    if (const auto *plain = std::get_if<PlainOperation>(&found->second); plain != nullptr && !target.HasQuery) {
        (*pages.*(*plain))(socket);
    } else if (const auto *query = std::get_if<QueryOperation>(&found->second); query != nullptr && target.HasQuery) {
        (*pages.*(*query))(socket, target.Args);
    } else {
        throw RunTimeError(ErrorNumber::WrongNumberOfArguments);
    }
}

void AnswerLogin(const Connection &socket, std::string_view request) {
    const auto pages = Pages();
    const LoginForm form = ParseLoginForm(request);
    if (IsLogin(form.Username, form.Password)) {
        pages->setLoginCookies(socket, form.ArgText, form.Username, form.Password);
    } else {
        pages->genShowLogin(socket, form.Args, "Invalid username or password!");
    }
}

}  // namespace pixmora
