// The checks of the port, in all their branches, on this computer's own sockets.
#include "platform/sockets/Hosts.h"
#include "setup/rules/PortCheck.h"

#include <unistd.h>

#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "setup/rules/InternetState.h"
#include "support/ErrorOf.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

constexpr const char *own = "127.0.0.1";
const std::string unreachable = "::1";  // as the check listens on IPv4

const std::string reachedText =
    "Congratulations! Your computer has successfully received our request.\r\n\r\nThis usually indicates that your "
    "friends will be able to see your website with no problem.";
const std::string noLuckText =
    "Your private and public IP addresses are the same but your computer did not receive our request. This usually "
    "indicates your friends will not be able to connect to your website. Your Internet Service Provider or firewall "
    "may block incoming traffic to certain ports on your computer. Please try changing your listening port in Port "
    "Setup.\r\n\r\nWould you like to read more on this?";

const std::string noServiceText =
    "We can't contact our servers to validate your IP Address!\r\n\r\nIf you are sure you're connected to the "
    "Internet, our servers may be down.\r\n\r\nPlease run the test later. For now, try starting your website and ask "
    "a friend to try connecting.";
const std::string routerText = "Your private IP address is 127.0.0.1, but your public IP address is " + unreachable +
                               " ! It appears your computer is on a network behind some sort of router that has not "
                               "been properly configured.\r\n\r\nWould you like to read up on "
                               "properly configuring your router?";

int FreePort() {
    const auto socket = Winsock::Create();
    socket->LocalPort = 0;
    socket->Listen();
    const int port = socket->LocalPort;
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
        hands.ServiceBase = Give(serviceBase);
        return hands;
    }
    /// Another program's socket on the port under test.
    std::shared_ptr<Winsock> Occupy() const {
        auto socket = Winsock::Create();
        socket->LocalPort = std::stoi(port);
        socket->Listen();
        return socket;
    }
    static std::string Ran() { return GetSetting("Setup", "RunFirewallCheck"); }

    std::string port = std::to_string(FreePort());
    std::string fallbackPort = std::to_string(FreePort());
    std::string privateIP = own;
    std::string publicIP = own;
    std::string shown;
    std::string serviceBase = "http://service.example";
    bool isBusy = false;
    bool isConnected = true;
    std::function<void()> whileAsking;
    PortCheck check{Hands()};
};

TEST_F(PortChecks, SayWhatTheyFind) {
    enum class Port { Free, Used, OutOfRange };
    const auto inUse = [this](const std::string &advice) {
        return "There is another application already listening on port " + port + "! " + advice;
    };
    const struct {
        const char *Name;
        void (PortCheck::*Check)();
        std::string PublicIP;  ///< what the service answers, "offline": without Internet
        std::string PrivateIP;
        Port State;
        std::function<std::string()> Message;
        int Flags;
        std::string Page;  ///< opened by the question's Yes
        Tick Waited;
        std::string Ran;
        bool FallsBack;
    } cases[] = {
        {"offline", &PortCheck::CheckFirewall, "offline", own, Port::Free,
         [] { return "We cannot detect a connection to the Internet. Please connect before you run this test."; },
         FlagCritical, "", 0, "", false},
        {"a page in the place of the address", &PortCheck::CheckFirewall, "<html>404 Not Found</html>\n", own,
         Port::Free, [] { return noServiceText; }, FlagCritical, "", 0, "1", false},
        {"no service", &PortCheck::CheckFirewall, "", own, Port::Free, [] { return noServiceText; }, FlagCritical, "",
         0, "1", false},
        {"reached", &PortCheck::CheckFirewall, own + std::string("\r\n"), own, Port::Free, [] { return reachedText; },
         FlagInformation, "", 0, "1", false},
        {"just under eleven seconds, then the next look", &PortCheck::CheckFirewall, unreachable, own, Port::Free,
         [] { return routerText; }, CriticalQuestion, "support_config", 11000, "1", false},
        {"two waits", &PortCheck::CheckFirewall, unreachable, unreachable, Port::Free, [] { return noLuckText; },
         CriticalQuestion, "support_noluck", 22000, "1", true},
        {"in use", &PortCheck::CheckFirewall, own, own, Port::Used, [] { return reachedText; }, FlagInformation, "", 0,
         "1", true},
        {"port offline", &PortCheck::CheckPort, "offline", own, Port::Free,
         [] { return "We cannot detect a connection to the Internet. Please connect before you run Port Check."; },
         FlagCritical, "", 0, "", false},
        {"port without service", &PortCheck::CheckPort, "", own, Port::Free,
         [] { return "We were unable to contact our servers! Please try again later."; }, FlagCritical, "", 0, "1",
         false},
        {"port passes", &PortCheck::CheckPort, own, own, Port::Free,
         [] {
             return "Congratulations! Your computer successfully received our request. This indicates that your "
                    "friends will be able to see your website.";
         },
         FlagInformation, "", 0, "1", false},
        {"port fails", &PortCheck::CheckPort, unreachable, own, Port::Free,
         [] {
             return "Your computer did not receive our request! This indicates your friends will not be able to "
                    "connect to your website.\r\n\r\nIf you have properly setup your firewall or router, please try "
                    "changing the listening port.";
         },
         FlagCritical, "", 11000, "1", false},
        {"port in use", &PortCheck::CheckPort, own, own, Port::Used,
         [inUse] { return inUse("Please choose another port."); }, FlagCritical, "", 0, "1", false},
        {"port out of range", &PortCheck::CheckPort, own, own, Port::OutOfRange,
         [] { return "There is no port 70000! Ports go from 1 to 65535. Please choose another port."; }, FlagCritical,
         "", 0, "1", false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.Name);
        std::optional<ClockSetForTest> clock;
        if (row.Waited > 0) clock.emplace(1000, MakeDate(2004, 3, 1));
        DeleteSetting("Setup", "RunFirewallCheck");
        DeleteSetting("Records", "FirewallCheck");
        const bool isFirewall = row.Check == &PortCheck::CheckFirewall;
        isConnected = row.PublicIP != "offline";
        publicIP = row.PublicIP;
        privateIP = row.PrivateIP;
        port = row.State == Port::OutOfRange ? "70000" : std::to_string(FreePort());
        const std::string before = port;
        const auto other = row.State == Port::Used ? Occupy() : nullptr;
        Owner.ExpectMessage(row.Message(), row.Flags, row.Page.empty() ? AnswerOk : AnswerYes);
        if (!row.Page.empty()) Owner.ExpectBrowser("http://service.example/" + row.Page + ".php");
        whileAsking = [&] {
            if (row.State != Port::Free) return;
            const bool isOpen = ErrorOf([this] { Occupy(); }) != ErrorNumber{};
            EXPECT_EQ(isOpen, !isFirewall) << "the port check listens before it asks";
        };
        (check.*row.Check)();
        EXPECT_EQ(port, row.FallsBack ? "8080" : before);
        EXPECT_EQ(Ran(), row.Ran);
        EXPECT_EQ(GetSetting("Records", "FirewallCheck"), row.Message() == reachedText ? "Pass" : "");
        if (clock) {
            EXPECT_EQ(GetTickCount() - 1000, row.Waited);
        }
        EXPECT_FALSE(isBusy);
        const bool isGivenBack = row.FallsBack && row.Message() == reachedText;
        port = fallbackPort;
        if (isGivenBack) {
            EXPECT_NO_THROW(Occupy());
        }
    }
    EXPECT_EQ(shown, own);
    SaveSetting("Setup", "RunFirewallCheck", "1");
    const auto other = Occupy();
    Owner.ExpectMessage(inUse("Please go to Port Setup and choose another port."), FlagCritical);
    check.CheckFirewall();
}

