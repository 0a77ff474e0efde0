// The form that decides who may see which directory.
#include "setup/frmSetupAccess.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "console/Events.h"
#include "console/Texts.h"
#include "setup/ControlText.h"
#include "setup/FormParts.h"
#include "setup/frmSetupUsers.h"
#include "setup/modTree.h"
#include "setup/rules/AccessEditor.h"
#include "setup/rules/HelpTexts.h"
#include "setup/rules/UserEditor.h"

namespace pixmora {

using namespace FormParts;

frmSetupAccess::frmSetupAccess(QWidget *parent)
    : SetupWindow("frmSetupAccess", QStringLiteral("Access Control"), parent),
      tvAccess(new AlbumTreeView("tvAccess")),
      chkRestrictAccess(CheckBox("chkRestrictAccess", "Restrict Access To:")),
      lstUsers(new QListWidget),
      cmdUserAdd(Button("cmdUserAdd", "&Add User")),
      cmdUserEdit(Button("cmdUserEdit", "&Edit")),
      cmdUserDelete(Button("cmdUserDelete", "&Delete User")),
      txtRestrictWords(TextArea("txtRestrictWords", 3)),
      cmdOK(Button("cmdOK", "OK")) {
    auto *columns = new QHBoxLayout;
    columns->addWidget(MakeTreeBox(), 1);
    auto *right = new QVBoxLayout;
    right->addWidget(MakeUserBox(), 3);
    right->addWidget(MakeWordsBox(), 1);
    columns->addLayout(right, 1);
    Contents()->addLayout(columns, 1);
    Contents()->addLayout(ButtonRow({cmdOK}));
    ConnectControls();
    FillUsers();
    SetControlText(*txtRestrictWords, LoadRestrictWords());
    tvAccess->FillAlbumTree();
    tvAccess->setCurrentItem(tvAccess->topLevelItem(0)->child(0));  // so that users can be seen to at once
    ClickNode();
    FinishLayout();
}

SContainer *frmSetupAccess::MakeTreeBox() {
    auto *rows = new QVBoxLayout;
    rows->addWidget(tvAccess);
    return Captioned("SContainer1", "Album Directories", rows, Help("lblHelpAlbumDirs"));
}

SContainer *frmSetupAccess::MakeUserBox() {
    lstUsers->setObjectName(QStringLiteral("lstUsers"));
    MakeRoomy(*lstUsers);
    lstUsers->setAccessibleName(QStringLiteral("Users with access"));
    auto *rows = new QVBoxLayout;
    rows->addLayout(tvAccess->MakePlaceRows());
    rows->addWidget(chkRestrictAccess);
    rows->addWidget(lstUsers, 1);
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdUserAdd, cmdUserEdit, cmdUserDelete}) buttons->addWidget(button);
    buttons->addStretch();
    rows->addLayout(buttons);
    return Captioned("SContainer2", "User Access", rows, Help("lblHelpUserAccess"));
}

SContainer *frmSetupAccess::MakeWordsBox() {
    txtRestrictWords->setAccessibleName(QStringLiteral("Words that protect a directory"));
    auto *rows = new QVBoxLayout;
    rows->addWidget(txtRestrictWords);
    return Captioned("SContainer3", "Auto Restrict", rows, Help("lblHelpAutoRestrict"));
}

void frmSetupAccess::ConnectControls() {
    tvAccess->OnNodeClick = [this] {
        ClickNode();
    };
    connect(lstUsers, &QListWidget::itemChanged, this,
            [this](QListWidgetItem *user) { RunEventHandler([this, user] { CheckItem(user); }); });
    connect(lstUsers, &QListWidget::itemSelectionChanged, this, [this] { UpdateButtons(); });
    OnClick(chkRestrictAccess, [this] { chkRestrictAccess->isChecked() ? Restrict() : Release(); });
    OnClick(cmdUserAdd, [this] { ShowUser(""); });
    OnClick(cmdUserEdit, [this] { ShowUser(SelectedUser()); });
    OnClick(cmdUserDelete, [this] { DeleteUser(); });
    OnClick(cmdOK, [this] { CloseByOwner(); });
}

