// The port check and the firewall check.
#include "setup/rules/PortCheck.h"

#include <algorithm>
#include <utility>

#include "core/site/ListenRefusal.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/clsTimer.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/sockets/Hosts.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr int longestWaitSeconds = 10;  // whole ones: the wait is over when the eleventh is
constexpr const char *reached = "good";
constexpr const char *fallbackPort = "8080";
constexpr const char *inPortSetup = "Please go to Port Setup and";

/// Any number: the socket refuses what is no port.
int PortOf(const std::string &text) {
    return static_cast<int>(std::clamp(Val(text), -1.0, 1e9));
}

bool HasRunBefore() {
    return !GetSetting("Setup", "RunFirewallCheck").empty();
}

void NoteRun() {
    SaveSetting("Setup", "RunFirewallCheck", "1");
}

}  // namespace

std::string ProposedPort() {
    const auto socket = Winsock::Create();
    socket->LocalPort = 80;
    try {
        socket->Listen();
    } catch (const RunTimeError &error) {
        if (error.Number() == ErrorNumber::PermissionDenied) return fallbackPort;
    }
    return "80";
}

PortCheck::PortCheck(PortCheckHands hands)
    : hands_(std::move(hands)), wnskPortCheckListen(Winsock::Create()), wnskPortCheckConnect(Winsock::Create()) {
    Winsock *const listener = wnskPortCheckListen.get();
    Winsock *const caller = wnskPortCheckConnect.get();
    // The connection isn't accepted: its arrival is all that matters.
    listener->OnConnectionRequest = [listener](int) {
        listener->Close();
        listener->Tag = reached;
    };
    listener->OnError = [listener](int, const std::string &) {
        listener->Close();
    };
    caller->OnError = [caller](int, const std::string &) {
        caller->Close();
    };
    caller->OnConnect = [caller] {
        caller->Close();
    };
}

PortCheck::~PortCheck() {
    Abandon();
}

void PortCheck::Abandon() {
    isAbandoned_ = true;
    wnskPortCheckListen->Close();
    wnskPortCheckConnect->Close();
}

void PortCheck::PrepareListener() {
    wnskPortCheckListen->Close();
    wnskPortCheckListen->LocalPort = PortOf(hands_.ListenPort());
    wnskPortCheckListen->Tag.clear();
}

bool PortCheck::Listen() {
    refusal_.reset();
    try {
        if (wnskPortCheckListen->LocalPort == 0) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        wnskPortCheckListen->Listen();
    } catch (const RunTimeError &error) {
        refusal_ = error;
    }
    return !refusal_;
}

void PortCheck::ConnectAndWait(const std::string &publicAddress) {
    wnskPortCheckConnect->Close();
    wnskPortCheckConnect->RemoteHost = publicAddress;
    wnskPortCheckConnect->RemotePort = PortOf(hands_.ListenPort());
    wnskPortCheckConnect->Connect();
    clsTimer timer;
    timer.StartTimer();
    const Tick end = TickAfter(GetTickCount(), (longestWaitSeconds + 1) * 1000);
    while (wnskPortCheckListen->Tag.empty() && timer.Elapsed() / 1000 <= longestWaitSeconds && !isAbandoned_) {
        WaitUntilTick(end);
    }
    wnskPortCheckConnect->Close();
}

PortCheck::Probe PortCheck::Run(const std::string &publicAddress) {
    PrepareListener();
    if (!Listen()) return Probe::PortRefused;
    ConnectAndWait(publicAddress);
    return wnskPortCheckListen->Tag.empty() ? Probe::NotReached : Probe::Reached;
}

/// The first failure on this computer, unless a router explains it, is tried again on a port that providers leave open.
PortCheck::Probe PortCheck::RunWithFallback(const std::string &publicAddress) {
    const Probe outcome = Run(publicAddress);
    const bool isBehindRouter = outcome == Probe::NotReached && hands_.PrivateIP() != publicAddress;
    if (isAbandoned_ || outcome == Probe::Reached || isBehindRouter || HasRunBefore()) return outcome;
    NoteRun();
    hands_.SetListenPort(fallbackPort);
    return Run(publicAddress);
}

std::string PortCheck::AskPublicAddress() const {
    return HostIn(hands_.GetWebPage(hands_.ServiceBase() + "/clients/firewall.php"));
}

void PortCheck::CheckFirewall() {
    if (!hands_.IsConnectedToInternet()) {
        ShowMessageBox("We cannot detect a connection to the Internet. Please connect before you run this test.",
                       FlagCritical);
        return;
    }
    if (hands_.ServiceBase().empty()) return CheckHere(inPortSetup);
    hands_.SetBusy(true);
    hands_.SetPublicIP("...");
    const std::string publicAddress = AskPublicAddress();
    if (isAbandoned_) return;
    hands_.SetPublicIP(publicAddress);
    const Probe outcome = publicAddress.empty() ? Probe::NotReached : RunWithFallback(publicAddress);
    if (isAbandoned_) return;
    hands_.SetBusy(false);
    if (outcome == Probe::PortRefused) {
        TellPortRefused(inPortSetup);
        return;
    }
    TellOutcome(publicAddress, outcome);
    NoteRun();
}

