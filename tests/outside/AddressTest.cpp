// The machine's own address, the links that carry the site's, and the away message.
#include "outside/Address.h"

#include <gmock/gmock.h>

#include "OutsideFixture.h"
#include "store/Settings.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

using testing::HasSubstr;

TEST(LocalIP, IsTheHostTablesUnlessThatIsLoopback) {
    using Addresses = std::vector<std::string>;
    const Addresses cards = {"10.0.0.5", "192.168.1.5"};
    EXPECT_EQ(GetLocalIP({"192.168.1.5", "10.0.0.5"}, cards), "192.168.1.5");
    EXPECT_EQ(GetLocalIP(Addresses{"127.0.1.1"}, cards), "10.0.0.5");
    EXPECT_EQ(GetLocalIP(Addresses{"127.0.1.1"}, {}), "127.0.1.1");
    EXPECT_EQ(GetLocalIP({}, {}), "");
}

using WebsiteAddress = OutsideFixture;

TEST_F(WebsiteAddress, IsTheBestThatIsKnown) {
    gSystray->wnskListen->LocalPort = 8080;
    SaveSetting("Setup", "ListenAddress", "192.0.2.7");
    EXPECT_EQ(BestWebsiteAddress(), "http://192.0.2.7:8080");
    gSystray->RouterPort.Address = "http://198.51.100.1:8080";
    EXPECT_EQ(BestWebsiteAddress(), "http://198.51.100.1:8080");
    gSystray->ServiceAddress = "http://203.0.113.7:8080";
    for (const char *wish : {"", "no host"}) {
        SaveSetting("Setup", "PublicAddress", wish);
        EXPECT_EQ(BestWebsiteAddress(), "http://203.0.113.7:8080") << wish;
    }
    SaveSetting("Setup", "PublicAddress", " pictures.example ");
    EXPECT_EQ(BestWebsiteAddress(), "http://pictures.example:8080");
}

using AwayMessage = OutsideFixture;

TEST_F(AwayMessage, StandsAmongTheOwnersOwnWhileTheSiteIsUp) {
    const Registry::Root root = Registry::Root::CurrentUser;
    const std::string messenger = R"(Software\America Online\AOL Instant Messenger (TM)\CurrentVersion)";
    const std::string list = messenger + R"(\Users\ann\IAmGoneList)";
    const auto messages = [&] {
        return Registry::EnumValues(root, list).size();
    };
    const auto ownMessage = [&] {
        return std::get<std::string>(Registry::GetValue(root, list, "GoneMsg0042", std::string()));
    };
    const ScriptedOwner owner;
    gWebsiteAddress = "http://203.0.113.7:8080";
    SaveSetting("Setup", "ServiceBase", "http://central.example");
    InstallAwayMessage();
    RemoveAwayMessage();
    EXPECT_FALSE(Registry::KeyExists(root, "Software\\America Online")) << "no messenger, no list";

    Registry::SetValue(root, messenger + "\\Login", "Screen Name", std::string("ann"));
    for (const char *name : {"GoneMsg0041", "GoneMsg0007", "Other", "GoneMsg99999999999999999999"})
        Registry::SetValue(root, list, name, std::string("gone fishing"));
    for (int start = 0; start < 2; ++start) InstallAwayMessage();
    EXPECT_EQ(messages(), 5U);
    EXPECT_EQ(ownMessage(),
              "<title>Advertise My Picture Website</title><HTML><BODY BGCOLOR=\"#ffffff\"><FONT LANG=\"0\">"
              "<A HREF=\"http://203.0.113.7:8080\">Check out my picture website!</A></FONT><BR><BR>"
              "<FONT LANG=\"0\" SIZE=1><A HREF=\"http://central.example\"></FONT><FONT BACK=\"#ffffff\" SIZE=1>"
              "Powered by Pixmora! Digital Media Software</A></FONT></BODY></HTML>");
    SaveSetting("Setup", "PublicAddress", "http://another/ann");
    RefreshWebsiteAddress();
    EXPECT_EQ(gWebsiteAddress, "http://another/ann");
    EXPECT_THAT(ownMessage(), HasSubstr("http://another/ann"));
    RemoveAwayMessage();
    EXPECT_EQ(ownMessage(), "");
    EXPECT_EQ(messages(), 4U);
}

}  // namespace pixmora
