// The tree of albums and directories in the dialogs, filled as it is opened.
#pragma once

#include <QTreeWidget>
#include <functional>
#include <string>

#include "setup/rules/AlbumTree.h"

class QLabel;

namespace pixmora {

/// The root "My Albums", the albums below it, and their directories, each read when its node is first opened. Enter and
/// the right arrow open the selected node, as does a click on its plus sign.
class AlbumTreeView : public QTreeWidget {
public:
    explicit AlbumTreeView(const char *name);

    /// Anew from the database. A single album is open at once.
    void FillAlbumTree();

    /// Rows for the dialog that tell the selected node's album and directory; nothing for the root. To be called once.
    QLayout *MakePlaceRows() const;

    /// Of the selected node; empty with none.
    std::string CurrentKey() const;
    /// Whether it is a directory, an album's own among them.
    bool IsDirectoryCurrent() const;

    /// Runs under the event guard when another node is chosen.
    std::function<void()> OnNodeClick;

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void ShowPlace() const;
    void AddNode(QTreeWidgetItem *parent, const TreeNode &node) const;
    void AddChildDirectories(QTreeWidgetItem *node) const;

    QLabel *lblParentAlbum;
    QLabel *lblAccessDir;
};

}  // namespace pixmora
