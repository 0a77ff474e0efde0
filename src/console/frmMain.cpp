// The owner's dashboard.
#include "console/frmMain.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/loop/App.h"

namespace pixmora {

namespace {

constexpr int statsMs = 1000;
constexpr int trayMs = 2000;
constexpr int longestAddress = 496;  // pixels; the window doesn't grow for a longer one

const LinkLook liveAddress{QColor(0, 0, 128), true, false, false, true};
const LinkLook offlineAddress{QColor(255, 0, 0), false, true, true, true};
const LinkLook activeLink{QColor(0, 0, 128), false, false, false, true};
const LinkLook idleLink{QColor(128, 128, 128), false, false, false, false};

/// A white field that holds labels.
class CardPane : public QWidget {
protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        Skin::PaintCard(painter, rect());
    }
};

/// Laid over the whole of the start button while the website runs, so that it reads Stop. It shows the button's own
/// three states.
class StopImage : public QWidget {
public:
    explicit StopImage(SkinButton *button) : button_(button) {
        setObjectName(QStringLiteral("imgStopServer"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        auto *whole = new QVBoxLayout(button);
        whole->setContentsMargins(0, 0, 0, 0);
        whole->addWidget(this);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        button_->PaintFace(painter, {QStringLiteral("Stop Website"), Glyph::Stop, SkinButton::Tone::Halt});
    }

private:
    SkinButton *button_;
};

QLabel *MakeFigure(const char *name, const char *start, const QString &meaning) {
    QLabel *label = Skin::Label(QLatin1String(start), 12, Skin::Ink, true);
    label->setObjectName(QLatin1String(name));
    label->setAccessibleDescription(meaning);
    return label;
}

QString Caption(const char *text) {
    return QLatin1String(text);
}

}  // namespace

frmMain::frmMain(const OwnerActions &actions, MainWindowHands hands)
    : SkinWindow("frmMain", ToQt(App::Title), TitleArea::Size::Main), actions_(actions), hands_(std::move(hands)) {
    setWindowFlag(Qt::WindowMinimizeButtonHint);
    Contents()->addWidget(MakeAddress());
    Contents()->addWidget(MakeCounts());
    Contents()->addWidget(MakeStatistics());
    Contents()->addLayout(MakeButtons());
    lblVersion = Skin::Label({}, 11, Skin::SoftInk);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    Contents()->addWidget(lblVersion, 0, Qt::AlignRight);
    AddTitleButtons();
    ConnectControls();
    tmrStats.SetInterval(statsMs);
    tmrStats.OnTimer = [this] {
        ShowFigures();
    };
    tmrTray.SetInterval(trayMs);
    tmrTray.OnTimer = [this] {
        LookForTray();
    };
    cmdStartStop->setFocus();
}

QWidget *frmMain::MakeAddress() {
    auto *card = new CardPane;
    auto *grid = new QGridLayout(card);
    grid->setContentsMargins(12, 8, 10, 9);
    grid->setVerticalSpacing(2);
    lblAddress = new LinkLabel("lblAddress", QStringLiteral("http://IP"), QStringLiteral("My Website's Address"));
    Skin::SetFont(*lblAddress, 15);
    lblAddress->setMaximumWidth(Skin::Scaled(longestAddress));
    lblAddressOptions =
        new LinkLabel("lblAddressOptions", QStringLiteral("Options"), QStringLiteral("What to do with the address"));
    grid->addWidget(Skin::Label(QStringLiteral("My Website's Address:"), 12, Skin::SoftInk), 0, 0);
    grid->addWidget(lblAddressOptions, 0, 1, Qt::AlignRight);
    grid->addWidget(lblAddress, 1, 0, 1, 2, Qt::AlignLeft);
    return card;
}

QWidget *frmMain::MakeCounts() {
    auto *card = new CardPane;
    auto *row = new QHBoxLayout(card);
    row->setContentsMargins(12, 7, 10, 7);
    row->setSpacing(6);
    lblStatAlbums = MakeFigure("lblStatAlbums", "0", QStringLiteral("Albums"));
    lblAlbumsBrowse = new LinkLabel("lblAlbumsBrowse", QStringLiteral("Browse"), QStringLiteral("Albums"));
    lblStatActiveSession = MakeFigure("lblStatActiveSession", "0", QStringLiteral("Active Visitors"));
    lblSeeActive = new LinkLabel("lblSeeActive", QStringLiteral("Show"), QStringLiteral("Active Visitors"));
    row->addWidget(Skin::Label(QStringLiteral("Albums:"), 12, Skin::SoftInk));
    row->addWidget(lblStatAlbums);
    row->addWidget(lblAlbumsBrowse);
    row->addStretch();
    row->addWidget(Skin::Label(QStringLiteral("Active Visitors:"), 12, Skin::SoftInk));
    row->addWidget(lblStatActiveSession);
    row->addWidget(lblSeeActive);
    return card;
}

frmMain::FigureLabels frmMain::AddFigureRow(QGridLayout &grid, const char *title, const char *sessionName,
                                            const char *totalName, const char *start, const char *totalStart) const {
    const int row = grid.rowCount();
    const QString meaning = Caption(title).chopped(1);
    const FigureLabels labels{MakeFigure(sessionName, start, meaning + QStringLiteral(", Session")),
                              MakeFigure(totalName, totalStart, meaning + QStringLiteral(", Total"))};
    grid.addWidget(Skin::Label(Caption(title), 12, Skin::SoftInk), row, 0);
    grid.addWidget(labels.Session, row, 1, Qt::AlignRight);
    grid.addWidget(labels.Total, row, 2, Qt::AlignRight);
    return labels;
}

QWidget *frmMain::MakeStatistics() {
    auto *card = new CardPane;
    auto *grid = new QGridLayout(card);
    grid->setContentsMargins(12, 9, 12, 11);
    grid->setVerticalSpacing(5);
    for (const int column : {0, 1, 2}) grid->setColumnStretch(column, 1);
    grid->addWidget(Skin::Label(QStringLiteral("Session:"), 12, Skin::HeaderBottom, true), 0, 1, Qt::AlignRight);
    grid->addWidget(Skin::Label(QStringLiteral("Total:"), 12, Skin::HeaderBottom, true), 0, 2, Qt::AlignRight);
    runningTime_ =
        AddFigureRow(*grid, "Running Time:", "lblStatRunningTimeSession", "lblStatRunningTimeTotal", "0h 0m", "0d 0h");
    connections_ = AddFigureRow(*grid, "Visitors:", "lblStatConnectionsSession", "lblStatConnectionsTotal", "0", "0");
    thumbs_ = AddFigureRow(*grid, "Thumbnails:", "lblStatThumbsSession", "lblStatThumbsTotal", "0", "0");
    downloads_ = AddFigureRow(*grid, "File Clicks:", "lblStatDownloadsSession", "lblStatDownloadsTotal", "0", "0");
    bandwidth_ =
        AddFigureRow(*grid, "Bandwidth:", "lblStatBandwidthSession", "lblStatBandwidthTotal", "0 bytes", "0 bytes");
    return card;
}

QLayout *frmMain::MakeButtons() {
    auto *row = new QHBoxLayout;
    row->setSpacing(6);
    cmdStartStop =
        new SkinButton("cmdStartStop", {QStringLiteral("Start Website"), Glyph::Start, SkinButton::Tone::Go});
    cmdSetup = new SkinButton("cmdSetup", {QStringLiteral("Setup"), Glyph::Setup});
    cmdStatistics = new SkinButton("cmdStatistics", {QStringLiteral("Statistics"), Glyph::Statistics});
    cmdAbout = new SkinButton("cmdAbout", {QStringLiteral("About"), Glyph::About});
    cmdExit = new SkinButton("cmdExit", {QStringLiteral("Exit"), Glyph::Exit});
    row->addWidget(cmdStartStop, 1);
    for (SkinButton *button : {cmdSetup, cmdStatistics, cmdAbout, cmdExit}) row->addWidget(button);
    imgStopServer = new StopImage(cmdStartStop);
    imgStopServer->hide();
    return row;
}

void frmMain::AddTitleButtons() {
    cmdMenu = new TitleButton("cmdMenu", Glyph::Menu, QStringLiteral("Menu"));
    imgMin = new TitleButton("imgMin", Glyph::Minimise, QStringLiteral("Minimize Window"));
    Title()->layout()->addWidget(cmdMenu);
    Title()->layout()->addWidget(imgMin);
    QWidget *const order[] = {lblAddress,    lblAddressOptions, lblAlbumsBrowse, lblSeeActive, cmdStartStop, cmdSetup,
                              cmdStatistics, cmdAbout,          cmdExit,         cmdMenu,      imgMin};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
}

void frmMain::ConnectControls() {
    OnClick(lblAddress, [this] { ClickAddress(); });
    OnClick(lblAddressOptions, [this] { ShowMenuAt(*lblAddressOptions, AddressOptsMenu, AddressOptsMenuItems()); });
    OnClick(lblAlbumsBrowse, [this] {
        if (lblAlbumsBrowse->text() == QStringLiteral("Create")) {
            actions_.ShowSetup(false, true);
        } else {
            ShowMenuAt(*lblAlbumsBrowse, AlbumMenu, AlbumMenuItems());
        }
    });
    OnClick(lblSeeActive, [this] { ShowMenuAt(*lblSeeActive, ActiveMenu, ActiveMenuItems()); });
    OnClick(cmdStartStop, [this] { actions_.StartStop(); });
    OnClick(cmdSetup, [this] { actions_.Setup(); });
    OnClick(cmdStatistics, [this] { actions_.Statistics(); });
    OnClick(cmdAbout, [this] { actions_.About(); });
    OnClick(cmdExit, [this] { actions_.Exit(); });
    OnClick(cmdMenu, [this] { hands_.ShowTrayMenu({cmdMenu->mapToGlobal(QPoint()), cmdMenu->size()}); });
    OnClick(imgMin, [this] { Unload(); });
}

void frmMain::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) lblAddress->setMaximumWidth(Skin::Scaled(longestAddress));
    SkinWindow::changeEvent(event);
}

