// The program's message box.
#include "console/frmMsgBox.h"

#include <QAccessible>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "platform/loop/App.h"

namespace pixmora {

namespace {

constexpr int messageWidth = 380;
constexpr int buttonWidth = 84;
constexpr int textPixels = 13;
constexpr const char *answerTag = "Tag";

SkinButton *MakeButton(const char *name, const char *text, int answer, SkinButton::Tone tone) {
    auto *button = new SkinButton(name, {QLatin1String(text), Glyph::None, tone});
    button->setProperty(answerTag, answer);
    return button;
}

}  // namespace

/// Both icons in the one place; what shows goes by its name.
class frmMsgBox::SignView : public QWidget {
public:
    SignView() { setFixedSize(36, 36); }
    void SetSign(Sign sign) {
        sign_ = sign;
        setObjectName(sign == Sign::Critical ? QStringLiteral("imgCritical") : QStringLiteral("imgInfo"));
        setAccessibleName(sign == Sign::Critical ? QStringLiteral("Warning") : QStringLiteral("Information"));
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        PaintSign(painter, sign_, QRectF(rect()).adjusted(1, 1, -1, -1));
    }

private:
    Sign sign_ = Sign::Information;
};

frmMsgBox::frmMsgBox()
    : SkinWindow("frmMsgBox", ToQt(App::Title), TitleArea::Size::Box),
      sign_(new SignView),
      lblMessage(new QLabel),
      imgOk(MakeButton("imgOk", "OK", AnswerOk, SkinButton::Tone::Lead)),
      imgYes(MakeButton("imgYes", "Yes", AnswerYes, SkinButton::Tone::Lead)),
      imgNo(MakeButton("imgNo", "No", AnswerNo, SkinButton::Tone::Plain)) {
    setWindowModality(Qt::ApplicationModal);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setTextFormat(Qt::PlainText);
    lblMessage->setWordWrap(true);
    Skin::SetFont(*lblMessage, textPixels);
    auto *message = new QHBoxLayout;
    message->setSpacing(14);
    message->addWidget(sign_, 0, Qt::AlignTop);
    message->addWidget(lblMessage, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch();
    for (SkinButton *button : {imgOk, imgYes, imgNo}) {
        buttons->addWidget(button);
        OnClick(button, [this, button] { Answer(*button); });
    }
    buttons->addStretch();
    Contents()->setContentsMargins(18, 18, 18, 16);
    Contents()->setSpacing(20);
    Contents()->addLayout(message);
    Contents()->addLayout(buttons);
    Fit();
}

void frmMsgBox::SetUp(const std::string &text, int flags) {
    const bool isQuestion = (flags & FlagYesNo) != 0;
    lblMessage->setText(MessageText(text));
    Fit();
    imgOk->setVisible(!isQuestion);
    imgYes->setVisible(isQuestion);
    imgNo->setVisible(isQuestion);
    sign_->SetSign((flags & FlagCritical) != 0 ? Sign::Critical : Sign::Information);
    setAccessibleDescription(lblMessage->text());
}

/// To the message, and to the desktop's size of text.
void frmMsgBox::Fit() {
    for (SkinButton *button : {imgOk, imgYes, imgNo}) button->setFixedWidth(Skin::Scaled(buttonWidth));
    const QRect lines =
        QFontMetrics(Skin::Font(textPixels))
            .boundingRect(QRect(0, 0, Skin::Scaled(messageWidth), 4000), Qt::TextWordWrap, lblMessage->text());
    lblMessage->setFixedSize(std::max(lines.width() + 4, 200), std::max(lines.height() + 4, sign_->height()));
}

void frmMsgBox::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) Fit();
    SkinWindow::changeEvent(event);
}

int frmMsgBox::Ask(const std::string &text, int flags, const QWidget *over) {
    while (std::exchange(isOpen_, true)) {
        QEventLoop pause;
        connect(this, &QDialog::finished, &pause, &QEventLoop::quit);
        pause.exec();
    }
    // A later question may be asked and answered before this call comes to return, so the answer is its own.
    int answer = 0;
    QEventLoop loop;
    connect(this, &QDialog::finished, &loop, [&answer, &loop](int result) {
        if (answer == 0) answer = result;
        loop.quit();
    });
    SetUp(text, flags);
    PlaceOver(*this, over);
    show();
    raise();
    activateWindow();
    FirstButton().setFocus();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    loop.exec(QEventLoop::DialogExec);
    return answer;
}

void frmMsgBox::Answer(const SkinButton &button) {
    if (!std::exchange(isOpen_, false)) return;
    done(button.property(answerTag).toInt());
}

void frmMsgBox::CloseByOwner() {
    (imgOk->isVisible() ? imgOk : imgNo)->click();
}

void frmMsgBox::keyPressEvent(QKeyEvent *event) {
    if (IsEnter(*event) || event->key() == Qt::Key_Space) {
        FirstButton().click();
    } else {
        SkinWindow::keyPressEvent(event);
    }
}

SkinButton &frmMsgBox::FirstButton() const {
    return imgOk->isVisible() ? *imgOk : *imgYes;
}

}  // namespace pixmora