TEST_F(PortChecks, WithoutAServiceAllThatCanBeKnownHereIsTold) {
    serviceBase = "";
    const std::string isFree = "Port " + port + " is free, and this computer may listen on it.\r\n\r\nIts address ";
    const std::string askAFriend =
        "\r\n\r\nWhether it works can only be seen from outside: ask a friend to try connecting.";
    privateIP = "192.168.1.5";
    for (const auto run : {&PortCheck::CheckFirewall, &PortCheck::CheckPort}) {
        Owner.ExpectMessage(isFree +
                                "192.168.1.5 is a private one, which only computers on your own network can reach. To "
                                "let your friends in, open the page of your router in your browser, look for \"port "
                                "forwarding\", and forward TCP port " +
                                port + " to 192.168.1.5. Your friends then need your router's public address." +
                                askAFriend,
                            FlagInformation);
        (check.*run)();
    }
    EXPECT_EQ(Ran() + GetSetting("Records", "FirewallCheck"), "1");
    privateIP = "198.51.100.7";
    Owner.ExpectMessage(isFree +
                            "198.51.100.7 is a public one. If a firewall keeps your friends away, allow incoming TCP "
                            "connections on port " +
                            port + "." + askAFriend,
                        FlagInformation);
    check.CheckFirewall();
    privateIP = own;
    Owner.ExpectMessage("This computer has no address on a network, so nobody else can reach your website.",
                        FlagCritical);
    check.CheckFirewall();
    const auto other = Occupy();
    Owner.ExpectMessage("There is another application already listening on port " + port +
                            "! Please go to Port Setup and choose another port.",
                        FlagCritical);
    check.CheckFirewall();
}

/// Without the administrator's rights, whoever runs the tests.
class OrdinaryUser {
public:
    OrdinaryUser() { isChanged_ = geteuid() == 0 && seteuid(65534) == 0; }
    ~OrdinaryUser() {
        if (isChanged_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    bool isChanged_ = false;
};

TEST_F(PortChecks, AMissingRightIsToldApartFromAPortInUse) {
    if (std::stoi(ReadBinaryFile("\\proc\\sys\\net\\ipv4\\ip_unprivileged_port_start")) <= 80) {
        GTEST_SKIP() << "this machine lets everybody listen on port 80";
    }
    std::string proposed;
    serviceBase = "";
    port = "80";
    {
        const OrdinaryUser user;
        proposed = ProposedPort();
        Owner.ExpectMessage(
            "You have no right to listen on port 80! This computer keeps the ports up to 1023 for its administrator. "
            "Please choose a port above 1023, such as 8080.",
            FlagCritical);
        check.CheckPort();
    }
    EXPECT_EQ(proposed, "8080");
}

TEST(PrivateAddresses, AreThoseOfOwnNetworks) {
    for (const char *address : {"10.1.2.3", "172.16.0.1", "172.31.9.9", "192.168.1.5", "169.254.1.1", "100.64.0.1"}) {
        EXPECT_TRUE(IsPrivateAddress(address)) << address;
    }
    for (const char *address : {"172.32.0.1", "192.169.1.1", "100.128.0.1", "8.8.8.8", "", "ten"}) {
        EXPECT_FALSE(IsPrivateAddress(address)) << address;
    }
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
