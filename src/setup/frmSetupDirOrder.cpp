// The form for the order of directories.
#include "setup/frmSetupDirOrder.h"

#include <QComboBox>
#include <QHeaderView>
#include <QMouseEvent>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "setup/FormParts.h"
#include "setup/modTree.h"

namespace pixmora {

using namespace FormParts;

namespace {

constexpr int sortColumn = 1;  // hidden

}  // namespace

frmSetupDirOrder::frmSetupDirOrder(QWidget *parent)
    : SetupWindow("frmSetupDirOrder", QStringLiteral("Directory Order"), parent),
      tvAlbums(new AlbumTreeView("tvAlbums")),
      lvwDirs(ListView("lvwDirs", {"Directory", "Order"}, 14)),
      cboPreSort(DropDown("cboPreSort")),
      cmdMoveUp(Button("cmdMoveUp", "Move Up")),
      cmdMoveDown(Button("cmdMoveDown", "Move Down")),
      cmdSave(Button("cmdSave", "Save")),
      cmdOK(Button("cmdOK", "OK")) {
    auto *tree = new QVBoxLayout;
    tree->addWidget(tvAlbums);
    auto *columns = new QHBoxLayout;
    columns->addWidget(Captioned("SContainer1", "Album Directories", tree), 1);
    columns->addWidget(MakeListBox(), 1);
    Contents()->addLayout(columns, 1);
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
    cboPreSort->setAccessibleName(QStringLiteral("Sort by"));
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdMoveUp, cmdMoveDown, cmdSave}) buttons->addWidget(button);
    auto *rows = new QVBoxLayout;
    rows->addLayout(tvAlbums->MakePlaceRows());
    rows->addWidget(lvwDirs, 1);
    rows->addWidget(cboPreSort);
    rows->addLayout(buttons);
    return Captioned("SContainer2", "Directory Order", rows);
}

void frmSetupDirOrder::ConnectControls() {
    tvAlbums->OnNodeClick = [this] {
        ClickNode();
    };
    connect(lvwDirs, &QTreeWidget::currentItemChanged, this, [this] { UpdateButtons(); });
    const auto move = [this](int (DirOrderEditor::*way)(int)) {
        ShowRows((editor_.*way)(SelectedRow()));
        lvwDirs->setFocus();
    };
    OnClick(cmdMoveUp, [move] { move(&DirOrderEditor::MoveUp); });
    OnClick(cmdMoveDown, [move] { move(&DirOrderEditor::MoveDown); });
    OnClick(cmdSave, [this] {
        editor_.Save();
        UpdateButtons();
    });
    OnClick(cmdOK, [this] { CloseByOwner(); });
    connect(cboPreSort, &QComboBox::activated, this, [this] {
        RunEventHandler([this] {
            editor_.PreSort(FromQt(cboPreSort->currentText()));
            cboPreSort->setCurrentIndex(0);
            ShowRows(SelectedRow());
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
    ShowRows(-1);
}

void frmSetupDirOrder::ShowRows(int selectedRow) {
    lvwDirs->clear();
    for (const DirOrderEditor::Row &row : editor_.Rows()) {
        auto *item = new QTreeWidgetItem(lvwDirs, {ToQt(row.Name), ToQt(row.Sort)});
        item->setIcon(0, FolderIcon());
    }
    lvwDirs->setCurrentItem(lvwDirs->topLevelItem(selectedRow));
    UpdateButtons();
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
    if (event->type() == QEvent::MouseMove) return true;  // the row that was taken hold of stays the selected one
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        const auto *mouse = static_cast<const QMouseEvent *>(event);
        if (mouse->button() != Qt::LeftButton) return false;
        const int height = mouse->position().toPoint().y();
        if (event->type() == QEvent::MouseButtonPress) {
            if (dragStart_ == 0) dragStart_ = height;
        } else if (const int start = std::exchange(dragStart_, 0); start != 0 && start != height) {
            RunEventHandler([this, start, height] { Drag(height - start); });
        }
    }
    return false;
}

void frmSetupDirOrder::Drag(int distance) {
    const int row = SelectedRow();
    if (row < 0) return;
    const int steps = DragSteps(distance, lvwDirs->visualItemRect(lvwDirs->currentItem()).height());
    if (steps != 0) ShowRows(editor_.MoveBy(row, steps));
}

}  // namespace pixmora
