// The form for the order of directories.
#include "setup/frmSetupDirOrder.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QMouseEvent>
#include <QShortcut>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "setup/FormParts.h"
#include "setup/modTree.h"

namespace pixmora {

using namespace FormParts;

namespace {

constexpr int sortColumn = 1;  // hidden
constexpr int dropLineHeight = 2;

/// What is chosen is done at once, so the keys that go through the choices open the list instead.
class ActionList : public QComboBox {
protected:
    void keyPressEvent(QKeyEvent *event) override {
        const bool isWord = !event->text().trimmed().isEmpty() && event->key() != Qt::Key_Escape && !IsEnter(*event);
        const bool isStep = event->key() >= Qt::Key_Home && event->key() <= Qt::Key_PageDown;
        if (isWord || isStep) {
            showPopup();
        } else {
            QComboBox::keyPressEvent(event);
        }
    }
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

}  // namespace

frmSetupDirOrder::frmSetupDirOrder(QWidget *parent)
    : SetupWindow("frmSetupDirOrder", QStringLiteral("Directory Order"), parent),
      tvAlbums(new AlbumTreeView("tvAlbums")),
      lvwDirs(ListView("lvwDirs", {"Directory", "Order"}, 14)),
      dropLine_(new QFrame(lvwDirs->viewport())),
      cboPreSort(new ActionList),
      cmdMoveUp(Button("cmdMoveUp", "Move Up")),
      cmdMoveDown(Button("cmdMoveDown", "Move Down")),
      cmdSave(Button("cmdSave", "Save")),
      cmdOK(Button("cmdOK", "OK")) {
    auto *tree = new QVBoxLayout;
    tree->addWidget(tvAlbums);
    auto *columns = new QSplitter;
    columns->addWidget(Captioned("SContainer1", "Album Directories", tree));
    columns->addWidget(MakeListBox());
    columns->setChildrenCollapsible(false);
    Contents()->addWidget(columns, 1);
    Contents()->addLayout(ButtonRow({cmdOK}));
    ConnectControls();
    tvAlbums->FillAlbumTree();
    ClickNode();
    FinishLayout();
}

SContainer *frmSetupDirOrder::MakeListBox() {
    lvwDirs->setAccessibleName(QStringLiteral("Directories in their order"));
    lvwDirs->setColumnHidden(sortColumn, true);
    lvwDirs->viewport()->installEventFilter(this);
    for (const char *choice : PreSortChoices) cboPreSort->addItem(QString::fromUtf8(choice));
    cboPreSort->setObjectName(QStringLiteral("cboPreSort"));
    auto *sort = new QGridLayout;
    AddRow(*sort, "Sort by:", cboPreSort);
    sort->setColumnStretch(1, 1);
    dropLine_->setStyleSheet(QStringLiteral("background: ") + Skin::Blue.name());
    dropLine_->hide();
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdMoveUp, cmdMoveDown, cmdSave}) buttons->addWidget(button);
    auto *rows = new QVBoxLayout;
    rows->addLayout(tvAlbums->MakePlaceRows());
    rows->addWidget(lvwDirs, 1);
    rows->addLayout(sort);
    rows->addLayout(buttons);
    return Captioned("SContainer2", "Directory Order", rows);
}

void frmSetupDirOrder::ConnectControls() {
    tvAlbums->OnNodeClick = [this] {
        ClickNode();
    };
    connect(lvwDirs, &QTreeWidget::currentItemChanged, this, [this] { UpdateButtons(); });
    OnClick(cmdMoveUp, [this] { MoveSelectedRow(editor_.MoveUp(SelectedRow())); });
    OnClick(cmdMoveDown, [this] { MoveSelectedRow(editor_.MoveDown(SelectedRow())); });
    for (const auto &[key, button] : {std::pair{Qt::Key_Up, cmdMoveUp}, std::pair{Qt::Key_Down, cmdMoveDown}}) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::ALT | key), lvwDirs, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
    }
    OnClick(cmdSave, [this] {
        editor_.Save();
        UpdateButtons();
    });
    OnClick(cmdOK, [this] { CloseByOwner(); });
    connect(cboPreSort, &QComboBox::activated, this, [this] {
        RunEventHandler([this] {
            const int selected = SelectedRow();
            editor_.PreSort(FromQt(cboPreSort->currentText()));
            cboPreSort->setCurrentIndex(0);
            ShowRows();
            lvwDirs->setCurrentItem(lvwDirs->topLevelItem(selected));
        });
    });
}

