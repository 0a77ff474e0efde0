// The frame of a tab, which scrolls where there is too little room.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace pixmora {

class PageFrame : public QScrollArea {
public:
    /// @param margin around the parts, in pixels
    explicit PageFrame(int margin = 12);

    /// Below what is there already.
    void Add(QWidget *part);
    /// The same, for a part that takes the room that is left over; one at most.
    void AddTall(QWidget *part);

    /// What the content wants.
    QSize sizeHint() const override;

private:
    QVBoxLayout *rows_;
    bool hasTall_ = false;
};

}  // namespace pixmora
