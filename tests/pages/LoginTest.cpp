// Tests of the login page and its cookies.
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

using LoginTest = SiteFixture;

TEST_F(LoginTest, CarriesTheAddressThroughTheForm) {
    const std::string page = Answer([](const Connection &socket) {
        gWebServerCommands->genShowLogin(socket, {"1", "thumbs", "1", "R<amp>and<amp>B", "a b"}, "Not {AUTHOR}!");
    });
    EXPECT_EQ(Filled(page, "FORM_ARGS"), "1&thumbs&1&R<amp>and<amp>B&a b");
    // A value is as open to the placeholders that follow as the template is.
    EXPECT_EQ(Filled(page, "MESSAGE_TO_VISITOR"), "Not Anna O'Neil!");
    EXPECT_EQ(Filled(page, "SERVER_TITLE"), "Anna's Site");
    EXPECT_EQ(gBandwidthSession, 0);
}

TEST_F(LoginTest, SetsBothCookiesByteForByte) {
    EXPECT_EQ(Answer([](const Connection &socket) {
                  gWebServerCommands->setLoginCookies(socket, "1&list&2&a b", "bob", "p%41ss");
              }),
              "HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: text/html\r\n"
              "Pragma: no-cache\r\nSet-Cookie: ms_username=bob\r\nSet-Cookie: password=p%41ss\r\n\r\n"
              "SendLogin\n[FORM_ARGS:1&list&2&a b:FORM_ARGS]\n[SERVER_TITLE:Anna's Site:SERVER_TITLE]\n"
              "[STYLE_SHEET:.style {}:STYLE_SHEET]\n");
}

}  // namespace
}  // namespace pixmora::test
