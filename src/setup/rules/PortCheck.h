// The port check and the firewall check: would a connection from the outside reach this computer on the port?
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/runtime/RunTimeError.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// What the checks see and set of the dialog around them, and what they need of the network. All must be set.
struct PortCheckHands {
    std::function<std::string()> ListenPort;  ///< text of cboListenPort
    std::function<void(const std::string &)> SetListenPort;
    std::function<std::string()> PrivateIP;
    std::function<void(const std::string &)> SetPublicIP;
    std::function<void(bool)> SetBusy;  ///< the buttons' state and the pointer
    std::function<bool()> IsConnectedToInternet;
    std::function<std::string(const std::string &url)> GetWebPage;
    std::function<std::string()> ServiceBase;  ///< empty without a central service
};

/// The port that a fresh setup proposes: 80, or 8080 where the machine refuses that one to the user.
std::string ProposedPort();

/// Listens on the port, asks the central service for the public address, and calls that address on the port: a check
/// passes when its own listener is called. Checks wait for up to 11 s beside the service's answer, with the message
/// loop going on. Without a service there is nobody to ask: a check then tells what can be known here, at once.
class PortCheck {
public:
    explicit PortCheck(PortCheckHands hands);
    ~PortCheck();
    PortCheck(const PortCheck &) = delete;
    PortCheck &operator=(const PortCheck &) = delete;

    void CheckFirewall();
    void CheckPort();

    /// The dialog goes: the sockets close, and a check that waits ends without a word.
    void Abandon();
    bool IsAbandoned() const { return isAbandoned_; }

private:
    enum class Probe { Reached, NotReached, PortRefused };

    void PrepareListener();
    bool Listen();
    void ConnectAndWait(const std::string &publicAddress);
    Probe Run(const std::string &publicAddress);
    Probe RunWithFallback(const std::string &publicAddress);
    void TellOutcome(const std::string &publicAddress, Probe outcome) const;
    void TellPortRefused(const char *place) const;
    void CheckHere(const char *place);
    std::string AskPublicAddress() const;

    PortCheckHands hands_;
    std::shared_ptr<Winsock> wnskPortCheckListen;
    std::shared_ptr<Winsock> wnskPortCheckConnect;
    std::optional<RunTimeError> refusal_;  ///< of the last Listen
    bool isAbandoned_ = false;
};

}  // namespace pixmora
