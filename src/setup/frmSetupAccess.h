// The form that decides who may see which directory.
#pragma once

#include <string>

#include "setup/SetupWindow.h"

class QCheckBox;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;

namespace pixmora {

class AlbumTreeView;
class SContainer;
class SkinButton;

/// Users, their rights, and the words that protect by themselves; modal. Rights and users are written at once, the
/// words when the form closes: there is no way to cancel.
class frmSetupAccess : public SetupWindow {
public:
    explicit frmSetupAccess(QWidget *parent);

    /// Shows the form; with no users it offers to add one first.
    void Run();

protected:
    void CloseByOwner() override;

private:
    SContainer *MakeTreeBox();
    SContainer *MakeUserBox();
    SContainer *MakeWordsBox();
    void ConnectControls();
    void FillUsers();
    void UpdateButtons();
    void ClickNode();
    void CheckItem(QListWidgetItem *user);
    void ShowRestriction();
    void Restrict();
    void Release();
    /// @param editUserName empty to add one
    void ShowUser(const std::string &editUserName);
    void DeleteUser();
    std::string SelectedUser() const;

    AlbumTreeView *tvAccess;
    QCheckBox *chkRestrictAccess;
    QListWidget *lstUsers;
    SkinButton *cmdUserAdd;
    SkinButton *cmdUserEdit;
    SkinButton *cmdUserDelete;
    QPlainTextEdit *txtRestrictWords;
    SkinButton *cmdOK;
    bool loadingUsers_ = false;  ///< the marks are being set by the form, nothing is to be written
};

}  // namespace pixmora