void frmMain::Load() {
    ShowTrayButton();
    UpdateStatus();
    ShowFigures();
    if (!std::exchange(isPlaced_, true)) PlaceOver(*this, nullptr);  // later it stays where the owner has it
    showNormal();
    raise();
    activateWindow();
    tmrTray.SetEnabled(true);
    SetFiguresRunning(gWebsiteStarted);
}

void frmMain::Unload() {
    if (!IsUp()) return;
    if (hands_.HasTray()) {
        hide();
        tmrStats.SetEnabled(false);
    } else {
        showMinimized();
    }
    hands_.Unloaded();
}

void frmMain::UpdateStatus() {
    const MainStatus status = ReadMainStatus();
    imgStopServer->setVisible(status.IsStarted);
    cmdStartStop->setAccessibleName(status.IsStarted ? QStringLiteral("Stop Website") : cmdStartStop->text());
    lblVersion->setText(ToQt(status.Version));
    lblStatAlbums->setText(ToQt(status.Albums));
    lblAlbumsBrowse->setText(status.HasAlbums ? QStringLiteral("Browse") : QStringLiteral("Create"));
    lblAddress->setText(ToQt(status.Address));
    lblAddress->setToolTip(status.IsStarted ? lblAddress->text() : QString());
    lblAddress->SetLook(status.IsStarted ? liveAddress : offlineAddress);
    for (LinkLabel *link : {lblSeeActive, lblAddressOptions}) {
        link->SetLook(status.IsStarted ? activeLink : idleLink);
        link->setToolTip(status.IsStarted ? QString() : QStringLiteral("Start your website first."));
    }
    lblStatActiveSession->setText(QString::number(gVisitorsActive));
    SetFiguresRunning(status.IsStarted);
}

