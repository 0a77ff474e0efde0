// frmSetup.h: the setup dialog: its lists of albums and rights, and the dialogs behind them.
#include <QAction>
#include <QShortcut>
#include <QStyle>
#include <QUrl>

#include "console/Events.h"
#include "console/Skin.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
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
        shortcut->setAutoRepeat(false);
        QObject::connect(shortcut, &QShortcut::activated, widget, [handler] { RunEventHandler(handler); });
    }
}

constexpr int directoryRole = Qt::UserRole;

/// For eyes and for those who can't see it.
void MarkAsMissing(QTreeWidgetItem &row) {
    const QString words = QStringLiteral("This directory cannot be found: ") + row.toolTip(1);
    row.setIcon(1, row.treeWidget()->style()->standardIcon(QStyle::SP_MessageBoxWarning));
    row.setForeground(1, Skin::Red);
    row.setToolTip(1, words);
    row.setData(1, Qt::AccessibleDescriptionRole, words);
}

void FitColumns(QTreeWidget &list) {
    for (int column = 0; column + 1 < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
        list.setColumnWidth(column, std::max(list.columnWidth(column) + 12, 130));
    }
}

QTreeWidgetItem *SelectedRow(const QTreeWidget &list) {
    return list.selectedItems().value(0);
}

/// An entry of the context menu, which is about the selected row.
void AddRowAction(QTreeWidget &list, const char *caption, const std::function<void()> &handler) {
    auto *action = new QAction(QLatin1String(caption), &list);
    action->setEnabled(false);
    QObject::connect(action, &QAction::triggered, &list, [handler] { RunEventHandler(handler); });
    QObject::connect(&list, &QTreeWidget::itemSelectionChanged, action,
                     [&list, action] { action->setEnabled(SelectedRow(list) != nullptr); });
    list.addAction(action);
    list.setContextMenuPolicy(Qt::ActionsContextMenu);
}

}  // namespace

void frmSetup::ConnectLists() {
    OnClick(albums_->cmdAlbumAdd, [this] { CreateAlbum(); });
    AddRowAction(*albums_->lstAlbums, "Edit...", [this] { EditAlbum(); });
    AddRowAction(*albums_->lstAlbums, "Delete", [this] { DeleteAlbum(); });
    AddRowAction(*albums_->lstAlbums, "Open Folder", [this] {
        OpenInBrowser(FromQt(QUrl::fromLocalFile(SelectedRow(*albums_->lstAlbums)->data(1, directoryRole).toString())
                                 .toString(QUrl::FullyEncoded)));
    });
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

QTreeWidgetItem *frmSetup::AddAlbumRow(const std::string &name, const std::string &directory) {
    auto *row = new QTreeWidgetItem(albums_->lstAlbums, {ToQt(name), ToQt(AbbreviatedDir(directory))});
    row->setIcon(0, FormParts::FolderIcon());
    row->setToolTip(1, ToQt(directory));
    row->setData(1, directoryRole, ToQt(SystemPath(directory)));
    if (!PathExists(directory)) MarkAsMissing(*row);
    FitColumns(*albums_->lstAlbums);
    return row;
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
    QTreeWidgetItem *selected = SelectedRow(*albums_->lstAlbums);
    if (selected == nullptr) return;
    const QString name = selected->text(0);
    if (AlbumEditor(FromQt(name)).TellIfGone()) return RemoveAlbumRows(name);
    frmSetupAlbum form(this, FromQt(name), surroundings_.Choosers);
    form.exec();
    const AlbumOutcome &outcome = form.Outcome();
    if (outcome.What == AlbumOutcome::Kind::Deleted) RemoveAlbumRows(name);
    if (outcome.What != AlbumOutcome::Kind::Saved) return;
    delete selected;
    albums_->lstAlbums->setCurrentItem(AddAlbumRow(outcome.Fields.Name, outcome.Fields.Directory));
    FillRestricted();  // its rights have its new name
}

void frmSetup::DeleteAlbum() {
    const QString name = SelectedRow(*albums_->lstAlbums)->text(0);
    if (AlbumEditor(FromQt(name)).OfferToDelete()) RemoveAlbumRows(name);
}

/// All of them: an album is deleted by its name, and so is another one of the same name.
void frmSetup::RemoveAlbumRows(const QString &name) {
    qDeleteAll(albums_->lstAlbums->findItems(name, Qt::MatchFixedString));
    FillRestricted();  // its rights have gone with it
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
    const int row = access_->lvwRestricted->indexOfTopLevelItem(SelectedRow(*access_->lvwRestricted));
    if (row < 0 || !OfferToRemoveRight(restricted_, restricted_[static_cast<std::size_t>(row)])) return;
    restricted_.erase(restricted_.begin() + row);
    delete access_->lvwRestricted->takeTopLevelItem(row);
    access_->lvwRestricted->setCurrentItem(nullptr);  // the next Enter has no row to go on with
}

}  // namespace pixmora
