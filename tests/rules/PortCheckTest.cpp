// The checks of the port, in all their branches, on this computer's own sockets.
#include "setup/rules/PortCheck.h"

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "setup/rules/InternetState.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

constexpr const char *own = "127.0.0.1";
constexpr const char *unreachable = "no address\n";

const std::string reachedText =
    "Congratulations! Your computer has successfully received our request.\r\n\r\nThis usually indicates that your "
    "friends will be able to see your website with no problem.";
const std::string noLuckText =
    "Your private and public IP addresses are the same but your computer did not receive our request. This usually "
    "indicates your friends will not be able to connect to your website. Your Internet Service Provider or firewall "
    "may block incoming traffic to certain ports on your computer. Please try changing your listening port in Port "
    "Setup.\r\n\r\nWould you like to read more on this?";

int FreePort() {
    const auto socket = Winsock::Create();
    socket->SetLocalPort(0);
    socket->Listen();
    const int port = socket->LocalPort();
    socket->Close();
    return port;
}

class PortChecks : public SetupFixture {
protected:
    PortCheckHands Hands() {
        PortCheckHands hands;
        hands.ListenPort = [this] {
            // The fallback's own port may be taken on the machine of the test.
            return port == "8080" ? fallbackPort : port;
        };
        hands.SetListenPort = TakeInto(port);
        hands.PrivateIP = Give(privateIP);
        hands.SetPublicIP = TakeInto(shown);
        hands.SetBusy = TakeInto(isBusy);
        hands.IsConnectedToInternet = Give(isConnected);
        hands.GetWebPage = [this](const std::string &url) {
            EXPECT_EQ(url, "http://service.example/clients/firewall.php");
            EXPECT_TRUE(isBusy);
            if (whileAsking) whileAsking();
            return publicIP;
        };
        hands.ServiceBase = "http://service.example";
        return hands;
    }
    /// Another program's socket on the port under test.
    std::shared_ptr<Winsock> Occupy() const {
        auto socket = Winsock::Create();
        socket->SetLocalPort(std::stoi(port));
        socket->Listen();
        return socket;
    }
    static std::string Ran() { return GetSetting("Setup", "RunFirewallCheck"); }

    std::string port = std::to_string(FreePort());
    std::string fallbackPort = std::to_string(FreePort());
    std::string privateIP = own;
    std::string publicIP = own;
    std::string shown;
    bool isBusy = false;
    bool isConnected = true;
    std::function<void()> whileAsking;
    PortCheck check{Hands()};
};

TEST_F(PortChecks, FirewallWithoutInternetOrService) {
    isConnected = false;
    Owner.ExpectMessage("We cannot detect a connection to the Internet. Please connect before you run this test.",
                        FlagCritical);
    check.CheckFirewall();
    EXPECT_EQ(Ran(), "");
    isConnected = true;
    publicIP = "";
    Owner.ExpectMessage(
        "We can't contact our servers to validate your IP Address!\r\n\r\nIf you are sure you're connected to the "
        "Internet, our servers may be down.\r\n\r\nPlease run the test later. For now, try starting your website and "
        "ask a friend to try connecting.",
        FlagCritical);
    check.CheckFirewall();
    EXPECT_EQ(Ran(), "1");
    EXPECT_FALSE(isBusy);
}

TEST_F(PortChecks, FirewallBehindARouterIsNotTriedAgain) {
    const ClockSetForTest clock(1000, MakeDate(2004, 3, 1));
    publicIP = "127.0.0.1\n";
    Owner.ExpectMessage(
        "Your private IP address is 127.0.0.1, but your public IP address is 127.0.0.1\n ! It appears your computer "
        "is on a network behind some sort of router that has not been properly configured.\r\n\r\nWould you like to "
        "read up on properly configuring your router?",
        CriticalQuestion, AnswerYes);
    Owner.ExpectBrowser("http://service.example/support_config.php");
    const std::string before = port;
    check.CheckFirewall();
    EXPECT_EQ(port, before);
    EXPECT_EQ(Ran(), "1");
    EXPECT_EQ(GetTickCount(), 12000) << "just under eleven seconds, then the next look";
}

