// What the setup dialogs have in common.
#include "setup/SetupWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QPalette>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include "console/Skin.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int skinTextPixels = 12;
constexpr int frameRoom = 48;  // for the desktop's frame around the window
constexpr QColor paleInk{140, 148, 162};

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

}  // namespace

SetupWindow::SetupWindow(const char *name, const QString &title, QWidget *parent)
    : QDialog(parent), contents_(new QVBoxLayout(this)) {
    setObjectName(QLatin1String(name));
    setWindowTitle(title);
    setAccessibleName(title);
    setWindowModality(Qt::ApplicationModal);
    setPalette(SkinPalette());
    setFont(Skin::Font(skinTextPixels));
    contents_->setContentsMargins(14, 12, 14, 12);
    contents_->setSpacing(10);
}

void SetupWindow::reject() {
    RunEventHandler([this] { CloseByOwner(); });
}

void SetupWindow::FinishLayout() {
    // The lists that drop down are windows of their own, which would take the desktop's colours.
    for (const QComboBox *box : findChildren<QComboBox *>()) box->view()->parentWidget()->setPalette(palette());
    const QRect room = QApplication::primaryScreen()->availableGeometry().adjusted(0, 0, 0, -frameRoom);
    QSize wanted = sizeHint();
    // What is too high for the screen scrolls, and its bar takes room too.
    if (wanted.height() > room.height()) wanted.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    resize(wanted.boundedTo(room.size()));
    if (parentWidget() == nullptr) move(room.center() - rect().center());  // a sub-dialog goes over its parent
}

}  // namespace pixmora
