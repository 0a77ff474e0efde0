// The checks of the port, in all their branches, on this computer's own sockets.
#include "setup/rules/PortCheck.h"

#include <unistd.h>

#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/sockets/Hosts.h"
#include "setup/rules/InternetState.h"
#include "support/ErrorOf.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

constexpr const char *own = "127.0.0.1";
constexpr const char *unreachable = "::1";  // as the check listens on IPv4

int FreePort() {
    const auto socket = Winsock::Create();
    socket->LocalPort = 0;
    socket->Listen();
    return socket->LocalPort;
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
    bool IsPortOpen() const {
        return ErrorOf([this] { Occupy(); }) != ErrorNumber{};
    }
    void ExpectInUse(const std::string &advice) {
        Owner.ExpectMessage("There is another application already listening on port " + port + "! " + advice,
                            FlagCritical);
    }

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
    const auto firewall = &PortCheck::CheckFirewall;
    const auto portCheck = &PortCheck::CheckPort;
    const struct {
        void (PortCheck::*Check)();
        std::string PublicIP;  ///< what the service answers, "offline": without Internet
        std::string Message;
        int Flags;
        std::string Page = {};  ///< opened by the question's Yes
        Tick Waited = 0;
        bool FallsBack = false;
        bool IsUsed = false;  ///< the port, by another program
        std::string PrivateIP = own;
    } cases[] = {
        {firewall, "offline", "We cannot detect a connection to the Internet. Please connect before you run this test.",
         FlagCritical},
        {firewall, "<html>404 Not Found</html>\n",
         "We can't contact our servers to validate your IP Address!\r\n\r\nIf you are sure you're connected to the "
         "Internet, our servers may be down.\r\n\r\nPlease run the test later. For now, try starting your website and "
         "ask a friend to try connecting.",
         FlagCritical},
        {firewall, own + std::string("\r\n"),
         "Congratulations! Your computer has successfully received our request.\r\n\r\nThis usually indicates that "
         "your friends will be able to see your website with no problem.",
         FlagInformation},
        // Just under eleven seconds, then the next look.
        {firewall, unreachable,
         "Your private IP address is 127.0.0.1, but your public IP address is ::1 ! It appears your computer is on a "
         "network behind some sort of router that has not been properly configured.\r\n\r\nWould you like to read up "
         "on properly configuring your router?",
         CriticalQuestion, "support_config", 11000},
        {firewall, unreachable,
         "Your private and public IP addresses are the same but your computer did not receive our request. This "
         "usually indicates your friends will not be able to connect to your website. Your Internet Service Provider "
         "or firewall may block incoming traffic to certain ports on your computer. Please try changing your listening "
         "port in Port Setup.\r\n\r\nWould you like to read more on this?",
         CriticalQuestion, "support_noluck", 22000, true, false, unreachable},
        {firewall, own, "Congratulations! Your computer has...", FlagInformation, "", 0, true, true},
        {portCheck, "offline",
         "We cannot detect a connection to the Internet. Please connect before you run Port Check.", FlagCritical},
        {portCheck, "", "We were unable to contact our servers! Please try again later.", FlagCritical},
        {portCheck, own,
         "Congratulations! Your computer successfully received our request. This indicates that your friends will be "
         "able to see your website.",
         FlagInformation},
        {portCheck, unreachable,
         "Your computer did not receive our request! This indicates your friends will not be able to connect to your "
         "website.\r\n\r\nIf you have properly setup your firewall or router, please try changing the listening port.",
         FlagCritical, "", 11000},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.Message);
        std::optional<ClockSetForTest> clock;
        if (row.Waited > 0) clock.emplace(1000, MakeDate(2004, 3, 1));
        DeleteSetting("Setup", "RunFirewallCheck");
        DeleteSetting("Records", "FirewallCheck");
        isConnected = row.PublicIP != "offline";
        publicIP = row.PublicIP;
        privateIP = row.PrivateIP;
        port = std::to_string(FreePort());
        const std::string before = port;
        const auto other = row.IsUsed ? Occupy() : nullptr;
        Owner.ExpectMessage(row.Message, row.Flags, row.Page.empty() ? AnswerOk : AnswerYes);
        if (!row.Page.empty()) Owner.ExpectBrowser("http://service.example/" + row.Page + ".php");
        whileAsking = [&] {
            EXPECT_EQ(IsPortOpen(), row.IsUsed || row.Check == portCheck) << "the port check listens before it asks";
        };
        (check.*row.Check)();
        EXPECT_EQ(port, row.FallsBack ? "8080" : before);
        EXPECT_EQ(GetSetting("Setup", "RunFirewallCheck"), isConnected ? "1" : "");
        const bool isReached = row.Check == firewall && row.Flags == FlagInformation;
        EXPECT_EQ(GetSetting("Records", "FirewallCheck"), isReached ? "Pass" : "");
        if (clock) {
            EXPECT_EQ(GetTickCount() - 1000, row.Waited);
        }
        EXPECT_FALSE(isBusy);
        if (row.FallsBack) port = fallbackPort;
        if (isReached) {
            EXPECT_FALSE(IsPortOpen()) << "given back";
        }
    }
    EXPECT_EQ(shown, own);
    whileAsking = {};
    port = std::to_string(FreePort());
    const auto other = Occupy();
    ExpectInUse("Please go to Port Setup and choose another port.");
    check.CheckFirewall();
    ExpectInUse("Please choose another port.");
    check.CheckPort();
    EXPECT_FALSE(isBusy);
    port = "70000";
    Owner.ExpectMessage("There is no port 70000! Ports go from 1 to 65535. Please choose another port.", FlagCritical);
    check.CheckPort();
}

