// The setup dialog: its opening, the wizard, Finish and Cancel.
#include "setup/frmSetup.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "outside/OutboundRequest.h"
#include "platform/loop/App.h"
#include "setup/ControlText.h"
#include "setup/FormParts.h"
#include "setup/SetupPages.h"
#include "setup/frmSetupWebcam.h"
#include "setup/rules/InternetState.h"

namespace pixmora {

using namespace FormParts;

namespace {

constexpr int addAlbumMs = 100;

void SetBold(QWidget &widget, bool isBold) {
    QFont font = widget.font();
    font.setBold(isBold);
    widget.setFont(font);
    widget.updateGeometry();
}

}  // namespace

SetupSurroundings DesktopSurroundings() {
    SetupSurroundings surroundings;
    surroundings.IsConnectedToInternet = IsConnectedToInternet;
    surroundings.Webcam = DesktopWebcamHands;
    surroundings.Program = FromQt(QCoreApplication::applicationFilePath());
    return surroundings;
}

frmSetup::frmSetup(const SetupOpening &opening, SetupSurroundings surroundings)
    : SetupWindow("frmSetup", ToQt(App::Title) + QStringLiteral(" Setup"), nullptr),
      opening_(opening),
      surroundings_(std::move(surroundings)),
      SSTab1(new QTabWidget),
      cmdPrevious(Button("cmdPrevious", "<< Previous")),
      cmdNext(Button("cmdNext", "Next >>")),
      cmdOK(Button("cmdOK", "Finish")),
      cmdCancel(Button("cmdCancel", "Cancel")),
      check_(MakeCheckHands()) {
    MakeTabs();
    Contents()->addWidget(SSTab1, 1);
    Contents()->addLayout(MakeButtons());
    ConnectWizard();
    ConnectLists();
    ConnectLayout();
    ConnectNetwork();
    Load();
    FinishLayout();
    GoTo(opening.ShowAlbumsTab || opening.AddAlbumOnOpen ? SetupTab::Albums : SetupTab::Introduction);
    ChangeTab();
}

frmSetup::~frmSetup() = default;

void frmSetup::MakeTabs() {
    const ServiceFacts service{ServiceBase(), RedirectingAddress()};
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    SSTab1->addTab(MakeIntroductionPage(), QStringLiteral("Introduction"));
    SSTab1->addTab(MakeGeneralPage(), QStringLiteral("General"));
    SSTab1->addTab(MakeAlbumsPage(), QStringLiteral("Albums"));
    SSTab1->addTab(MakeFirewallPage(service), QStringLiteral("Firewall Check"));
    SSTab1->addTab(MakeLayoutPage(), QStringLiteral("Layout"));
    SSTab1->addTab(MakeOnlinePage(service), QStringLiteral("Online Identity"));
    SSTab1->addTab(MakeAccessPage(), QStringLiteral("Access Control"));
    SSTab1->addTab(MakePortPage(service), QStringLiteral("Port Setup"));
}

QLayout *frmSetup::MakeButtons() {
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdPrevious, cmdNext, cmdOK, cmdCancel}) {
        button->setMinimumWidth(96);
        if (button == cmdOK) buttons->addStretch();
        buttons->addWidget(button);
    }
    return buttons;
}

void frmSetup::ConnectWizard() {
    connect(SSTab1, &QTabWidget::currentChanged, this, [this] { ChangeTab(); });
    OnClick(cmdNext, [this] {
        SSTab1->setCurrentIndex(SSTab1->currentIndex() + 1);
        if (CurrentTab() != SetupTab::PortSetup) return;
        SetBold(*cmdOK, true);
        cmdOK->setFocus();
    });
    OnClick(cmdPrevious, [this] {
        SSTab1->setCurrentIndex(SSTab1->currentIndex() - 1);
        SetBold(*cmdOK, false);
    });
    OnClick(cmdOK, [this] { ClickFinish(); });
    OnClick(cmdCancel, [this] { ClickCancel(); });
    SetBold(*cmdOK, false);
    tmrShowAddAlbum.SetInterval(addAlbumMs);
    tmrShowAddAlbum.OnTimer = [this] {
        tmrShowAddAlbum.SetEnabled(false);
        if (opening_.AddAlbumOnOpen) CreateAlbum();
    };
}

