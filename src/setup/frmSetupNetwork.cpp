// frmSetup.h: the setup dialog: the checks of the port, and what tells that a setting has changed.
#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "outside/OutboundRequest.h"
#include "setup/ControlText.h"
#include "setup/SetupPages.h"
#include "setup/frmSetup.h"

namespace pixmora {

PortCheckHands frmSetup::MakeCheckHands() {
    const auto setBusy = [this](bool isBusy) {
        isCheckRunning_ = isBusy;
        // The two share their sockets.
        firewall_->cmdCheckFirewall->setEnabled(!isBusy);
        port_->cmdPortCheck->setEnabled(!isBusy);
        if (isBusy) {
            setCursor(Qt::WaitCursor);
        } else {
            unsetCursor();
        }
    };
    return {
        .ListenPort = [this] { return ControlText(*port_->cboListenPort); },
        .SetListenPort = [this](const std::string &port) { SetControlText(*port_->cboListenPort, port); },
        .PrivateIP = [this] { return privateIP_; },
        .SetPublicIP = [this](const std::string &address) { firewall_->lblPublicIP->setText(ToQt(address)); },
        .SetBusy = setBusy,
        .IsConnectedToInternet = surroundings_.IsConnectedToInternet,
        .GetWebPage = GetWebPage,
        .ServiceBase = [this] { return CleanServiceBase(ControlText(*online_->txtServiceBase)); },
    };
}

void frmSetup::ConnectNetwork() {
    OnClick(firewall_->cmdCheckFirewall, [this] { CheckFirewall(); });
    OnClick(port_->cmdPortCheck, [this] { check_.CheckPort(); });
    const auto showService = [this] {
        const std::string base = CleanServiceBase(ControlText(*online_->txtServiceBase));
        firewall_->SetService(base);
        port_->SetService(base);
    };
    connect(online_->txtServiceBase, &QLineEdit::textChanged, this, showService);
    showService();
    // Its line tells when the keys have left, which the box itself, having the focus, keeps from filters of the line.
    connect(port_->cboListenPort->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        RunEventHandler(
            [this] { SetControlText(*port_->cboListenPort, NumericText(ControlText(*port_->cboListenPort))); });
    });
    for (const BoundControl &bound : BoundControls()) {
        OnControlChange(*bound.Control, [this] { settingsChanged_ = true; });
    }
}

bool frmSetup::CheckFirewall() {
    if (!isCheckRunning_) check_.CheckFirewall();
    return !check_.IsAbandoned();
}

}  // namespace pixmora
