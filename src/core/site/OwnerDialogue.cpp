// The owner's dialogue.
#include "core/site/OwnerDialogue.h"

namespace pixmora {

namespace {

OwnerDialogue *gOwnerDialogue = nullptr;

}  // namespace

void SetOwnerDialogue(OwnerDialogue *dialogue) {
    gOwnerDialogue = dialogue;
}

int ShowMessageBox(const std::string &text, int flags) {
    if (gOwnerDialogue != nullptr) return gOwnerDialogue->ShowMessageBox(text, flags);
    return (flags & FlagYesNo) != 0 ? AnswerNo : AnswerOk;
}

bool Asks(const std::string &question, int flags) {
    return ShowMessageBox(question, flags) == AnswerYes;
}

void ShowHelpBalloon(const std::string &title, const std::string &text) {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->ShowHelpBalloon(title, text);
}

void ShowNotice(const std::string &text) {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->ShowNotice(text);
}

void OpenInBrowser(const std::string &url) {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->OpenInBrowser(url);
}

void WebsiteStatusChanged() {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->WebsiteStatusChanged();
}

void SetFiguresRunning(bool running) {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->SetFiguresRunning(running);
}

void ShowSetup() {
    if (gOwnerDialogue != nullptr) gOwnerDialogue->ShowSetup();
}

}  // namespace pixmora
