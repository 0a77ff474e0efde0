// The owner's dialogue: the one seam through which the server speaks to the person at the machine.
#pragma once

#include <string>

namespace pixmora {

/// Flags of a message box; the two that are looked at. 64 shows the information icon, as does anything without 16.
inline constexpr int FlagYesNo = 4;
inline constexpr int FlagCritical = 16;
inline constexpr int FlagQuestion = 32;  ///< asked for, but shown as any other question
inline constexpr int FlagInformation = 64;
inline constexpr int CriticalQuestion = FlagYesNo | FlagCritical;
/// Its answers.
inline constexpr int AnswerOk = 1;
inline constexpr int AnswerYes = 6;
inline constexpr int AnswerNo = 7;

/// The desktop answers with windows, pixmorad with lines on standard error, the tests with a script.
class OwnerDialogue {
public:
    virtual ~OwnerDialogue() = default;
    /// Modal; the message loop goes on meanwhile. @return AnswerOk, AnswerYes or AnswerNo
    virtual int ShowMessageBox(const std::string &text, int flags) = 0;
    virtual void ShowHelpBalloon(const std::string &title, const std::string &text) = 0;
    /// Something to know while the website runs. Neither waits for the owner nor turns the message loop.
    virtual void ShowNotice(const std::string &text) = 0;
    virtual void OpenInBrowser(const std::string &url) = 0;
    /// The main window's status and figures are to be drawn anew.
    virtual void WebsiteStatusChanged() = 0;
    /// The display of the running figures is to be started or stopped.
    virtual void SetFiguresRunning(bool) {}
    /// Opens the setup dialog and returns when it is closed.
    virtual void ShowSetup() = 0;
};

/// Installs the dialogue, owned by the caller, for the life of the process.
/// None installed: messages are dropped and questions take their No.
void SetOwnerDialogue(OwnerDialogue *dialogue);

int ShowMessageBox(const std::string &text, int flags);
/// A question with Yes and No. @return whether the answer is Yes
bool Asks(const std::string &question, int flags = CriticalQuestion);
void ShowHelpBalloon(const std::string &title, const std::string &text);
void ShowNotice(const std::string &text);
void OpenInBrowser(const std::string &url);
void WebsiteStatusChanged();
void SetFiguresRunning(bool running);
void ShowSetup();

}  // namespace pixmora