void frmMain::ShowFigures() {
    SetFigures(gWebsiteStarted ? ReadRunningFigures() : ReadStoredFigures());
}

void frmMain::SetFiguresRunning(bool running) {
    tmrStats.SetEnabled(running && isVisible());
}

void frmMain::SetFigures(const MainFigures &figures) {
    const auto set = [](const FigureLabels &labels, const std::string &session, const std::string &total) {
        labels.Session->setText(ToQt(session));
        labels.Total->setText(ToQt(total));
    };
    lblStatActiveSession->setText(ToQt(figures.ActiveVisitors));
    set(runningTime_, figures.Session.RunningTime, figures.Total.RunningTime);
    set(connections_, figures.Session.Connections, figures.Total.Connections);
    set(thumbs_, figures.Session.Thumbs, figures.Total.Thumbs);
    set(downloads_, figures.Session.Downloads, figures.Total.Downloads);
    set(bandwidth_, figures.Session.Bandwidth, figures.Total.Bandwidth);
}

/// The colour of the label is the state that was shown when it was clicked.
void frmMain::ClickAddress() const {
    if (lblAddress->Look().Colour == offlineAddress.Colour) {
        actions_.StartStop();
    } else {
        OpenInBrowser(FromQt(lblAddress->text()));
    }
}

void frmMain::ShowMenuAt(const LinkLabel &link, const char *name, const MenuItems &items) const {
    const auto menu =
        clsXPMenu::Create(name, items, [&actions = actions_](const std::string &menuName, const std::string &itemText) {
            actions.HandleClick(menuName, itemText);
        });
    QPoint corner = link.mapToGlobal(QPoint(link.width(), 0));
    const int right = screen()->availableGeometry().right();
    if (corner.x() + menu->GetWidth() > right + 1) corner.rx() -= link.width() + menu->GetWidth();
    menu->ShowMenu(corner);
}

bool frmMain::ShowTrayButton() {
    const bool hasTray = hands_.HasTray();
    cmdMenu->setVisible(!hasTray);
    imgMin->setToolTip(hasTray ? QStringLiteral("Go to tray") : imgMin->accessibleName());
    return hasTray;
}

void frmMain::LookForTray() {
    const bool isOutOfReach = !ShowTrayButton() && isHidden();
    if (std::exchange(wasOutOfReach_, isOutOfReach) && isOutOfReach) Load();
}

}  // namespace pixmora
