// The program's message box.
#pragma once

#include "console/SkinButton.h"
#include "console/SkinWindow.h"

class QLabel;

namespace pixmora {

/// One instance serves all questions, one after the other. Enter and Space press OK, else Yes, which has the focus at
/// first, or the button that Tab or an arrow has gone to; Escape presses OK, else No.
class frmMsgBox : public SkinWindow {
public:
    frmMsgBox();

    /// Modal, while the message loop goes on. A question that comes while another one shows waits for its end.
    /// @param flags of the owner's dialogue @param over the window that the box is placed over, or null
    /// @return AnswerOk, AnswerYes or AnswerNo
    int Ask(const std::string &text, int flags, const QWidget *over);

protected:
    void CloseByOwner() override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    class SignView;

    /// The one of Enter and Space.
    SkinButton &FirstButton() const;
    void Answer(const SkinButton &button);
    void SetUp(const std::string &text, int flags);
    void Fit();

    SignView *sign_;
    QLabel *lblMessage;
    SkinButton *imgOk;
    SkinButton *imgYes;
    SkinButton *imgNo;
    bool isOpen_ = false;  ///< a question waits for its answer
};

}  // namespace pixmora
