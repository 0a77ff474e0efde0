// What the setup dialog decides: Finish, Cancel, its lists; and its checks of the port, in all their branches, on this
// computer's own sockets.
#include "setup/rules/SetupDialog.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/site/ListenRefusal.h"
#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "setup/rules/Autostart.h"
#include "setup/rules/PortCheck.h"
#include "support/ErrorOf.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

const std::string firewallQuestion = "You haven't run the Firewall Check yet!...";

class SetupDialog : public SetupFixture {
protected:
    SetupDialog() { fields.ServiceBase = "http://service.example"; }

    bool Finish() {
        SetupHands hands;
        hands.CountAlbums = Give(albums);
        hands.IsRunOnStartTicked = [this] {
            return fields.RunOnStart == "1";
        };
        hands.TickRunOnStart = [this] {
            fields.RunOnStart = "1";
        };
        hands.RunFirewallCheck = [this] {
            did += "check ";
            return !isClosedByCheck;
        };
        hands.CreateAlbum = [this] {
            did += "create ";
        };
        hands.Fields = Give(fields);
        return FinishSetup(hands, "/opt/pixmora");
    }
    static std::string Stored(const char *key) { return GetSetting("Setup", key, "(none)"); }

    SetupFields fields = LoadSetupFields();
    int albums = 2;
    bool isClosedByCheck = false;
    std::string did;
};

TEST_F(SetupDialog, TheFirstFinishRemindsOfEverythingInOrder) {
    fields.RunOnStart = "1";
    isClosedByCheck = true;
    Owner.ExpectMessage(firewallQuestion, CriticalQuestion, AnswerYes);
    EXPECT_FALSE(Finish());
    EXPECT_EQ(Stored("ServerTitle"), "(none)") << "a check that outlives the dialog saves nothing";
    isClosedByCheck = false;
    DeleteSetting("Records", "FirewallCheckWarning");
    fields.RunOnStart = "0";
    Owner.ExpectMessage("You have decided not to run Pixmora! when Windows starts!...", CriticalQuestion, AnswerYes);
    Owner.ExpectMessage(firewallQuestion, CriticalQuestion, AnswerYes);
    Owner.ExpectMessage("Just as a reminder, you can edit your albums or add more...", FlagInformation);
    EXPECT_TRUE(Finish());
    EXPECT_EQ(did, "check check ");
    EXPECT_EQ(Stored("RunOnStart") + Stored("RunSetup"), "11");
    EXPECT_EQ(GetSetting("Records", "CreatedAlbum"), "1");
    EXPECT_EQ(Program.Read("config/autostart/pixmora.desktop"), AutostartEntry("/opt/pixmora"));

    fields.RunOnStart = "0";
    EXPECT_TRUE(Finish()) << "no reminder comes twice";
    EXPECT_EQ(Program.Read("config/autostart/pixmora.desktop"), "");
}

TEST_F(SetupDialog, WithoutAlbumsTheOwnerMayCreateOneFirst) {
    fields.ServiceBase = "";
    fields.RunOnStart = "1";
    albums = 0;
    for (const int answer : {AnswerYes, AnswerNo}) {
        Owner.ExpectMessage("You don't have any albums setup!...", CriticalQuestion, answer);
        EXPECT_EQ(Finish(), answer == AnswerNo);
        EXPECT_EQ(did, "create ");
        EXPECT_EQ(IsFirstRun(), answer == AnswerYes) << "nothing is saved before";
    }
    EXPECT_EQ(GetSetting("Records", "CreatedAlbum"), "");
    EXPECT_EQ(GetSetting("Records", "FirewallCheckWarning"), "") << "without a service no check is offered";
}

TEST_F(SetupDialog, WhatIsNoPortAddressOrWishIsNotStored) {
    const std::string badPort = "Invalid Port! Valid ranges are 1 to 65000! Reverting to original value...";
    const std::string badAddress =
        "Invalid Public Address! Enter a host, host:port or web address. Reverting to original value...";
    using Field = std::string SetupFields::*;
    const std::tuple<const char *, Field, std::string, std::string, std::string> rows[] = {
        // key, field, what is typed, what is stored then, what the owner is told
        {"ListenPort", &SetupFields::ListenPort, "1", "1", ""},
        {"ListenPort", &SetupFields::ListenPort, "65000", "65000", ""},
        {"ListenPort", &SetupFields::ListenPort, "8080x", "8080x", ""},
        {"ListenPort", &SetupFields::ListenPort, "0", "8080x", badPort},
        {"ListenPort", &SetupFields::ListenPort, "65001", "8080x", badPort},
        {"ListenPort", &SetupFields::ListenPort, "abc", "8080x", badPort},
        {"PublicAddress", &SetupFields::PublicAddress, "photos.example:8080", "photos.example:8080", ""},
        {"PublicAddress", &SetupFields::PublicAddress, "my <photos>", "photos.example:8080", badAddress},
        {"Style", &SetupFields::Style, "", "Default", ""},
        {"MoreTypes", &SetupFields::MoreTypes, "1", "1", ""},
        {"MoreTypes", &SetupFields::MoreTypes, "0", "(none)", ""},
        {"BrowserCache", &SetupFields::BrowserCache, " 90 ", "90", ""},
        {"BrowserCache", &SetupFields::BrowserCache, "-5", "(none)", ""},
        {"BrowserCache", &SetupFields::BrowserCache, "soon", "(none)", ""},
        {"FilesPerPage", &SetupFields::FilesPerPage, AllFiles, "0", ""},
        {"ServiceBase", &SetupFields::ServiceBase, " photos.example// ", "http://photos.example", ""},
    };
    SaveSetupFields(fields, "/p");
    for (const auto &[key, field, typed, stored, message] : rows) {
        fields = LoadSetupFields();
        fields.*field = typed;
        fields.Welcome = Concat(key, typed);
        fields.Description = "<b>my</b> site";
        if (!message.empty()) Owner.ExpectMessage(message, FlagCritical);
        SaveSetupFields(fields, "/p");
        EXPECT_EQ(Stored(key), stored) << key << " " << typed;
        EXPECT_EQ(Program.Read("welcome.txt"), fields.Welcome) << "the rest is saved";
    }
    EXPECT_EQ(Program.Read("sitedesc.txt"), "my site");
    EXPECT_EQ(LoadSetupFields().BrowserCache, CacheOff);
    EXPECT_EQ(LoadSetupFields().FilesPerPage, AllFiles);
}

