// The controls of the setup dialogs.
#include "setup/FormParts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "platform/runtime/Text.h"
#include "setup/rules/HelpTexts.h"

namespace pixmora::FormParts {

namespace {

constexpr int iconSide = 16;

template <typename Control>
Control *Named(const char *name, Control *control) {
    control->setObjectName(QLatin1String(name));
    return control;
}

/// Leaves the wheel to the page around it while the keys go elsewhere.
template <typename Control>
class QuietWheel : public Control {
public:
    using Control::Control;

protected:
    void wheelEvent(QWheelEvent *event) override {
        if (this->hasFocus()) return Control::wheelEvent(event);
        event->ignore();
    }
};

class RoomyRows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const QSize plain = QStyledItemDelegate::sizeHint(option, index);
        return {plain.width() + 8, std::max(plain.height(), option.fontMetrics.height() + 8)};
    }
};

/// Wants the height of so many lines, takes more, and does with three.
template <typename View>
class LinesHigh : public View {
public:
    explicit LinesHigh(int lines) : lines_(lines) {}
    QSize sizeHint() const override { return {this->fontMetrics().averageCharWidth() * 44, Height(lines_)}; }
    QSize minimumSizeHint() const override { return {this->fontMetrics().averageCharWidth() * 20, Height(3)}; }

private:
    int Height(int lines) const { return this->fontMetrics().lineSpacing() * lines + 14; }
    int lines_;
};

class HintedList : public LinesHigh<QTreeWidget> {
public:
    HintedList(int lines, const char *hint) : LinesHigh(lines), hint_(QString::fromUtf8(hint)) {}

protected:
    void paintEvent(QPaintEvent *event) override {
        LinesHigh::paintEvent(event);
        if (topLevelItemCount() > 0) return;
        QPainter painter(viewport());
        painter.setPen(Skin::SoftInk);
        painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, hint_);
    }

private:
    QString hint_;
};

}  // namespace

QLabel *Note(const char *text) {
    auto *label = new QLabel(QString::fromUtf8(text));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel *Label(const char *name, const QString &text) {
    auto *label = Named(name, new QLabel(text));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLineEdit *TextBox(const char *name) {
    return Named(name, new QLineEdit);
}

QPlainTextEdit *TextArea(const char *name, int lines) {
    auto *area = Named(name, new LinesHigh<QPlainTextEdit>(lines));
    area->setTabChangesFocus(true);
    return area;
}

QCheckBox *CheckBox(const char *name, const char *caption) {
    return Named(name, new QCheckBox(QString::fromUtf8(caption)));
}

QRadioButton *Option(const QString &name, const char *caption) {
    auto *option = new QRadioButton(QString::fromUtf8(caption));
    option->setObjectName(name);
    return option;
}

QComboBox *DropDown(const char *name, bool isEditable) {
    auto *list = Named(name, new QuietWheel<QComboBox>);
    list->setFocusPolicy(Qt::StrongFocus);
    list->setEditable(isEditable);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return list;
}

QSlider *Slider(const char *name, int first, int last) {
    auto *slider = Named(name, new QuietWheel<QSlider>(Qt::Horizontal));
    slider->setFocusPolicy(Qt::StrongFocus);
    slider->setRange(first, last);
    slider->setSingleStep(1);
    slider->setPageStep(1);
    // The marks below push the handle up, out of the height that the style asks for.
    const QStyle *style = slider->style();
    slider->setMinimumSize(140, style->pixelMetric(QStyle::PM_SliderThickness) +
                                    2 * style->pixelMetric(QStyle::PM_SliderTickmarkOffset) + 4);
    return slider;
}

QTreeWidget *ListView(const char *name, std::initializer_list<const char *> columns, int lines, const char *hint) {
    auto *list = Named(name, new HintedList(lines, hint));
    MakeRoomy(*list);
    QStringList headings;
    for (const char *column : columns) headings << QString::fromUtf8(column);
    list->setHeaderLabels(headings);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setTabKeyNavigation(false);
    list->header()->setSectionsMovable(false);
    return list;
}

void MakeRoomy(QAbstractItemView &view) {
    view.setItemDelegate(new RoomyRows(&view));
}

SkinButton *Button(const char *name, const char *caption) {
    const QString text = QString::fromUtf8(caption);
    QString painted = text;
    painted.remove(u'&');
    auto *button = new SkinButton(name, {painted});
    button->setText(text);  // brings the key with it
    return button;
}

LinkLabel *Link(const char *name, const QString &text, const char *purpose, std::function<void()> open) {
    auto *link = new LinkLabel(name, text, QString::fromUtf8(purpose));
    link->SetLook({Skin::Blue, true, false, false, true});
    OnClick(link, std::move(open));
    return link;
}

LinkLabel *Help(const char *name, std::function<std::string()> serviceName) {
    auto *link = new LinkLabel(name, QStringLiteral("?"), QStringLiteral("Shows a help text"));
    link->setAccessibleName(QStringLiteral("Help: ") + QString::fromUtf8(HelpTextOf(name).Title));
    link->SetLook({Skin::Blue, false, false, true, true});
    OnClick(link, [name, serviceName = std::move(serviceName)] {
        ShowHelpOf(name, serviceName ? serviceName() : std::string());
    });
    return link;
}

SContainer *Captioned(const char *name, const char *caption, QLayout *content, QWidget *help) {
    auto *box = Named(name, new SContainer(QString::fromUtf8(caption)));
    auto *layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addLayout(content, 1);
    if (help != nullptr) layout->addWidget(help, 0, Qt::AlignTop);
    return box;
}

QLabel *AddRow(QGridLayout &grid, const char *caption, QWidget *control) {
    auto *label = new QLabel(QString::fromUtf8(caption));
    label->setBuddy(control);
    const QString words = label->text().remove(u':');
    if (qobject_cast<QLabel *>(control) != nullptr) {
        control->setAccessibleDescription(words);  // a name would hide what it reads
    } else {
        control->setAccessibleName(words);
    }
    const int row = grid.rowCount();
    const bool isTall = qobject_cast<QPlainTextEdit *>(control) != nullptr;
    grid.addWidget(label, row, 0, isTall ? Qt::AlignTop : Qt::AlignVCenter);
    grid.addWidget(control, row, 1);
    return label;
}

QLayout *ButtonRow(std::initializer_list<SkinButton *> buttons) {
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (SkinButton *button : buttons) {
        button->setMinimumWidth(90);
        row->addWidget(button);
    }
    return row;
}

QIcon FolderIcon() {
    QIcon icon;
    for (const int scale : {1, 2}) {
        QPixmap picture(iconSide * scale, iconSide * scale);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        PaintGlyph(painter, Glyph::Folder, QRectF(picture.rect()), Skin::Amber);
        painter.end();
        picture.setDevicePixelRatio(scale);
        icon.addPixmap(picture);
    }
    return icon;
}

}  // namespace pixmora::FormParts
