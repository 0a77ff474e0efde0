// The tree of albums and directories in the dialogs, filled as it is opened.
#include "setup/modTree.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

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

AlbumTreeView::AlbumTreeView(const char *name) {
    setObjectName(QLatin1String(name));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *node) { RunEventHandler([this, node] { AddChildDirectories(node); }); });
    connect(this, &QTreeWidget::currentItemChanged, this, [this] {
        if (OnNodeClick) RunEventHandler(OnNodeClick);
    });
}

bool AlbumTreeView::ShowPlace(QLabel &album, QLabel &directory) const {
    const std::string key = CurrentKey();
    const bool isDirectory = !key.empty() && !IsTreeRoot(key);
    QString text = isDirectory ? ToQt(CurrentText()) : QString();
    if (text.endsWith(u':')) text.chop(1);
    album.setText(isDirectory ? ToQt(AlbumOfKey(key)) : QString());
    directory.setText(text);
    directory.setToolTip(text);
    return isDirectory;
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

std::string AlbumTreeView::CurrentText() const {
    return currentItem() == nullptr ? std::string() : FromQt(currentItem()->text(0));
}

void AlbumTreeView::keyPressEvent(QKeyEvent *event) {
    if (IsEnter(*event) && currentItem() != nullptr) {
        currentItem()->setExpanded(true);
    } else {
        QTreeWidget::keyPressEvent(event);
    }
}

}  // namespace pixmora