TEST_F(SetupDialog, CancelAsksWhereSomethingWouldBeLost) {
    Owner.ExpectMessage("You haven't configured your website yet!...", CriticalQuestion, AnswerNo);
    EXPECT_FALSE(MayCancelSetup(false));
    SaveSetting("Setup", "RunSetup", "1");
    EXPECT_TRUE(MayCancelSetup(false));
    Owner.ExpectMessage("Are you sure you wish to cancel and discard any changes?", CriticalQuestion, AnswerYes);
    EXPECT_TRUE(MayCancelSetup(true));
}

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
            return answer;
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

    std::string port = std::to_string(FreePort());
    std::string fallbackPort = std::to_string(FreePort());
    std::string privateIP = "127.0.0.1";
    std::string answer = "127.0.0.1";
    std::string shown;
    std::string serviceBase = "http://service.example";
    bool isBusy = false;
    bool isConnected = true;
    std::function<void()> whileAsking;
    PortCheck check{Hands()};
};

/// The addresses of the rows: 127.0.0.1 is reached, ::1 isn't, as the check listens on IPv4.
TEST_F(PortChecks, SayWhatTheyFind) {
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "portchecks.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        const std::vector<std::string> row = Split(Replace(Replace(line, "\\r", "\r"), "\\n", "\n"), "\t");
        ASSERT_EQ(row.size(), 11U);
        const bool isFirewall = row[0] == "firewall";
        const bool isUsed = row[3] == "used";
        std::optional<ClockSetForTest> clock;
        if (!row[7].empty()) clock.emplace(1000, MakeDate(2004, 3, 1));
        SaveSetting("Setup", "RunFirewallCheck", row[4]);
        DeleteSetting("Records", "FirewallCheck");
        isConnected = row[1] != "offline";
        serviceBase = row[1] == "no service" ? "" : "http://service.example";
        answer = row[1];
        privateIP = row[2];
        const std::string before = row[3] == "70000" ? row[3] : std::to_string(FreePort());
        port = before;
        const auto other = isUsed ? Occupy() : nullptr;
        const int flags = row[5] == "critical"      ? FlagCritical
                          : row[5] == "information" ? FlagInformation
                                                    : CriticalQuestion;
        Owner.ExpectMessage(Replace(row[10], "{port}", port), flags, row[6].empty() ? AnswerOk : AnswerYes);
        if (!row[6].empty()) Owner.ExpectBrowser("http://service.example/" + row[6] + ".php");
        whileAsking = [&] {
            EXPECT_EQ(IsPortOpen(), isUsed || !isFirewall) << "the port check listens before it asks";
        };
        isFirewall ? check.CheckFirewall() : check.CheckPort();
        EXPECT_EQ(port, row[9].empty() ? before : row[9]);
        EXPECT_EQ(GetSetting("Setup", "RunFirewallCheck"), row[8]);
        const bool isReached = isFirewall && row[10].starts_with("Congratulations");
        EXPECT_EQ(GetSetting("Records", "FirewallCheck"), isReached ? "Pass" : "");
        EXPECT_EQ(clock ? std::to_string(GetTickCount() - 1000) : "", row[7]);
        EXPECT_FALSE(isBusy);
        port = row[9].empty() ? before : fallbackPort;
        const bool isGivenBack = row[3] == "free" && !clock;
        EXPECT_TRUE(!isGivenBack || !IsPortOpen()) << "given back";
        ++rows;
    }
    EXPECT_EQ(rows, 17);
    EXPECT_EQ(shown, "127.0.0.1");
}

TEST_F(PortChecks, AMissingRightIsToldApartFromAPortInUse) {
    const std::string refusal =
        "You have no right to listen on port 80! This computer keeps the ports up to 1023 for its administrator. "
        "Please choose a port above 1023, such as 8080.";
    EXPECT_EQ(ListenRefusal(RunTimeError(ErrorNumber::PermissionDenied), 80, "Please"), refusal);
    if (std::stoi(ReadBinaryFile("\\proc\\sys\\net\\ipv4\\ip_unprivileged_port_start")) <= 80) {
        GTEST_SKIP() << "this machine lets everybody listen on port 80";
    }
    const bool isAdministrator = geteuid() == 0 && seteuid(65534) == 0;  // without those rights, whoever runs the tests
    const std::string proposed = ProposedPort();
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

}  // namespace
}  // namespace pixmora
