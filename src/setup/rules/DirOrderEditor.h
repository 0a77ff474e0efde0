// What the directory order editor decides: the order of a directory's children, and its saving.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

class DirOrder;

/// The choices of cboPreSort; the first one stands for none.
inline constexpr const char *PreSortChoices[] = {
    "- Sort By -",         "Original Order",       "Name - Asc",         "Name - Desc",
    "Date Modified - Asc", "Date Modified - Desc", "Date Created - Asc", "Date Created - Desc",
};

class DirOrderEditor {
public:
    struct Row {
        std::string Name;  ///< of the directory
        std::string Sort;  ///< what the rows are sorted by: six digits once the list stands
    };

    /// Lists the children of a tree's node in their stored order, those without one first. The root has none. A change
    /// that wasn't saved is dropped.
    void Open(std::string_view key);

    const std::vector<Row> &Rows() const { return rows_; }
    bool OrderChanged() const { return orderChanged_; }
    /// Whether there is an order to save at all: two rows or more, or a change.
    bool CanSave() const { return canSave_; }
    bool CanMoveUp(int row) const { return row > 0 && row < Count(); }
    bool CanMoveDown(int row) const { return row >= 0 && row + 1 < Count(); }

    /// Changes places with the row above or below. @return where the row is now
    int MoveUp(int row);
    int MoveDown(int row);
    /// As many moves as it takes, down for more than 0, as far as there are rows. @return where the row is now
    int MoveBy(int row, int steps);

    /// Sorts by one of PreSortChoices, and numbers the rows anew.
    void PreSort(std::string_view choice);

    /// Stores each row's place. Rows of directories that are gone stay in the table.
    void Save();

    /// Asks whether to save a change, if there is one, and does.
    void OfferToSave();

private:
    int Count() const { return static_cast<int>(rows_.size()); }
    std::string StoredName(const std::string &name) const;
    static std::string DateKey(std::string_view choice, const std::string &path);
    void Swap(int upper);
    void SortRows(bool descending);

    std::string key_;
    std::vector<Row> rows_;
    bool orderChanged_ = false;
    bool canSave_ = false;
};

/// How many rows a drag goes, down for more than 0. Heights in the same unit.
int DragSteps(int distance, int rowHeight);

}  // namespace pixmora
