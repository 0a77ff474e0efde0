// frmSetup.h: the setup dialog: its lists of albums and rights, and the dialogs behind them.
#include <QShortcut>

#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "setup/SetupPages.h"
#include "setup/frmSetup.h"
#include "setup/frmSetupAccess.h"
#include "store/Catalogue.h"

namespace pixmora {

namespace {

/// What a click does, by the keyboard.
void OnEnter(QWidget *widget, const std::function<void()> &handler) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(QKeySequence(key), widget, nullptr, nullptr, Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, widget, [handler] { RunEventHandler(handler); });
    }
}

void FitColumns(QTreeWidget &list) {
    for (int column = 0; column + 1 < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
        list.setColumnWidth(column, std::max(list.columnWidth(column) + 12, 130));
    }
}

}  // namespace

void frmSetup::ConnectLists() {
    OnClick(albums_->cmdAlbumAdd, [this] { CreateAlbum(); });
    connect(albums_->lstAlbums, &QTreeWidget::itemDoubleClicked, this,
            [this] { RunEventHandler([this] { EditAlbum(); }); });
    OnEnter(albums_->lstAlbums, [this] { EditAlbum(); });

    OnClick(access_->cmdSetupRestricted, [this] { SetUpRestricted(); });
    connect(access_->lvwRestricted, &QTreeWidget::itemClicked, this,
            [this] { RunEventHandler([this] { RemoveRestriction(); }); });
    OnEnter(access_->lvwRestricted, [this] { RemoveRestriction(); });
}

void frmSetup::FillAlbums() {
    std::int32_t count = 0;
    for (const std::string &name : GetAlbumNames(count)) AddAlbumRow(name, GetAlbumDirectory(name));
}

void frmSetup::AddAlbumRow(const std::string &name, const std::string &directory) {
    auto *row = new QTreeWidgetItem(albums_->lstAlbums, {ToQt(name), ToQt(AbbreviatedDir(directory))});
    row->setIcon(0, FormParts::FolderIcon());
    row->setToolTip(1, ToQt(directory));
    FitColumns(*albums_->lstAlbums);
}

int frmSetup::CountAlbums() const {
    return albums_->lstAlbums->topLevelItemCount();
}

void frmSetup::CreateAlbum() {
    frmSetupAlbum form(this, std::nullopt, surroundings_.Choosers);
    form.exec();
    const AlbumOutcome &outcome = form.Outcome();
    if (outcome.What == AlbumOutcome::Kind::Saved) AddAlbumRow(outcome.Fields.Name, outcome.Fields.Directory);
}

void frmSetup::EditAlbum() {
    QTreeWidgetItem *selected = albums_->lstAlbums->currentItem();
    if (selected == nullptr) return;
    frmSetupAlbum form(this, FromQt(selected->text(0)), surroundings_.Choosers);
    form.exec();
    const AlbumOutcome &outcome = form.Outcome();
    if (outcome.What == AlbumOutcome::Kind::Unchanged) return;
    delete selected;
    if (outcome.What == AlbumOutcome::Kind::Saved) AddAlbumRow(outcome.Fields.Name, outcome.Fields.Directory);
    FillRestricted();  // its rights have gone with it, or have its new name
}

void frmSetup::FillRestricted() {
    access_->lvwRestricted->clear();
    restricted_ = GetRestrictedRows();
    for (const RestrictedRow &row : restricted_) {
        new QTreeWidgetItem(access_->lvwRestricted, {ToQt(row.Share), ToQt(row.DirectoryText()), ToQt(row.Username)});
    }
    FitColumns(*access_->lvwRestricted);
}

bool frmSetup::HasAlbumFor(const char *purpose) {
    if (CountAlbums() > 0) return true;
    if (WantsAlbumFirst(purpose)) {
        GoTo(SetupTab::Albums);
        CreateAlbum();
    }
    return false;
}

void frmSetup::SetUpRestricted() {
    if (!HasAlbumFor("enter Access Control")) return;
    frmSetupAccess form(this);
    form.Run();
    FillRestricted();
}

void frmSetup::RemoveRestriction() {
    const int row = access_->lvwRestricted->indexOfTopLevelItem(access_->lvwRestricted->currentItem());
    if (row < 0 || !OfferToRemoveRight(restricted_, restricted_[static_cast<std::size_t>(row)])) return;
    restricted_.erase(restricted_.begin() + row);
    delete access_->lvwRestricted->takeTopLevelItem(row);
}

}  // namespace pixmora
