#include "ui/wizard/PageColumn.h"

#include "ui/style/Tokens.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace pointloom {

QVBoxLayout* pageColumn(QWidget* page) {
    constexpr int widest = 1240;
    constexpr int columnStretch = 1000; // the sides get what the column cannot use
    auto* inner = new QWidget(page);
    inner->setMaximumWidth(widest);
    auto* sides = new QHBoxLayout(page);
    sides->setContentsMargins(Space::xl, Space::l, Space::xl, 0);
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
    auto* scroll = new QScrollArea(parent);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    return scroll;
}

}