void frmSetupDirOrder::CloseByOwner() {
    editor_.OfferToSave();
    done(Accepted);
}

void frmSetupDirOrder::ClickNode() {
    editor_.OfferToSave();
    editor_.Open(tvAlbums->CurrentKey());
    ShowRows();
}

void frmSetupDirOrder::ShowRows() {
    const QIcon folder = FolderIcon();
    QList<QTreeWidgetItem *> items;
    for (const DirOrderEditor::Row &row : editor_.Rows()) {
        items << new QTreeWidgetItem({ToQt(row.Name), ToQt(row.Sort)});
        items.last()->setIcon(0, folder);
    }
    lvwDirs->clear();
    lvwDirs->addTopLevelItems(items);
    UpdateButtons();
}

void frmSetupDirOrder::MoveSelectedRow(int newRow) {
    const int row = SelectedRow();
    lvwDirs->insertTopLevelItem(newRow, lvwDirs->takeTopLevelItem(row));
    const auto [first, last] = std::minmax(row, newRow);
    for (int i = first; i <= last; ++i) {
        lvwDirs->topLevelItem(i)->setText(sortColumn, ToQt(editor_.Rows()[static_cast<std::size_t>(i)].Sort));
    }
    lvwDirs->setCurrentItem(lvwDirs->topLevelItem(newRow));
    UpdateButtons();
    lvwDirs->setFocus();
}

int frmSetupDirOrder::SelectedRow() const {
    return lvwDirs->indexOfTopLevelItem(lvwDirs->currentItem());
}

void frmSetupDirOrder::UpdateButtons() {
    const int row = SelectedRow();
    cmdMoveUp->setEnabled(editor_.CanMoveUp(row));
    cmdMoveDown->setEnabled(editor_.CanMoveDown(row));
    cmdSave->setEnabled(editor_.CanSave());
}

bool frmSetupDirOrder::eventFilter(QObject *watched, QEvent *event) {
    if (watched != lvwDirs->viewport()) return SetupWindow::eventFilter(watched, event);
    const auto *mouse = dynamic_cast<QMouseEvent *>(event);
    if (mouse == nullptr) return false;
    const int height = mouse->position().toPoint().y();
    if (event->type() == QEvent::MouseMove) {
        if (dragStart_ != 0) ShowDrop(height - dragStart_);
        return true;  // the row that was taken hold of stays the selected one
    }
    if (mouse->button() != Qt::LeftButton) return false;
    if (event->type() == QEvent::MouseButtonPress && dragStart_ == 0) dragStart_ = height;
    if (event->type() == QEvent::MouseButtonRelease) {
        dropLine_->hide();
        const int start = std::exchange(dragStart_, 0);
        if (start != 0 && start != height) RunEventHandler([this, start, height] { Drop(height - start); });
    }
    return false;
}

void frmSetupDirOrder::ShowDrop(int distance) {
    const int row = SelectedRow();
    if (row < 0) return;
    const int steps = DragSteps(distance, lvwDirs->visualItemRect(lvwDirs->currentItem()).height());
    const int target = std::clamp(row + steps, 0, lvwDirs->topLevelItemCount() - 1);
    dropLine_->setVisible(target != row);
    const QRect place = lvwDirs->visualItemRect(lvwDirs->topLevelItem(target));
    const int top = steps < 0 ? place.top() : place.bottom() + 1;
    dropLine_->setGeometry(0, top - dropLineHeight / 2, lvwDirs->viewport()->width(), dropLineHeight);
}

void frmSetupDirOrder::Drop(int distance) {
    const int row = SelectedRow();
    if (row < 0) return;
    const int steps = DragSteps(distance, lvwDirs->visualItemRect(lvwDirs->currentItem()).height());
    if (steps != 0) MoveSelectedRow(editor_.MoveBy(row, steps));
}

}  // namespace pixmora
