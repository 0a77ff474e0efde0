// The tree of albums and directories in the dialogs, filled as it is opened.
#include "setup/modTree.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>

#include "console/SkinButton.h"
#include "console/Texts.h"
#include "platform/loop/MessageLoop.h"
#include "setup/FormParts.h"

namespace pixmora {

namespace {

constexpr int keyRole = Qt::UserRole;
constexpr int isReadRole = Qt::UserRole + 1;

std::string KeyOf(const QTreeWidgetItem *node) {
    return node == nullptr ? std::string() : FromQt(node->data(0, keyRole).toString());
}

}  // namespace

AlbumTreeView::AlbumTreeView(const char *name)
    : lblParentAlbum(FormParts::Label("lblParentAlbum")), lblAccessDir(FormParts::Label("lblAccessDir")) {
    setObjectName(QLatin1String(name));
    setAccessibleName(QStringLiteral("Albums and directories"));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    FormParts::MakeRoomy(*this);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *node) { RunEventHandler([this, node] { AddChildDirectories(node); }); });
    connect(this, &QTreeWidget::currentItemChanged, this, [this] {
        ShowPlace();
        if (OnNodeClick) RunEventHandler(OnNodeClick);
    });
}

QLayout *AlbumTreeView::MakePlaceRows() const {
    auto *place = new QGridLayout;
    place->addWidget(new QLabel(QStringLiteral("Album:")), 0, 0);
    place->addWidget(lblParentAlbum, 0, 1);
    place->addWidget(lblAccessDir, 1, 1);
    place->setColumnStretch(1, 1);
    for (QLabel *label : {lblParentAlbum, lblAccessDir}) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return place;
}

void AlbumTreeView::ShowPlace() const {
    const bool isDirectory = IsDirectoryCurrent();
    QString text = isDirectory ? currentItem()->text(0) : QString();
    if (text.endsWith(u':')) text.chop(1);
    lblParentAlbum->setText(isDirectory ? ToQt(AlbumOfKey(CurrentKey())) : QString());
    lblAccessDir->setText(text);
    lblAccessDir->setToolTip(text);
}

QSize AlbumTreeView::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 34, fontMetrics().lineSpacing() * 18};
}

void AlbumTreeView::FillAlbumTree() {
    clear();
    auto *root = new QTreeWidgetItem(this, {QString::fromUtf8(TreeRootText)});
    root->setData(0, keyRole, QString::fromUtf8(TreeRootKey));
    root->setData(0, isReadRole, true);
    root->setIcon(0, FormParts::FolderIcon());
    for (const TreeNode &album : AlbumNodes()) AddNode(root, album);
    root->setExpanded(true);
    if (root->childCount() == 1) root->child(0)->setExpanded(true);
}

void AlbumTreeView::AddNode(QTreeWidgetItem *parent, const TreeNode &node) const {
    auto *item = new QTreeWidgetItem(parent, {ToQt(node.Text)});
    item->setData(0, keyRole, ToQt(node.Key));
    item->setIcon(0, FormParts::FolderIcon());
    item->setChildIndicatorPolicy(node.HasChildren ? QTreeWidgetItem::ShowIndicator
                                                   : QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

void AlbumTreeView::AddChildDirectories(QTreeWidgetItem *node) const {
    if (node->data(0, isReadRole).toBool()) return;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    node->setData(0, isReadRole, true);
    for (const TreeNode &child : ChildDirectories(KeyOf(node))) AddNode(node, child);
    node->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    QGuiApplication::restoreOverrideCursor();
}

std::string AlbumTreeView::CurrentKey() const {
    return KeyOf(currentItem());
}

bool AlbumTreeView::IsDirectoryCurrent() const {
    return currentItem() != nullptr && !IsTreeRoot(CurrentKey());
}

void AlbumTreeView::keyPressEvent(QKeyEvent *event) {
    if (IsEnter(*event) && currentItem() != nullptr) {
        currentItem()->setExpanded(true);
    } else {
        QTreeWidget::keyPressEvent(event);
    }
}

}  // namespace pixmora