TEST_F(PortChecks, FirewallFallsBackOnce) {
    const ClockSetForTest clock(1000, MakeDate(2004, 3, 1));
    privateIP = publicIP = unreachable;
    Owner.ExpectMessage(noLuckText, CriticalQuestion, AnswerYes);
    Owner.ExpectBrowser("http://service.example/support_noluck.php");
    check.CheckFirewall();
    EXPECT_EQ(port, "8080");
    EXPECT_EQ(GetTickCount(), 23000) << "two waits";
    Owner.ExpectMessage(noLuckText, CriticalQuestion, AnswerNo);
    check.CheckFirewall();
    EXPECT_EQ(GetTickCount(), 34000) << "one wait";
}

TEST_F(PortChecks, FirewallOnAPortInUse) {
    const auto other = Occupy();
    Owner.ExpectMessage(reachedText, FlagInformation);
    check.CheckFirewall();
    EXPECT_EQ(port, "8080");
    EXPECT_EQ(shown + GetSetting("Records", "FirewallCheck") + Ran(), "127.0.0.1Pass1");
    port = fallbackPort;
    EXPECT_NO_THROW(Occupy()) << "the port is given back";
    port = std::to_string(other->LocalPort());
    Owner.ExpectMessage("There is another application already listening on port " + port +
                            "! Please go to Port Setup and choose another port.",
                        FlagCritical);
    check.CheckFirewall();
    EXPECT_FALSE(isBusy);
}

TEST_F(PortChecks, PortPassesAndFails) {
    whileAsking = [this] {
        EXPECT_THROW(Occupy(), RunTimeError) << "listens before it asks";
    };
    Owner.ExpectMessage(
        "Congratulations! Your computer successfully received our request. This indicates that your friends will be "
        "able to see your website.",
        FlagInformation);
    check.CheckPort();
    EXPECT_EQ(GetSetting("Records", "FirewallCheck") + Ran() + shown, "1");

    const ClockSetForTest clock(1000, MakeDate(2004, 3, 1));
    publicIP = unreachable;
    Owner.ExpectMessage(
        "Your computer did not receive our request! This indicates your friends will not be able to connect to your "
        "website.\r\n\r\nIf you have properly setup your firewall or router, please try changing the listening port.",
        FlagCritical);
    check.CheckPort();
    EXPECT_FALSE(isBusy);
}

TEST_F(PortChecks, PortWithoutInternetServiceOrPort) {
    isConnected = false;
    Owner.ExpectMessage("We cannot detect a connection to the Internet. Please connect before you run Port Check.",
                        FlagCritical);
    check.CheckPort();
    EXPECT_EQ(Ran(), "");
    isConnected = true;
    publicIP = "";
    Owner.ExpectMessage("We were unable to contact our servers! Please try again later.", FlagCritical);
    check.CheckPort();
    EXPECT_EQ(Ran(), "1");
    const auto other = Occupy();
    Owner.ExpectMessage(
        "There is another application already listening on port " + port + "! Please choose another port.",
        FlagCritical);
    check.CheckPort();
    port = "70000";
    Owner.ExpectMessage("There is another application already listening on port 70000! Please choose another port.",
                        FlagCritical);
    check.CheckPort();
    EXPECT_FALSE(isBusy);
}

TEST_F(PortChecks, AnAbandonedCheckEndsWithoutAWord) {
    whileAsking = [this] {
        check.Abandon();
    };
    check.CheckFirewall();
    EXPECT_EQ(Ran(), "");
    check.CheckPort();
    EXPECT_TRUE(check.IsAbandoned());
}

TEST(InternetState, NeedsADefaultRouteThatIsUp) {
    const std::string head = "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n";
    const std::tuple<const char *, std::string, bool> rows[] = {
        {"default route", "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n", true},
        {"network only", "eth0\t0001A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n", false},
        {"half of all addresses", "tun0\t00000000\t0101A8C0\t0003\t0\t0\t0\t00000080\t0\t0\t0\n", false},
        {"down", "eth0\t00000000\t0101A8C0\t0002\t0\t0\t100\t00000000\t0\t0\t0\n", false},
        {"refusing", "*\t00000000\t00000000\t0201\t0\t0\t100\t00000000\t0\t0\t0\n", false},
        {"loopback", "lo\t00000000\t00000000\t0001\t0\t0\t100\t00000000\t0\t0\t0\n", false},
        {"none", "", false},
    };
    for (const auto &[name, route, isConnected] : rows) EXPECT_EQ(HasDefaultRoute(head + route), isConnected) << name;
}

}  // namespace
}  // namespace pixmora