void PortCheck::TellPortRefused(const char *place) const {
    ShowMessageBox(ListenRefusal(*refusal_, wnskPortCheckListen->LocalPort, place), FlagCritical);
}

void PortCheck::CheckHere(const char *place) {
    PrepareListener();
    if (!Listen()) return TellPortRefused(place);
    wnskPortCheckListen->Close();
    NoteRun();
    const std::string address = hands_.PrivateIP();
    if (address.empty() || address.starts_with("127.")) {
        ShowMessageBox("This computer has no address on a network, so nobody else can reach your website.",
                       FlagCritical);
        return;
    }
    const std::string port = std::to_string(PortOf(hands_.ListenPort()));
    const std::string free = "Port " + port + " is free, and this computer may listen on it.\r\n\r\n";
    const std::string friends =
        "\r\n\r\nWhether it works can only be seen from outside: ask a friend to try connecting.";
    if (IsPrivateAddress(address)) {
        ShowMessageBox(free + "Its address " + address +
                           " is a private one, which only computers on your own network can reach. To let your friends "
                           "in, open the page of your router in your browser, look for \"port forwarding\", and "
                           "forward TCP port " +
                           port + " to " + address + ". Your friends then need your router's public address." + friends,
                       FlagInformation);
    } else {
        ShowMessageBox(free + "Its address " + address +
                           " is a public one. If a firewall keeps your friends away, allow incoming TCP connections "
                           "on port " +
                           port + "." + friends,
                       FlagInformation);
    }
}

void PortCheck::TellOutcome(const std::string &publicAddress, Probe outcome) const {
    if (publicAddress.empty()) {
        ShowMessageBox(
            "We can't contact our servers to validate your IP Address!\r\n\r\nIf you are sure you're connected to the "
            "Internet, our servers may be down.\r\n\r\nPlease run the test later. For now, try starting your website "
            "and ask a friend to try connecting.",
            FlagCritical);
    } else if (outcome == Probe::Reached) {
        ShowMessageBox(
            "Congratulations! Your computer has successfully received our request.\r\n\r\nThis usually indicates that "
            "your friends will be able to see your website with no problem.",
            FlagInformation);
        SaveSetting("Records", "FirewallCheck", "Pass");
    } else if (const std::string privateAddress = hands_.PrivateIP(); privateAddress != publicAddress) {
        if (Asks("Your private IP address is " + privateAddress + ", but your public IP address is " + publicAddress +
                 " ! It appears your computer is on a network behind some sort of router that has not been properly "
                 "configured.\r\n\r\nWould you like to read up on properly configuring your router?")) {
            OpenInBrowser(hands_.ServiceBase() + "/support_config.php");
        }
    } else {
        if (Asks("Your private and public IP addresses are the same but your computer did not receive our request. "
                 "This usually indicates your friends will not be able to connect to your website. Your Internet "
                 "Service Provider or firewall may block incoming traffic to certain ports on your computer. Please "
                 "try changing your listening port in Port Setup.\r\n\r\nWould you like to read more on this?")) {
            OpenInBrowser(hands_.ServiceBase() + "/support_noluck.php");
        }
    }
}

void PortCheck::CheckPort() {
    if (!hands_.IsConnectedToInternet()) {
        ShowMessageBox("We cannot detect a connection to the Internet. Please connect before you run Port Check.",
                       FlagCritical);
        return;
    }
    if (hands_.ServiceBase().empty()) return CheckHere("Please");
    hands_.SetBusy(true);
    NoteRun();
    PrepareListener();
    if (!Listen()) {
        hands_.SetBusy(false);
        TellPortRefused("Please");
        return;
    }
    // Unlike in the firewall check, the port is open before the address is asked for.
    const std::string publicAddress = AskPublicAddress();
    if (isAbandoned_) return;
    if (publicAddress.empty()) {
        hands_.SetBusy(false);
        ShowMessageBox("We were unable to contact our servers! Please try again later.", FlagCritical);
        wnskPortCheckListen->Close();
        return;
    }
    ConnectAndWait(publicAddress);
    if (isAbandoned_) return;
    hands_.SetBusy(false);
    if (!wnskPortCheckListen->Tag.empty()) {
        ShowMessageBox(
            "Congratulations! Your computer successfully received our request. This indicates that your friends will "
            "be able to see your website.",
            FlagInformation);
    } else {
        ShowMessageBox(
            "Your computer did not receive our request! This indicates your friends will not be able to connect to "
            "your website.\r\n\r\nIf you have properly setup your firewall or router, please try changing the "
            "listening port.",
            FlagCritical);
    }
}

}  // namespace pixmora
