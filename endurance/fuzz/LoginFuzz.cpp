// The cookie and the login's body, and the statement that a login asks the database with.
#include "Fuzz.h"
#include "core/site/RequestGrammar.h"
#include "platform/database/Database.h"
#include "platform/database/StatementTranslator.h"
#include "platform/runtime/Text.h"

namespace pixmora {
namespace {

void CheckCookie(std::string_view request) {
    const auto username = ResultOf([&] { return GetCookieUsername(request); });
    if (!username) return;
    REQUIRE(HoldsNone(*username, ";=") && Contains(request, *username));
    REQUIRE(!Contains(*username, "\r\n\r\n"));
}

/// What the login asks: whatever was sent, it is two compares with two literals, or no statement at all.
void CheckStatement(const LoginForm &form) {
    const auto statement = ResultOf([&] {
        return TranslateSelect("SELECT * FROM Users WHERE Username=" + QuotedText(form.Username) +
                               " and Password=" + QuotedText(form.Password));
    });
    const std::string both = form.Username + form.Password;
    REQUIRE(statement.has_value() == HoldsNone(both, std::string_view("'\0", 2)));
    if (!statement) return;
    REQUIRE(statement->Where.Sql == R"("Username" COLLATE TEXTS = ? AND "Password" COLLATE TEXTS = ? )");
    REQUIRE(statement->Where.Literals == (std::vector<FieldValue>{form.Username, form.Password}));
}

void CheckForm(std::string_view request) {
    const auto form = ResultOf([&] { return ParseLoginForm(request); });
    if (!form) return;
    // Both go into the answer's head as they are.
    REQUIRE(HoldsNone(form->Username, "&=\r\n") && HoldsNone(form->Password, "&=\r\n"));
    REQUIRE(form->Args.size() >= 2 && Join(form->Args, "&").size() >= form->ArgText.size());
    for (const std::string &argument : form->Args) {
        REQUIRE(HoldsNone(argument, "&+"));
        ResultOf([&] { return DecodeLinkPart(argument); });
    }
    IsLoginAddress(form->Args);
    CheckStatement(*form);
}

}  // namespace

void CheckInput(std::string_view text) {
    CheckCookie(text);
    CheckForm(text);
    CheckForm("POST /SendLogin HTTP/1.0\r\n\r\nargs=1%26thumbs%261&" + std::string(text));
}

}  // namespace pixmora