void frmSetupAccess::Run() {
    QTimer::singleShot(0, this, [this] {
        RunEventHandler([this] {
            if (lstUsers->count() == 0 && WantsFirstUser()) ShowUser("");
        });
    });
    exec();
}

void frmSetupAccess::CloseByOwner() {
    SaveRestrictWords(ControlText(*txtRestrictWords));
    done(Accepted);
}

std::string frmSetupAccess::SelectedUser() const {
    const QListWidgetItem *user = lstUsers->selectedItems().value(0);
    return user == nullptr ? std::string() : FromQt(user->text());
}

void frmSetupAccess::FillUsers() {
    loadingUsers_ = true;
    lstUsers->clear();
    for (const std::string &name : GetUserNames()) {
        auto *user = new QListWidgetItem(ToQt(name), lstUsers);
        user->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        user->setCheckState(Qt::Unchecked);
    }
    loadingUsers_ = false;
    UpdateButtons();
}

void frmSetupAccess::UpdateButtons() {
    const bool isSelected = !SelectedUser().empty();
    cmdUserEdit->setEnabled(isSelected);
    cmdUserDelete->setEnabled(isSelected);
}

void frmSetupAccess::ClickNode() {
    const std::string key = tvAccess->CurrentKey();
    const bool isDirectory = tvAccess->IsDirectoryCurrent();
    chkRestrictAccess->setEnabled(isDirectory);
    lstUsers->setEnabled(isDirectory);
    loadingUsers_ = true;
    for (int i = 0; i < lstUsers->count(); ++i) {
        QListWidgetItem *user = lstUsers->item(i);
        const bool isAllowed = isDirectory && HasRight(AlbumOfKey(key), SubDirOfKey(key), FromQt(user->text()));
        user->setCheckState(isAllowed ? Qt::Checked : Qt::Unchecked);
    }
    ShowRestriction();
    loadingUsers_ = false;
}

/// The box tells what the marks come to, so it needs one: the only user's, or one that the owner chooses.
void frmSetupAccess::Restrict() {
    if (lstUsers->count() == 1) {
        lstUsers->item(0)->setCheckState(Qt::Checked);
        return;
    }
    ShowRestriction();
    if (lstUsers->count() == 0) {
        if (WantsFirstUser()) ShowUser("");
        return;
    }
    lstUsers->setFocus();
    ShowHelpOf("lblHelpUserAccess");
}

/// The directory becomes public.
void frmSetupAccess::Release() {
    for (int i = 0; i < lstUsers->count(); ++i) lstUsers->item(i)->setCheckState(Qt::Unchecked);
}

void frmSetupAccess::ShowRestriction() {
    bool isRestricted = false;
    for (int i = 0; i < lstUsers->count(); ++i) isRestricted |= lstUsers->item(i)->checkState() == Qt::Checked;
    chkRestrictAccess->setChecked(isRestricted);
}

void frmSetupAccess::CheckItem(QListWidgetItem *user) {
    UpdateButtons();
    if (loadingUsers_) return;
    const std::string key = tvAccess->CurrentKey();
    const auto write = user->checkState() == Qt::Checked ? AddRight : RemoveRight;
    write(AlbumOfKey(key), SubDirOfKey(key), FromQt(user->text()));
    ShowRestriction();
}

void frmSetupAccess::ShowUser(const std::string &editUserName) {
    if (!TellIfUserGone(editUserName)) {
        frmSetupUsers form(this, editUserName);
        if (form.exec() == Rejected) return ClickNode();
    }
    FillUsers();
    UpdateButtons();
    ClickNode();
}

void frmSetupAccess::DeleteUser() {
    if (!OfferToDeleteUser(SelectedUser())) return;
    delete lstUsers->selectedItems().value(0);
    lstUsers->setCurrentItem(nullptr);  // the next key has no user to go on with
    UpdateButtons();
    ClickNode();
}

}  // namespace pixmora
