#include "ui/wizard/PageColumn.h"

#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace pointloom {

namespace {

constexpr int scrollBarRoom = 10; // as wide as the style sheet makes scroll bars

// Keeps its content as wide with a scroll bar as without.
class PageScroll final : public QScrollArea {
public:
    explicit PageScroll(QWidget* parent)
        : QScrollArea(parent) {
        const auto keepWidth = [this](int, int last) {
            setViewportMargins(0, 0, last > 0 ? 0 : scrollBarRoom, 0);
        };
        connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, keepWidth);
        keepWidth(0, 0);
    }
};

}

QVBoxLayout* pageColumn(QWidget* page) {
    constexpr int widest = 1240;
    constexpr int columnStretch = 1000; // the sides get what the column cannot use
    auto* inner = new QWidget(page);
    inner->setMaximumWidth(widest);
    auto* sides = new QHBoxLayout(page);
    sides->setContentsMargins(Space::xl - cardRingRoom, Space::l, Space::xl - cardRingRoom - scrollBarRoom,
                              0);
    sides->setSpacing(0);
    sides->addStretch(1);
    sides->addWidget(inner, columnStretch);
    sides->addStretch(1);
    auto* column = new QVBoxLayout(inner);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Space::l);
    return column;
}

QScrollArea* scrollAround(QWidget* content, QWidget* parent) {
    auto* scroll = new PageScroll(parent);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    return scroll;
}

void addBesideScrollBar(QVBoxLayout* column, QWidget* widget, int stretch) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(cardRingRoom, 0, cardRingRoom + scrollBarRoom, 0);
    row->addWidget(widget);
    column->addLayout(row, stretch);
}

}