TEST_F(PortChecks, WithoutAServiceAllThatCanBeKnownHereIsTold) {
    serviceBase = "";
    const std::string isFree = "Port " + port + " is free, and this computer may listen on it.\r\n\r\nIts address ";
    const std::string askAFriend =
        "\r\n\r\nWhether it works can only be seen from outside: ask a friend to try connecting.";
    const std::pair<const char *, std::string> addresses[] = {
        {"192.168.1.5",
         "is a private one, which only computers on your own network can reach. To let your friends in, open the page "
         "of your router in your browser, look for \"port forwarding\", and forward TCP port " +
             port + " to 192.168.1.5. Your friends then need your router's public address."},
        {"198.51.100.7",
         "is a public one. If a firewall keeps your friends away, allow incoming TCP connections on port " + port +
             "."},
    };
    for (const auto &[address, words] : addresses) {
        privateIP = address;
        Owner.ExpectMessage(isFree + address + " " + words + askAFriend, FlagInformation);
        check.CheckFirewall();
    }
    EXPECT_EQ(GetSetting("Setup", "RunFirewallCheck") + GetSetting("Records", "FirewallCheck"), "1");
    privateIP = own;
    Owner.ExpectMessage("This computer has no address on a network, so nobody else can reach your website.",
                        FlagCritical);
    check.CheckPort();
    const auto other = Occupy();
    ExpectInUse("Please go to Port Setup and choose another port.");
    check.CheckFirewall();
}

TEST_F(PortChecks, AMissingRightIsToldApartFromAPortInUse) {
    if (std::stoi(ReadBinaryFile("\\proc\\sys\\net\\ipv4\\ip_unprivileged_port_start")) <= 80) {
        GTEST_SKIP() << "this machine lets everybody listen on port 80";
    }
    serviceBase = "";
    port = "80";
    Owner.ExpectMessage(
        "You have no right to listen on port 80! This computer keeps the ports up to 1023 for its administrator. "
        "Please choose a port above 1023, such as 8080.",
        FlagCritical);
    const bool isAdministrator = geteuid() == 0 && seteuid(65534) == 0;  // without those rights, whoever runs the tests
    const std::string proposed = ProposedPort();
    check.CheckPort();
    if (isAdministrator) {
        ASSERT_EQ(seteuid(0), 0);
    }
    EXPECT_EQ(proposed, "8080");
}

TEST_F(PortChecks, AnAbandonedCheckEndsWithoutAWord) {
    whileAsking = [this] {
        check.Abandon();
    };
    check.CheckFirewall();
    EXPECT_EQ(shown + GetSetting("Setup", "RunFirewallCheck"), "...");
    check.CheckPort();
    EXPECT_TRUE(check.IsAbandoned());
}

TEST(PrivateAddresses, AreThoseOfOwnNetworks) {
    for (const char *address : {"10.1.2.3", "172.16.0.1", "172.31.9.9", "192.168.1.5", "169.254.1.1", "100.64.0.1"})
        EXPECT_TRUE(IsPrivateAddress(address)) << address;
    for (const char *address : {"172.32.0.1", "192.169.1.1", "100.128.0.1", "8.8.8.8", "", "ten"})
        EXPECT_FALSE(IsPrivateAddress(address)) << address;
}

TEST(InternetState, NeedsADefaultRouteThatIsUp) {
    const std::tuple<const char *, const char *, bool> rows[] = {
        {"default route", "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n", true},
        {"network only", "eth0\t0001A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n", false},
        {"half of all addresses", "tun0\t00000000\t0101A8C0\t0003\t0\t0\t0\t00000080\t0\t0\t0\n", false},
        {"down", "eth0\t00000000\t0101A8C0\t0002\t0\t0\t100\t00000000\t0\t0\t0\n", false},
        {"refusing", "*\t00000000\t00000000\t0201\t0\t0\t100\t00000000\t0\t0\t0\n", false},
        {"loopback", "lo\t00000000\t00000000\t0001\t0\t0\t100\t00000000\t0\t0\t0\n", false},
    };
    const std::string head = "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n";
    for (const auto &[name, route, isConnected] : rows) EXPECT_EQ(HasDefaultRoute(head + route), isConnected) << name;
}

}  // namespace
}  // namespace pixmora
