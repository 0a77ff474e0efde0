// The frame of a tab, which scrolls where there is too little room.
#include "setup/PageFrame.h"

#include <QVBoxLayout>

namespace pixmora {

PageFrame::PageFrame(int margin) {
    auto *content = new QWidget;
    auto *outer = new QVBoxLayout(content);
    outer->setContentsMargins(margin, margin, margin, margin);
    outer->setSpacing(0);
    rows_ = new QVBoxLayout;
    rows_->setSpacing(10);
    outer->addLayout(rows_, 1);
    rows_->addStretch();
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
}

void PageFrame::Add(QWidget *part) {
    part->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    rows_->insertWidget(rows_->count() - (hasTall_ ? 0 : 1), part);
}

void PageFrame::AddTall(QWidget *part) {
    hasTall_ = true;
    delete rows_->takeAt(rows_->count() - 1);
    rows_->addWidget(part, 1);
}

QSize PageFrame::sizeHint() const {
    const QSize wanted = widget()->sizeHint();
    return {wanted.width(), std::max(wanted.height(), widget()->heightForWidth(wanted.width()))};
}

}  // namespace pixmora
