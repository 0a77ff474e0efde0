// A window without the desktop's frame, with a painted title area by which it is moved.
#pragma once

#include <QDialog>
#include <QPoint>

class QScreen;
class QVBoxLayout;

namespace pixmora {

/// The band at the top. Pressing on it with the left button moves the window.
class TitleArea : public QWidget {
public:
    enum class Size { Main, Box };
    TitleArea(const QString &title, Size size, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// To the desktop's size of text.
    void Fit();
    void PaintMainTitle(QPainter &painter) const;

    QString title_;
    Size size_;
    QPoint grip_;  ///< where the pointer holds the window, from its corner
    bool isDragging_ = false;
};

/// Fixed to the size that its contents want. Nothing in it closes it by itself: Escape and the desktop's closing go to
/// CloseByOwner.
class SkinWindow : public QDialog {
public:
    SkinWindow(const char *name, const QString &title, TitleArea::Size size);

    TitleArea *Title() const { return title_; }
    /// Where the controls go, under the title area.
    QVBoxLayout *Contents() const { return contents_; }

    void reject() override { CloseByOwner(); }

protected:
    /// The owner has asked the window to close, by Escape or by the desktop.
    virtual void CloseByOwner() = 0;

    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    TitleArea *title_;
    QVBoxLayout *contents_;
};

/// The screen that shows the place; the first one where none does.
const QScreen &ScreenAt(const QPoint &place);

/// Moves the window to the middle of the screen where the owner is working, over the other window, which it then
/// belongs to, when that shows.
void PlaceOver(QWidget &window, const QWidget *other);

}  // namespace pixmora
