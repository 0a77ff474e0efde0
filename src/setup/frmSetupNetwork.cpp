// frmSetup.h: the setup dialog: the checks of the port, and what tells that a setting has changed.
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "outside/CentralService.h"
#include "outside/OutboundRequest.h"
#include "setup/ControlText.h"
#include "setup/frmSetup.h"

namespace pixmora {

PortCheckHands frmSetup::MakeCheckHands() {
    PortCheckHands hands;
    hands.ListenPort = [this] {
        return ControlText(*Find<QObject>("cboListenPort"));
    };
    hands.SetListenPort = [this](const std::string &port) {
        SetControlText(*Find<QObject>("cboListenPort"), port);
    };
    hands.PrivateIP = [this] {
        return privateIP_;
    };
    hands.SetPublicIP = [this](const std::string &address) {
        Find<QLabel>("lblPublicIP")->setText(ToQt(address));
    };
    hands.SetBusy = [this](bool isBusy) {
        isCheckRunning_ = isBusy;
        // The two share their sockets.
        Find<SkinButton>("cmdCheckFirewall")->setEnabled(!isBusy);
        Find<SkinButton>("cmdPortCheck")->setEnabled(!isBusy);
        if (isBusy) {
            setCursor(Qt::WaitCursor);
        } else {
            unsetCursor();
        }
    };
    hands.IsConnectedToInternet = surroundings_.IsConnectedToInternet;
    hands.GetWebPage = [](const std::string &url) {
        return GetWebPage(url);
    };
    hands.ServiceBase = ServiceBase();
    return hands;
}

void frmSetup::ConnectNetwork() {
    OnClick(Find<SkinButton>("cmdCheckFirewall"), [this] { CheckFirewall(); });
    OnClick(Find<SkinButton>("cmdPortCheck"), [this] { check_.CheckPort(); });
    Find<QComboBox>("cboListenPort")->lineEdit()->installEventFilter(this);
    const auto noteChange = [this] {
        settingsChanged_ = true;
    };
    for (const BoundSetting &bound : boundSettings) OnControlChange(*Find<QObject>(bound.Control), noteChange);
    OnControlChange(*Find<QObject>("txtDesc"), noteChange);
    connect(Find<QPlainTextEdit>("txtWelcome"), &QPlainTextEdit::textChanged, this, noteChange);
}

bool frmSetup::CheckFirewall() {
    if (!isCheckRunning_) check_.CheckFirewall();
    return !check_.IsAbandoned();
}

bool frmSetup::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut) {
        QObject &port = *Find<QObject>("cboListenPort");
        SetControlText(port, NumericText(ControlText(port)));
    }
    return SetupWindow::eventFilter(watched, event);
}

}  // namespace pixmora