void frmSetup::Load() {
    const SetupFields fields = LoadSetupFields();
    Find<QLineEdit>("txtDesc")->setText(ToQt(fields.Description));
    SetText(*Find<QPlainTextEdit>("txtWelcome"), fields.Welcome);
    privateIP_ = GetLocalIP();
    Find<QLabel>("lblPrivateIP")->setText(ToQt(privateIP_));
    FillAlbums();
    const std::vector<std::string> styles = StyleNames();
    auto *cboStyle = Find<QComboBox>("cboStyle");
    for (const std::string &style : styles) cboStyle->addItem(ToQt(style));
    cboStyle->setCurrentIndex(StyleIndex(styles, fields.Style));
    for (const BoundSetting &bound : boundSettings) {
        const std::string &value = fields.*bound.Value;
        const bool isUnset = bound.Value == &SetupFields::FilesPerPage && value.empty();
        if (bound.Value != &SetupFields::Style && !isUnset) SetControlText(*Find<QObject>(bound.Control), value);
    }
    FillRestricted();
    settingsChanged_ = false;
}

SetupFields frmSetup::Fields() const {
    SetupFields fields;
    for (const BoundSetting &bound : boundSettings) {
        fields.*bound.Value = ControlText(*Find<QObject>(bound.Control));
    }
    fields.Description = FromQt(Find<QLineEdit>("txtDesc")->text());
    fields.Welcome = TextOf(*Find<QPlainTextEdit>("txtWelcome"));
    return fields;
}

QSize frmSetup::sizeHint() const {
    const QMargins margins = Contents()->contentsMargins();
    const int tabs = SSTab1->tabBar()->sizeHint().width() + margins.left() + margins.right() + 2;
    return SetupWindow::sizeHint().expandedTo({tabs, 0});
}

void frmSetup::Run() {
    tmrShowAddAlbum.SetEnabled(true);
    exec();
}

void frmSetup::GoTo(SetupTab tab) {
    SSTab1->setCurrentIndex(static_cast<int>(tab));
}

SetupTab frmSetup::CurrentTab() const {
    return static_cast<SetupTab>(SSTab1->currentIndex());
}

void frmSetup::ChangeTab() {
    const WizardButtons buttons = ButtonsOn(CurrentTab());
    cmdPrevious->setEnabled(buttons.Previous);
    cmdNext->setEnabled(buttons.Next);
}

void frmSetup::ClickFinish() {
    SetupHands hands;
    hands.CountAlbums = [this] {
        return CountAlbums();
    };
    hands.IsRunOnStartTicked = [this] {
        return ControlText(*Find<QObject>("chkRunOnStart")) == "1";
    };
    hands.TickRunOnStart = [this] {
        SetControlText(*Find<QObject>("chkRunOnStart"), "1");
    };
    hands.RunFirewallCheck = [this] {
        GoTo(SetupTab::FirewallCheck);
        return CheckFirewall();
    };
    hands.CreateAlbum = [this] {
        GoTo(SetupTab::Albums);
        CreateAlbum();
    };
    hands.Fields = [this] {
        return Fields();
    };
    cmdOK->setEnabled(false);  // its questions and its check let other clicks through
    const bool isFinished = FinishSetup(hands, surroundings_.Program);
    cmdOK->setEnabled(true);
    if (isFinished) Unload();
}

void frmSetup::ClickCancel() {
    if (MayCancelSetup(settingsChanged_)) Unload();
}

void frmSetup::Unload() {
    if (isCheckRunning_) {
        check_.Abandon();
        EndWebPageRequest();  // whose answer the check may be waiting for
    }
    done(Accepted);
}

}  // namespace pixmora
