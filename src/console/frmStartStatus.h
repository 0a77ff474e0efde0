// The start window: it runs the website's start and shows how far it has come.
#pragma once

#include "console/SkinButton.h"
#include "console/SkinWindow.h"
#include "core/WebsiteStart.h"
#include "platform/loop/MessageLoop.h"

class QLabel;
class QProgressBar;

namespace pixmora {

/// The sequence begins half a second after the window appears. Until its end the one button asks to cancel; then it
/// closes the window, which after a start that succeeded closes by itself.
class frmStartStatus : public SkinWindow, public StartView {
public:
    frmStartStatus();

    /// Modal; returns when the window has closed. @param over the window that this one is placed over, or null
    void Run(const QWidget *over);

    void ShowStatus(const std::string &text) override;
    void AdvanceProgress() override;
    bool Cancelled() override { return cancelled_; }
    void ShowLive() override;
    void ShowStopped() override;

    Timer tmrClose;  ///< closes the window some seconds after a success

protected:
    void CloseByOwner() override { cmdCancel->click(); }
    void changeEvent(QEvent *event) override;

private:
    void ClickCancel();
    void ClickViewSite();
    void OfferClose();
    void Fit();

    QLabel *lblStatus;
    QProgressBar *prg;
    SkinButton *cmdViewSite;
    SkinButton *cmdCancel;
    Timer tmrStart;
    bool cancelled_ = false;
};

}  // namespace pixmora
