// The form for the order of directories.
#pragma once

#include "setup/SetupWindow.h"
#include "setup/rules/DirOrderEditor.h"

class QComboBox;
class QFrame;
class QTreeWidget;

namespace pixmora {

class AlbumTreeView;
class SContainer;
class SkinButton;

/// The tree on the left chooses a directory, the list on the right orders its children; modal. Only cmdSave writes.
class frmSetupDirOrder : public SetupWindow {
public:
    explicit frmSetupDirOrder(QWidget *parent);

protected:
    void CloseByOwner() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    SContainer *MakeListBox();
    void ConnectControls();
    void ClickNode();
    void ShowRows();
    /// The selected row, to where the editor has moved it.
    void MoveSelectedRow(int newRow);
    void UpdateButtons();
    int SelectedRow() const;
    void ShowDrop(int distance);
    void Drop(int distance);

    DirOrderEditor editor_;
    AlbumTreeView *tvAlbums;
    QTreeWidget *lvwDirs;
    QFrame *dropLine_;  ///< where a row that is being dragged would go
    QComboBox *cboPreSort;
    SkinButton *cmdMoveUp;
    SkinButton *cmdMoveDown;
    SkinButton *cmdSave;
    SkinButton *cmdOK;
    int dragStart_ = 0;  ///< where the button went down, 0: nowhere
};

}  // namespace pixmora
