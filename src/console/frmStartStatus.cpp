// The start window.
#include "console/frmStartStatus.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "outside/OutboundRequest.h"
#include "platform/loop/App.h"

namespace pixmora {

namespace {

constexpr int startMs = 500;
constexpr int closeMs = 5000;
constexpr int statusWidth = 330;
constexpr int buttonWidth = 96;
constexpr int progressSteps = 6;  // a start that lists the site online takes all of them
constexpr QLatin1String cancelText("Cancel");

constexpr const char *progressStyle =
    "QProgressBar { background: #ffffff; border: 1px solid #ced6e2; border-radius: 4px; }"
    "QProgressBar::chunk { background: #2e9455; border-radius: 3px; }";

}  // namespace

frmStartStatus::frmStartStatus()
    : SkinWindow("frmStartStatus", ToQt(App::Title), TitleArea::Size::Box),
      lblStatus(new QLabel(QStringLiteral("Starting..."))),
      prg(new QProgressBar),
      cmdViewSite(new SkinButton("cmdViewSite", {QStringLiteral("View Site"), Glyph::None, SkinButton::Tone::Go})),
      cmdCancel(new SkinButton("cmdCancel", {QString(cancelText)})) {
    setWindowModality(Qt::ApplicationModal);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    Skin::SetFont(*lblStatus, 13);
    lblStatus->setAlignment(Qt::AlignCenter);
    prg->setObjectName(QStringLiteral("prg"));
    prg->setAccessibleName(QStringLiteral("Progress of the website's start"));
    prg->setRange(0, progressSteps);
    prg->setValue(0);
    prg->setTextVisible(false);
    prg->setFixedHeight(14);
    prg->setStyleSheet(QLatin1String(progressStyle));
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch();
    for (SkinButton *button : {cmdViewSite, cmdCancel}) {
        buttons->addWidget(button);
    }
    buttons->addStretch();
    Fit();
    cmdViewSite->hide();
    Contents()->addWidget(lblStatus);
    Contents()->addWidget(prg);
    Contents()->addSpacing(4);
    Contents()->addLayout(buttons);
    OnClick(cmdCancel, [this] { ClickCancel(); });
    OnClick(cmdViewSite, [this] { ClickViewSite(); });
    tmrStart.SetInterval(startMs);
    tmrStart.OnTimer = [this] {
        tmrStart.SetEnabled(false);
        RunStartSequence(*this);
    };
    tmrClose.SetInterval(closeMs);
    tmrClose.OnTimer = [this] {
        ClickCancel();
    };
}

/// To the desktop's size of text.
void frmStartStatus::Fit() {
    lblStatus->setFixedSize(Skin::Scaled(statusWidth), Skin::Scaled(28));
    for (SkinButton *button : {cmdViewSite, cmdCancel}) button->setMinimumWidth(Skin::Scaled(buttonWidth));
}

void frmStartStatus::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) Fit();
    SkinWindow::changeEvent(event);
}

void frmStartStatus::Run(const QWidget *over) {
    PlaceOver(*this, over);
    tmrStart.SetEnabled(true);
    exec();
}

void frmStartStatus::ShowStatus(const std::string &text) {
    lblStatus->setText(ToQt(text));
    repaint();
    // A refresh lets clicks through, but no visitor.
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void frmStartStatus::AdvanceProgress() {
    prg->setValue(prg->value() + 1);
}

void frmStartStatus::OfferClose() {
    cmdCancel->SetFace({QStringLiteral("Close")});
    cmdCancel->setEnabled(true);
}

void frmStartStatus::ShowLive() {
    Skin::SetFont(*lblStatus, 17, true);
    prg->setValue(prg->maximum());
    OfferClose();
    Skin::SetFont(*cmdCancel, 12, true);
    cmdCancel->setFocus();
    cmdViewSite->show();
    tmrClose.SetEnabled(true);
}

void frmStartStatus::ShowStopped() {
    prg->setValue(0);
    OfferClose();
    cmdCancel->setFocus();
}

void frmStartStatus::ClickCancel() {
    cancelled_ = true;
    EndWebPageRequest();  // which the start may be waiting for
    cmdCancel->setEnabled(false);
    if (cmdCancel->text() != cancelText) done(Accepted);
}

void frmStartStatus::ClickViewSite() {
    tmrClose.SetEnabled(false);
    OpenInBrowser(gWebsiteAddress);
    DoEvents();
    done(Accepted);
}

}  // namespace pixmora
