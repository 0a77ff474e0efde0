// The machine's own address, the links that carry the site's, and the port that the home's router leads here.
#include "outside/Address.h"

#include <atomic>

#include "OutsideFixture.h"
#include "outside/PortMapping.h"
#include "store/Settings.h"
#include "support/Client.h"
#include "support/ScriptedOwner.h"

namespace pixmora {

using test::TurnUntil;

namespace {

/// A router that answers what it is told to, on the asking thread.
struct PlayedRouter {
    RouterReply Reply;
    std::atomic<int> Opened = 0;
    std::atomic<int> Closed = 0;
};

struct PlayedProtocols : RouterProtocols {
    explicit PlayedProtocols(PlayedRouter &router) : Router(router) {}
    RouterReply Open(int) override {
        ++Router.Opened;
        return Router.Reply;
    }
    void Close() override { ++Router.Closed; }

    PlayedRouter &Router;
};

}  // namespace

class WebsiteAddress : public OutsideFixture {
protected:
    WebsiteAddress() {
        SaveSetting("Setup", "ListenAddress", "192.0.2.7");
        gSystray->wnskListen->LocalPort = 8080;
    }
};

class PortMapping : public WebsiteAddress {
protected:
    PortMapping() {
        SaveSetting("Setup", "PortMapping", "1");
        gWebsiteStarted = true;
        SetRouterProtocols([this] { return std::make_unique<PlayedProtocols>(router); });
    }
    ~PortMapping() override {
        SetRouterProtocols(nullptr);
        gSystray->RouterPort = {};
        gWebsiteStarted = false;
    }
    static void Open() {
        OpenRouterPort([] { return false; });
    }
    PlayedRouter router;
    ScriptedOwner owner;
};

TEST(LocalIP, IsTheHostTablesUnlessThatIsLoopback) {
    using Addresses = std::vector<std::string>;
    const Addresses cards = {"10.0.0.5", "192.168.1.5"};
    EXPECT_EQ(GetLocalIP({"192.168.1.5", "10.0.0.5"}, cards), "192.168.1.5");
    EXPECT_EQ(GetLocalIP(Addresses{"127.0.1.1"}, cards), "10.0.0.5");
    EXPECT_EQ(GetLocalIP(Addresses{"127.0.1.1"}, {}), "127.0.1.1");
    EXPECT_EQ(GetLocalIP({}, {}), "");
}

TEST_F(WebsiteAddress, IsTheBestThatIsKnown) {
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

TEST_F(PortMapping, GivesTheSiteItsAddressOrTellsWhyNot) {
    const std::string own = "http://192.0.2.7:8080";
    const std::tuple<RouterReply, const char *, std::string> cases[] = {
        {{RouterOutcome::Opened, "203.0.113.9", 40080, ""}, "", "http://203.0.113.9:40080"},
        {{RouterOutcome::Opened, "100.64.1.2", 8080, ""},
         "Your router has opened port 8080, but its own address, 100.64.1.2, is a private one: there is another...",
         own},
        {{RouterOutcome::Refused, "203.0.113.9", 0, "Action not authorized"},
         "Your router has refused to open port 8080 (Action not authorized). Please allow it in its settings, or...",
         own},
        {{RouterOutcome::NoRouter, "", 0, ""},
         "No router has answered the request to open port 8080. If there...",
         own},
    };
    for (const auto &[reply, trouble, address] : cases) {
        router.Reply = reply;
        if (*trouble != 0) owner.ExpectNotice(trouble);
        Open();
        EXPECT_EQ(gWebsiteAddress, address) << trouble;
        EXPECT_TRUE(owner.IsDone()) << trouble;
    }
    SaveSetting("Setup", "PortMapping", "0");
    const int asked = router.Opened;
    Open();
    EXPECT_EQ(router.Opened, asked) << "unless the owner wants it";
}

TEST_F(PortMapping, IsRenewedAndTakenBack) {
    router.Reply = {RouterOutcome::Opened, "203.0.113.9", 8080, ""};
    Open();
    SetClock();
    gSystray->RouterPort.AskedTick = clockStart;
    clock->Advance(RouterLease / 2 * 1000 - 1);
    RenewRouterPort();
    EXPECT_EQ(router.Opened, 1);
    clock->Advance(1);
    router.Reply.OuterAddress = "203.0.113.10";
    RenewRouterPort();
    EXPECT_TRUE(TurnUntil([] { return gWebsiteAddress == "http://203.0.113.10:8080"; })) << "the provider's new one";
    SaveSetting("Setup", "ListenAddress", "192.0.2.8");
    router.Reply = {RouterOutcome::Refused, "203.0.113.9", 0, ""};
    owner.ExpectNotice("Your router has refused to open port 8080. Please allow it in its settings, or...");
    RenewRouterPort();
    EXPECT_TRUE(TurnUntil([this] { return owner.IsDone(); })) << "the machine has moved";
    clock->Advance(RouterLease / 2 * 1000);
    RenewRouterPort();
    EXPECT_TRUE(TurnUntil([this] { return router.Opened == 4 && !gSystray->RouterPort.IsAsked; })) << "told once";

    gSystray->RouterPort.Address = "http://203.0.113.10:8080";
    CloseRouterPort();
    EXPECT_TRUE(TurnUntil([this] { return router.Closed == 1; }));
    EXPECT_EQ(BestWebsiteAddress(), "http://192.0.2.8:8080");
    RenewRouterPort();
    DoEvents();
    EXPECT_EQ(router.Opened, 4) << "not after a stop";
}

}  // namespace pixmora
