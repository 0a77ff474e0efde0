// What the setup dialogs have in common.
#include "setup/SetupWindow.h"

#include <QApplication>
#include <QHideEvent>
#include <QPalette>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include "console/Skin.h"
#include "console/Texts.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr int skinTextPixels = 12;
constexpr int frameRoom = 48;  // for the desktop's frame around the window
constexpr QColor paleInk{140, 148, 162};
constexpr const char *sizesSection = "Windows";

/// As "640x480"; empty where none is kept, or nonsense.
QSize KeptSize(const std::string &window) {
    const QStringList sides = ToQt(GetSetting(sizesSection, window)).split(u'x');
    const QSize size(sides.value(0).toInt(), sides.value(1).toInt());
    return size.isEmpty() ? QSize() : size;
}

void KeepSize(const std::string &window, const QSize &size) try {
    SaveSetting(sizesSection, window, std::to_string(size.width()) + "x" + std::to_string(size.height()));
} catch (const RunTimeError &) {  // settings that can't be written: the dialog's work has long been done
}

QPalette SkinPalette() {
    QPalette colours;
    colours.setColor(QPalette::Window, Skin::Body);
    colours.setColor(QPalette::WindowText, Skin::Ink);
    colours.setColor(QPalette::Base, Skin::Card);
    colours.setColor(QPalette::AlternateBase, Skin::Body);
    colours.setColor(QPalette::Text, Skin::Ink);
    colours.setColor(QPalette::Button, QColor(250, 251, 253));
    colours.setColor(QPalette::ButtonText, Skin::Ink);
    colours.setColor(QPalette::Highlight, Skin::Blue);
    colours.setColor(QPalette::HighlightedText, Skin::HeaderInk);
    colours.setColor(QPalette::PlaceholderText, Skin::SoftInk);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setColor(QPalette::Disabled, role, paleInk);
    }
    return colours;
}

QRect Room() {
    return QApplication::primaryScreen()->availableGeometry().adjusted(0, 0, 0, -frameRoom);
}

}  // namespace

SetupWindow::SetupWindow(const char *name, const QString &title, QWidget *parent)
    : QDialog(parent), contents_(new QVBoxLayout(this)) {
    setObjectName(QLatin1String(name));
    setWindowTitle(title);
    setAccessibleName(title);
    setWindowModality(Qt::ApplicationModal);
    setPalette(SkinPalette());
    // Menus, and the lists that drop down like them, are windows of their own and would take the desktop's.
    QApplication::setPalette(SkinPalette(), "QMenu");
    Skin::SetFont(*this, skinTextPixels);
    contents_->setContentsMargins(14, 12, 14, 12);
    contents_->setSpacing(10);
}

void SetupWindow::reject() {
    RunEventHandler([this] { CloseByOwner(); });
}

QSize SetupWindow::WantedSize() const {
    QSize wanted = sizeHint();
    // What is too high for the screen scrolls, and its bar takes room too.
    if (wanted.height() > Room().height()) wanted.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return wanted;
}

void SetupWindow::Begin(const QSize &size) {
    resize(size.boundedTo(Room().size()));
    firstSize_ = this->size();
}

void SetupWindow::FinishLayout() {
    const QSize kept = KeptSize(FromQt(objectName()));
    Begin(kept.isEmpty() ? WantedSize() : kept.expandedTo(minimumSizeHint()));
    if (parentWidget() == nullptr) move(Room().center() - rect().center());  // a sub-dialog goes over its parent
}

void SetupWindow::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (event->type() != QEvent::FontChange || !isVisible()) return;
    // When its controls have the new font too.
    QTimer::singleShot(0, this, [this] {
        if (size() == firstSize_) Begin(WantedSize());
    });
}

void SetupWindow::hideEvent(QHideEvent *event) {
    const bool isOwners = size() != firstSize_ && !isMaximized() && !isFullScreen();
    if (isOwners && !event->spontaneous()) KeepSize(FromQt(objectName()), size());
    QDialog::hideEvent(event);
}

}  // namespace pixmora
