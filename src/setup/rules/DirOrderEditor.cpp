// What the directory order editor decides.
#include "setup/rules/DirOrderEditor.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

#include "core/site/OwnerDialogue.h"
#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/AlbumTree.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/Protection.h"
#include "store/Rows.h"

namespace pixmora {

namespace {

constexpr int placeDigits = 6;

std::string PlaceText(int place) {
    return FormatPadded(place, placeDigits);
}

std::string MinuteText(DateTime date) {
    std::string text = FormatPadded(YearOf(date), 4);
    for (const int part : {MonthOf(date), DayOf(date), HourOf(date), MinuteOf(date)}) text += FormatPadded(part, 2);
    return text;
}

}  // namespace

int DragSteps(int distance, int rowHeight) {
    return rowHeight <= 0 ? 0 : static_cast<int>(std::lround(static_cast<double>(distance) / rowHeight));
}

/// Deliberate: the node of an album ends in a separator, so that its children are stored with two in front, those
/// further down with one. The site looks for two.
std::string DirOrderEditor::StoredName(const std::string &name) const {
    return SubDirOfKey(key_) + "\\" + name;
}

void DirOrderEditor::Open(std::string_view key) {
    key_ = key;
    rows_.clear();
    orderChanged_ = canSave_ = false;
    if (key.empty() || IsTreeRoot(key)) return;
    const DirOrder order(AlbumOfKey(key));
    for (const std::string &name : SubDirectoryNames(DirectoryOfKey(key))) {
        rows_.push_back({name, order.Position(StoredName(name), "000000")});
    }
    SortRows(false);
    canSave_ = rows_.size() >= 2;
}

void DirOrderEditor::SortRows(bool descending) {
    std::ranges::stable_sort(rows_, [descending](const Row &left, const Row &right) {
        const int order = CompareTexts(left.Sort, right.Sort);
        return descending ? order > 0 : order < 0;
    });
    for (int row = 0; row < Count(); ++row) rows_[static_cast<std::size_t>(row)].Sort = PlaceText(row + 1);
}

/// With the one below.
void DirOrderEditor::Swap(int upper) {
    const auto above = static_cast<std::size_t>(upper);
    std::swap(rows_[above].Name, rows_[above + 1].Name);  // the places stay where they are
    orderChanged_ = canSave_ = true;
}

int DirOrderEditor::MoveUp(int row) {
    if (!CanMoveUp(row)) return row;
    Swap(row - 1);
    return row - 1;
}

int DirOrderEditor::MoveDown(int row) {
    if (!CanMoveDown(row)) return row;
    Swap(row);
    return row + 1;
}

int DirOrderEditor::MoveBy(int row, int steps) {
    for (; steps > 0; --steps) row = MoveDown(row);
    for (; steps < 0; ++steps) row = MoveUp(row);
    return row;
}

std::string DirOrderEditor::DateKey(std::string_view choice, const std::string &path) {
    const std::optional<FileFacts> facts = Try([&] { return GetFileFacts(path); });
    if (!facts) return {};  // gone since the list was made
    return MinuteText(Contains(choice, "Created") ? facts->CreationTime : facts->LastWriteTime);
}

void DirOrderEditor::PreSort(std::string_view choice) {
    if (choice == PreSortChoices[0] || key_.empty() || IsTreeRoot(key_)) return;
    const DirOrder order(AlbumOfKey(key_));
    const std::string directory = DirectoryOfKey(key_) + "\\";
    for (int place = 1; Row & row : rows_) {
        if (Contains(choice, "Name")) {
            row.Sort = row.Name;
        } else if (Contains(choice, "Original")) {
            row.Sort = order.Position(StoredName(row.Name), PlaceText(place++));
        } else {
            row.Sort = DateKey(choice, directory + row.Name);
        }
    }
    SortRows(Contains(choice, "Desc"));
    orderChanged_ = canSave_ = true;
}

void DirOrderEditor::Save() {
    std::map<std::string, std::int64_t> places;  // by the stored path in lower case
    for (const Row &row : rows_) places[LCase(ProtectionKey(StoredName(row.Name)))] = CLng(row.Sort);
    Transaction transaction(*gDatabase);
    const std::string album = AlbumOfKey(key_);
    ForEachRow("DBOrder", "AlbumName = " + QuotedText(album), [&places](Recordset &stored) {
        const auto place = places.extract(LCase(TextOrEmpty(stored.Value("SubDir"))));
        if (!place) return;
        stored.Edit();
        stored.Set("SeqPos", place.mapped());
        stored.Update();
    });
    const auto order = gDatabase->OpenRecordset("DBOrder", RecordsetType::Table);
    for (const Row &row : rows_) {
        const std::string stored = ProtectionKey(StoredName(row.Name));
        const auto place = places.extract(LCase(stored));
        if (!place) continue;
        order->AddNew();
        order->Set("AlbumName", album);
        order->Set("SubDir", stored);
        order->Set("SeqPos", place.mapped());
        order->Update();
    }
    transaction.Commit();
    orderChanged_ = canSave_ = false;
}

void DirOrderEditor::OfferToSave() {
    if (orderChanged_ &&
        Asks("Do you want to save changes to the current directory structure?", FlagQuestion | FlagYesNo)) {
        Save();
    }
}

}  // namespace pixmora
