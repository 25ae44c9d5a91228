// Keeps a screen of the setup readable on wide windows: one column in the middle.
#pragma once

class QScrollArea;
class QVBoxLayout;
class QWidget;

namespace pointloom {

/// Kept free around every card for its ring of focus; what stands above and below cards is indented by it.
constexpr int cardRingRoom = 4;

/// Gives `page` its margins and a column of limited width in the middle; returns that column. Its right
/// margin is narrower by a scroll bar, which `scrollAround` leaves room for whether it is needed or not.
QVBoxLayout* pageColumn(QWidget* page);

/// A scroll area without a frame around `content`, which it takes over.
QScrollArea* scrollAround(QWidget* content, QWidget* parent);

/// Adds something that does not scroll, as wide as what does.
void addBesideScrollBar(QVBoxLayout* column, QWidget* widget, int stretch = 0);

}
