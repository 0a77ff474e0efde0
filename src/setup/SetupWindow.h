// What the setup dialogs have in common.
#pragma once

#include <QDialog>

class QVBoxLayout;

namespace pixmora {

/// A dialog in the desktop's own frame, which can be resized, in the colours of the skin. Its text is as large as the
/// desktop's, and no smaller than the skin's. Escape and the frame's closing go to CloseByOwner. The size that the
/// owner gives it comes again with the next dialog of its name.
class SetupWindow : public QDialog {
public:
    SetupWindow(const char *name, const QString &title, QWidget *parent);

    void reject() override;

protected:
    virtual void CloseByOwner() = 0;

    QVBoxLayout *Contents() const { return contents_; }
    /// To be called when all controls are in their places: the size to begin with.
    void FinishLayout();

    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QSize WantedSize() const;
    void Begin(const QSize &size);

    QVBoxLayout *contents_;
    QSize firstSize_;  ///< what differs from it the owner has chosen
};

}  // namespace pixmora
