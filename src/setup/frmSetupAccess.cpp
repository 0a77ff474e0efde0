// The form that decides who may see which directory.
#include "setup/frmSetupAccess.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "console/Events.h"
#include "console/Texts.h"
#include "setup/FormParts.h"
#include "setup/frmSetupUsers.h"
#include "setup/modTree.h"
#include "setup/rules/AccessEditor.h"
#include "setup/rules/UserEditor.h"

namespace pixmora {

using namespace FormParts;

frmSetupAccess::frmSetupAccess(QWidget *parent)
    : SetupWindow("frmSetupAccess", QStringLiteral("Access Control"), parent),
      tvAccess(new AlbumTreeView("tvAccess")),
      lblParentAlbum(Label("lblParentAlbum")),
      lblAccessDir(Label("lblAccessDir")),
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
    cmdOK->setMinimumWidth(90);
    Contents()->addWidget(cmdOK, 0, Qt::AlignRight);
    ConnectControls();
    FillUsers();
    SetText(*txtRestrictWords, LoadRestrictWords());
    tvAccess->FillAlbumTree();
    ClickNode();
    FinishLayout();
}

SContainer *frmSetupAccess::MakeTreeBox() {
    tvAccess->setAccessibleName(QStringLiteral("Albums and directories"));
    auto *rows = new QVBoxLayout;
    rows->addWidget(tvAccess);
    return Box("SContainer1", "Album Directories", rows, Help("lblHelpAlbumDirs"));
}

SContainer *frmSetupAccess::MakeUserBox() {
    lstUsers->setObjectName(QStringLiteral("lstUsers"));
    lstUsers->setAccessibleName(QStringLiteral("Users with access"));
    auto *rows = new QVBoxLayout;
    auto *place = new QGridLayout;
    place->addWidget(new QLabel(QStringLiteral("Album:")), 0, 0);
    place->addWidget(lblParentAlbum, 0, 1);
    place->addWidget(lblAccessDir, 1, 1);
    place->setColumnStretch(1, 1);
    for (QLabel *label : {lblParentAlbum, lblAccessDir}) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    rows->addLayout(place);
    rows->addWidget(chkRestrictAccess);
    rows->addWidget(lstUsers, 1);
    auto *buttons = new QHBoxLayout;
    for (SkinButton *button : {cmdUserAdd, cmdUserEdit, cmdUserDelete}) buttons->addWidget(button);
    buttons->addStretch();
    rows->addLayout(buttons);
    return Box("SContainer2", "User Access", rows, Help("lblHelpUserAccess"));
}

SContainer *frmSetupAccess::MakeWordsBox() {
    txtRestrictWords->setAccessibleName(QStringLiteral("Words that protect a directory"));
    auto *rows = new QVBoxLayout;
    rows->addWidget(txtRestrictWords);
    return Box("SContainer3", "Auto Restrict", rows, Help("lblHelpAutoRestrict"));
}

void frmSetupAccess::ConnectControls() {
    tvAccess->OnNodeClick = [this] {
        ClickNode();
    };
    connect(lstUsers, &QListWidget::itemChanged, this,
            [this](QListWidgetItem *user) { RunEventHandler([this, user] { CheckItem(user); }); });
    connect(lstUsers, &QListWidget::currentItemChanged, this, [this] { UpdateButtons(); });
    // It tells what the marks below come to; they are what the owner sets.
    OnClick(chkRestrictAccess, [this] {
        ShowRestriction();
        lstUsers->setFocus();
    });
    OnClick(cmdUserAdd, [this] { AddUser(); });
    OnClick(cmdUserEdit, [this] { EditUser(); });
    OnClick(cmdUserDelete, [this] { DeleteUser(); });
    OnClick(cmdOK, [this] { CloseByOwner(); });
}

void frmSetupAccess::Run() {
    QTimer::singleShot(0, this, [this] {
        RunEventHandler([this] {
            if (lstUsers->count() == 0 && WantsFirstUser()) AddUser();
        });
    });
    exec();
}

void frmSetupAccess::CloseByOwner() {
    SaveRestrictWords(TextOf(*txtRestrictWords));
    done(Accepted);
}

std::string frmSetupAccess::SelectedUser() const {
    return lstUsers->currentItem() == nullptr ? std::string() : FromQt(lstUsers->currentItem()->text());
}

std::string frmSetupAccess::ParentAlbum() const {
    return FromQt(lblParentAlbum->text());
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
    const bool isSelected = lstUsers->currentItem() != nullptr;
    cmdUserEdit->setEnabled(isSelected);
    cmdUserDelete->setEnabled(isSelected);
}

void frmSetupAccess::ClickNode() {
    const std::string key = tvAccess->CurrentKey();
    const bool isDirectory = tvAccess->ShowPlace(*lblParentAlbum, *lblAccessDir);
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

void frmSetupAccess::ShowRestriction() {
    bool isRestricted = false;
    for (int i = 0; i < lstUsers->count(); ++i) isRestricted |= lstUsers->item(i)->checkState() == Qt::Checked;
    chkRestrictAccess->setChecked(isRestricted);
}

void frmSetupAccess::CheckItem(QListWidgetItem *user) {
    UpdateButtons();
    if (loadingUsers_) return;
    const std::string subDir = SubDirOfKey(tvAccess->CurrentKey());
    if (user->checkState() == Qt::Checked) {
        AddRight(ParentAlbum(), subDir, FromQt(user->text()));
    } else {
        RemoveRight(ParentAlbum(), subDir, FromQt(user->text()));
    }
    ShowRestriction();
}

void frmSetupAccess::AddUser() {
    frmSetupUsers form(this, "");
    if (form.exec() == Accepted) FillUsers();
    UpdateButtons();
    ClickNode();
}

void frmSetupAccess::EditUser() {
    frmSetupUsers form(this, SelectedUser());
    if (form.exec() == Accepted) FillUsers();
    UpdateButtons();
    ClickNode();
}

void frmSetupAccess::DeleteUser() {
    if (!OfferToDeleteUser(SelectedUser())) return;
    delete lstUsers->currentItem();
    UpdateButtons();
    ClickNode();
}

}  // namespace pixmora
