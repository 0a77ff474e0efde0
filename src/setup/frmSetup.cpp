// The setup dialog: its opening, the wizard, Finish and Cancel.
#include "setup/frmSetup.h"

#include <QApplication>
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
    return {.IsConnectedToInternet = IsConnectedToInternet,
            .Webcam = DesktopWebcamHands,
            .Program = FromQt(QCoreApplication::applicationFilePath()),
            .ProposedPort = ProposedPort()};
}

frmSetup::frmSetup(const SetupOpening &opening, SetupSurroundings surroundings)
    : SetupWindow("frmSetup", ToQt(App::Title) + QStringLiteral(" Setup"), nullptr),
      opening_(opening),
      surroundings_(std::move(surroundings)),
      SSTab1(new QTabWidget),
      general_(new GeneralPage),
      albums_(new AlbumsPage),
      firewall_(new FirewallPage),
      layout_(new LayoutPage),
      online_(new OnlinePage),
      access_(new AccessPage),
      port_(new PortPage),
      cmdPrevious(Button("cmdPrevious", "<< Previous")),
      cmdNext(Button("cmdNext", "Next >>")),
      lblStep(Label("lblStep")),
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
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    SSTab1->addTab(new IntroductionPage, QStringLiteral("Introduction"));
    SSTab1->addTab(general_, QStringLiteral("General"));
    SSTab1->addTab(albums_, QStringLiteral("Albums"));
    SSTab1->addTab(firewall_, QStringLiteral("Firewall Check"));
    SSTab1->addTab(layout_, QStringLiteral("Layout"));
    SSTab1->addTab(online_, QStringLiteral("Online Identity"));
    SSTab1->addTab(access_, QStringLiteral("Access Control"));
    SSTab1->addTab(port_, QStringLiteral("Port Setup"));
}

QLayout *frmSetup::MakeButtons() {
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdPrevious, cmdNext, cmdOK, cmdCancel}) {
        button->setMinimumWidth(96);
        if (button == cmdOK) buttons->addWidget(lblStep, 1, Qt::AlignCenter);
        buttons->addWidget(button);
    }
    return buttons;
}

void frmSetup::ConnectWizard() {
    connect(SSTab1, &QTabWidget::currentChanged, this, [this] { ChangeTab(); });
    OnClick(cmdNext, [this] {
        SSTab1->setCurrentIndex(SSTab1->currentIndex() + 1);
        if (CurrentTab() != SetupTab::PortSetup) return FocusFirstField();
        SetBold(*cmdOK, true);
        cmdOK->setFocus();
    });
    OnClick(cmdPrevious, [this] {
        SSTab1->setCurrentIndex(SSTab1->currentIndex() - 1);
        SetBold(*cmdOK, false);
        FocusFirstField();
    });
    OnClick(cmdOK, [this] { ClickFinish(); });
    OnClick(cmdCancel, [this] { ClickCancel(); });
    SetBold(*cmdOK, false);
    if (IsFirstRun()) cmdNext->setDefault(true);  // Enter in a field goes on
    tmrShowAddAlbum.SetInterval(addAlbumMs);
    tmrShowAddAlbum.OnTimer = [this] {
        tmrShowAddAlbum.SetEnabled(false);
        if (opening_.AddAlbumOnOpen) CreateAlbum();
    };
}

void frmSetup::Load() {
    const SetupFields fields = LoadSetupFields(surroundings_.ProposedPort);
    privateIP_ = GetLocalIP();
    firewall_->lblPrivateIP->setText(ToQt(privateIP_));
    FillAlbums();
    const std::vector<std::string> styles = StyleNames();
    for (const std::string &style : styles) general_->cboStyle->addItem(ToQt(style));
    general_->cboStyle->setCurrentIndex(StyleIndex(styles, fields.Style));
    for (const auto &[control, value] : BoundControls()) {
        // With none stored, the page stays at what the choice of the row has made it.
        const bool isUnset = control == layout_->cboFilesPerPage && fields.FilesPerPage.empty();
        if (control != general_->cboStyle && !isUnset) SetControlText(*control, fields.*value);
    }
    FillRestricted();
    settingsChanged_ = false;
}

std::vector<frmSetup::BoundControl> frmSetup::BoundControls() const {
    return {
        {general_->txtServerTitle, &SetupFields::ServerTitle},
        {general_->txtAuthor, &SetupFields::Author},
        {general_->txtDesc, &SetupFields::Description},
        {general_->cboStyle, &SetupFields::Style},
        {general_->txtWelcome, &SetupFields::Welcome},
        {general_->chkRunOnStart, &SetupFields::RunOnStart},
        {layout_->cboFilesPerRow, &SetupFields::FilesPerRow},  // before the page, which it resets
        {layout_->cboFilesPerPage, &SetupFields::FilesPerPage},
        {layout_->sldImageSize, &SetupFields::ImageSize},
        {layout_->sldImageQuality, &SetupFields::ImageQuality},
        {layout_->optDirSortMethod, &SetupFields::SortMethod},
        {layout_->optDirSortOrder, &SetupFields::SortOrder},
        {layout_->chkWebcam, &SetupFields::Webcam},
        {layout_->chkMoreTypes, &SetupFields::MoreTypes},
        {layout_->chkShowPlaces, &SetupFields::ShowPlaces},
        {layout_->cboBrowserCache, &SetupFields::BrowserCache},
        {online_->txtServiceBase, &SetupFields::ServiceBase},
        {online_->txtAccountName, &SetupFields::AccountName},
        {online_->chkListOnline, &SetupFields::ListOnline},
        {firewall_->chkPortMapping, &SetupFields::PortMapping},
        {online_->txtPublicAddress, &SetupFields::PublicAddress},
        {port_->cboListenPort, &SetupFields::ListenPort},
    };
}

SetupFields frmSetup::Fields() const {
    SetupFields fields;
    for (const auto &[control, value] : BoundControls()) fields.*value = ControlText(*control);
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
    lblStep->setText(IsFirstRun() ? ToQt(StepText(CurrentTab())) : QString());
}

/// The wizard's keys begin where there is something to fill in.
void frmSetup::FocusFirstField() {
    if (!IsFirstRun()) return;
    for (QWidget *field : SSTab1->currentWidget()->findChildren<QWidget *>()) {
        const bool takesText =
            qobject_cast<QLineEdit *>(field) != nullptr || qobject_cast<QComboBox *>(field) != nullptr;
        if (takesText && field->isEnabled()) return field->setFocus();
    }
}

void frmSetup::ClickFinish() {
    const auto runFirewallCheck = [this] {
        GoTo(SetupTab::FirewallCheck);
        return CheckFirewall();
    };
    const auto createAlbum = [this] {
        GoTo(SetupTab::Albums);
        CreateAlbum();
    };
    const SetupHands hands{
        .CountAlbums = [this] { return CountAlbums(); },
        .IsRunOnStartTicked = [this] { return ControlText(*general_->chkRunOnStart) == "1"; },
        .TickRunOnStart = [this] { SetControlText(*general_->chkRunOnStart, "1"); },
        .RunFirewallCheck = runFirewallCheck,
        .CreateAlbum = createAlbum,
        .Fields = [this] { return Fields(); },
    };
    cmdOK->setEnabled(false);  // its questions and its check let other clicks through
    const bool isFinished = FinishSetup(hands, surroundings_.Program);
    cmdOK->setEnabled(true);
    // Where the keys went meanwhile, one Enter from losing everything.
    if (focusWidget() == cmdCancel) cmdOK->setFocus();
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
